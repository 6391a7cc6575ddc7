#pragma once

#include "core/dataObject.h"

#include <QString>
#include <QStringList>

// The row record of reports and of the picker: a list of texts, one per
// column, addressed from 1, each marked "DATE", "NUMBER" or "STRING" when it
// is added.
class ReportItem : public dataObject
{
public:
    ReportItem();

    // Appends the text and marks its kind: "DATE" when isDate() holds, else
    // "NUMBER" when isNumeric() holds, else "STRING".
    void addField(const QString &text);
    // Room for that many fields, for rows built many at a time.
    void reserve(qsizetype count)
    {
        m_fields.reserve(count);
        m_attributes.reserve(count);
    }
    // Field n counted from 1; "" when there is no such field.
    QString getnthField(qsizetype n) const;
    qsizetype fieldCount() const { return m_fields.size(); }

    // "field<n>": the name's integer after its first five characters picks
    // field n ("field12" is field 12); a name shorter than six reads "".
    QString getFieldByName(const QString &name) const override;
    // Replaces field n, named as above; a short name or a field that does
    // not exist changes nothing. The kind stays the one marked when added.
    bool setFieldByName(const QString &name, const QString &value) override;
    // Whether any field holds the text, ignoring case.
    bool contains(const QString &text) const override;

    // The kinds marked when fields n (from 1) were added.
    bool nthFieldIsNumeric(qsizetype n) const;
    bool nthFieldIsDate(qsizetype n) const;

    // Whether a floating-point number can be read from the start of the text
    // (leading white space skipped, anything after it ignored: "12abc" is
    // numeric). The report engine uses the same test.
    static bool isNumeric(const QString &text);
    // The inverse of the report engine's date test, kept so on purpose: true
    // only for a text of at least 8 characters with no "/" at index 2 nor at
    // index 5 and no number in the two-character pieces at 0, 3 and 6. A real
    // date such as 01/02/09 is therefore never marked "DATE".
    static bool isDate(const QString &text);

private:
    QString attributeOf(qsizetype n) const;
    // The field number of a "field<n>" name; 0 when the name is too short.
    static qsizetype fieldNumber(const QString &name);

    QStringList m_fields;
    QStringList m_attributes;
};
