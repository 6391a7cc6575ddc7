#include "app/Ledgerwick.h"
#include "prefs/PrefsController.h"
#include "products/ItemManager.h"
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
    OrderManager *orders = ledgerwick.getOrderManager();
    window.addListHeader(orders, new lwListControls(orders, orders->editorState().searchText,
                                                    orders->editorState().statusFilter,
                                                    lwTr("Search dates, titles, statuses, types, customers")));
    OrderEditor orderEditor(orders, ledgerwick.getBOMManager(), &window);
    QObject::connect(&orderEditor, &OrderEditor::activated, &ledgerwick, &Ledgerwick::requestCheckoutManagerResign);
    QObject::connect(&ledgerwick, &Ledgerwick::ordersToFrontRequested, &window, &MainWindow::bringOrdersToFront);

    NotepadWindow notepad(ledgerwick.getPrefsController(), &window);
    QObject::connect(&window, &MainWindow::notepadRequested, &notepad, [&notepad] {
        notepad.show();
        notepad.raise();
        notepad.activateWindow();
    });
    window.show();

    // Opening a document from the desktop is accepted and ignored: any file
    // arguments are passed over.
    ledgerwick.startUp();
    return app.exec();
}
