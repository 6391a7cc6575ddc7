#include "invoices/Invoice.h"

#include "contacts/Contact.h"
#include "core/Platform.h"
#include "invoices/Stationery.h"
#include "orders/Order.h"

#include <QDir>
#include <QFileInfo>
#include <QTextCursor>
#include <QTextDocumentFragment>

namespace {

QString basePath(const char *name)
{
    return Stationery::supportFolder() + QLatin1Char('/') + QLatin1String(name);
}

bool createIfNecessary(const char *name)
{
    const QString base = basePath(name);
    if (QFileInfo::exists(base + QStringLiteral(".rtf")) || QFileInfo::exists(base + QStringLiteral(".rtfd")))
        return true;
    Stationery::resourcePackage(QStringLiteral("Invoice")); // registers the built-in resources
    return QDir().mkpath(Stationery::supportFolder()) &&
           Stationery::copyIntoPlace(QStringLiteral(":/stationery/") + QLatin1String(name) + QStringLiteral(".rtfd"),
                                     base + QStringLiteral(".rtfd"));
}

QString existingPath(const char *name)
{
    const QString rtf = basePath(name) + QStringLiteral(".rtf");
    return QFileInfo::exists(rtf) ? rtf : basePath(name) + QStringLiteral(".rtfd");
}

QString withCurrency(const QString &currency, const QString &amount)
{
    return amount.isEmpty() ? amount : currency + amount;
}

void appendDocument(QTextCursor &cursor, const QTextDocument &part)
{
    cursor.insertFragment(QTextDocumentFragment(&part));
    cursor.insertBlock();
}

} // namespace

bool Invoice::createHeaderAndFooterIfNecessary()
{
    const bool header = createIfNecessary("invoiceHeader");
    const bool footer = createIfNecessary("invoiceFooter");
    return header && footer;
}

QString Invoice::headerPath()
{
    return existingPath("invoiceHeader");
}

QString Invoice::footerPath()
{
    return existingPath("invoiceFooter");
}

bool Invoice::editInvoiceHeader(Platform *platform)
{
    createHeaderAndFooterIfNecessary();
    return platform && platform->openPath(headerPath());
}

bool Invoice::editInvoiceFooter(Platform *platform)
{
    createHeaderAndFooterIfNecessary();
    return platform && platform->openPath(footerPath());
}

void Invoice::setDetailsForThisOrder(const Order *order, const Contact *thisContact, const QString &currency)
{
    billingAddress.clear();
    if (thisContact) {
        billingAddress = thisContact->getName() + QLatin1Char('\n');
        if (!thisContact->getCompanyName().isEmpty())
            billingAddress += thisContact->getCompanyName() + QLatin1Char('\n');
        for (const QString &line : {thisContact->getAdd1(), thisContact->getAdd2(), thisContact->getAdd3(),
                                    thisContact->getPostcode()})
            billingAddress += line + QLatin1Char('\n');
    }
    if (order) {
        title = order->getTitle();
        fullValue = withCurrency(currency, order->getValue());
        depositAmount = withCurrency(currency, order->getDeposit());
        balanceAmount = withCurrency(currency, order->getBalance());
        depositPaid = order->getDepositPaid();
        balancePaid = order->getBalancePaid();
        shipping = order->getShipping();
    }
    createHeaderAndFooterIfNecessary();
    Stationery::readDocument(headerPath(), &header);
    Stationery::readDocument(footerPath(), &footer);
}

void Invoice::composeInto(QTextDocument *page, const QString &linesHtml) const
{
    page->clear();
    QTextCursor cursor(page);
    appendDocument(cursor, header);
    cursor.insertText(billingAddress);
    cursor.insertBlock();
    cursor.insertHtml(QStringLiteral("<h2>") + title.toHtmlEscaped() + QStringLiteral("</h2>"));
    cursor.insertBlock();
    if (!linesHtml.isEmpty()) {
        cursor.insertHtml(linesHtml);
        cursor.insertBlock();
    }
    const std::pair<const char *, const QString *> money[] = {
        {"Total", &fullValue},          {"Shipping", &shipping},       {"Deposit", &depositAmount},
        {"Deposit paid", &depositPaid}, {"Balance", &balanceAmount}, {"Balance paid", &balancePaid}};
    for (const auto &[label, value] : money)
        if (!value->isEmpty()) {
            cursor.insertText(lwTr(label) + QStringLiteral(": ") + *value);
            cursor.insertBlock();
        }
    appendDocument(cursor, footer);
}
