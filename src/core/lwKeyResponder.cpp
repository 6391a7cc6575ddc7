#include "core/lwKeyResponder.h"

#include "core/lwDataSource.h"

#include <QKeyEvent>

lwKeyResponder::lwKeyResponder(QObject *parent) : QObject(parent)
{
}

void lwKeyResponder::setOwner(lwDataSource *owner)
{
    m_owner = owner;
}

bool lwKeyResponder::isDeleteKey(const QKeyEvent *event)
{
    // Forward delete, backspace (the "delete" key of Apple keyboards) and the
    // delete-character key of older keyboards; modifiers are ignored.
    switch (event->key()) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        return true;
    default:
        return event->text() == QChar(0x7F);
    }
}

bool lwKeyResponder::isOpenKey(const QKeyEvent *event)
{
    return (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
           !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier | Qt::ShiftModifier));
}

bool lwKeyResponder::keyDown(QKeyEvent *event)
{
    if (!isDeleteKey(event))
        return false;
    if (m_owner)
        m_owner->deleteKey(this);
    return true;
}

void lwKeyResponder::deleteKey(QObject *)
{
}

bool lwKeyResponder::eventFilter(QObject *watched, QEvent *event)
{
    if (m_forwarding)
        return false;
    if (event->type() == QEvent::ShortcutOverride) {
        // Claim the delete keys before any menu shortcut can take them.
        auto *key = static_cast<QKeyEvent *>(event);
        if (isDeleteKey(key)) {
            key->accept();
            return true;
        }
        return false;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    auto *key = static_cast<QKeyEvent *>(event);
    if (keyDown(key)) {
        key->accept();
        return true;
    }
    if (isOpenKey(key)) {
        // Enter opens the selected row, as a double-click does.
        if (m_owner && m_owner->selectedRow() >= 0) {
            if (m_open)
                m_open();
            else
                m_owner->edit(this);
        }
        key->accept();
        return true;
    }
    const bool printable = !key->text().isEmpty() && key->text().at(0).isPrint() &&
                           !(key->modifiers() & (Qt::ControlModifier | Qt::MetaModifier | Qt::AltModifier));
    if (printable) {
        // Typed letters do nothing in the lists.
        key->accept();
        return true;
    }
    // Let the view act on the key, then stop it whatever the view did.
    m_forwarding = true;
    watched->event(event);
    m_forwarding = false;
    key->accept();
    return true;
}
