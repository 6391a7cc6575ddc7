#pragma once

#include "ui/lwListControls.h"

class ItemManager;

// The items list's search field and stock filter.
class ItemListControls : public lwListControls
{
    Q_OBJECT
public:
    explicit ItemListControls(ItemManager *manager, QWidget *parent = nullptr);

    QComboBox *stockFilter() const { return filterPopUp(); }
};
