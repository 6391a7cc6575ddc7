#include "ui/BillEditor.h"

#include "accounts/BillManager.h"
#include "core/lwController.h"
#include "prefs/PrefsController.h"

#include "ui_BillEditor.h"

BillEditor::BillEditor(BillManager *manager, QWidget *parent)
    : lwEditorWindow(manager, parent), m_manager(manager), m_ui(std::make_unique<Ui::BillEditor>())
{
    m_ui->setupUi(this);
    setObjectName(QStringLiteral("billEditorWindow"));

    BillEditorState &s = m_manager->editorState();
    bind(m_ui->numberEdit, s.number);
    bind(m_ui->nameEdit, s.name);
    bind(m_ui->datePaidEdit, s.datePaid);
    bind(m_ui->categoryCombo, s.category);
    bind(m_ui->netEdit, s.net);
    bind(m_ui->vatEdit, s.vat);
    bind(m_ui->amountEdit, s.amount);
    bind(m_ui->detailsEdit, s.details);
    setFirstField(m_ui->numberEdit);

    m_ui->buttonRow->insertWidget(0, makeHelpButton());
    auto *base = static_cast<lwEditorManagerBase *>(m_manager);
    connectAction(m_ui->okButton, base, &lwEditorManagerBase::finish);
    connectAction(m_ui->cancelButton, base, &lwEditorManagerBase::cancel);
    connectAction(m_ui->calculateButton, m_manager, &BillManager::calculateTotal);

    refresh();
    resize(qMax(sizeHint().width(), 460), sizeHint().height());
}

BillEditor::~BillEditor() = default;

void BillEditor::refreshExtras()
{
    const PrefsController *prefs = m_manager->ledgerwick() ? m_manager->ledgerwick()->getPrefsController() : nullptr;
    m_ui->datePaidEdit->setPlaceholderText(prefs ? prefs->dateFormatLabel() : QString());
}
