#include "ui/BillListControls.h"

#include "accounts/BillManager.h"
#include "core/Platform.h"
#include "core/lwController.h"
#include "prefs/PrefsController.h"

#include <QLabel>
#include <QLayout>
#include <QLineEdit>

BillListControls::BillListControls(BillManager *manager, QWidget *parent)
    : lwListControls(manager, manager->editorState().searchText, manager->editorState().period,
                     lwTr("Search categories, names, details, numbers"), parent),
      m_manager(manager), m_fromDate(new QLineEdit(this))
{
    m_fromDate->setObjectName(QStringLiteral("billsFromDate"));
    auto *label = new QLabel(lwTr("&From:"), this);
    label->setBuddy(m_fromDate);
    layout()->addWidget(label);
    layout()->addWidget(m_fromDate);

    connect(m_fromDate, &QLineEdit::editingFinished, this, [this] {
        if (m_manager->editorState().fromDate == m_fromDate->text())
            return;
        m_manager->editorState().fromDate = m_fromDate->text();
        m_manager->filter(this);
    });
    connect(m_manager, &BillManager::listStateChanged, this, &BillListControls::showListState);
    showListState();
}

void BillListControls::showListState()
{
    const BillEditorState &s = m_manager->editorState();
    if (m_fromDate->text() != s.fromDate)
        m_fromDate->setText(s.fromDate);
    m_fromDate->setEnabled(s.fromDateEnabled);
    const PrefsController *prefs = m_manager->ledgerwick() ? m_manager->ledgerwick()->getPrefsController() : nullptr;
    m_fromDate->setPlaceholderText(prefs ? prefs->dateFormatLabel() : QString());
}
