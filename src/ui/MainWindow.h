#pragma once

#include <QMainWindow>

class Ledgerwick;

// The one main window of the program.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(Ledgerwick *ledgerwick, QWidget *parent = nullptr);

private:
    void buildMenus();

    Ledgerwick *m_ledgerwick;
};
