#include "ui/lwWindowPlacement.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFileDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>
#include <QWidget>

namespace {

QString keyFor(const QWidget *window)
{
    return QStringLiteral("Windows/") + window->objectName();
}

} // namespace

lwWindowPlacement::lwWindowPlacement(QObject *parent) : QObject(parent)
{
    connect(qApp, &QCoreApplication::aboutToQuit, this, &lwWindowPlacement::saveAll);
}

QRect lwWindowPlacement::fitted(const QRect &wanted, const QRect &available)
{
    if (available.isEmpty())
        return wanted;
    QRect rect = wanted;
    rect.setWidth(qMin(rect.width(), available.width()));
    rect.setHeight(qMin(rect.height(), available.height()));
    rect.moveLeft(qBound(available.left(), rect.left(), available.right() - rect.width() + 1));
    rect.moveTop(qBound(available.top(), rect.top(), available.bottom() - rect.height() + 1));
    return rect;
}

bool lwWindowPlacement::isManaged(const QWidget *window)
{
    // The program's own windows, each named; not alerts, file panels or menus.
    if (!window->isWindow() || window->objectName().isEmpty())
        return false;
    if (qobject_cast<const QMessageBox *>(window) || qobject_cast<const QFileDialog *>(window))
        return false;
    return qobject_cast<const QMainWindow *>(window) || qobject_cast<const QDialog *>(window);
}

bool lwWindowPlacement::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::Show && type != QEvent::Hide && type != QEvent::Close)
        return false;
    auto *window = qobject_cast<QWidget *>(watched);
    if (!window || !isManaged(window))
        return false;
    if (type == QEvent::Show && !m_placed.contains(window)) {
        m_placed.insert(window);
        connect(window, &QObject::destroyed, this, [this, window] { m_placed.remove(window); });
        place(window);
    } else if (type != QEvent::Show && m_placed.contains(window)) {
        save(window);
    }
    return false;
}

void lwWindowPlacement::place(QWidget *window)
{
    const QByteArray kept = QSettings().value(keyFor(window)).toByteArray();
    if (!kept.isEmpty())
        window->restoreGeometry(kept);
    QScreen *screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect available = screen->availableGeometry();
    // The frame's size is known once shown; until then allow for a title bar.
    const QMargins frame(0, 32, 0, 0);
    const QRect wanted = window->geometry() + frame;
    const QRect inside = fitted(wanted, available) - frame;
    if (inside != window->geometry())
        window->setGeometry(inside);
}

void lwWindowPlacement::save(const QWidget *window)
{
    QSettings().setValue(keyFor(window), window->saveGeometry());
}

void lwWindowPlacement::saveAll()
{
    for (const QWidget *window : QApplication::topLevelWidgets())
        if (m_placed.contains(window) && window->isVisible())
            save(window);
}

void lwWindowPlacement::centreOver(QWidget *window, const QWidget *over)
{
    QRect frame = window->frameGeometry();
    frame.moveCenter(over->frameGeometry().center());
    window->move(frame.topLeft());
}
