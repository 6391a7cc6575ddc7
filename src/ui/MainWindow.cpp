#include "ui/MainWindow.h"

#include "core/Ledgerwick.h"
#include "core/Platform.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabWidget>

MainWindow::MainWindow(Ledgerwick *ledgerwick, QWidget *parent)
    : QMainWindow(parent), m_ledgerwick(ledgerwick)
{
    setWindowTitle(QStringLiteral("Ledgerwick"));
    setObjectName(QStringLiteral("mainWindow"));
    auto *tabs = new QTabWidget(this);
    tabs->setObjectName(QStringLiteral("tabs"));
    setCentralWidget(tabs);
    buildMenus();
    statusBar()->showMessage(lwTr("Ready"));
    resize(1100, 700);
}

void MainWindow::buildMenus()
{
    QMenu *file = menuBar()->addMenu(lwTr("&File"));
    QAction *quit = file->addAction(lwTr("&Quit"));
    quit->setShortcut(QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);
    connect(quit, &QAction::triggered, this, &QWidget::close);
}
