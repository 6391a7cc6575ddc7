#include "app/Ledgerwick.h"
#include "prefs/PrefsController.h"
#include "products/ItemManager.h"
#include "ui/ItemEditor.h"
#include "ui/ItemListControls.h"
#include "ui/PickerWindow.h"
#include "ui/MainWindow.h"
#include "ui/NotepadWindow.h"
#include "ui/PrefsWindow.h"
#include "ui/QtPlatform.h"

#include <QApplication>
#include <QIcon>

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
