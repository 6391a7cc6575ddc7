#include "app/BundleLock.h"

#include "core/PropertyListReader.h"
#include "core/PropertyListWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>

BundleLock::BundleLock(QString folder) : m_folder(std::move(folder)) {}

BundleLock::~BundleLock() = default;

QString BundleLock::lockFilePath() const
{
    return QDir(m_folder).filePath(QStringLiteral("lock.xml"));
}

bool BundleLock::takeSystemLock()
{
    if (holdsSystemLock())
        return true;
    auto lock = std::make_unique<QLockFile>(QDir(m_folder).filePath(systemLockName()));
    // Never stale by age: only a lock whose process has ended is taken over.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) {
        m_heldElsewhere = lock->error() == QLockFile::LockFailedError;
        return false;
    }
    m_heldElsewhere = false;
    m_system = std::move(lock);
    return true;
}

bool BundleLock::holdsSystemLock() const
{
    return m_system && m_system->isLocked();
}

void BundleLock::releaseSystemLock()
{
    m_system.reset();
}

bool BundleLock::lockFileExists() const
{
    const QFileInfo info(lockFilePath());
    return info.exists() || info.isSymLink();
}

bool BundleLock::createLockFile(const QString &dateTime, QString *error) const
{
    QFile file(lockFilePath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    const QByteArray bytes = PropertyListWriter::dictionary({{QStringLiteral("datetime"), dateTime}});
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        if (error)
            *error = file.errorString();
        file.close();
        file.remove();
        return false;
    }
    return true;
}

QString BundleLock::lockFileDateTime() const
{
    QFile file(lockFilePath());
    std::vector<std::pair<QString, QString>> entries;
    if (!file.open(QIODevice::ReadOnly) ||
        PropertyListReader::readDictionary(file.read(64 * 1024), entries) != PropertyListReader::Status::Ok)
        return {};
    for (const auto &[key, value] : entries)
        if (key == QLatin1String("datetime"))
            return value;
    return {};
}

int BundleLock::removeLeftoverTemporaries() const
{
    // "<file>.xml.XXXXXX", as the save names the file it renames into place.
    static const QRegularExpression temporary(
        QStringLiteral("^(contacts|orders|items|itemsordered|bills|actions)\\.xml\\.[A-Za-z0-9]{6}$"));
    int removed = 0;
    const QStringList names = QDir(m_folder).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &name : names)
        if (temporary.match(name).hasMatch() && QFile::remove(QDir(m_folder).filePath(name)))
            ++removed;
    return removed;
}
