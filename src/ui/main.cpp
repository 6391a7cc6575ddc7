#include "core/Ledgerwick.h"
#include "ui/MainWindow.h"
#include "ui/QtPlatform.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ledgerwick"));
    QApplication::setOrganizationName(QStringLiteral("Ledgerwick"));
    QApplication::setApplicationVersion(QStringLiteral(LW_VERSION));

    QtPlatform platform;
    Ledgerwick ledgerwick(&platform);
    MainWindow window(&ledgerwick);
    platform.setWindow(&window);
    window.show();
    return app.exec();
}
