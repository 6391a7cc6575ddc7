#include "accounts/BillManager.h"

#include "core/DatabasePaths.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/PropertyListWriter.h"
#include "core/lwController.h"
#include "prefs/PrefsController.h"

#include <QDir>

namespace {

const QString kAmount = QStringLiteral("amount");
const QString kVat = QStringLiteral("vat");

// Totals read every "," out first, so "1,000.50" counts as 1000.5.
float sumOf(const std::vector<std::shared_ptr<dataObject>> &records, const QString &(Bill::*field)() const)
{
    float sum = 0;
    for (const auto &record : records)
        if (record->getVisible())
            sum += NumberText::floatValue(QString((static_cast<const Bill &>(*record).*field)()).remove(QLatin1Char(',')));
    return sum;
}

void appendStrings(QByteArray &out, const QStringList &strings, const char *indent)
{
    for (const QString &text : strings) {
        out.append(indent).append("<string>");
        PropertyListWriter::appendEscaped(out, text);
        out.append("</string>\n");
    }
}

} // namespace

BillManager::BillManager(QObject *parent)
    : lwEditorManager({lwTr("Delete Bill"), lwTr("Do you want to delete the selected item from the database?"), {},
                       CancelRule::KeepCreating},
                      &Bill::isDate, parent),
      m_clock(&CalendarDate::currentDate)
{
    setObjectName(QStringLiteral("bills"));
    setFactory([] { return std::make_shared<Bill>(); });
    m_state.period = PopUp::withEntries(periodEntries());
    m_state.searchText = lwEmpty();
    m_state.fromDate = lwEmpty();
}

BillManager::~BillManager() = default;

QStringList BillManager::periodEntries()
{
    return {lwTr("All"),    lwTr("1 Week"),
            lwTr("1 Month"), lwTr("3 Months"),
            lwTr("1 Year"), lwTr("Current calendar month"),
            lwTr("Last calendar month")};
}

QString BillManager::dateFormat() const
{
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    return prefs ? prefs->dateFormat() : QStringLiteral("%d/%m/%y");
}

void BillManager::populateCategories()
{
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    m_state.category = PopUp::withEntries(prefs ? prefs->billCategoryItems() : QStringList());
    Q_EMIT editorStateChanged();
}

// --- the editor --------------------------------------------------------------

void BillManager::fillState(const Bill &bill)
{
    BillEditorState &s = m_state;
    s.number = bill.getNumber();
    s.name = bill.getName();
    s.datePaid = bill.getDatePaid();
    s.amount = bill.getAmount();
    s.net = bill.getNet();
    s.vat = bill.getVat();
    s.details = bill.getDetails();
    // A category the preferences lack (read from the file) joins the pop-up.
    if (!s.category.entries.contains(bill.getCategory()))
        s.category.entries << bill.getCategory();
    s.category.selectTitle(bill.getCategory());
}

void BillManager::copyState(Bill &bill)
{
    const BillEditorState &s = m_state;
    bill.setNumber(lwNonNull(s.number));
    bill.setName(lwNonNull(s.name));
    bill.setDatePaid(lwNonNull(s.datePaid));
    bill.setAmount(lwNonNull(s.amount));
    bill.setNet(lwNonNull(s.net));
    bill.setVat(lwNonNull(s.vat));
    bill.setDetails(lwNonNull(s.details));
    if (const QString category = s.category.selectedTitle(); !category.isEmpty())
        bill.setCategory(category);
}

void BillManager::calculateTotal(QObject *)
{
    const float sum = NumberText::floatValue(m_state.net) + NumberText::floatValue(m_state.vat);
    m_state.amount = NumberText::twoDecimals(double(sum));
    Q_EMIT editorStateChanged();
}

// --- the table -------------------------------------------------------------------

float BillManager::total() const
{
    return sumOf(records(), &Bill::getAmount);
}

float BillManager::vattotal() const
{
    return sumOf(records(), &Bill::getVat);
}

int BillManager::numberOfRowsInTableView() const
{
    return lwEditorManager::numberOfRowsInTableView() + 2;
}

QString BillManager::objectValueForTableColumn(const QString &identifier, int row) const
{
    const int bills = lwEditorManager::numberOfRowsInTableView();
    if (row < bills)
        return lwEditorManager::objectValueForTableColumn(identifier, row);
    const bool summed = identifier == kAmount || identifier == kVat;
    if (row == bills)
        return summed ? QStringLiteral("_____") : lwEmpty();
    if (row == bills + 1 && summed)
        return NumberText::format("%1.2f", double(identifier == kAmount ? total() : vattotal()));
    return lwEmpty();
}

// --- the period and the money-in report --------------------------------------------

void BillManager::filter(QObject *)
{
    BillEditorState &s = m_state;
    const QString period = s.period.selectedTitle();
    const QString format = dateFormat();
    struct Span
    {
        const char *title;
        int years, months, days;
        const char *logLine;
    };
    static const Span spans[] = {
        {"1 Week", 0, 0, 7, "calculating one week from %1"},
        {"1 Month", 0, 1, 0, "calculating one month from %1"},
        {"3 Months", 0, 3, 0, "calculating THREE montha from %1"},
        {"1 Year", 1, 0, 0, "calculating one year from %1"},
    };
    const Span *span = nullptr;
    for (const Span &candidate : spans)
        if (period == lwTr(candidate.title))
            span = &candidate;

    // 1. The spans count from a start date; nothing is filtered without one.
    s.fromDateEnabled = span != nullptr;
    QString from = lwNonNull(s.fromDate);
    if (span && from.isEmpty()) {
        Q_EMIT listStateChanged();
        return;
    }
    // 2.-5. The bounds of the period.
    CalendarDate end;
    if (span && !from.isEmpty()) {
        const CalendarDate start = CalendarDate::fromString(from, format);
        if (start.isValid())
            end = start.addYearsMonthsDays(span->years, span->months, span->days);
        lwLog(QString::fromLatin1(span->logLine).arg(from));
        lwLog(QStringLiteral("dateTo is ") + (end.isValid() ? end.toString(format) : QStringLiteral("(null)")));
    }
    if (period == lwTr("All"))
        from.clear();
    const bool thisMonth = period == lwTr("Current calendar month");
    if (thisMonth || period == lwTr("Last calendar month")) {
        const QDate today = m_clock().date();
        const CalendarDate first = CalendarDate(QDate(today.year(), today.month(), 1)).addYearsMonthsDays(0, thisMonth ? 0 : -1, 0);
        from = first.toString(format);
        s.fromDate = from;
        end = first.addYearsMonthsDays(0, 1, 0);
    }
    const CalendarDate start = from.isEmpty() ? CalendarDate() : CalendarDate::fromString(from, format);

    // 7.-8. Both bounds are inclusive; a missing bound, or a date paid that
    // does not read, restricts nothing.
    const QString &search = s.searchText;
    for (const auto &record : records()) {
        bool visible = search.isEmpty() || record->contains(search);
        const CalendarDate paid = CalendarDate::fromString(static_cast<const Bill &>(*record).getDatePaid(), format);
        if (paid.isValid() && ((start.isValid() && paid < start) || (end.isValid() && paid > end)))
            visible = false;
        record->setVisible(visible);
    }
    reloadData();
    Q_EMIT listStateChanged();

    // 9.-11. The money-in table follows the same period.
    if (!writeMoneyInDefinition(end, from, format))
        return;
    if (m_moneyInRunner)
        m_moneyInRunner(format);
}

bool BillManager::writeMoneyInDefinition(const CalendarDate &end, const QString &from, const QString &format) const
{
    // An order gives a row for its deposit when that was paid in the period,
    // and another for its balance (with the order's tax) likewise.
    auto conditions = [&](const QString &field) {
        QList<QStringList> where{{field, QStringLiteral("!"), QString()}};
        if (end.isValid())
            where.append({field, QStringLiteral("<"), end.toString(format)});
        if (!from.isEmpty())
            where.append({field, QStringLiteral(">"), from});
        return where;
    };
    const std::pair<const char *, QStringList> lists[] = {
        {"colheadings", {QStringLiteral("Name"), QStringLiteral("Received"), QStringLiteral("Date"), QStringLiteral("Tax")}},
        {"colwidths", {QStringLiteral("280"), QStringLiteral("80"), QStringLiteral("100"), QStringLiteral("80")}},
        {"fields", {QStringLiteral("title"), QStringLiteral("deposit"), QStringLiteral("depositpaid"), QStringLiteral("dummy")}},
        {"fields2", {QStringLiteral("title"), QStringLiteral("balance"), QStringLiteral("balancepaid"), QStringLiteral("tax")}},
    };
    QByteArray body;
    for (const auto &[key, strings] : lists) {
        body.append("\t<key>").append(key).append("</key>\n\t<array>\n");
        appendStrings(body, strings, "\t\t");
        body.append("\t</array>\n");
    }
    body.append("\t<key>selectfrom</key>\n\t<string>orders</string>\n"
                "\t<key>total2col</key>\n\t<string>4</string>\n"
                "\t<key>totalcol</key>\n\t<string>2</string>\n");
    for (const char *key : {"where", "where2"}) {
        body.append("\t<key>").append(key).append("</key>\n\t<array>\n");
        for (const QStringList &condition : conditions(QLatin1String(key) == QLatin1String("where") ? QStringLiteral("depositpaid")
                                                                                                     : QStringLiteral("balancepaid"))) {
            body.append("\t\t<array>\n");
            appendStrings(body, condition, "\t\t\t");
            body.append("\t\t</array>\n");
        }
        body.append("\t</array>\n");
    }
    QByteArray file = PropertyListWriter::dictionary({});
    file.insert(file.lastIndexOf("</dict>"), body);

    const QString folder = DatabasePaths::reportsFolder();
    if (!QDir().mkpath(folder) || !PropertyListWriter::writeFile(folder + QStringLiteral("/MoneyIn.xml"), file)) {
        lwLog(QStringLiteral("moneyin xml not written successfully"));
        return false;
    }
    return true;
}
