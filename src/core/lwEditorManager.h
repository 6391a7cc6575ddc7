#pragma once

#include "core/RecordTable.h"

#include <QString>

#include <memory>

class Platform;

// The editor cycle every manager with an editor follows: create or edit puts
// a record in the editor, finish copies the controls into it (adding it when
// new), re-filters, hides the editor and saves the manager's file; cancel
// drops the edit; closing the window commits; deleting asks first.
//
// The editor's controls live in a plain state object (see lwEditorManager
// below); an editor window shows that state and writes the user's input back
// before it calls an action, so the rules run the same with or without a
// window. The window follows editorShown(), editorHidden() and
// editorStateChanged().
class lwEditorManagerBase : public RecordTable
{
    Q_OBJECT
public:
    // What a new record left in the editor becomes when the edit is cancelled.
    enum class CancelRule {
        KeepCreating, // the flag stays set: the next commit adds whatever record is then in the editor
        DropNew,      // the flag is cleared: the new record is dropped
        RemoveNew,    // the new record is taken out of the list again
    };
    // What differs between managers in the shared cycle.
    struct Rules
    {
        QString deleteTitle;    // the question asked before deleting the selected record
        QString deleteQuestion; //   and its informative text
        QString closeLogLine;   // logged when the closing window commits
        CancelRule cancelRule = CancelRule::KeepCreating;
        bool addOnCreate = false; // the new record joins the list at once, not at the commit
    };

    explicit lwEditorManagerBase(Rules rules, DateTest isDate = {}, QObject *parent = nullptr);
    ~lwEditorManagerBase() override;

    const Rules &rules() const { return m_rules; }
    // The record in the editor; none until the editor is first opened.
    dataObject *currentRecord() const { return m_current.get(); }
    // The record in the editor is new: a commit adds it to the list.
    bool isCreating() const { return m_creating; }
    bool isEditorShown() const { return m_editorShown; }
    bool isWindowConnected() const { return m_windowConnected; }
    // Another editor hands over a record that is still new.
    void setCreating(bool creating) { m_creating = creating; }

    // A new record in the editor. Refused while read-only.
    void create(QObject *sender) override;
    // The selected visible record in the editor; nothing without a selection.
    void edit(QObject *sender) override;
    // The record, one of the list's, in the editor.
    virtual void editRecord(dataObject *record);
    // The delete key: nothing without a selection; else asks, removes the
    // record on OK, and raises the change flag either way.
    void deleteKey(QObject *sender) override;
    // Takes the record out of the list. Refused while read-only.
    virtual void remove(dataObject *record);
    using RecordTable::remove;
    // The editor's OK: read-only, it only hides; else copies the controls into
    // the record, adds a new one, filters, hides the editor and saves.
    virtual void finish(QObject *sender);
    // Hides the editor without storing anything (see CancelRule).
    virtual void cancel(QObject *sender);
    void hide(QObject *sender);
    void show(QObject *sender);
    // The editor window is closing: a current record is committed.
    void windowWillClose(QObject *sender);
    // Detaches the editor window: its closing no longer commits.
    void disconnectWindow(QObject *sender);
    // Fills the editor from a record of the manager's kind; anything else is ignored.
    void setItem(dataObject *record);

    // The list the edited records belong to: the manager's own, unless its
    // editor works on another manager's records.
    virtual lwDataSource *recordList() { return this; }

Q_SIGNALS:
    void editorShown();
    void editorHidden();
    // The manager changed the editor's state itself.
    void editorStateChanged();

protected:
    Platform *platform() const;
    // A brand-new record with its defaults (and, where the manager says so, its id).
    virtual std::shared_ptr<dataObject> makeNewRecord() = 0;
    // Whether the record is of the manager's kind.
    virtual bool accepts(const dataObject &record) const = 0;
    // Fills the state from a record of the manager's kind.
    virtual void loadEditor(const dataObject &record) = 0;
    // Copies the state into the record in the editor.
    virtual void storeEditor(dataObject &record) = 0;
    // After the commit has hidden the editor, before the save.
    virtual void committed(dataObject &) {}

    // Puts a new record in the editor as create() does, without showing it.
    void beginCreating(std::shared_ptr<dataObject> record);
    void showEditor();
    void hideEditor();
    void setCurrentRecord(std::shared_ptr<dataObject> record) { m_current = std::move(record); }
    const std::shared_ptr<dataObject> &currentShared() const { return m_current; }

private:
    Rules m_rules;
    std::shared_ptr<dataObject> m_current;
    bool m_creating = false;
    bool m_editorShown = false;
    bool m_windowConnected = true;
};

// The typed layer: a manager of Record whose editor holds a State.
template <class Record, class State>
class lwEditorManager : public lwEditorManagerBase
{
public:
    using lwEditorManagerBase::lwEditorManagerBase;

    Record *currentItem() const { return static_cast<Record *>(currentRecord()); }
    State &editorState() { return m_state; }
    const State &editorState() const { return m_state; }

protected:
    // The state from a record, and back.
    virtual void fillState(const Record &record) = 0;
    virtual void copyState(Record &record) = 0;

    std::shared_ptr<dataObject> makeNewRecord() override { return std::make_shared<Record>(); }
    bool accepts(const dataObject &record) const final { return dynamic_cast<const Record *>(&record); }
    void loadEditor(const dataObject &record) final { fillState(static_cast<const Record &>(record)); }
    void storeEditor(dataObject &record) final { copyState(static_cast<Record &>(record)); }

    State m_state;
};
