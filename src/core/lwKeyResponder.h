#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QKeyEvent;
class lwDataSource;

// Stands behind a manager's table view. The view keeps the keys it uses
// itself (arrows, paging, selection shortcuts); the delete keys go to the
// owner's deleteKey(), Enter to its edit(); any other key, letters
// included, goes no further.
// Installed as an event filter on the view (or its viewport).
class lwKeyResponder : public QObject
{
    Q_OBJECT
public:
    explicit lwKeyResponder(QObject *parent = nullptr);

    void setOwner(lwDataSource *owner);
    lwDataSource *owner() const { return m_owner; }
    // What Enter on a selected row does instead of the owner's edit(), so
    // that it follows the double-click wherever that is routed.
    void setOpenAction(std::function<void()> open) { m_open = std::move(open); }

    // Answers whether the key was one of the delete keys (and was sent on).
    bool keyDown(QKeyEvent *event);
    // The responder's own deleteKey does nothing.
    void deleteKey(QObject *sender);

    static bool isDeleteKey(const QKeyEvent *event);
    // Return or Enter without modifiers: opens the selected row.
    static bool isOpenKey(const QKeyEvent *event);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<lwDataSource> m_owner;
    std::function<void()> m_open;
    bool m_forwarding = false;
};
