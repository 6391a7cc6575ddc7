#pragma once

#include "core/PopUp.h"

#include <QString>

// What the task editor's controls and the tasks list's search field and
// filter hold. The action manager fills and reads it; the editor window shows
// it and writes the user's input back before it calls one of the manager's
// actions.
struct ActionEditorState
{
    // --- the editor ---------------------------------------------------------
    bool alarm = false;
    bool complete = false;
    QString title;
    QString details; // multi-line
    QString startDate;
    QString startTime;
    QString endDate;
    QString endTime;
    QString rate;
    QString totalTime;
    QString totalCharge;
    PopUp totalTimeUnits; // "Hours", "Days"

    // --- the tasks list -----------------------------------------------------
    QString searchText; // searches the titles only
    PopUp filter;       // "All", "Incomplete"
};
