#include "app/Ledgerwick.h"
#include "prefs/Manual.h"
#include "prefs/PrefsController.h"
#include "products/ItemManager.h"
#include "ui/ActionEditor.h"
#include "ui/BillEditor.h"
#include "ui/BillListControls.h"
#include "ui/CheckoutWindow.h"
#include "ui/CompanyContactEditorWindow.h"
#include "ui/CompanyEditorWindow.h"
#include "ui/ContactEditor.h"
#include "ui/ItemEditor.h"
#include "ui/lwListControls.h"
#include "ui/ItemListControls.h"
#include "ui/PickerWindow.h"
#include "ui/MainWindow.h"
#include "ui/NotepadWindow.h"
#include "ui/OrderEditor.h"
#include "ui/PrefsWindow.h"
#include "ui/QtPlatform.h"
#include "ui/ReportsPanel.h"
#include "ui/lwTerminationWatcher.h"
#include "ui/lwWindowPlacement.h"

#include <QApplication>
#include <QIcon>
#include <QSettings>

int main(int argc, char *argv[])
{
    // The toolbar's icons are compiled into the widget library.
    Q_INIT_RESOURCE(icons);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ledgerwick"));
    QApplication::setOrganizationName(QStringLiteral("Ledgerwick"));
    QApplication::setApplicationVersion(QStringLiteral(LW_VERSION));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/ledgerwick.svg")));

    QtPlatform platform;
    Ledgerwick ledgerwick(&platform);
    MainWindow window(&ledgerwick);
    platform.setWindow(&window);
    PrefsWindow prefsWindow(ledgerwick.getPrefsController(), &window);
    ItemManager *items = ledgerwick.getItemManager();
    window.addListHeader(items, new ItemListControls(items));
    ItemEditor itemEditor(items, &window);
    PickerWindow picker(ledgerwick.getPicker(), &window);

    ContactManager *contacts = ledgerwick.getContactManager();
    window.addListHeader(contacts, new lwListControls(contacts, contacts->editorState().searchText,
                                                      contacts->editorState().filter,
                                                      lwTr("Search names, addresses, numbers, comments")));
    ContactEditor contactEditor(contacts, &window);
    CompanyEditorWindow companyWindow(ledgerwick.getCompanyEditor(), contacts, &window);
    CompanyContactEditorWindow companyContactWindow(ledgerwick.getCompanyContactEditor(), &window);
    // A contact turned into a company or a company contact opens its new
    // editor where the old one stood.
    QObject::connect(contacts, &ContactManager::handedOver, &window, [&](lwEditorManagerBase *editor) {
        QSettings().setValue(QStringLiteral("ContactWindows"), contactEditor.saveGeometry());
        QWidget *next = editor == ledgerwick.getCompanyEditor() ? static_cast<QWidget *>(&companyWindow)
                                                               : static_cast<QWidget *>(&companyContactWindow);
        next->restoreGeometry(QSettings().value(QStringLiteral("ContactWindows")).toByteArray());
    });
    ActionManager *actions = ledgerwick.getActionManager();
    window.addListHeader(actions, new lwListControls(actions, actions->editorState().searchText,
                                                     actions->editorState().filter, lwTr("Search titles")));
    ActionEditor actionEditor(actions, &window);
    BillManager *bills = ledgerwick.getBillManager();
    window.addListHeader(bills, new BillListControls(bills));
    BillEditor billEditor(bills, &window);
    contactEditor.setReports(ledgerwick.makeReportManager(&contactEditor), ledgerwick.makeReportManager(&contactEditor));
    companyContactWindow.setReports(ledgerwick.makeReportManager(&companyContactWindow),
                                    ledgerwick.makeReportManager(&companyContactWindow));
    ReportManager *reports = ledgerwick.getReportManager();
    window.addListHeader(reports, new ReportsPanel(reports, window.viewFor(reports)));
    OrderManager *orders = ledgerwick.getOrderManager();
    window.addListHeader(orders, new lwListControls(orders, orders->editorState().searchText,
                                                    orders->editorState().statusFilter,
                                                    lwTr("Search dates, titles, statuses, types, customers")));
    OrderEditor orderEditor(orders, ledgerwick.getBOMManager(), &window);
    QObject::connect(&orderEditor, &OrderEditor::activated, &ledgerwick, &Ledgerwick::requestCheckoutManagerResign);
    CheckoutManager *checkout = ledgerwick.getCheckoutManager();
    CheckoutWindow checkoutWindow(checkout, ledgerwick.getBOMManager(), &window);
    QObject::connect(&window, &MainWindow::checkoutRequested, checkout, &CheckoutManager::editRecord);
    QObject::connect(&checkoutWindow, &lwEditorWindow::helpRequested, ledgerwick.getManual(),
                     [manual = ledgerwick.getManual()] { manual->orders(); });
    QObject::connect(&ledgerwick, &Ledgerwick::ordersToFrontRequested, &window, &MainWindow::bringOrdersToFront);

    NotepadWindow notepad(ledgerwick.getPrefsController(), &window);
    QObject::connect(&window, &MainWindow::notepadRequested, &notepad, [&notepad] {
        notepad.show();
        notepad.raise();
        notepad.activateWindow();
    });
    // Each window with a page of the manual opens it from its Help button.
    Manual *manual = ledgerwick.getManual();
    QObject::connect(&itemEditor, &lwEditorWindow::helpRequested, manual, [manual] { manual->items(); });
    QObject::connect(&prefsWindow, &PrefsWindow::helpRequested, manual, [manual] { manual->prefs(); });
    for (lwEditorWindow *contactWindow : {static_cast<lwEditorWindow *>(&contactEditor),
                                          static_cast<lwEditorWindow *>(&companyWindow),
                                          static_cast<lwEditorWindow *>(&companyContactWindow)})
        QObject::connect(contactWindow, &lwEditorWindow::helpRequested, manual, [manual] { manual->contacts(); });
    QObject::connect(&actionEditor, &lwEditorWindow::helpRequested, manual, [manual] { manual->protime(); });
    QObject::connect(&billEditor, &lwEditorWindow::helpRequested, manual, [manual] { manual->proaccounts(); });

    // Every window opens where it was left, and on screen.
    lwWindowPlacement placement;
    app.installEventFilter(&placement);
    window.show();

    // Opening a document from the desktop is accepted and ignored: any file
    // arguments are passed over.
    // Logging out or shutting down quits as the menu does: everything is
    // saved. A request during start-up is answered once the loop runs.
    lwTerminationWatcher termination;
    QObject::connect(&termination, &lwTerminationWatcher::terminationRequested, &window, &QWidget::close);
    ledgerwick.startUp();
    actions->startAlarmChecker();
    return app.exec();
}
