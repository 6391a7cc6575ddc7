#include "core/Ledgerwick.h"
#include "core/Log.h"
#include "ui/MainWindow.h"
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
    window.show();

    ledgerwick.readDatabase();
    lwLog(QStringLiteral("Finished reading database"));
    return app.exec();
}
