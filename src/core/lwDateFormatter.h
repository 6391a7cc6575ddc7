#pragma once

#include "core/CalendarDate.h"

#include <QString>

class lwController;

// The controller's date formatter: writes a date month first with four-digit
// years, whatever the user's own order.
class lwDateFormatter
{
public:
    explicit lwDateFormatter(lwController *ledgerwick) : m_ledgerwick(ledgerwick) {}

    // The date as "%2m/%2d/%2Y" ("" for none).
    QString validate(const CalendarDate &date) const;

    int inputFormat = 0;  // kept for the stored layout; nothing reads it
    int outputFormat = 0; // likewise

private:
    lwController *m_ledgerwick;
};
