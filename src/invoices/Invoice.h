#pragma once

#include <QString>
#include <QTextDocument>

class Contact;
class Order;
class Platform;

// The simple invoice form: the order's billing address and money laid out
// between a header and a footer that the user edits as rich-text files
// ("invoiceHeader" and "invoiceFooter" beside the database).
class Invoice
{
public:
    // For the header and then the footer: when neither the ".rtf" nor the
    // ".rtfd" exists, the built-in ".rtfd" is copied in. False when a copy failed.
    static bool createHeaderAndFooterIfNecessary();
    // The file read and opened for editing: the ".rtf" when it exists, else the ".rtfd".
    static QString headerPath();
    static QString footerPath();
    // Makes sure the files exist and opens one with the desktop's application.
    static bool editInvoiceHeader(Platform *platform);
    static bool editInvoiceFooter(Platform *platform);

    // Fills the form from the order and its customer (none: no address);
    // money is prefixed with the currency symbol when it is not empty.
    void setDetailsForThisOrder(const Order *order, const Contact *thisContact, const QString &currency);

    QString billingAddress;
    QString title;
    QString invoiceTitle;
    QString fullValue;
    QString fullValueWithTax;
    QString depositAmount;
    QString depositPaid;
    QString balanceAmount;
    QString balancePaid;
    QString shipping;
    QTextDocument header;
    QTextDocument footer;

    // The whole page as one document, for printing: the header, the address,
    // the title, the lines table (HTML, may be empty), the money and the footer.
    void composeInto(QTextDocument *page, const QString &linesHtml) const;
};
