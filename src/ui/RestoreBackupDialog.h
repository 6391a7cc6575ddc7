#pragma once

#include <QDialog>

class Ledgerwick;
class QListWidget;

// File > Restore from Backup…: the dated backups of the database, newest
// first, each with its record counts; the chosen one is put back after a
// confirmation, and the lists show it at once.
class RestoreBackupDialog : public QDialog
{
    Q_OBJECT
public:
    explicit RestoreBackupDialog(Ledgerwick *ledgerwick, QWidget *parent = nullptr);

    QListWidget *list() const { return m_list; }
    // Asks for confirmation, restores the selected backup and closes.
    void restoreSelected();

private:
    Ledgerwick *m_ledgerwick;
    QListWidget *m_list;
};
