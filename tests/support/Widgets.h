#pragma once

#include <QAbstractItemView>
#include <QPushButton>
#include <QString>
#include <QTest>

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
