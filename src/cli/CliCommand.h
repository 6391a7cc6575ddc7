#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

class Ledgerwick;

// The arguments of one command, read by Qt's parser: "--db PATH" and
// "--db=PATH" alike, "--help" for the command's own help.
class CliCommand
{
public:
    // The synopsis is the line after "usage: ledgerwick-cli ".
    CliCommand(const char *synopsis, const char *description);

    QCommandLineParser &parser() { return m_parser; }
    void addValueOption(const QString &name, const QString &valueName, const QString &description);
    void addFlag(const QString &name, const QString &description);
    // The --db option every command on a bundle takes.
    void addDbOption();
    // --break-stale-lock, for the commands that write the bundle.
    void addBreakStaleLockOption();

    // Parses the arguments after the command's name. Answers -1 to go on,
    // else the exit status: 0 after printing the help, 2 after a usage error.
    int parse(const QStringList &args, qsizetype minPositional, qsizetype maxPositional);
    // Prints the message and the synopsis to standard error; answers 2.
    int usageError(const QString &message = {}) const;

    bool isSet(const QString &name) const { return m_parser.isSet(name); }
    QString value(const QString &name) const { return m_parser.value(name); }
    QStringList positional() const { return m_parser.positionalArguments(); }
    // The database bundle named by --db ("~" expanded), or the one the
    // location preference names.
    QString bundleFolder() const;

private:
    QString m_synopsis;
    QCommandLineParser m_parser;
};

// How a command opens its bundle.
enum class BundleAccess {
    Look,  // read without taking the lock: runs beside an open app, never writes
    Write, // take the lock: refused while another copy holds it
};
// The one place a command opens the bundle it works on: the folder must be a
// database (unless a save may make one), then it is read as the app reads it.
// Answers -1 to go on, else the exit status after the message on standard
// error (1: no database there; 3: locked by another copy, with what was not done).
// A lock left by a copy that is no longer running is taken over only when
// breakStaleLock is given; one held by a running copy never is.
int openBundle(Ledgerwick &ledgerwick, const QString &folder, BundleAccess access, const char *notDone = "nothing was written",
               bool mayCreate = false, bool breakStaleLock = false);
// Prints the files the last save could not write to standard error; answers
// whether there were any.
bool reportSaveFailures(const Ledgerwick &ledgerwick);
