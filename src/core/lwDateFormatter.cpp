#include "core/lwDateFormatter.h"

QString lwDateFormatter::validate(const CalendarDate &date) const
{
    return date.toString(QStringLiteral("%2m/%2d/%2Y"));
}
