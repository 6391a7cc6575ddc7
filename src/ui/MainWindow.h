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

    // The list the commands act on, after the selected tab; none when the
    // accounts tab shows anything but its bills.
    lwDataSource *frontDataSource() const;
    QAbstractItemView *frontView() const;
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
    // "New Company": the company editor's create.
    void companyRequested();
    void notepadRequested();
    void helpRequested();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *makeList(lwDataSource *source, const QList<lwDataSource::Column> &columns, bool outline);
    void buildMenus();
    void buildToolbar();
    void showLockSheet(const QString &lockDateTime);
    // The manager whose view has the keyboard focus, tested in the fixed order.
    lwDataSource *managerOfFirstResponder() const;

    Ledgerwick *m_ledgerwick;
    QTabWidget *m_tabs = nullptr;
    QTabWidget *m_accountsTabs = nullptr;
    QToolBar *m_toolbar = nullptr;
    QHash<const lwDataSource *, QAbstractItemView *> m_views;
    QAbstractItemView *m_moneyInView = nullptr;
    QAbstractItemView *m_statementView = nullptr;
    QAbstractItemView *m_reportsView = nullptr;
    lwDataSource *m_moneyIn = nullptr;
    lwDataSource *m_statement = nullptr;
    lwDataSource *m_reports = nullptr;
    QString m_termOrder = QStringLiteral("Order");
    QString m_termItem = QStringLiteral("Item");
    bool m_saved = false;
};
