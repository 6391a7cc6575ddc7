#pragma once

#include "core/PopUp.h"

#include <QString>

// What the bill editor's controls and the accounts screen's search field,
// period pop-up and start date hold. The bill manager fills and reads it; the
// windows show it and write the user's input back before they call one of the
// manager's actions.
struct BillEditorState
{
    // --- the editor ---------------------------------------------------------
    QString number;
    QString name;
    QString datePaid;
    QString amount;
    QString net;
    QString vat;
    QString details; // multi-line
    PopUp category;  // the preferences' bill categories, plus any a bill brought

    // --- the accounts screen ------------------------------------------------
    QString searchText;
    PopUp period;      // "All", "1 Week", ... "Last calendar month"
    QString fromDate;  // the period's start, in the user's date format
    bool fromDateEnabled = false;
};
