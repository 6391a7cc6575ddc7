#include "core/ColumnFile.h"

#include "core/NumberText.h"
#include "core/Parser.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

std::optional<ColumnFile::Layout> ColumnFile::read(const QString &path, QString *error)
{
    Parser parser;
    parser.initWithFilePath(path);
    int count = 0;
    QList<int> widths;
    QStringList titles;
    QStringList fields;
    while (const std::unique_ptr<DbItem> item = parser.getItem()) {
        const QString name = item->getName();
        if (name == "numberofcols"_L1)
            count = NumberText::intValue(item->getData());
        else if (name == "colwidth"_L1)
            widths.append(NumberText::intValue(item->getData()));
        else if (name == "colheading"_L1)
            titles.append(item->getData());
        else if (name == "field"_L1)
            fields.append(item->getData());
    }

    auto refuse = [error](const QString &reason) -> std::optional<Layout> {
        if (error)
            *error = reason;
        return std::nullopt;
    };
    if (count < 1)
        return refuse(u"names no columns"_s);
    if (widths.size() < count || titles.size() < count || fields.size() < count)
        return refuse(u"names %1 columns but holds %2 widths, %3 titles and %4 fields"_s.arg(count)
                          .arg(widths.size())
                          .arg(titles.size())
                          .arg(fields.size()));

    Layout layout;
    for (int i = 0; i < count; ++i)
        layout.columns.append({fields.at(i), titles.at(i), std::max(0, widths.at(i))});
    for (const QString &field : std::as_const(fields))
        layout.sortRules.append({field, true});
    return layout;
}
