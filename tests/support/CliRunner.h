#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>

// What a run of the command-line tool gave back.
struct CliRun
{
    int status = -1; // -1: it crashed or did not finish
    QByteArray outBytes;
    QString out;
    QString err;
};

// Runs the tool as a user would, with the home folder (and so the settings
// and the standard bundle) in the folder given.
inline CliRun runCli(const QString &program, const QStringList &args, const QString &home)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
    // Standard error then holds the tool's own messages alone, without Qt's
    // warning about a missing runtime folder.
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home + QStringLiteral("/runtime"));
    process.setProcessEnvironment(env);
    process.start(program, args);
    CliRun run;
    if (!process.waitForFinished(60000))
        return run;
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.outBytes = process.readAllStandardOutput();
    run.out = QString::fromUtf8(run.outBytes);
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

// Small file helpers the tests share.
inline QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// Copies the files (not sub-folders) of one folder into another.
inline bool copyFolder(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    const QStringList names = QDir(from).entryList(QDir::Files);
    for (const QString &name : names)
        if (!QFile::copy(QDir(from).filePath(name), QDir(to).filePath(name)))
            return false;
    return true;
}
