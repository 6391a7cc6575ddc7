#pragma once

#include "core/PopUp.h"
#include "core/lwDataSource.h"
#include "reports/ReportDefinition.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

class ReportItem;

// Runs report definitions into its own table: one row per matching record of
// the chosen collection, the columns the definition names, an optional rule
// and totals row, and rows of equal value merged with their quantities added.
// Several exist: the reports screen's, the contact editors' two tables and
// the accounts' money-in table.
class ReportManager : public lwDataSource
{
    Q_OBJECT
public:
    // The collection a "selectfrom" name reads from; none for an unknown name.
    using SourceLookup = std::function<lwDataSource *(const QString &selectfrom)>;
    using Condition = ReportDefinition::Condition;

    explicit ReportManager(QObject *parent = nullptr);
    ~ReportManager() override;

    void setSourceLookup(SourceLookup lookup) { m_sources = std::move(lookup); }
    // What "currentcontact" in a condition stands for: the open contact's id,
    // "-1" when none is open.
    void setCurrentContactSource(std::function<QString()> source) { m_currentContact = std::move(source); }
    // The user's date format ("%d/%m/%y" or "%m/%d/%y"), used to compare dates
    // unless a date field's format was handed in.
    void setUserDateFormat(const QString &format) { m_userDateFormat = format; }
    void setFromDate(const QString &format) { m_fromDateFormat = format; }

    // Runs the definition of that name from the reports folder into the table.
    void doReport(const QString &name);
    // Runs the report selected in the pop-up.
    void runReport();
    // Copies the built-in definitions into the reports folder as needed and
    // fills the pop-up with the reports found there.
    void populateFilter();
    PopUp &filterPopUp() { return m_filter; }
    const PopUp &filterPopUp() const { return m_filter; }
    // The name of the report last run; "" before the first run.
    const QString &currentReport() const { return m_current; }

    bool meetsCriteria(const dataObject &record, const QList<Condition> &where) const;
    // Both dates read with the date format; true when the first is the same
    // as or later than the second.
    bool dateIsLaterThanDate(const QString &date, const QString &other) const;
    static bool isNumeric(const QString &text);
    // "dd/mm/yy" or "mm/dd/yy" at the start of the text.
    static bool isDate(const QString &text);

    // Merges the rows whose texts in the match column are equal, adding their
    // quantities; rows whose quantities are not numbers stay, with a log line.
    // The result is that of comparing every row with every later one, in a
    // single pass over the rows.
    static void collate(std::vector<std::shared_ptr<ReportItem>> &rows, const QString &matchCol,
                        const QString &qtyCol);
    // Merges row j into row i when both quantities are numbers (answers true;
    // the caller removes row j); otherwise logs and answers false.
    static bool merge(ReportItem &i, const ReportItem &j, const QString &qtyCol);

    const QString &totalcol() const { return m_totalcol; }
    const QString &total2col() const { return m_total2col; }
    float sum() const { return m_sum; }
    float sum2() const { return m_sum2; }

    int numberOfRowsInTableView() const override;
    QString objectValueForTableColumn(const QString &identifier, int row) const override;
    bool isColumnEditable(const QString &) const override { return false; }
    // A header click sorts by that column's text, never as dates.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    // A report was run: the table has new columns and rows.
    void reportRun();
    // The pop-up was filled afresh.
    void filterPopulated();

protected:
    bool rowsAreVisibleRecords() const override { return false; }

private:
    // The condition's value as compared: "currentcontact" becomes the open contact's id.
    QString conditionValue(const QString &value) const;
    bool meets(const QString &v, const QString &op, const QString &value) const;
    void copyBuiltIn(const QString &fileName) const;

    SourceLookup m_sources;
    std::function<QString()> m_currentContact;
    QString m_userDateFormat = QStringLiteral("%d/%m/%y");
    QString m_fromDateFormat;
    PopUp m_filter;
    QString m_current;
    QString m_totalcol = QStringLiteral("field-1");
    QString m_total2col = QStringLiteral("field-1");
    float m_sum = 0;
    float m_sum2 = 0;
};
