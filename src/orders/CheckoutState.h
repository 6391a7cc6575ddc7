#pragma once

#include <QFlags>
#include <QString>

// What the checkout window holds beyond the order editor's fields: which of
// the order's controls it shows, the tender panel's fields, and whether the
// sale has been touched or paid for. The checkout manager fills and reads
// it; the window shows it and writes the user's input back before each action.
struct CheckoutState
{
    // The order's controls a checkout window may have. A copy to or from a
    // control the window lacks is skipped.
    enum Control : unsigned {
        Balance = 1u << 0,
        BalancePaid = 1u << 1,
        Date = 1u << 2,
        Deposit = 1u << 3,
        DepositPaid = 1u << 4,
        Description = 1u << 5,
        OrderNum = 1u << 6,
        Shipping = 1u << 7,
        Tax = 1u << 8,
        Title = 1u << 9,
        Value = 1u << 10,
        ValueWithTax = 1u << 11,
        PaymentMethod = 1u << 12,
        Status = 1u << 13,
        Frequency = 1u << 14,
        Repeats = 1u << 15,
    };
    Q_DECLARE_FLAGS(Controls, Control)

    Controls controls;
    // The checkout takes the day the balance was paid as text, where the
    // order editor offers a pop-up of payment states.
    QString balancePaid;

    // --- the tender panel -------------------------------------------------------
    QString tenderDue;
    QString tenderBalance;   // balance remaining or change due, as a plain number
    QString tenderTendered;  // typed by the user
    QString tenderInformativeText; // "Balance Remaining" or "Change Due"
    bool tenderPanelShown = false;

    // --- the sale -------------------------------------------------------------------
    bool tendered = false;
    bool windowEdited = false;

    bool has(Control control) const { return controls.testFlag(control); }
};
Q_DECLARE_OPERATORS_FOR_FLAGS(CheckoutState::Controls)
