#pragma once

#include <QString>
#include <QStringList>

class Platform;
class QTextDocument;

// The user's invoice templates: the "stationary" folder beside the database,
// the defaults installed into it, and the listing the order editor offers.
// A template is an ".rtfd" package, or a plain ".rtf" or ".html" file, since
// most desktop editors cannot write packages.
class Stationery
{
public:
    // "~/Library/Application Support/Ledgerwick" and its "stationary" folder.
    static QString supportFolder();
    static QString folder();
    // The built-in templates, in the order they are installed.
    static QStringList defaultNames();
    // The built-in package of a default (a resource folder), "" for any other name.
    static QString resourcePackage(const QString &name);

    // Creates the folders where missing and copies every missing default in
    // (an earlier version's "customInvoice.rtfd" becomes "Invoice.rtfd").
    // Nothing that exists is ever overwritten. False, with the reason, when
    // a folder or file could not be written.
    static bool installStationary(QString *error = nullptr);

    // One title per template, in folder order: entries beginning with "."
    // are not templates, and a name shown as a package and a file is listed once.
    static QStringList titles();
    // The file or package a title reads from: the ".rtfd" first, then
    // ".rtf", ".html", ".htm", then any other entry of that title; "" when none.
    static QString templatePath(const QString &title);
    // Reads an ".rtfd", ".rtf", ".html" or ".htm" into the document; false
    // (and the document left empty) when it could not be read.
    static bool readDocument(const QString &path, QTextDocument *document);

    // Opens the folder in the desktop's file browser when it exists.
    static bool editInvoiceTemplate(Platform *platform);

    // Copies a file or a package folder to a path that does not exist yet,
    // through a hidden temporary beside it, so that a half-copied template
    // never appears under its real name.
    static bool copyIntoPlace(const QString &from, const QString &to, QString *error = nullptr);
};
