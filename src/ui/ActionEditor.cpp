#include "ui/ActionEditor.h"

#include "accounts/ActionManager.h"
#include "core/lwController.h"
#include "prefs/PrefsController.h"

#include "ui_ActionEditor.h"

ActionEditor::ActionEditor(ActionManager *manager, QWidget *parent)
    : lwEditorWindow(manager, parent), m_manager(manager), m_ui(std::make_unique<Ui::ActionEditor>())
{
    m_ui->setupUi(this);
    setObjectName(QStringLiteral("actionEditorWindow"));

    ActionEditorState &s = m_manager->editorState();
    bind(m_ui->alarmCheck, s.alarm);
    bind(m_ui->completeCheck, s.complete);
    bind(m_ui->titleEdit, s.title);
    bind(m_ui->detailsEdit, s.details);
    bind(m_ui->startDateEdit, s.startDate);
    bind(m_ui->startTimeEdit, s.startTime);
    bind(m_ui->endDateEdit, s.endDate);
    bind(m_ui->endTimeEdit, s.endTime);
    bind(m_ui->rateEdit, s.rate);
    bind(m_ui->totalTimeEdit, s.totalTime);
    bind(m_ui->unitsCombo, s.totalTimeUnits);
    bind(m_ui->totalChargeEdit, s.totalCharge);
    setFirstField(m_ui->titleEdit);

    m_ui->buttonRow->insertWidget(0, makeHelpButton());
    auto *base = static_cast<lwEditorManagerBase *>(m_manager);
    connectAction(m_ui->okButton, base, &lwEditorManagerBase::finish);
    connectAction(m_ui->cancelButton, base, &lwEditorManagerBase::cancel);
    connectAction(m_ui->calculateTimeButton, m_manager, &ActionManager::calculateTotalTime);
    connectAction(m_ui->calculateChargeButton, m_manager, &ActionManager::calculateTotalCharge);
    m_ui->startTimeEdit->setPlaceholderText(QStringLiteral("HH:MM"));
    m_ui->endTimeEdit->setPlaceholderText(QStringLiteral("HH:MM"));

    refresh();
    resize(qMax(sizeHint().width(), 520), sizeHint().height());
}

ActionEditor::~ActionEditor() = default;

void ActionEditor::refreshExtras()
{
    const PrefsController *prefs = m_manager->ledgerwick() ? m_manager->ledgerwick()->getPrefsController() : nullptr;
    const QString label = prefs ? prefs->dateFormatLabel() : QString();
    m_ui->startDateEdit->setPlaceholderText(label);
    m_ui->endDateEdit->setPlaceholderText(label);
}
