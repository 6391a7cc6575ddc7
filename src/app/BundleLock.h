#pragma once

#include <QString>

#include <memory>

class QLockFile;

// The two locks of a database bundle. The system lock (a QLockFile on a
// hidden file of the bundle) is held by the one writing copy for its whole
// life and vanishes with its process; "lock.xml" is the informative lock the
// bundle format knows, which a save of the actions removes. A copy writes
// only while it holds the system lock.
class BundleLock
{
public:
    explicit BundleLock(QString folder);
    ~BundleLock();

    static QString systemLockName() { return QStringLiteral(".ledgerwick.lock"); }
    QString lockFilePath() const;

    // Takes the system lock without waiting; false while a running copy
    // holds it (heldElsewhere) or when it cannot be made at all. The folder
    // must exist.
    bool takeSystemLock();
    bool heldElsewhere() const { return m_heldElsewhere; }
    bool holdsSystemLock() const;
    void releaseSystemLock();

    // Whether "lock.xml" is there (a link counts, even a dangling one).
    bool lockFileExists() const;
    // Creates "lock.xml" only when nothing is there, so that of two copies
    // only one succeeds and nothing is written through a link.
    bool createLockFile(const QString &dateTime, QString *error = nullptr) const;
    // The moment written in "lock.xml"; "" when it cannot be read.
    QString lockFileDateTime() const;

    // Removes the temporary files a save left behind when it was killed.
    // Answers how many were removed.
    int removeLeftoverTemporaries() const;

private:
    QString m_folder;
    std::unique_ptr<QLockFile> m_system;
    bool m_heldElsewhere = false;
};
