#pragma once

#include "prefs/PrefsTerms.h"

#include <QString>

// What the preferences window's controls hold. The getters read these, not
// the settings store: a value typed and not yet confirmed with OK is already
// the one in force. The initial values are what a first run shows, and so
// the effective default of every key the store does not have.
struct PrefsControls
{
    QString taxRate = QStringLiteral("20.00");
    QString taxStatement = QStringLiteral("VAT");
    int dateFormatColumn = 0; // 0: day first, 1: month first
    QString currency = QStringLiteral("£");
    QString orderPrefix = QStringLiteral("ORD");
    QString itemPrefix = QStringLiteral("P");
    QString stockWarn = QStringLiteral("2");
    PrefsTerms terms;
    // One entry per line.
    QString invoiceCategories = QStringLiteral("Stock\nRent\nWages\nUtilities\nTravel\nOther");
    QString statuses = QStringLiteral("Enquiry\nQuote\nOrder\nInvoiced\nComplete");
    QString contactTypes = QStringLiteral("Customer\nSupplier\nProspect\nOther");
    QString dbLocation = defaultDbLocation();

    static QString defaultDbLocation()
    {
        return QStringLiteral("~/Library/Application Support/Ledgerwick/ledgerwickdatabase.lwkdb");
    }

    friend bool operator==(const PrefsControls &, const PrefsControls &) = default;
};
