#include "core/lwEditorManager.h"

#include "core/Log.h"
#include "core/Platform.h"
#include "core/lwController.h"

lwEditorManagerBase::lwEditorManagerBase(Rules rules, DateTest isDate, QObject *parent)
    : RecordTable(std::move(isDate), parent), m_rules(std::move(rules))
{
}

lwEditorManagerBase::~lwEditorManagerBase() = default;

Platform *lwEditorManagerBase::platform() const
{
    return ledgerwick() ? ledgerwick()->platform() : nullptr;
}

void lwEditorManagerBase::showEditor()
{
    m_editorShown = true;
    Q_EMIT editorShown();
}

void lwEditorManagerBase::hideEditor()
{
    m_editorShown = false;
    Q_EMIT editorHidden();
}

void lwEditorManagerBase::beginCreating(std::shared_ptr<dataObject> record)
{
    m_creating = true;
    m_current = std::move(record);
    if (m_rules.addOnCreate)
        recordList()->add(m_current);
}

void lwEditorManagerBase::create(QObject *)
{
    if (!readOnlyCheck())
        return;
    beginCreating(makeNewRecord());
    setItem(m_current.get());
    showEditor();
}

void lwEditorManagerBase::edit(QObject *)
{
    editRecord(getSelectedItem());
}

void lwEditorManagerBase::editRecord(dataObject *record)
{
    std::shared_ptr<dataObject> shared = recordList()->sharedRecord(record);
    if (!shared || !accepts(*shared))
        return;
    // Current before the editor is filled: what fills it may ask for it.
    m_current = std::move(shared);
    loadEditor(*m_current);
    Q_EMIT editorStateChanged();
    showEditor();
}

void lwEditorManagerBase::deleteKey(QObject *)
{
    dataObject *selected = getSelectedItem();
    if (!selected)
        return;
    Platform *desktop = platform();
    const int answer = desktop ? desktop->alert({m_rules.deleteTitle,
                                                 m_rules.deleteQuestion,
                                                 {lwTr("OK"), lwTr("Cancel")},
                                                 Platform::AlertStyle::Warning})
                               : 1; // nobody to ask: nothing is deleted
    if (answer == 0)
        remove(selected);
    if (ledgerwick())
        ledgerwick()->setChangeFlag();
}

void lwEditorManagerBase::remove(dataObject *record)
{
    if (!readOnlyCheck())
        return;
    recordList()->deleteItem(record);
    recordList()->reloadData();
}

void lwEditorManagerBase::finish(QObject *sender)
{
    if (!readOnlyCheck() || !m_current) {
        hideEditor();
        return;
    }
    // Held here: the save below may run while the editor already holds another record.
    const std::shared_ptr<dataObject> record = m_current;
    storeEditor(*record);
    if (m_creating) {
        if (!m_rules.addOnCreate)
            recordList()->add(record);
        m_creating = false;
    }
    recordList()->filter(sender);
    hideEditor();
    committed(*record);
    if (ledgerwick())
        ledgerwick()->writeDatabase(this);
}

void lwEditorManagerBase::cancel(QObject *)
{
    if (m_creating && m_rules.cancelRule == CancelRule::RemoveNew && m_current) {
        recordList()->deleteItem(m_current.get());
        recordList()->reloadData();
    }
    if (m_rules.cancelRule != CancelRule::KeepCreating)
        m_creating = false;
    hideEditor();
}

void lwEditorManagerBase::hide(QObject *)
{
    hideEditor();
}

void lwEditorManagerBase::show(QObject *)
{
    showEditor();
}

void lwEditorManagerBase::windowWillClose(QObject *sender)
{
    if (!m_windowConnected || !m_current)
        return;
    if (!m_rules.closeLogLine.isEmpty())
        lwLog(m_rules.closeLogLine);
    finish(sender);
}

void lwEditorManagerBase::disconnectWindow(QObject *)
{
    m_windowConnected = false;
}

void lwEditorManagerBase::setItem(dataObject *record)
{
    if (record && accepts(*record)) {
        loadEditor(*record);
        Q_EMIT editorStateChanged();
    }
}
