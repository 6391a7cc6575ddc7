#pragma once

#include "ui/lwListControls.h"

class BillManager;

// The bills' search field and period pop-up, with the period's start date,
// which is open for typing only for the periods that count from it.
class BillListControls : public lwListControls
{
    Q_OBJECT
public:
    explicit BillListControls(BillManager *manager, QWidget *parent = nullptr);

    QLineEdit *fromDate() const { return m_fromDate; }

private:
    void showListState();

    BillManager *m_manager; // not owned
    QLineEdit *m_fromDate;
};
