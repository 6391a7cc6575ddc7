#include "orders/CheckoutManager.h"
#include "products/ItemManager.h"
#include "support/AppFixture.h"
#include "prefs/Manual.h"
#include "ui/HelpWindow.h"
#include "ui/MainWindow.h"
#include "ui/RestoreBackupDialog.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QListWidget>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QStatusBar>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QTextBrowser>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTableView>
#include <QTabWidget>
#include <QPushButton>
#include <QTest>
#include <QToolBar>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;

class TestMainWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void toolbarHasItsItemsInOrder();
    void frontListFollowsTheTabs();
    void deleteAndEditGoToTheListWithFocus();
    void closingSavesEverything();
    void aLockShowsTheSheetAndRefusesEdits();
    void restoreFromBackupListsAndRestores();
    void helpWithoutABrowserOpensTheHelpWindow();
    void quitKeyWorksFromAnotherWindow();
    void enterOnARowOpensIt();
    void editCommandsActOnTheFocusedField();
    void statusBarCountsShownAndHiddenRecords();

private:
    // The items tab in front with one item, its list focused.
    QAbstractItemView *showItemsWithOne()
    {
        m_app->addItem(QStringLiteral("P1"), QStringLiteral("Hinge"));
        m_window->show();
        if (!QTest::qWaitForWindowExposed(m_window))
            return nullptr;
        m_window->selectTab(QStringLiteral("3"));
        QAbstractItemView *items = m_window->viewFor(m_items);
        items->setFocus();
        return items;
    }
    std::unique_ptr<AppFixture> m_app;
    Ledgerwick *m_ledgerwick = nullptr;
    ScriptedPlatform *m_platform = nullptr;
    ItemManager *m_items = nullptr;
    MainWindow *m_window = nullptr;
};

void TestMainWindow::initTestCase()
{
    Q_INIT_RESOURCE(icons);
}

void TestMainWindow::init()
{
    m_app = std::make_unique<AppFixture>();
    m_ledgerwick = m_app->ledgerwick.get();
    m_platform = &m_app->platform;
    m_items = m_ledgerwick->getItemManager();
    m_window = new MainWindow(m_ledgerwick);
}

void TestMainWindow::cleanup()
{
    delete m_window;
    m_app.reset();
}

void TestMainWindow::toolbarHasItsItemsInOrder()
{
    const QStringList expected{"printItemIdentifier",    "deleteItemIdentifier",  "editItemIdentifier",
                               "companyItemIdentifier",  "contactItemIdentifier", "orderItemIdentifier",
                               "billItemIdentifier",     "todoItemIdentifier",    "itemItemIdentifier",
                               "padItemIdentifier",      "htmlItemIdentifier",    "csvItemIdentifier",
                               "checkoutItemIdentifier", "prefsItemIdentifier",   "helpItemIdentifier"};
    QStringList ids, labels;
    for (QAction *action : m_window->mainToolbar()->actions()) {
        ids << action->objectName();
        labels << action->text();
        QVERIFY2(!action->icon().isNull(), qPrintable(action->objectName()));
    }
    QCOMPARE(ids, expected);
    QCOMPARE(labels, QStringList({"Print", "Delete", "Edit", "New Company", "New Contact", "New Order", "New Invoice",
                                  "New Task", "New Item", "Notepad", "To HTML", "To Spreadsheet", "Checkout",
                                  "Preferences", "Help"}));

    // The user's terms name the order and item buttons.
    m_window->setTerms(QStringLiteral("Job"), QStringLiteral("Jobs"), QStringLiteral("Part"), QStringLiteral("Parts"));
    QCOMPARE(m_window->mainToolbar()->actions().at(5)->text(), QStringLiteral("New Job"));
    QCOMPARE(m_window->mainToolbar()->actions().at(8)->text(), QStringLiteral("New Part"));
    QCOMPARE(m_window->tabs()->tabText(1), QStringLiteral("Jobs"));
    QCOMPARE(m_window->findChild<QMenu *>(QStringLiteral("itemsMenu"))->title(), QStringLiteral("Parts"));

    // The buttons reach their targets.
    m_window->mainToolbar()->actions().at(8)->trigger();
    QVERIFY(m_items->isCreating());
    QSignalSpy prefs(m_window, &MainWindow::preferencesRequested);
    m_window->mainToolbar()->actions().at(13)->trigger();
    QCOMPARE(prefs.count(), 1);

    // An identifier the toolbar does not know gives a bare item.
    QAction *unknown = m_window->toolbarItem(QStringLiteral("nothingIdentifier"));
    QCOMPARE(unknown->objectName(), QStringLiteral("nothingIdentifier"));
    QVERIFY(unknown->text().isEmpty());
}

void TestMainWindow::frontListFollowsTheTabs()
{
    // The tabs tell the controller what is in front; its routing table is tested on its own.
    m_window->selectTab(QStringLiteral("1"));
    QCOMPARE(m_window->frontDataSource(), m_ledgerwick->getContactManager());
    QVERIFY(qobject_cast<QTreeView *>(m_window->frontView()));
    m_window->selectTab(QStringLiteral("tabAccounts"));
    m_window->accountsTabs()->setCurrentIndex(0);
    QCOMPARE(m_window->frontDataSource(), m_ledgerwick->getBillManager());
    // Money in: no data source in front, but print and export act on its table.
    m_window->accountsTabs()->setCurrentIndex(1);
    QCOMPARE(m_window->frontDataSource(), nullptr);
    QCOMPARE(m_window->frontView(), m_window->viewFor(m_ledgerwick->getMoneyInList()));

    // Exports follow the columns in their visual order.
    m_app->addItem(QStringLiteral("P1"), QStringLiteral("Hinge"));
    m_window->selectTab(QStringLiteral("3"));
    auto *table = qobject_cast<QTableView *>(m_window->frontView());
    QVERIFY(table);
    table->horizontalHeader()->moveSection(1, 0);
    const QList<lwDataSource::Column> columns = MainWindow::visualColumns(table);
    QCOMPARE(columns.at(0).identifier, QStringLiteral("item"));
    QCOMPARE(columns.at(1).identifier, QStringLiteral("code"));
    const QString path = m_app->home(QStringLiteral("items.csv"));
    m_platform->panelAnswers.enqueue(path);
    m_window->exportCSVMenuItem();
    QFile csv(path);
    QVERIFY(csv.open(QIODevice::ReadOnly));
    QVERIFY(csv.readAll().startsWith("\"Item\",\"Code\",\"Qty\""));
}

void TestMainWindow::deleteAndEditGoToTheListWithFocus()
{
    QAbstractItemView *items = showItemsWithOne();
    QVERIFY(items);
    QTRY_VERIFY(items->hasFocus());
    m_app->select(m_items, 0);
    m_platform->alertAnswers.enqueue(1);
    m_window->deleteMenuItem();
    QCOMPARE(m_platform->alerts.size(), 1);
    QCOMPARE(m_platform->alerts.last().title, QStringLiteral("Delete Item"));
    m_window->editMenuItem();
    QVERIFY(m_items->isEditorShown());
    m_items->cancel(nullptr);

    // The delete key in the list reaches the same manager.
    items->setFocus();
    m_platform->alertAnswers.enqueue(1);
    QTest::keyClick(items, Qt::Key_Delete);
    QCOMPARE(m_platform->alerts.size(), 2);

    // With nothing of the lists in focus nothing happens.
    items->clearFocus();
    m_window->setFocus();
    m_window->deleteMenuItem();
    QCOMPARE(m_platform->alerts.size(), 2);
}

void TestMainWindow::closingSavesEverything()
{
    m_ledgerwick->readDatabase();
    const QString bundle = m_app->home(QStringLiteral("db.lwkdb"));
    QVERIFY(QFile::exists(bundle + QStringLiteral("/lock.xml")));
    m_window->show();
    m_window->close();
    for (const auto &file : DatabaseStore::files())
        QVERIFY(QFile::exists(bundle + QLatin1Char('/') + QLatin1String(file.fileName)));
    QVERIFY(!QFile::exists(bundle + QStringLiteral("/lock.xml")));
}

void TestMainWindow::aLockShowsTheSheetAndRefusesEdits()
{
    const QString bundle = m_app->home(QStringLiteral("db.lwkdb"));
    QDir().mkpath(bundle);
    QFile lock(bundle + QStringLiteral("/lock.xml"));
    QVERIFY(lock.open(QIODevice::WriteOnly));
    lock.write(
        "<plist version=\"1.0\"><dict><key>datetime</key><string>2007-03-01 14:05:09 +0000</string></dict></plist>");
    lock.close();
    m_window->show();
    m_ledgerwick->readDatabase();
    auto *sheet = m_window->findChild<QMessageBox *>(QStringLiteral("lockInfoWindow"));
    QVERIFY(sheet);
    QTRY_VERIFY(sheet->isVisible());
    // No running copy holds the bundle: the lock is stale and can be taken over.
    QVERIFY(sheet->text().contains(QLatin1String("on 2007-03-01 14:05:09 +0000 is no longer running")));
    QVERIFY(sheet->findChild<QAbstractButton *>(QStringLiteral("openAnyway")));
    QCOMPARE(sheet->windowModality(), Qt::WindowModal);
    sheet->defaultButton()->click();
    QVERIFY(m_ledgerwick->isReadOnly());
    QVERIFY(!m_items->readOnlyCheck());
    QCOMPARE(m_platform->alerts.last().title, QStringLiteral("Read-only mode"));

    // Quitting writes nothing and leaves the lock in place.
    m_window->close();
    QVERIFY(!QFile::exists(bundle + QStringLiteral("/contacts.xml")));
    QVERIFY(QFile::exists(bundle + QStringLiteral("/lock.xml")));
}

void TestMainWindow::restoreFromBackupListsAndRestores()
{
    m_ledgerwick->readDatabase();
    m_app->addItem(u"A1"_s, u"Anvil"_s);
    QVERIFY(m_ledgerwick->writeDatabase(m_items));
    m_app->addItem(u"B2"_s, u"Bolt"_s);
    QVERIFY(m_ledgerwick->writeDatabase(m_items)); // backed up the one-item file first

    QAction *menu = nullptr;
    for (QAction *action : m_window->findChildren<QAction *>())
        if (action->text() == u"Restore from &Backup…"_s)
            menu = action;
    QVERIFY(menu);
    menu->trigger();
    auto *dialog = m_window->findChild<RestoreBackupDialog *>();
    QVERIFY(dialog);
    QCOMPARE(dialog->list()->count(), 1);
    QVERIFY(dialog->list()->item(0)->text().contains(u"1 items"_s));
    m_platform->alertAnswers << 1; // Cancel at the confirmation
    dialog->restoreSelected();
    QCOMPARE(m_items->getCount(), 2);
    m_platform->alertAnswers << 0;
    dialog->restoreSelected();
    QCOMPARE(m_platform->alerts.last().buttons, QStringList({u"Restore"_s, u"Cancel"_s}));
    QCOMPARE(m_items->getCount(), 1);
}

void TestMainWindow::helpWithoutABrowserOpensTheHelpWindow()
{
    m_platform->canOpenUrls = false;
    auto *help = m_window->findChild<QMenu *>(QStringLiteral("helpMenu"));
    QVERIFY(help);
    // Every page of the manual and the home page are in the Help menu.
    QStringList pages;
    for (QAction *action : help->actions())
        if (action->objectName().endsWith(QLatin1String(".html")))
            pages << action->objectName();
    pages.sort();
    QStringList expected = Manual::pageNames();
    expected.sort();
    QCOMPARE(pages, expected);
    QVERIFY(help->findChild<QAction *>(QStringLiteral("updatesAction")) ||
            std::any_of(help->actions().cbegin(), help->actions().cend(),
                        [](QAction *a) { return a->objectName() == QLatin1String("updatesAction"); }));

    const auto trigger = [help](const QString &name) {
        for (QAction *action : help->actions())
            if (action->objectName() == name)
                action->trigger();
    };
    trigger(QStringLiteral("items.html"));
    HelpWindow *window = m_window->helpWindow();
    QTRY_VERIFY(window->isVisible());
    QCOMPARE(window->browser()->source().fileName(), QStringLiteral("items.html"));
    QVERIFY(window->browser()->toPlainText().contains(QLatin1String("Items and stock")));
    QCOMPARE(window->contentsList()->currentItem()->text(), QStringLiteral("Items and stock"));
    QVERIFY(!window->backAction()->isEnabled());

    // The contents list and the back and forward buttons move between pages.
    QListWidget *contents = window->contentsList();
    for (int row = 0; row < contents->count(); ++row)
        if (contents->item(row)->text() == QLatin1String("Preferences"))
            Q_EMIT contents->itemActivated(contents->item(row));
    QCOMPARE(window->browser()->source().fileName(), QStringLiteral("prefs.html"));
    window->backAction()->trigger();
    QCOMPARE(window->browser()->source().fileName(), QStringLiteral("items.html"));
    QVERIFY(window->forwardAction()->isEnabled());
    window->forwardAction()->trigger();
    QCOMPARE(window->browser()->source().fileName(), QStringLiteral("prefs.html"));

    // The home page cannot be shown here: it is named instead.
    trigger(QStringLiteral("updatesAction"));
    QVERIFY(window->browser()->toHtml().contains(Manual::homePage()));
}

void TestMainWindow::quitKeyWorksFromAnotherWindow()
{
    m_window->show();
    QWidget other;
    other.setObjectName(QStringLiteral("otherWindow"));
    auto *field = new QLineEdit(&other);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    other.activateWindow();
    field->setFocus();
    QTRY_COMPARE(QApplication::activeWindow(), &other);
    QTest::keyClick(other.windowHandle(), Qt::Key_Q, Qt::ControlModifier);
    QTRY_VERIFY(!m_window->isVisible());
}

void TestMainWindow::enterOnARowOpensIt()
{
    QAbstractItemView *items = showItemsWithOne();
    QVERIFY(items);
    m_app->select(m_items, 0);
    QTest::keyClick(items, Qt::Key_Return);
    QVERIFY(m_items->isEditorShown());
    QCOMPARE(m_items->editorState().code, QStringLiteral("P1"));

    // While the checkout has the orders list, Enter opens an order there, as a double-click does.
    OrderManager *orders = m_ledgerwick->getOrderManager();
    CheckoutManager *checkout = m_ledgerwick->getCheckoutManager();
    auto order = std::make_shared<Order>();
    order->setOrderNum(QStringLiteral("ORD9"));
    orders->add(order);
    m_window->selectTab(QStringLiteral("2"));
    m_window->viewFor(orders)->setFocus();
    m_app->select(orders, 0);
    checkout->setDefaultInterfaceToCheckout(nullptr);
    QTest::keyClick(m_window->viewFor(orders), Qt::Key_Return);
    QCOMPARE(checkout->currentItem(), order.get());
    QVERIFY(!orders->isEditorShown());
}

void TestMainWindow::editCommandsActOnTheFocusedField()
{
    m_window->show();
    auto *field = new QLineEdit(QStringLiteral("Hinge"), m_window->statusBar());
    field->show();
    field->setFocus();
    QTRY_VERIFY(field->hasFocus());
    QVERIFY(MainWindow::editFocusedField("selectAll"));
    QVERIFY(MainWindow::editFocusedField("cut"));
    QCOMPARE(field->text(), QString());
    QVERIFY(MainWindow::editFocusedField("undo"));
    QCOMPARE(field->text(), QStringLiteral("Hinge"));
    // A list has no text commands: nothing happens.
    QAbstractItemView *items = m_window->viewFor(m_items);
    m_window->selectTab(QStringLiteral("3"));
    items->setFocus();
    QTRY_VERIFY(items->hasFocus());
    QVERIFY(!MainWindow::editFocusedField("paste"));
}

void TestMainWindow::statusBarCountsShownAndHiddenRecords()
{
    m_app->addItem(QStringLiteral("P1"), QStringLiteral("Hinge"));
    m_app->addItem(QStringLiteral("P2"), QStringLiteral("Bracket"));
    m_window->show();
    m_window->selectTab(QStringLiteral("3"));
    auto *count = m_window->findChild<QLabel *>(QStringLiteral("recordCount"));
    QVERIFY(count);
    m_items->filter(nullptr);
    QCOMPARE(count->text(), QStringLiteral("2 records"));
    m_items->editorState().searchText = QStringLiteral("hinge");
    m_items->filter(nullptr);
    QCOMPARE(count->text(), QStringLiteral("1 of 2 records shown; 1 hidden by the search or filter"));

    // A person folded under a company is not hidden by any search.
    auto acme = m_app->addContact(QStringLiteral("Acme"));
    acme->makeCompany();
    auto ann = m_app->addContact(QStringLiteral("Ann"));
    ann->setKind(QStringLiteral("Company Contact"));
    ann->setCompany(acme->getID());
    m_window->selectTab(QStringLiteral("1"));
    m_ledgerwick->getContactManager()->filter(nullptr);
    QCOMPARE(count->text(), QStringLiteral("2 records"));
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
