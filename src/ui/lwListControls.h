#pragma once

#include "core/PopUp.h"

#include <QWidget>

class QComboBox;
class QLineEdit;
class lwDataSource;

// The search field and the filter pop-up above a list. Each change goes into
// the manager's state and re-filters the list at once.
class lwListControls : public QWidget
{
    Q_OBJECT
public:
    // The state lives in the manager for the widget's whole life.
    lwListControls(lwDataSource *list, QString &searchText, PopUp &filter, const QString &placeholder,
                   QWidget *parent = nullptr);

    QLineEdit *searchBox() const { return m_search; }
    QComboBox *filterPopUp() const { return m_filter; }

    // Shows the manager's search text and filter selection.
    void refresh();

private:
    void filterChanged();

    lwDataSource *m_list; // not owned
    QString &m_searchText;
    PopUp &m_filterState;
    QLineEdit *m_search;
    QComboBox *m_filter;
};
