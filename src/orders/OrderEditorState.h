#pragma once

#include "core/PopUp.h"

#include <QString>

// What the order editor's controls and the orders list's search field and
// status filter hold. The order manager fills it and reads it; the editor
// window shows it and writes the user's input back before each action.
struct OrderEditorState
{
    // --- the order ------------------------------------------------------------
    QString orderNum;
    QString date;
    QString title;
    QString description; // multi-line
    PopUp type;
    PopUp status;
    PopUp paymentMethod;
    PopUp balancePaid;
    QString depositPaid;
    bool includeBOM = true;
    bool sent = false;

    // --- money ------------------------------------------------------------------
    QString value;
    QString shipping;
    QString taxAmount;
    QString net;
    QString deposit;
    QString balance;
    QString valueWithTax; // shown only: a commit computes it anew
    QString taxLabel; // "<statement> @ <rate>%"
    bool taxShown = false; // the tax label, amount, net and calculate button

    // --- repeats ------------------------------------------------------------------
    bool repeats = false;
    PopUp frequency;
    QString repeatNote;

    // --- the customer (shown only) ------------------------------------------------
    QString contactName;
    QString contactAdd1;
    QString contactAdd2;
    QString contactAdd3;
    QString contactShortAddress;
    QString contactPostcode;
    QString contactPhone;
    QString contactMobile;
    QString contactFax;
    QString contactEmail;
    bool editContactEnabled = false;

    // --- attachments ----------------------------------------------------------------
    QString attachmentNote;
    bool viewAttachmentsEnabled = false;

    // --- the orders list ---------------------------------------------------------------
    QString searchText;
    PopUp statusFilter; // "All", "Incomplete"
};
