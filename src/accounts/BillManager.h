#pragma once

#include "accounts/Bill.h"
#include "accounts/BillEditorState.h"
#include "core/CalendarDate.h"
#include "core/lwEditorManager.h"

#include <functional>

// The bills of the accounts screen: the bill table with its rule and totals
// rows, its search field and period pop-up with the start date, the bill
// editor, and the money-in report run for the same period. A cancelled new
// bill leaves creating set: the next commit adds whatever bill is then in the
// editor, even an existing one a second time.
class BillManager : public lwEditorManager<Bill, BillEditorState>
{
    Q_OBJECT
public:
    using Clock = std::function<CalendarDate()>;
    // Runs the "MoneyIn" report into the money-in table, comparing dates with
    // the start date field's format.
    using MoneyInRunner = std::function<void(const QString &fromDateFormat)>;

    explicit BillManager(QObject *parent = nullptr);
    ~BillManager() override;

    static QStringList periodEntries();

    // --- hooks the application installs -------------------------------------
    void setMoneyInRunner(MoneyInRunner runner) { m_moneyInRunner = std::move(runner); }
    // Today, for the calendar-month periods; the current date unless set.
    void setClock(Clock clock) { m_clock = std::move(clock); }

    // --- actions ------------------------------------------------------------
    // The editor's calculate button: net plus tax into the amount, "%.2f".
    void calculateTotal(QObject *sender);
    // Applies the search and the period to the bills, then writes the money-in
    // report definition for that period and runs it. Stops before anything
    // when a period needing a start date has none.
    void filter(QObject *sender) override;
    // The category pop-up takes the preferences' bill categories.
    void populateCategories();

    // Sums of the visible bills' amounts and tax, commas stripped.
    float total() const;
    float vattotal() const;

    // --- the table: the bills, a rule row and a totals row ---------------------
    int numberOfRowsInTableView() const override;
    QString objectValueForTableColumn(const QString &identifier, int row) const override;

Q_SIGNALS:
    // The filter changed the start date or its enabling.
    void listStateChanged();

protected:
    bool rowsAreVisibleRecords() const override { return false; }
    void fillState(const Bill &bill) override;
    void copyState(Bill &bill) override;

private:
    QString dateFormat() const;
    // Writes "MoneyIn.xml" into the reports folder; false after logging.
    bool writeMoneyInDefinition(const CalendarDate &end, const QString &from, const QString &format) const;

    MoneyInRunner m_moneyInRunner;
    Clock m_clock;
};
