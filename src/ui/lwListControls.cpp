#include "ui/lwListControls.h"

#include "core/Platform.h"
#include "core/lwDataSource.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

lwListControls::lwListControls(lwDataSource *list, QString &searchText, PopUp &filter, const QString &placeholder,
                               QWidget *parent)
    : QWidget(parent), m_list(list), m_searchText(searchText), m_filterState(filter), m_search(new QLineEdit(this)),
      m_filter(new QComboBox(this))
{
    setObjectName(list->objectName() + QStringLiteral("ListControls"));
    m_search->setObjectName(list->objectName() + QStringLiteral("SearchBox"));
    m_search->setPlaceholderText(placeholder);
    m_search->setClearButtonEnabled(true);
    m_filter->setObjectName(list->objectName() + QStringLiteral("Filter"));

    auto *label = new QLabel(lwTr("&Show:"), this);
    label->setBuddy(m_filter);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addWidget(m_search, 1);
    layout->addWidget(label);
    layout->addWidget(m_filter);

    refresh();
    connect(m_search, &QLineEdit::textChanged, this, &lwListControls::filterChanged);
    connect(m_filter, &QComboBox::currentIndexChanged, this, &lwListControls::filterChanged);
}

void lwListControls::refresh()
{
    const QSignalBlocker blockSearch(m_search);
    const QSignalBlocker blockFilter(m_filter);
    if (m_search->text() != m_searchText)
        m_search->setText(m_searchText);
    QStringList shown;
    for (int i = 0; i < m_filter->count(); ++i)
        shown << m_filter->itemText(i);
    if (shown != m_filterState.entries) {
        m_filter->clear();
        m_filter->addItems(m_filterState.entries);
    }
    m_filter->setCurrentIndex(m_filterState.index);
}

void lwListControls::filterChanged()
{
    m_searchText = m_search->text();
    m_filterState.index = m_filter->currentIndex();
    m_list->filter(this);
}
