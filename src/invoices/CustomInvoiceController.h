#pragma once

#include "core/lwDataSource.h"

#include <QList>
#include <QString>
#include <QTextDocument>

class Contact;
class Order;

// Fills one invoice: the chosen template read into a rich-text document, the
// order's placeholders replaced by its fields and its customer's, and the
// table of its lines put in place of "<itemsordered>". The invoice window
// shows and prints the document; the command-line tool writes it out.
class CustomInvoiceController
{
public:
    CustomInvoiceController();

    // The template's title in the stationery folder.
    void setWhichStationary(const QString &title) { m_whichStationary = title; }
    const QString &whichStationary() const { return m_whichStationary; }
    // The order and its customer (none: the contact placeholders become "").
    // Neither is owned; both must outlive fill().
    void setOrder(const Order *order, const Contact *contact);
    // The lines table is the HTML of these columns of the materials list, as
    // its table shows them (the current order's lines).
    void setbomDataSource(const lwDataSource *materials, const QList<lwDataSource::Column> &columns);
    // Or the lines table given as HTML directly.
    void setLinesHtml(const QString &html);

    // The invoice being filled and printed.
    QTextDocument *invoiceTextView() { return &m_document; }
    // The window's title: the template's name.
    QString windowTitle() const { return m_whichStationary; }

    // Reads the template and fills it. A template that cannot be found or
    // read leaves the invoice empty and answers false.
    bool fill();
    // Reads the template at that path (a file or package) and fills it.
    bool fillFrom(const QString &templatePath);

    // Replaces every occurrence, searching on after each inserted text.
    void replaceAllOccurencesOf(const QString &find, const QString &replacement);
    // The first "<itemsordered>" becomes the lines table when the order
    // includes its lines, else every one becomes "".
    void insertBOMTable();

    // The lines columns an invoice shows when no table gives its own.
    static QList<lwDataSource::Column> defaultLineColumns();

private:
    void replacePlaceholders();
    QString linesHtml() const;

    QTextDocument m_document;
    QString m_whichStationary;
    const Order *m_order = nullptr;
    const Contact *m_contact = nullptr;
    const lwDataSource *m_materials = nullptr;
    QList<lwDataSource::Column> m_columns;
    QString m_linesHtml;
    bool m_haveLinesHtml = false;
};
