#pragma once

#include <QString>

// A file written whole or not at all: the bytes go to a temporary file
// beside it ("<name>.XXXXXX"), which is flushed to the disk and renamed over
// the old file. A link at the path is replaced, never written through. The
// reasons for a failure are the system's own ("No space left on device").
class AtomicFile
{
public:
    explicit AtomicFile(QString path);
    ~AtomicFile(); // an uncommitted file is cancelled
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    bool open();
    bool write(const char *bytes, qint64 size);
    // Flushes, keeps the old file's permissions, and renames into place.
    bool commit();
    void cancel();
    const QString &errorString() const { return m_error; }

private:
    bool fail();

    QString m_path;
    QString m_temporary;
    int m_fd = -1;
    qint64 m_written = 0;
    qint64 m_sentToDisk = 0; // written back early, while the rest is still being made
    QString m_error;
};
