#pragma once

#include <QString>

// The user's own words for what the business deals in: one order and
// several, one item and several, and the lines of an order (its bill of
// materials). The initial words are what a first run shows.
struct PrefsTerms
{
    QString order = QStringLiteral("Order");
    QString orders = QStringLiteral("Orders");
    QString item = QStringLiteral("Item");
    QString items = QStringLiteral("Items");
    QString bom = QStringLiteral("Materials");

    friend bool operator==(const PrefsTerms &, const PrefsTerms &) = default;
};
