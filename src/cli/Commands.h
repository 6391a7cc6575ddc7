#pragma once

#include <QStringList>

class QTextDocument;

// Each command takes the arguments after its name and answers the exit status.
// Results go to standard output, messages to standard error.
int convertCommand(const QStringList &args);
int checkCommand(const QStringList &args);
int saveCommand(const QStringList &args);
int backupsCommand(const QStringList &args);
int restoreCommand(const QStringList &args);
int websiteExportCommand(const QStringList &args);
int exportCommand(const QStringList &args);
int importCommand(const QStringList &args);
int importV1Command(const QStringList &args);
int reportCommand(const QStringList &args);
int repeatsCommand(const QStringList &args);
int invoiceCommand(const QStringList &args);

// The document as an HTML page with its pictures inside it as data URLs.
QString selfContainedHtml(const QTextDocument &document);
