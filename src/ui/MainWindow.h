#pragma once

#include "core/lwDataSource.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>

class Ledgerwick;
class QAbstractItemView;
class HelpWindow;
class QAction;
class QLabel;
class QMenu;
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
    void showAbout();
    // Version, the database in use and the preferences file, as About shows them.
    QString aboutText() const;
    // The program's own manual reader, made when first needed.
    HelpWindow *helpWindow();
    // Runs an edit command ("undo", "copy", "selectAll", ...) on the focused
    // field of whichever window is in front; false when it has no such command.
    static bool editFocusedField(const char *command);
    // What an empty list says to do, by the list's name.
    static QString emptyListText(const QString &list);

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
    void buildFileMenu();
    void buildEditMenu();
    void buildViewMenu();
    void buildItemsMenu();
    void buildWindowMenu();
    void buildHelpMenu();
    void updateStatusBar();
    void buildToolbar();
    void showLockSheet(const QString &lockDateTime);
    // File > Restore from Backup…: the list of backups, then a confirmation.
    void restoreFromBackup();

    Ledgerwick *m_ledgerwick;
    QTabWidget *m_tabs = nullptr;
    QTabWidget *m_accountsTabs = nullptr;
    QToolBar *m_toolbar = nullptr;
    QMenu *m_itemsMenu = nullptr;
    QLabel *m_recordCount = nullptr;
    QPointer<HelpWindow> m_helpWindow;
    QHash<const lwDataSource *, QAbstractItemView *> m_views;
    QString m_termOrder = QStringLiteral("Order");
    QString m_termItem = QStringLiteral("Item");
    bool m_saved = false;
};
