#pragma once

#include <QAbstractItemView>
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QUrl>

// The named control of a window; a missing one stops the run, naming it.
template<typename T> T *control(const QObject *window, const QString &name)
{
    T *widget = window->findChild<T *>(name);
    if (!widget)
        qFatal("no control %s", qPrintable(name));
    return widget;
}

// Clicks the named button of a window, as the user would.
inline void clickButton(const QObject *window, const QString &name)
{
    QTest::mouseClick(control<QPushButton>(window, name), Qt::LeftButton);
}

// Clicks a row of a view and, unless told otherwise, double-clicks it: a
// double-click is a click followed by the double-click event.
inline void clickRow(QAbstractItemView *view, const QModelIndex &index, bool twice = true)
{
    const QPoint centre = view->visualRect(index).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centre);
    if (twice)
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, centre);
}

// Drags files over a widget and drops them there; false when it refuses them.
inline bool dropFiles(QWidget *target, const QStringList &paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls << QUrl::fromLocalFile(path);
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
    return drop.isAccepted();
}
