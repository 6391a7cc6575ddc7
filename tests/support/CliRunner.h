#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

// What a run of the command-line tool gave back.
struct CliRun
{
    int status = -1; // -1: it crashed or did not finish
    QByteArray outBytes;
    QString out;
    QString err;
};

// Starts the tool as a user would, with the home folder (and so the settings
// and the standard bundle) in the folder given; the caller owns the process.
inline QProcess *startCli(const QString &program, const QStringList &args, const QString &home)
{
    auto *process = new QProcess;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
    // Standard error then holds the tool's own messages alone, without Qt's
    // warning about a missing runtime folder.
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home + QStringLiteral("/runtime"));
    process->setProcessEnvironment(env);
    process->start(program, args);
    return process;
}

// Runs the tool to its end.
inline CliRun runCli(const QString &program, const QStringList &args, const QString &home)
{
    std::unique_ptr<QProcess> process(startCli(program, args, home));
    CliRun run;
    if (!process->waitForFinished(60000))
        return run;
    run.status = process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -1;
    run.outBytes = process->readAllStandardOutput();
    run.out = QString::fromUtf8(run.outBytes);
    run.err = QString::fromUtf8(process->readAllStandardError());
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

#ifdef LW_CLI
// A private home for the tool's runs: its runtime folder as the system makes
// it, and a copy of the foreign bundle as "shop.lwkdb".
struct CliHome
{
    QTemporaryDir dir;
    bool ready = dir.isValid() && QDir(dir.path()).mkdir(QStringLiteral("runtime")) &&
                 QFile::setPermissions(path(QStringLiteral("runtime")),
                                       QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner) &&
                 copyFolder(QStringLiteral(LW_TEST_DATA "/bundle-foreign"), bundle());
    QString path(const QString &name = {}) const { return name.isEmpty() ? dir.path() : dir.filePath(name); }
    QString bundle() const { return path(QStringLiteral("shop.lwkdb")); }
    CliRun run(const QStringList &args) const { return runCli(QStringLiteral(LW_CLI), args, dir.path()); }
    // On the bundle: "--db BUNDLE" after the arguments.
    CliRun onBundle(const QStringList &args) const { return run(args + QStringList{QStringLiteral("--db"), bundle()}); }
};
#endif
