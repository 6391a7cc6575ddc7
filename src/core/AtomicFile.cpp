#include "core/AtomicFile.h"

#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

AtomicFile::AtomicFile(QString path) : m_path(std::move(path)) {}

AtomicFile::~AtomicFile()
{
    cancel();
}

bool AtomicFile::fail()
{
    m_error = QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

bool AtomicFile::open()
{
    static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    for (int attempt = 0; attempt < 100; ++attempt) {
        QString suffix(6, QLatin1Char('x'));
        for (QChar &c : suffix)
            c = QLatin1Char(letters[QRandomGenerator::global()->bounded(int(sizeof letters - 1))]);
        m_temporary = m_path + QLatin1Char('.') + suffix;
        m_fd = ::open(QFile::encodeName(m_temporary).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (m_fd >= 0)
            return true;
        if (errno != EEXIST)
            break;
    }
    m_temporary.clear();
    return fail();
}

bool AtomicFile::write(const char *bytes, qint64 size)
{
    while (size > 0) {
        const ssize_t written = ::write(m_fd, bytes, size_t(size));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return fail();
        }
        bytes += written;
        size -= written;
        m_written += written;
    }
#ifdef __linux__
    // Start the disk on what is written so far, so that the final flush
    // waits for little more than the last stretch.
    if (m_written - m_sentToDisk >= (8 << 20)) {
        ::sync_file_range(m_fd, m_sentToDisk, m_written - m_sentToDisk, SYNC_FILE_RANGE_WRITE);
        m_sentToDisk = m_written;
    }
#endif
    return true;
}

bool AtomicFile::commit()
{
    struct stat old;
    if (::lstat(QFile::encodeName(m_path).constData(), &old) == 0 && S_ISREG(old.st_mode))
        ::fchmod(m_fd, old.st_mode & 07777);
    if (::fdatasync(m_fd) != 0 || ::close(m_fd) != 0) {
        fail();
        m_fd = -1;
        cancel();
        return false;
    }
    m_fd = -1;
    if (std::rename(QFile::encodeName(m_temporary).constData(), QFile::encodeName(m_path).constData()) != 0) {
        fail();
        cancel();
        return false;
    }
    m_temporary.clear();
    return true;
}

void AtomicFile::cancel()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
    if (!m_temporary.isEmpty())
        ::unlink(QFile::encodeName(m_temporary).constData());
    m_temporary.clear();
}
