#include "ui/ItemListControls.h"

#include "core/Platform.h"
#include "products/ItemManager.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

ItemListControls::ItemListControls(ItemManager *manager, QWidget *parent)
    : QWidget(parent), m_manager(manager), m_search(new QLineEdit(this)), m_filter(new QComboBox(this))
{
    setObjectName(QStringLiteral("itemListControls"));
    m_search->setObjectName(QStringLiteral("itemSearchBox"));
    m_search->setPlaceholderText(lwTr("Search code, name, description, condition, status"));
    m_search->setClearButtonEnabled(true);
    m_filter->setObjectName(QStringLiteral("itemStockFilter"));

    auto *label = new QLabel(lwTr("&Show:"), this);
    label->setBuddy(m_filter);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addWidget(m_search, 1);
    layout->addWidget(label);
    layout->addWidget(m_filter);

    refresh();
    connect(m_search, &QLineEdit::textChanged, this, &ItemListControls::filterChanged);
    connect(m_filter, &QComboBox::currentIndexChanged, this, &ItemListControls::filterChanged);
}

void ItemListControls::refresh()
{
    const ItemEditorState &s = m_manager->editorState();
    const QSignalBlocker blockSearch(m_search);
    const QSignalBlocker blockFilter(m_filter);
    if (m_search->text() != s.searchText)
        m_search->setText(s.searchText);
    QStringList shown;
    for (int i = 0; i < m_filter->count(); ++i)
        shown << m_filter->itemText(i);
    if (shown != s.stockFilter.entries) {
        m_filter->clear();
        m_filter->addItems(s.stockFilter.entries);
    }
    m_filter->setCurrentIndex(s.stockFilter.index);
}

void ItemListControls::filterChanged()
{
    ItemEditorState &s = m_manager->editorState();
    s.searchText = m_search->text();
    s.stockFilter.index = m_filter->currentIndex();
    m_manager->filter(this);
}
