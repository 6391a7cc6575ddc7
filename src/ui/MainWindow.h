#pragma once

#include "core/lwDataSource.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>

class Ledgerwick;
class QAbstractItemView;
class QAction;
class QTabWidget;
class QToolBar;
class lwKeyResponder;

// The one main window: the lists in tabs, the toolbar and the menus. Every
// command goes to the controller or to the manager of the list in front.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(Ledgerwick *ledgerwick, QWidget *parent = nullptr);
    ~MainWindow() override;

    // The toolbar item of an identifier as the controller builds it: image,
    // label, target and action; only the identifier when its image is missing.
    QAction *toolbarItem(const QString &identifier);
    static QStringList toolbarItemIdentifiers();
    QToolBar *mainToolbar() const { return m_toolbar; }

    // The user's words for one order and one item (and their plurals),
    // shown in the toolbar, the tabs and the menus.
    void setTerms(const QString &order, const QString &orders, const QString &item, const QString &items);

    // The list the commands act on and the view print and export act on, as
    // the controller routes them after what the window shows.
    lwDataSource *frontDataSource();
    QAbstractItemView *frontView();
    QAbstractItemView *viewFor(const lwDataSource *source) const;
    QTabWidget *tabs() const { return m_tabs; }
    QTabWidget *accountsTabs() const { return m_accountsTabs; }
    // Puts a bar of controls (search field, filter) above a list's table.
    void addListHeader(const lwDataSource *source, QWidget *header);
    // Selects the tab with the identifier ("1", "2", "3", "tabActions", ...).
    void selectTab(const QString &identifier);

    // The columns a view shows, in their visual order.
    static QList<lwDataSource::Column> visualColumns(const QAbstractItemView *view);

    // Menu and toolbar commands.
    void deleteMenuItem();
    void editMenuItem();
    void newMenuItem();
    void printMenuItem();
    void exportCSVMenuItem();
    void exportHTMLMenuItem();
    void checkout();
    void bringOrdersToFront();

Q_SIGNALS:
    // The checkout is asked for, with the selected order or none for a new sale.
    void checkoutRequested(dataObject *order);
    void preferencesRequested();
    void notepadRequested();
    void helpRequested();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *makeList(lwDataSource *source, bool outline);
    // Tells the controller the selected tabs, the key window and the focused list.
    void tellController();
    void buildMenus();
    void buildToolbar();
    void showLockSheet(const QString &lockDateTime);
    // File > Restore from Backup…: the list of backups, then a confirmation.
    void restoreFromBackup();

    Ledgerwick *m_ledgerwick;
    QTabWidget *m_tabs = nullptr;
    QTabWidget *m_accountsTabs = nullptr;
    QToolBar *m_toolbar = nullptr;
    QHash<const lwDataSource *, QAbstractItemView *> m_views;
    QString m_termOrder = QStringLiteral("Order");
    QString m_termItem = QStringLiteral("Item");
    bool m_saved = false;
};
