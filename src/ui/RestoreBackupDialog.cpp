#include "ui/RestoreBackupDialog.h"

#include "app/BundleBackups.h"
#include "app/DatabaseStore.h"
#include "app/Ledgerwick.h"
#include "core/Platform.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

RestoreBackupDialog::RestoreBackupDialog(Ledgerwick *ledgerwick, QWidget *parent)
    : QDialog(parent), m_ledgerwick(ledgerwick), m_list(new QListWidget(this))
{
    setWindowTitle(lwTr("Restore from Backup"));
    setWindowModality(Qt::WindowModal);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(lwTr("Choose the backup to put back. The files as they are now are backed up "
                                      "first."),
                                 this));
    m_list->setObjectName(QStringLiteral("backups"));
    layout->addWidget(m_list);
    const QString bundle = ledgerwick->originalDbLocation().isEmpty() ? ledgerwick->databaseLocation()
                                                                      : ledgerwick->originalDbLocation();
    QStringList stamps = BundleBackups::stamps(bundle);
    std::reverse(stamps.begin(), stamps.end());
    for (const QString &stamp : stamps) {
        const QString set = QDir(BundleBackups::backupsFolder(bundle)).filePath(stamp);
        QStringList counts;
        for (const auto &file : DatabaseStore::files())
            counts << QStringLiteral("%1 %2").arg(DatabaseStore::read(file.kind, set).records.size()).arg(
                          QLatin1String(file.name));
        auto *row = new QListWidgetItem(stamp + QStringLiteral("  —  ") + counts.join(QStringLiteral(", ")), m_list);
        row->setData(Qt::UserRole, stamp);
    }
    if (m_list->count() > 0)
        m_list->setCurrentRow(0);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton *restore = buttons->addButton(lwTr("Restore…"), QDialogButtonBox::AcceptRole);
    restore->setEnabled(m_list->count() > 0 && !ledgerwick->isReadOnly());
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(restore, &QPushButton::clicked, this, &RestoreBackupDialog::restoreSelected);
    resize(560, 320);
}

void RestoreBackupDialog::restoreSelected()
{
    const QListWidgetItem *row = m_list->currentItem();
    Platform *platform = m_ledgerwick->platform();
    if (!row || !platform)
        return;
    const QString stamp = row->data(Qt::UserRole).toString();
    if (platform->alert({lwTr("Restore from Backup"),
                         lwTr("Put the backup of %1 back? Every list is read again from it; the files as they "
                              "are now are backed up first.")
                             .arg(stamp),
                         {lwTr("Restore"), lwTr("Cancel")}}) != 0)
        return;
    QString error;
    if (!m_ledgerwick->restoreBackup(stamp, &error))
        platform->alert({lwTr("Not Restored"), error, {lwTr("OK")}});
    accept();
}
