#pragma once

#include <QWidget>

class ItemManager;
class QComboBox;
class QLineEdit;

// The search field and the stock filter above the items list. Each change
// goes into the item manager's state and re-filters the list at once.
class ItemListControls : public QWidget
{
    Q_OBJECT
public:
    explicit ItemListControls(ItemManager *manager, QWidget *parent = nullptr);

    QLineEdit *searchBox() const { return m_search; }
    QComboBox *stockFilter() const { return m_filter; }

    // Shows the manager's search text and filter selection.
    void refresh();

private:
    void filterChanged();

    ItemManager *m_manager; // not owned
    QLineEdit *m_search;
    QComboBox *m_filter;
};
