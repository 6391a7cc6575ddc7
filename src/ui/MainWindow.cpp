#include "ui/MainWindow.h"
#include "ui/RestoreBackupDialog.h"

#include "app/Ledgerwick.h"
#include "core/lwKeyResponder.h"
#include "core/Platform.h"
#include "core/RecordTable.h"
#include "products/ItemManager.h"
#include "contacts/ContactManager.h"
#include "invoices/Invoice.h"
#include "invoices/Stationery.h"
#include "prefs/Manual.h"
#include "prefs/PrefsController.h"
#include "ui/HelpWindow.h"
#include "ui/integrityTableView.h"
#include "ui/lwHeaderSort.h"
#include "ui/lwOutlineView.h"

#include <algorithm>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTabWidget>
#include <QTextDocument>
#include <QToolBar>
#include <QVBoxLayout>

#include <cstdio>

namespace {

using Column = lwDataSource::Column;

struct ToolbarItem
{
    const char *identifier;
    const char *image;
    const char *missingName; // the name printed when the image is missing
    const char *label;       // looked up in the translations unless fixed
};

const ToolbarItem kToolbarItems[] = {
    {"printItemIdentifier", "print", "print", "Print"},
    {"deleteItemIdentifier", "delete", "delete", nullptr},
    {"editItemIdentifier", "edit", "Edit", nullptr},
    {"companyItemIdentifier", "company", "company", "New Company"},
    {"contactItemIdentifier", "contact", "contact", "New Contact"},
    {"orderItemIdentifier", "new", "new", nullptr},
    {"billItemIdentifier", "envelope", "envelope", "New Invoice"},
    {"todoItemIdentifier", "eggtimer", "todo", "New Task"},
    {"itemItemIdentifier", "item", "item", nullptr},
    {"padItemIdentifier", "pad", "pad", "Notepad"},
    {"htmlItemIdentifier", "html", "html", "To HTML"},
    {"csvItemIdentifier", "csv", "csv", "To Spreadsheet"},
    {"checkoutItemIdentifier", "checkout", "checkout", "Checkout"},
    {"prefsItemIdentifier", "cog", "cog", "Preferences"},
    {"helpItemIdentifier", "help", "help", "Help"},
};

} // namespace

MainWindow::MainWindow(Ledgerwick *ledgerwick, QWidget *parent) : QMainWindow(parent), m_ledgerwick(ledgerwick)
{
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(QStringLiteral("Ledgerwick"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/ledgerwick.svg")));
    setUnifiedTitleAndToolBarOnMac(true);

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("mainTabView"));
    m_tabs->setDocumentMode(true);
    setCentralWidget(m_tabs);

    auto addTab = [this](QTabWidget *tabs, QWidget *page, const QString &identifier, const QString &title) {
        page->setObjectName(identifier);
        page->setProperty("tabIdentifier", identifier);
        tabs->addTab(page, title);
    };
    addTab(m_tabs, makeList(m_ledgerwick->getContactManager(), true), QStringLiteral("1"), lwTr("Contacts"));
    addTab(m_tabs, makeList(m_ledgerwick->getOrderManager(), false), QStringLiteral("2"), lwTr("Orders"));
    addTab(m_tabs, makeList(m_ledgerwick->getItemManager(), false), QStringLiteral("3"), lwTr("Items"));
    addTab(m_tabs, makeList(m_ledgerwick->getActionManager(), false), QStringLiteral("tabActions"), lwTr("Tasks"));

    m_accountsTabs = new QTabWidget;
    m_accountsTabs->setObjectName(QStringLiteral("accountsTabView"));
    addTab(m_accountsTabs, makeList(m_ledgerwick->getBillManager(), false), QStringLiteral("1"), lwTr("Bills"));
    addTab(m_accountsTabs, makeList(m_ledgerwick->getMoneyInList(), false), QStringLiteral("2"), lwTr("Money In"));
    addTab(m_accountsTabs, makeList(m_ledgerwick->getStatementList(), false), QStringLiteral("3"),
           lwTr("Statement"));
    addTab(m_tabs, m_accountsTabs, QStringLiteral("tabAccounts"), lwTr("Accounts"));
    addTab(m_tabs, makeList(m_ledgerwick->getReportList(), false), QStringLiteral("tabReports"), lwTr("Reports"));

    // The controller routes the commands; it is told what is in front.
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] { tellController(); });
    connect(m_accountsTabs, &QTabWidget::currentChanged, this, [this] { tellController(); });
    connect(qApp, &QApplication::focusChanged, this, [this] { tellController(); });

    buildToolbar();
    buildMenus();
    m_recordCount = new QLabel(this);
    m_recordCount->setObjectName(QStringLiteral("recordCount"));
    statusBar()->addPermanentWidget(m_recordCount);
    connect(m_tabs, &QTabWidget::currentChanged, this, &MainWindow::updateStatusBar);
    connect(m_accountsTabs, &QTabWidget::currentChanged, this, &MainWindow::updateStatusBar);
    statusBar()->showMessage(lwTr("Ready"));
    resize(1240, 760);

    connect(m_ledgerwick, &Ledgerwick::lockFound, this, &MainWindow::showLockSheet);
    PrefsController *prefs = m_ledgerwick->getPrefsController();
    connect(prefs, &PrefsController::termsApplied, this, [this, prefs] {
        const PrefsTerms &terms = prefs->appliedTerms();
        setTerms(terms.order, terms.orders, terms.item, terms.items);
    });
    connect(this, &MainWindow::preferencesRequested, prefs, [prefs] { prefs->openWindow(); });
    connect(this, &MainWindow::helpRequested, m_ledgerwick->getManual(),
            [l = m_ledgerwick] { l->getManual()->menu1(); });
    // Where the desktop cannot show the manual, the program does.
    connect(m_ledgerwick->getManual(), &Manual::openInHelpWindow, this,
            [this](const QUrl &address) { helpWindow()->showAddress(address); });
    connect(m_ledgerwick, &Ledgerwick::readOnlyChanged, this, [this](bool readOnly) {
        setWindowTitle(readOnly ? QStringLiteral("Ledgerwick — ") + lwTr("read-only") : QStringLiteral("Ledgerwick"));
    });
}

MainWindow::~MainWindow()
{
    // The application outlives this window: its focus signal and the tab widgets' signals must not
    // reach a half-destroyed window while the children are torn down.
    disconnect(qApp, nullptr, this, nullptr);
    if (m_tabs)
        m_tabs->disconnect(this);
    if (m_accountsTabs)
        m_accountsTabs->disconnect(this);
}

QWidget *MainWindow::makeList(lwDataSource *source, bool outline)
{
    const QList<Column> &columns = source->columns();
    QAbstractItemView *view = nullptr;
    if (outline) {
        auto *tree = new lwOutlineView;
        tree->setModel(source);
        // Double-click edits; only the arrow opens a company.
        tree->setExpandsOnDoubleClick(false);
        if (ContactManager *contacts = m_ledgerwick->getContactManager(); source == contacts) {
            // The outline's own export follows what is shown.
            connect(tree, &QTreeView::expanded, contacts,
                    [contacts](const QModelIndex &index) { contacts->setExpanded(contacts->contactAt(index), true); });
            connect(tree, &QTreeView::collapsed, contacts,
                    [contacts](const QModelIndex &index) { contacts->setExpanded(contacts->contactAt(index), false); });
        }
        for (int i = 0; i < columns.size(); ++i)
            tree->setColumnWidth(i, columns.at(i).width);
        lwSortOnHeaderClicks(tree->header(), source);
        view = tree;
    } else {
        auto *table = new integrityTableView;
        table->setModel(source);
        for (int i = 0; i < columns.size(); ++i)
            table->setColumnWidth(i, columns.at(i).width);
        lwSortOnHeaderClicks(table->horizontalHeader(), source);
        view = table;
    }
    view->setObjectName(source->objectName() + QStringLiteral("View"));
    view->setProperty("emptyText", emptyListText(source->objectName()));
    connect(source, &QAbstractItemModel::modelReset, this, &MainWindow::updateStatusBar);
    connect(source, &QAbstractItemModel::layoutChanged, this, &MainWindow::updateStatusBar);
    connect(source, &QAbstractItemModel::rowsInserted, this, &MainWindow::updateStatusBar);
    connect(source, &QAbstractItemModel::rowsRemoved, this, &MainWindow::updateStatusBar);
    source->setTableSelection(view->selectionModel());
    // Double-click edits (an order opens in the checkout while the checkout
    // has taken the list over); the delete keys ask the manager to delete.
    auto *responder = new lwKeyResponder(view);
    responder->setOwner(source);
    const auto open = [this, source] {
        tellController();
        m_ledgerwick->openRow(source);
    };
    connect(view, &QAbstractItemView::doubleClicked, this, open);
    responder->setOpenAction(open);
    view->installEventFilter(responder);
    m_views.insert(source, view);
    return view;
}

QString MainWindow::emptyListText(const QString &list)
{
    if (list == QLatin1String("items"))
        return lwTr("No items yet. New Item (Ctrl+N) adds one; File > Import brings rows in from a "
                    "tab-separated file.");
    if (list == QLatin1String("contacts"))
        return lwTr("No contacts yet. New Contact (Ctrl+N) adds a person, New Company a company; File > Import "
                    "brings rows in from a tab-separated file.");
    if (list == QLatin1String("orders"))
        return lwTr("No orders yet. New Order (Ctrl+N) starts one for a customer.");
    if (list == QLatin1String("actions"))
        return lwTr("No tasks yet. New Task (Ctrl+N) adds one, with its time and alarm.");
    if (list == QLatin1String("bills"))
        return lwTr("No bills yet. New Invoice (Ctrl+N) records money you pay out.");
    if (list == QLatin1String("reports"))
        return lwTr("No reports here yet. Report definitions are read from the reports folder beside the "
                    "database.");
    return lwTr("Nothing here yet.");
}

QStringList MainWindow::toolbarItemIdentifiers()
{
    QStringList ids;
    for (const ToolbarItem &item : kToolbarItems)
        ids << QString::fromLatin1(item.identifier);
    return ids;
}

QAction *MainWindow::toolbarItem(const QString &identifier)
{
    const ToolbarItem *entry = nullptr;
    for (const ToolbarItem &item : kToolbarItems)
        if (identifier == QLatin1String(item.identifier))
            entry = &item;
    auto *action = new QAction(this);
    action->setObjectName(identifier);
    if (!entry)
        return action;
    const QString image = QStringLiteral(":/icons/") + QLatin1String(entry->image) + QStringLiteral(".svg");
    if (!QFile::exists(image)) {
        std::printf("Image %s not found.\n", entry->missingName);
        std::fflush(stdout);
        return action;
    }
    action->setIcon(QIcon(image));
    QString label;
    if (identifier == QLatin1String("orderItemIdentifier"))
        label = QStringLiteral("New ") + m_termOrder;
    else if (identifier == QLatin1String("itemItemIdentifier"))
        label = QStringLiteral("New ") + m_termItem;
    else if (identifier == QLatin1String("deleteItemIdentifier"))
        label = QStringLiteral("Delete");
    else if (identifier == QLatin1String("editItemIdentifier"))
        label = QStringLiteral("Edit");
    else
        label = lwTr(entry->label);
    action->setText(label);
    action->setToolTip(label);

    Ledgerwick *l = m_ledgerwick;
    const QString id = identifier;
    if (id == QLatin1String("contactItemIdentifier"))
        connect(action, &QAction::triggered, this, [l] { l->getContactManager()->create(l); });
    else if (id == QLatin1String("companyItemIdentifier"))
        connect(action, &QAction::triggered, this, [l] { l->getCompanyEditor()->create(l); });
    else if (id == QLatin1String("printItemIdentifier"))
        connect(action, &QAction::triggered, this, &MainWindow::printMenuItem);
    else if (id == QLatin1String("orderItemIdentifier"))
        connect(action, &QAction::triggered, this, [l] { l->getOrderManager()->create(l); });
    else if (id == QLatin1String("itemItemIdentifier"))
        connect(action, &QAction::triggered, this, [l] { l->getItemManager()->create(l); });
    else if (id == QLatin1String("deleteItemIdentifier"))
        connect(action, &QAction::triggered, this, &MainWindow::deleteMenuItem);
    else if (id == QLatin1String("editItemIdentifier"))
        connect(action, &QAction::triggered, this, &MainWindow::editMenuItem);
    else if (id == QLatin1String("todoItemIdentifier"))
        connect(action, &QAction::triggered, this, [l] { l->getActionManager()->create(l); });
    else if (id == QLatin1String("htmlItemIdentifier"))
        connect(action, &QAction::triggered, this, &MainWindow::exportHTMLMenuItem);
    else if (id == QLatin1String("csvItemIdentifier"))
        connect(action, &QAction::triggered, this, &MainWindow::exportCSVMenuItem);
    else if (id == QLatin1String("prefsItemIdentifier"))
        connect(action, &QAction::triggered, this, &MainWindow::preferencesRequested);
    else if (id == QLatin1String("billItemIdentifier"))
        connect(action, &QAction::triggered, this, [l] { l->getBillManager()->create(l); });
    else if (id == QLatin1String("padItemIdentifier"))
        connect(action, &QAction::triggered, this, &MainWindow::notepadRequested);
    else if (id == QLatin1String("checkoutItemIdentifier"))
        connect(action, &QAction::triggered, this, &MainWindow::checkout);
    else if (id == QLatin1String("helpItemIdentifier"))
        connect(action, &QAction::triggered, this, &MainWindow::helpRequested);
    return action;
}

void MainWindow::buildToolbar()
{
    m_toolbar = new QToolBar(lwTr("Toolbar"), this);
    m_toolbar->setObjectName(QStringLiteral("LedgerwickMainToolbar"));
    m_toolbar->setMovable(false);
    m_toolbar->setFloatable(false);
    m_toolbar->setIconSize(QSize(24, 24));
    m_toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    m_toolbar->setContextMenuPolicy(Qt::PreventContextMenu); // no customisation
    for (const QString &identifier : toolbarItemIdentifiers())
        m_toolbar->addAction(toolbarItem(identifier));
    addToolBar(Qt::TopToolBarArea, m_toolbar);
}

void MainWindow::buildMenus()
{
    buildFileMenu();
    buildEditMenu();
    buildViewMenu();
    buildItemsMenu();
    buildWindowMenu();
    buildHelpMenu();
}

void MainWindow::buildFileMenu()
{
    QMenu *file = menuBar()->addMenu(lwTr("&File"));
    file->setObjectName(QStringLiteral("fileMenu"));
    QAction *newRecord = file->addAction(lwTr("&New"), this, &MainWindow::newMenuItem);
    newRecord->setShortcut(QKeySequence::New);
    file->addSeparator();
    file->addAction(lwTr("&Import…"), this, [this] {
        if (lwDataSource *source = frontDataSource())
            source->importData(nullptr);
    });
    file->addAction(lwTr("Import Ledgerwick &1 Database…"), m_ledgerwick,
                    &Ledgerwick::importLedgerwickDatabaseWithWarning);
    QAction *csv = file->addAction(lwTr("Export to &Spreadsheet…"), this, &MainWindow::exportCSVMenuItem);
    csv->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E));
    file->addAction(lwTr("Export to &HTML…"), this, &MainWindow::exportHTMLMenuItem);
    file->addSeparator();
    file->addAction(lwTr("Restore from &Backup…"), this, &MainWindow::restoreFromBackup);
    file->addAction(lwTr("Edit Invoice &Templates…"), this,
                    [this] { Stationery::editInvoiceTemplate(m_ledgerwick->platform()); });
    // The simple invoice's header and footer open in the desktop's editor for rich text.
    const auto editPart = [this](bool (*open)(Platform *), QString (*path)()) {
        Platform *platform = m_ledgerwick->platform();
        if (!open(platform) && platform)
            platform->alert({lwTr("Cannot Open File"),
                             lwTr("No program on this desktop opens %1.").arg(QDir::toNativeSeparators(path()))});
    };
    file->addAction(lwTr("Edit Invoice &Header…"), this,
                    [editPart] { editPart(&Invoice::editInvoiceHeader, &Invoice::headerPath); });
    file->addAction(lwTr("Edit Invoice &Footer…"), this,
                    [editPart] { editPart(&Invoice::editInvoiceFooter, &Invoice::footerPath); });
    QAction *print = file->addAction(lwTr("&Print…"), this, &MainWindow::printMenuItem);
    print->setShortcut(QKeySequence::Print);
    file->addSeparator();
    QAction *quit = file->addAction(lwTr("&Quit"), this, &QWidget::close);
    quit->setObjectName(QStringLiteral("quitAction"));
    // Some desktops define no standard quit key; Ctrl+Q is what people expect there.
    const QList<QKeySequence> quitKeys = QKeySequence::keyBindings(QKeySequence::Quit);
    quit->setShortcut(quitKeys.isEmpty() ? QKeySequence(Qt::CTRL | Qt::Key_Q) : quitKeys.first());
    // Quits from whichever of the program's windows is in front.
    quit->setShortcutContext(Qt::ApplicationShortcut);
    // Menus are not shown, so the shortcut also needs a shown widget to belong to.
    addAction(quit);
    quit->setMenuRole(QAction::QuitRole);
}

void MainWindow::buildEditMenu()
{
    QMenu *edit = menuBar()->addMenu(lwTr("&Edit"));
    edit->setObjectName(QStringLiteral("editMenu"));
    // The text commands act on the focused field of whichever window is in
    // front; a field that has the focus answers its own keys first.
    const struct
    {
        const char *title;
        const char *slot;
        QKeySequence::StandardKey key;
    } textCommands[] = {{"&Undo", "undo", QKeySequence::Undo},          {"&Redo", "redo", QKeySequence::Redo},
                        {"Cu&t", "cut", QKeySequence::Cut},             {"&Copy", "copy", QKeySequence::Copy},
                        {"&Paste", "paste", QKeySequence::Paste},       {"Select &All", "selectAll", QKeySequence::SelectAll}};
    for (const auto &command : textCommands) {
        const char *slot = command.slot;
        QAction *action = edit->addAction(lwTr(command.title), this, [slot] { editFocusedField(slot); });
        action->setObjectName(QLatin1String(slot) + QStringLiteral("Action"));
        action->setShortcut(command.key);
        if (qstrcmp(slot, "redo") == 0 || qstrcmp(slot, "cut") == 0 || qstrcmp(slot, "selectAll") == 0)
            edit->addSeparator();
    }
    QAction *editRecord = edit->addAction(lwTr("&Edit"), this, &MainWindow::editMenuItem);
    editRecord->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_E));
    // The delete keys of a list reach its manager through the list itself;
    // this entry is for the menu and gives no shortcut of its own.
    edit->addAction(lwTr("&Delete"), this, &MainWindow::deleteMenuItem);
    edit->addSeparator();
    QAction *prefs = edit->addAction(lwTr("Pr&eferences…"), this, &MainWindow::preferencesRequested);
    // Not every desktop defines a standard key for the preferences.
    const QList<QKeySequence> prefsKeys = QKeySequence::keyBindings(QKeySequence::Preferences);
    prefs->setShortcut(prefsKeys.isEmpty() ? QKeySequence(Qt::CTRL | Qt::Key_Comma) : prefsKeys.first());
    prefs->setMenuRole(QAction::PreferencesRole);
}

bool MainWindow::editFocusedField(const char *command)
{
    // Line and text fields all have these slots; lists answer only Select All.
    QWidget *field = QApplication::focusWidget();
    if (!field)
        return false;
    const QByteArray signature = QByteArray(command) + QByteArrayLiteral("()");
    const int index = field->metaObject()->indexOfMethod(signature.constData());
    return index >= 0 && field->metaObject()->method(index).invoke(field);
}

void MainWindow::buildViewMenu()
{
    QMenu *view = menuBar()->addMenu(lwTr("&View"));
    const struct
    {
        const char *id;
        const char *title;
        int key;
    } tabs[] = {{"1", "Contacts", Qt::Key_1},
                {"2", "Orders", Qt::Key_2},
                {"3", "Items", Qt::Key_3},
                {"tabActions", "Tasks", Qt::Key_4},
                {"tabAccounts", "Accounts", Qt::Key_5},
                {"tabReports", "Reports", Qt::Key_6}};
    for (const auto &tab : tabs) {
        const QString id = QString::fromLatin1(tab.id);
        QAction *action = view->addAction(lwTr(tab.title), this, [this, id] { selectTab(id); });
        action->setShortcut(QKeySequence(Qt::CTRL | tab.key));
    }
}

void MainWindow::buildItemsMenu()
{
    m_itemsMenu = menuBar()->addMenu(lwTr("&Items"));
    m_itemsMenu->setObjectName(QStringLiteral("itemsMenu"));
    ItemManager *items = m_ledgerwick->getItemManager();
    QAction *website = m_itemsMenu->addAction(lwTr("Export Items to &Website"), items,
                                              [items] { items->exportAsSitemossObjects(nullptr); });
    website->setObjectName(QStringLiteral("exportWebsiteAction"));
}

void MainWindow::buildWindowMenu()
{
    QMenu *window = menuBar()->addMenu(lwTr("&Window"));
    window->addAction(lwTr("&Notepad"), this, &MainWindow::notepadRequested);
    window->addAction(lwTr("&Checkout"), this, &MainWindow::checkout);
}

void MainWindow::buildHelpMenu()
{
    QMenu *help = menuBar()->addMenu(lwTr("&Help"));
    help->setObjectName(QStringLiteral("helpMenu"));
    Manual *manual = m_ledgerwick->getManual();
    for (const Manual::Entry &entry : Manual::contents()) {
        const bool contents = entry.action == &Manual::menu1;
        QAction *page = help->addAction(contents ? lwTr("Ledgerwick &Help") : lwTr(entry.title), manual,
                                        [manual, action = entry.action] { (manual->*action)(nullptr); });
        page->setObjectName(QLatin1String(entry.page));
        if (contents) {
            page->setShortcut(QKeySequence::HelpContents);
            help->addSeparator();
        }
    }
    help->addSeparator();
    QAction *updates = help->addAction(lwTr("Ledgerwick &Home Page"), manual, [manual] { manual->updates(); });
    updates->setObjectName(QStringLiteral("updatesAction"));
    QAction *about = help->addAction(lwTr("&About Ledgerwick"), this, &MainWindow::showAbout);
    about->setObjectName(QStringLiteral("aboutAction"));
    about->setMenuRole(QAction::AboutRole);
}

QString MainWindow::aboutText() const
{
    return lwTr("<h3>Ledgerwick %1</h3><p>Runs a small trading business: contacts, items and stock, orders and "
                "invoices, money in and out, tasks and reports.</p>"
                "<p><b>Database in use:</b><br>%2</p><p><b>Preferences file:</b><br>%3</p>")
        .arg(QApplication::applicationVersion().toHtmlEscaped(),
             QDir::toNativeSeparators(m_ledgerwick->databaseLocation()).toHtmlEscaped(),
             QDir::toNativeSeparators(QSettings().fileName()).toHtmlEscaped());
}

void MainWindow::showAbout()
{
    auto *box = new QMessageBox(this);
    box->setObjectName(QStringLiteral("aboutBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(lwTr("About Ledgerwick"));
    box->setIconPixmap(windowIcon().pixmap(64, 64));
    box->setTextFormat(Qt::RichText);
    box->setText(aboutText());
    box->setStandardButtons(QMessageBox::Ok);
    box->open();
}

HelpWindow *MainWindow::helpWindow()
{
    if (!m_helpWindow)
        m_helpWindow = new HelpWindow(this);
    return m_helpWindow;
}

void MainWindow::updateStatusBar()
{
    QAbstractItemView *view = m_tabs ? viewFor(m_ledgerwick->frontList()) : nullptr;
    const auto *source = view ? qobject_cast<const lwDataSource *>(view->model()) : nullptr;
    if (!source || !m_recordCount) {
        if (m_recordCount)
            m_recordCount->clear();
        return;
    }
    // Records hidden by the search or filter, not rows folded under a company
    // or the extra rule and total rows some tables add.
    const int total = source->getCount();
    const auto &records = source->records();
    const int shown = int(std::count_if(records.begin(), records.end(), [](const auto &r) { return r->getVisible(); }));
    if (total <= shown)
        m_recordCount->setText(total == 1 ? lwTr("1 record") : lwTr("%1 records").arg(total));
    else
        m_recordCount->setText(lwTr("%1 of %2 records shown; %3 hidden by the search or filter")
                                   .arg(shown)
                                   .arg(total)
                                   .arg(total - shown));
}

void MainWindow::setTerms(const QString &order, const QString &orders, const QString &item, const QString &items)
{
    m_termOrder = order;
    m_termItem = item;
    m_tabs->setTabText(1, orders);
    m_tabs->setTabText(2, items);
    if (m_itemsMenu)
        m_itemsMenu->setTitle(items);
    for (QAction *action : m_toolbar->actions()) {
        if (action->objectName() == QLatin1String("orderItemIdentifier") && !action->text().isEmpty())
            action->setText(QStringLiteral("New ") + order);
        if (action->objectName() == QLatin1String("itemItemIdentifier") && !action->text().isEmpty())
            action->setText(QStringLiteral("New ") + item);
    }
}

void MainWindow::addListHeader(const lwDataSource *source, QWidget *header)
{
    QAbstractItemView *view = viewFor(source);
    if (!view)
        return;
    // The bills' table sits in the accounts tab's own tabs.
    QTabWidget *tabs = m_tabs->indexOf(view) >= 0 ? m_tabs : m_accountsTabs;
    for (int i = 0; i < tabs->count(); ++i) {
        if (tabs->widget(i) != view)
            continue;
        const QString title = tabs->tabText(i);
        const bool wasCurrent = tabs->currentIndex() == i;
        auto *page = new QWidget;
        page->setObjectName(view->objectName() + QStringLiteral("Page"));
        page->setProperty("tabIdentifier", view->property("tabIdentifier"));
        tabs->removeTab(i);
        auto *layout = new QVBoxLayout(page);
        layout->setContentsMargins(0, 4, 0, 0);
        layout->setSpacing(4);
        layout->addWidget(header);
        layout->addWidget(view, 1);
        view->show(); // taken out of the tab's stack, it was left hidden
        tabs->insertTab(i, page, title);
        if (wasCurrent)
            tabs->setCurrentIndex(i);
        return;
    }
}

void MainWindow::selectTab(const QString &identifier)
{
    for (int i = 0; i < m_tabs->count(); ++i)
        if (m_tabs->widget(i)->property("tabIdentifier").toString() == identifier)
            m_tabs->setCurrentIndex(i);
}

void MainWindow::tellController()
{
    m_ledgerwick->setSelectedTab(m_tabs->currentWidget()->property("tabIdentifier").toString());
    m_ledgerwick->setSelectedAccountsTab(m_accountsTabs->currentWidget()->property("tabIdentifier").toString());
    const QWidget *key = QApplication::activeWindow();
    m_ledgerwick->setMainWindowKey(!key || key == this);
    const QWidget *focus = QApplication::focusWidget();
    const lwDataSource *focused = nullptr;
    for (auto it = m_views.cbegin(); it != m_views.cend() && focus; ++it)
        if (focus == it.value() || it.value()->isAncestorOf(focus))
            focused = it.key();
    m_ledgerwick->setFocusedList(focused);
}

lwDataSource *MainWindow::frontDataSource()
{
    tellController();
    return m_ledgerwick->frontDataSource();
}

QAbstractItemView *MainWindow::frontView()
{
    tellController();
    if (lwDataSource *list = m_ledgerwick->frontList())
        return viewFor(list);
    // Another window is key: its focused view.
    return qobject_cast<QAbstractItemView *>(QApplication::focusWidget());
}

QAbstractItemView *MainWindow::viewFor(const lwDataSource *source) const
{
    return m_views.value(source, nullptr);
}

QList<lwDataSource::Column> MainWindow::visualColumns(const QAbstractItemView *view)
{
    QList<Column> columns;
    if (!view)
        return columns;
    const auto *source = qobject_cast<const lwDataSource *>(view->model());
    if (!source)
        return columns;
    const QHeaderView *header = nullptr;
    if (const auto *table = qobject_cast<const QTableView *>(view))
        header = table->horizontalHeader();
    else if (const auto *tree = qobject_cast<const QTreeView *>(view))
        header = tree->header();
    for (int visual = 0; visual < source->columns().size(); ++visual) {
        const int logical = header ? header->logicalIndex(visual) : visual;
        if (logical >= 0 && logical < source->columns().size() && !(header && header->isSectionHidden(logical)))
            columns << source->columns().at(logical);
    }
    return columns;
}

void MainWindow::deleteMenuItem()
{
    tellController();
    m_ledgerwick->deleteMenuItem();
}

void MainWindow::editMenuItem()
{
    tellController();
    m_ledgerwick->editMenuItem();
}

void MainWindow::newMenuItem()
{
    tellController();
    m_ledgerwick->newMenuItem();
}

void MainWindow::printMenuItem()
{
    QAbstractItemView *view = frontView();
    const auto *source = view ? qobject_cast<const lwDataSource *>(view->model()) : nullptr;
    if (!source)
        return;
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowModality(Qt::WindowModal);
    if (dialog.exec() != QDialog::Accepted)
        return;
    QTextDocument document;
    document.setHtml(source->getDataAsHTMLusingTableView(visualColumns(view)));
    document.print(&printer);
}

void MainWindow::exportCSVMenuItem()
{
    QAbstractItemView *view = frontView();
    m_ledgerwick->exportCSVMenuItem(view ? qobject_cast<const lwDataSource *>(view->model()) : nullptr,
                                    visualColumns(view));
}

void MainWindow::exportHTMLMenuItem()
{
    QAbstractItemView *view = frontView();
    m_ledgerwick->exportHTMLMenuItem(view ? qobject_cast<const lwDataSource *>(view->model()) : nullptr,
                                     visualColumns(view));
}

void MainWindow::checkout()
{
    tellController();
    Q_EMIT checkoutRequested(m_ledgerwick->checkoutOrder());
}

void MainWindow::bringOrdersToFront()
{
    selectTab(QStringLiteral("2"));
    raise();
    activateWindow();
}

void MainWindow::showLockSheet(const QString &lockDateTime)
{
    auto *sheet = new QMessageBox(this);
    sheet->setObjectName(QStringLiteral("lockInfoWindow"));
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setIcon(QMessageBox::Warning);
    sheet->setWindowModality(Qt::WindowModal);
    const bool stale = m_ledgerwick->lockIsStale();
    if (stale) {
        // Only a lock whose copy has ended can be taken over.
        sheet->setText(lockDateTime.isEmpty()
                           ? lwTr("The copy that opened this database is no longer running.")
                           : lwTr("The copy that opened this database on %1 is no longer running.").arg(lockDateTime));
        sheet->setInformativeText(lwTr("It may have ended without saving. Open the database anyway to work on it "
                                       "here, or continue read-only."));
    } else {
        sheet->setText(lwTr("This database is open in another copy of Ledgerwick."));
        const QString since =
            lockDateTime.isEmpty() ? QString() : lwTr("It has been in use since %1. ").arg(lockDateTime);
        sheet->setInformativeText(since + lwTr("This copy works read-only: you can look at everything, but nothing "
                                               "you change will be saved."));
    }
    QPushButton *ok = sheet->addButton(lwTr("Continue Read-Only"), QMessageBox::AcceptRole);
    sheet->setDefaultButton(ok);
    if (stale) {
        QPushButton *anyway = sheet->addButton(lwTr("Open Anyway"), QMessageBox::DestructiveRole);
        anyway->setObjectName(QStringLiteral("openAnyway"));
    }
    connect(sheet, &QMessageBox::finished, m_ledgerwick, [l = m_ledgerwick, sheet] {
        const QAbstractButton *pressed = sheet->clickedButton();
        if (pressed && pressed->objectName() == QLatin1String("openAnyway") && l->openAnyway())
            return;
        l->cancelLockSheet();
    });
    sheet->open();
}

void MainWindow::restoreFromBackup()
{
    auto *dialog = new RestoreBackupDialog(m_ledgerwick, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // Closing the main window quits, saving everything first.
    if (!m_saved) {
        // A save that failed may have been answered with Cancel: stay open.
        if (!m_ledgerwick->applicationShouldTerminate()) {
            event->ignore();
            return;
        }
        m_saved = true;
    }
    event->accept();
    QApplication::quit();
}
