#include "ui/MainWindow.h"

#include "core/DefaultColumns.h"
#include "core/Ledgerwick.h"
#include "core/lwKeyResponder.h"
#include "core/Platform.h"
#include "core/RecordTable.h"
#include "prefs/Manual.h"
#include "prefs/PrefsController.h"
#include "ui/integrityTableView.h"
#include "ui/lwOutlineView.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTextDocument>
#include <QToolBar>
#include <QVBoxLayout>

#include <cstdio>

namespace {

using Column = lwDataSource::Column;

Column col(const char *identifier, const char *title, int width)
{
    return {QString::fromLatin1(identifier), lwTr(title), width};
}

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
    addTab(m_tabs,
           makeList(m_ledgerwick->getContactManager(), DefaultColumns::forKind(DatabaseStore::Kind::Contacts), true),
           QStringLiteral("1"), lwTr("Contacts"));
    addTab(m_tabs,
           makeList(m_ledgerwick->getOrderManager(), DefaultColumns::forKind(DatabaseStore::Kind::Orders), false),
           QStringLiteral("2"), lwTr("Orders"));
    addTab(m_tabs,
           makeList(m_ledgerwick->getItemManager(), DefaultColumns::forKind(DatabaseStore::Kind::Items), false),
           QStringLiteral("3"), lwTr("Items"));
    addTab(m_tabs,
           makeList(m_ledgerwick->getActionManager(), DefaultColumns::forKind(DatabaseStore::Kind::Actions), false),
           QStringLiteral("tabActions"), lwTr("Tasks"));

    m_accountsTabs = new QTabWidget;
    m_accountsTabs->setObjectName(QStringLiteral("accountsTabView"));
    addTab(m_accountsTabs,
           makeList(m_ledgerwick->getBillManager(), DefaultColumns::forKind(DatabaseStore::Kind::Bills), false),
           QStringLiteral("1"), lwTr("Bills"));
    // Money in and the statement fill once their reports are in place.
    m_moneyIn = new RecordTable({}, this);
    m_statement = new RecordTable({}, this);
    addTab(m_accountsTabs,
           makeList(m_moneyIn, {col("date", "Date", 90), col("details", "Details", 260), col("amount", "Amount", 90)},
                    false),
           QStringLiteral("2"), lwTr("Money In"));
    addTab(
        m_accountsTabs,
        makeList(m_statement,
                 {col("date", "Date", 90), col("details", "Details", 260), col("in", "In", 90), col("out", "Out", 90)},
                 false),
        QStringLiteral("3"), lwTr("Statement"));
    m_moneyInView = m_views.value(m_moneyIn);
    m_statementView = m_views.value(m_statement);
    addTab(m_tabs, m_accountsTabs, QStringLiteral("tabAccounts"), lwTr("Accounts"));

    m_reports = new RecordTable({}, this);
    addTab(m_tabs, makeList(m_reports, {col("field1", "Report", 300)}, false), QStringLiteral("tabReports"),
           lwTr("Reports"));
    m_reportsView = m_views.value(m_reports);

    buildToolbar();
    buildMenus();
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
    connect(m_ledgerwick, &Ledgerwick::readOnlyChanged, this, [this](bool readOnly) {
        setWindowTitle(readOnly ? QStringLiteral("Ledgerwick — ") + lwTr("read-only") : QStringLiteral("Ledgerwick"));
    });
}

MainWindow::~MainWindow() = default;

QWidget *MainWindow::makeList(lwDataSource *source, const QList<Column> &columns, bool outline)
{
    source->setColumns(columns);
    QAbstractItemView *view = nullptr;
    if (outline) {
        auto *tree = new lwOutlineView;
        tree->setRootIsDecorated(false);
        tree->setModel(source);
        for (int i = 0; i < columns.size(); ++i)
            tree->setColumnWidth(i, columns.at(i).width);
        connect(tree->header(), &QHeaderView::sectionClicked, this, [source, tree](int section) {
            // Each click flips the order, as the lists always have.
            const bool ascending = !tree->header()->property("lwAscending").toBool();
            tree->header()->setProperty("lwAscending", ascending);
            source->sort(section, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
        });
        view = tree;
    } else {
        auto *table = new integrityTableView;
        table->setModel(source);
        for (int i = 0; i < columns.size(); ++i)
            table->setColumnWidth(i, columns.at(i).width);
        connect(table->horizontalHeader(), &QHeaderView::sectionClicked, this, [source, table](int section) {
            const bool ascending = !table->horizontalHeader()->property("lwAscending").toBool();
            table->horizontalHeader()->setProperty("lwAscending", ascending);
            source->sort(section, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
        });
        view = table;
    }
    view->setObjectName(source->objectName() + QStringLiteral("View"));
    source->setTableSelection(view->selectionModel());
    // Double-click edits; the delete keys ask the manager to delete.
    connect(view, &QAbstractItemView::doubleClicked, source, [source] { source->edit(nullptr); });
    auto *responder = new lwKeyResponder(view);
    responder->setOwner(source);
    view->installEventFilter(responder);
    m_views.insert(source, view);
    return view;
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
        connect(action, &QAction::triggered, this, &MainWindow::companyRequested);
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
    QMenu *file = menuBar()->addMenu(lwTr("&File"));
    QAction *newRecord = file->addAction(lwTr("&New"), this, &MainWindow::newMenuItem);
    newRecord->setShortcut(QKeySequence::New);
    file->addSeparator();
    file->addAction(lwTr("&Import…"), this, [this] {
        if (lwDataSource *source = frontDataSource())
            source->importData(nullptr);
    });
    QAction *csv = file->addAction(lwTr("Export to &Spreadsheet…"), this, &MainWindow::exportCSVMenuItem);
    csv->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E));
    file->addAction(lwTr("Export to &HTML…"), this, &MainWindow::exportHTMLMenuItem);
    file->addSeparator();
    QAction *print = file->addAction(lwTr("&Print…"), this, &MainWindow::printMenuItem);
    print->setShortcut(QKeySequence::Print);
    file->addSeparator();
    QAction *quit = file->addAction(lwTr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);

    QMenu *edit = menuBar()->addMenu(lwTr("&Edit"));
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

    QMenu *window = menuBar()->addMenu(lwTr("&Window"));
    window->addAction(lwTr("&Notepad"), this, &MainWindow::notepadRequested);
    window->addAction(lwTr("&Checkout"), this, &MainWindow::checkout);

    QMenu *help = menuBar()->addMenu(lwTr("&Help"));
    QAction *manual = help->addAction(lwTr("Ledgerwick &Help"), this, &MainWindow::helpRequested);
    manual->setShortcut(QKeySequence::HelpContents);
}

void MainWindow::setTerms(const QString &order, const QString &orders, const QString &item, const QString &items)
{
    m_termOrder = order;
    m_termItem = item;
    m_tabs->setTabText(1, orders);
    m_tabs->setTabText(2, items);
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
    for (int i = 0; i < m_tabs->count(); ++i) {
        if (m_tabs->widget(i) != view)
            continue;
        const QString title = m_tabs->tabText(i);
        auto *page = new QWidget;
        page->setObjectName(view->objectName() + QStringLiteral("Page"));
        page->setProperty("tabIdentifier", view->property("tabIdentifier"));
        m_tabs->removeTab(i);
        auto *layout = new QVBoxLayout(page);
        layout->setContentsMargins(0, 4, 0, 0);
        layout->setSpacing(4);
        layout->addWidget(header);
        layout->addWidget(view, 1);
        view->show(); // taken out of the tab's stack, it was left hidden
        m_tabs->insertTab(i, page, title);
        return;
    }
}

void MainWindow::selectTab(const QString &identifier)
{
    for (int i = 0; i < m_tabs->count(); ++i)
        if (m_tabs->widget(i)->property("tabIdentifier").toString() == identifier)
            m_tabs->setCurrentIndex(i);
}

lwDataSource *MainWindow::frontDataSource() const
{
    const QString tab = m_tabs->currentWidget()->property("tabIdentifier").toString();
    if (tab == QLatin1String("1"))
        return m_ledgerwick->getContactManager();
    if (tab == QLatin1String("2"))
        return m_ledgerwick->getOrderManager();
    if (tab == QLatin1String("3"))
        return m_ledgerwick->getItemManager();
    if (tab == QLatin1String("tabActions"))
        return m_ledgerwick->getActionManager();
    if (tab == QLatin1String("tabAccounts"))
        return m_accountsTabs->currentIndex() == 0 ? m_ledgerwick->getBillManager() : nullptr;
    if (tab == QLatin1String("tabReports"))
        return m_reports;
    return nullptr;
}

QAbstractItemView *MainWindow::frontView() const
{
    const QString tab = m_tabs->currentWidget()->property("tabIdentifier").toString();
    if (tab == QLatin1String("tabAccounts")) {
        switch (m_accountsTabs->currentIndex()) {
        case 0:
            return viewFor(m_ledgerwick->getBillManager());
        case 1:
            return m_moneyInView;
        default:
            return m_statementView;
        }
    }
    if (tab == QLatin1String("tabReports"))
        return m_reportsView;
    return viewFor(frontDataSource());
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

lwDataSource *MainWindow::managerOfFirstResponder() const
{
    const QWidget *focus = QApplication::focusWidget();
    const lwDataSource *order[] = {m_ledgerwick->getOrderManager(), m_ledgerwick->getContactManager(),
                                   m_ledgerwick->getActionManager(), m_ledgerwick->getItemManager(),
                                   m_ledgerwick->getBillManager()};
    for (const lwDataSource *source : order) {
        const QAbstractItemView *view = viewFor(source);
        if (view && focus && (focus == view || view->isAncestorOf(focus)))
            return const_cast<lwDataSource *>(source);
    }
    return nullptr;
}

void MainWindow::deleteMenuItem()
{
    if (lwDataSource *source = managerOfFirstResponder())
        source->deleteKey(m_ledgerwick);
}

void MainWindow::editMenuItem()
{
    if (lwDataSource *source = managerOfFirstResponder())
        source->edit(m_ledgerwick);
}

void MainWindow::newMenuItem()
{
    if (lwDataSource *source = frontDataSource())
        source->create(m_ledgerwick);
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
    dataObject *order = nullptr;
    const QWidget *focus = QApplication::focusWidget();
    if (focus && focus == viewFor(m_ledgerwick->getOrderManager()))
        order = m_ledgerwick->getOrderManager()->getSelectedItem();
    Q_EMIT checkoutRequested(order);
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
    sheet->setText(lwTr("This database is open in another copy of Ledgerwick."));
    const QString since = lockDateTime.isEmpty() ? QString() : lwTr("It has been in use since %1. ").arg(lockDateTime);
    sheet->setInformativeText(since + lwTr("This copy works read-only: you can look at everything, but nothing you "
                                           "change will be saved. If no other copy is running, quit, delete the file "
                                           "\"lock.xml\" in the database folder and start again."));
    QPushButton *ok = sheet->addButton(lwTr("Continue Read-Only"), QMessageBox::AcceptRole);
    sheet->setDefaultButton(ok);
    connect(sheet, &QMessageBox::finished, m_ledgerwick, [l = m_ledgerwick] { l->cancelLockSheet(); });
    sheet->open();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // Closing the main window quits, saving everything first.
    if (!m_saved) {
        m_ledgerwick->applicationShouldTerminate();
        m_saved = true;
    }
    event->accept();
    QApplication::quit();
}
