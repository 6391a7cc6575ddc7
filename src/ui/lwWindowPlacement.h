#pragma once

#include <QObject>
#include <QRect>
#include <QSet>

class QWidget;

// Every window of the program opens on screen where the user last left it,
// at the size they gave it. Watches the whole application: a window is
// placed the first time it is shown, and its place is kept in the settings
// ("Windows/<object name>") each time it is hidden or closed and at quit.
class lwWindowPlacement : public QObject
{
    Q_OBJECT
public:
    explicit lwWindowPlacement(QObject *parent = nullptr);

    // The rectangle moved and, if need be, shrunk to lie inside the screen's
    // free area.
    static QRect fitted(const QRect &wanted, const QRect &available);

    // Moves the window so that its centre is the other window's centre.
    static void centreOver(QWidget *window, const QWidget *over);

    // Keeps the places of all windows shown now.
    void saveAll();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static bool isManaged(const QWidget *window);
    void place(QWidget *window);
    static void save(const QWidget *window);

    QSet<const QWidget *> m_placed;
};
