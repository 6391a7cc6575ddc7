#pragma once

#include "core/lwDataSource.h"

#include <QList>
#include <QString>

#include <optional>

// A table's column layout as a column file gives it: "numberofcols", then
// one "colwidth", "colheading" and "field" per column, read with the
// application's XML reader.
class ColumnFile
{
public:
    struct Layout
    {
        QList<lwDataSource::Column> columns;
        // One ascending rule per "field" met, in file order.
        QList<lwDataSource::SortRule> sortRules;
    };

    // The layout, or nothing (and the reason) when the file names no
    // columns or holds fewer widths, titles or fields than its count.
    static std::optional<Layout> read(const QString &path, QString *error = nullptr);
};
