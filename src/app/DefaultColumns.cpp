#include "app/DefaultColumns.h"

#include "core/Platform.h"

namespace {

lwDataSource::Column col(const char *identifier, const char *title, int width)
{
    return {QString::fromLatin1(identifier), lwTr(title), width};
}

} // namespace

QList<lwDataSource::Column> DefaultColumns::forKind(DatabaseStore::Kind kind)
{
    using Kind = DatabaseStore::Kind;
    switch (kind) {
    case Kind::Contacts:
        // The outline's columns: the name, the first address line and the type.
        return {col("1", "Name", 240), col("2", "Address", 280), col("3", "Type", 110)};
    case Kind::Orders:
        return {col("orderNum", "Number", 80), col("date", "Date", 80),   col("title", "Title", 220),
                col("status", "Status", 90),   col("value", "Value", 90), col("balance", "Balance", 90)};
    case Kind::Items:
        return {col("code", "Code", 80),   col("item", "Item", 220),  col("qty", "Qty", 60),
                col("price", "Price", 80), col("bought", "Cost", 80), col("status", "Status", 90)};
    case Kind::Materials:
        // The order editor's lines table.
        return {col("code", "Code", 70),  col("item", "Item", 220),   col("qty", "Qty", 50),    col("unit", "Unit", 60),
                col("cost", "Cost", 70),  col("total", "Total", 80), col("taxcode", "Tax", 40)};
    case Kind::Bills:
        return {col("number", "Number", 80),      col("datepaid", "Date Paid", 90), col("name", "Name", 180),
                col("category", "Category", 110), col("amount", "Amount", 90),      col("vat", "VAT", 80)};
    case Kind::Actions:
        return {col("title", "Title", 220),   col("startdate", "Start", 80),    col("enddate", "End", 80),
                col("totaltime", "Time", 60), col("totalcharge", "Charge", 80), col("complete", "Done", 50)};
    }
    return {};
}

QList<lwDataSource::Column> DefaultColumns::moneyIn()
{
    // The columns of the "MoneyIn" report definition the bills write.
    return {col("field1", "Name", 280), col("field2", "Received", 80), col("field3", "Date", 100),
            col("field4", "Tax", 80)};
}

QList<lwDataSource::Column> DefaultColumns::statement()
{
    return {col("name", "Statement", 200), col("value", "Amount", 100)};
}

