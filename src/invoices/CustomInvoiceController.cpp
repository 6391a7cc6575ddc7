#include "invoices/CustomInvoiceController.h"

#include "contacts/Contact.h"
#include "core/Log.h"
#include "core/Platform.h"
#include "invoices/Stationery.h"
#include "orders/Order.h"
#include "richtext/RichTextTools.h"

namespace {

using OrderText = const QString &(Order::*)() const;
using ContactText = const QString &(Contact::*)() const;

// The placeholders in the order they are replaced: each one either an
// order's field or its customer's.
struct Placeholder
{
    const char *text;
    OrderText orderField;
    ContactText contactField;
};

const Placeholder kPlaceholders[] = {
    {"<balance>", &Order::getBalance, nullptr},
    {"<balancepaid>", &Order::getBalancePaid, nullptr},
    {"<contactsalutation>", nullptr, &Contact::getTitle},
    {"<contactname>", nullptr, &Contact::getName},
    {"<contactsurname>", nullptr, nullptr}, // computed, see below
    {"<contactcompany>", nullptr, &Contact::getCompanyName},
    {"<contactjobtitle>", nullptr, &Contact::getJobTitle},
    {"<contactadd1>", nullptr, &Contact::getAdd1},
    {"<contactadd2>", nullptr, &Contact::getAdd2},
    {"<contactadd3>", nullptr, &Contact::getAdd3},
    {"<contactpostcode>", nullptr, &Contact::getPostcode},
    {"<date>", &Order::getDate, nullptr},
    {"<deposit>", &Order::getDeposit, nullptr},
    {"<depositpaid>", &Order::getDepositPaid, nullptr},
    {"<description>", &Order::getDescription, nullptr},
    {"<ordernumber>", &Order::getOrderNum, nullptr},
    {"<net>", &Order::getNet, nullptr},
    {"<status>", &Order::getStatus, nullptr},
    {"<shipping>", &Order::getShipping, nullptr},
    {"<tax>", &Order::getTax, nullptr},
    {"<taxrate>", &Order::getTaxRate, nullptr},
    {"<title>", &Order::getTitle, nullptr},
    {"<type>", &Order::getType, nullptr},
    {"<subtotal>", &Order::getValue, nullptr},
    {"<total>", &Order::getValueWithTax, nullptr},
    {"<paymentmethod>", &Order::getPaymentMethod, nullptr},
};

const QString kItemsOrdered = QStringLiteral("<itemsordered>");

} // namespace

CustomInvoiceController::CustomInvoiceController() = default;

void CustomInvoiceController::setOrder(const Order *order, const Contact *contact)
{
    m_order = order;
    m_contact = contact;
}

void CustomInvoiceController::setbomDataSource(const lwDataSource *materials,
                                               const QList<lwDataSource::Column> &columns)
{
    m_materials = materials;
    m_columns = columns;
}

void CustomInvoiceController::setLinesHtml(const QString &html)
{
    m_linesHtml = html;
    m_haveLinesHtml = true;
}

QList<lwDataSource::Column> CustomInvoiceController::defaultLineColumns()
{
    return {{QStringLiteral("code"), lwTr("Code"), 80},
            {QStringLiteral("item"), lwTr("Item"), 260},
            {QStringLiteral("qty"), lwTr("Qty"), 50},
            {QStringLiteral("cost"), lwTr("Price"), 80},
            {QStringLiteral("total"), lwTr("Total"), 80}};
}

bool CustomInvoiceController::fill()
{
    const QString path = Stationery::templatePath(m_whichStationary);
    if (path.isEmpty()) {
        m_document.clear();
        return false;
    }
    return fillFrom(path);
}

bool CustomInvoiceController::fillFrom(const QString &templatePath)
{
    if (!Stationery::readDocument(templatePath, &m_document))
        return false;
    replacePlaceholders();
    insertBOMTable();
    return true;
}

void CustomInvoiceController::replacePlaceholders()
{
    for (const Placeholder &placeholder : kPlaceholders) {
        const QString find = QString::fromLatin1(placeholder.text);
        QString value;
        if (placeholder.orderField) {
            if (m_order)
                value = (m_order->*placeholder.orderField)();
        } else if (m_contact) {
            value = placeholder.contactField ? (m_contact->*placeholder.contactField)() : m_contact->getSurname();
        } else {
            value = QStringLiteral(""); // no customer: every contact placeholder goes
        }
        replaceAllOccurencesOf(find, value);
    }
}

void CustomInvoiceController::replaceAllOccurencesOf(const QString &find, const QString &replacement)
{
    if (find.isNull()) {
        lwLog(QStringLiteral("replaceAllOccurencesOf: passed nil as find string"));
        return;
    }
    QString with = replacement;
    if (with.isNull()) {
        lwLog(QStringLiteral("replaceAllOccurencesOf: passed nil as replace string for ") + find);
        with = QStringLiteral("");
    }
    RichTextTools::replaceAll(&m_document, find, with);
}

QString CustomInvoiceController::linesHtml() const
{
    if (m_haveLinesHtml)
        return m_linesHtml;
    if (!m_materials)
        return {};
    return m_materials->getDataAsHTMLusingTableView(m_columns.isEmpty() ? defaultLineColumns() : m_columns);
}

void CustomInvoiceController::insertBOMTable()
{
    if (!m_order || !m_order->getIncludeBOM()) {
        replaceAllOccurencesOf(kItemsOrdered, QStringLiteral(""));
        return;
    }
    const QString html = linesHtml();
    // No table to turn into text at all (no materials list was given).
    if (html.isNull()) {
        lwLog(QStringLiteral("couldn't initialise data"));
        return;
    }
    QTextDocument parsed;
    parsed.setHtml(html);
    if (parsed.isEmpty()) {
        lwLog(QStringLiteral("couldn't initialise attributed string. html is ") + html);
        return;
    }
    RichTextTools::insertHtml(&m_document, kItemsOrdered, html);
}
