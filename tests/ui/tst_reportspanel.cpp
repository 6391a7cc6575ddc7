// The reports tab's wiring: the pop-up runs the chosen report into the tab's
// table with its column widths, the button runs it again, and the first
// report runs when the tab is first shown. The engine is tested on its own.
#include "products/Item.h"
#include "support/AppFixture.h"
#include "ui/MainWindow.h"
#include "ui/ReportsPanel.h"

#include <QComboBox>
#include <QPushButton>
#include <QTableView>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_ReportsPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Q_INIT_RESOURCE(icons); }
    void popUpAndButtonRunReports();
};

void tst_ReportsPanel::popUpAndButtonRunReports()
{
    AppFixture app;
    Ledgerwick &l = *app.ledgerwick;
    ReportManager *reports = l.getReportManager();
    MainWindow window(&l);
    auto *view = qobject_cast<QTableView *>(window.viewFor(reports));
    QVERIFY(view);
    auto *panel = new ReportsPanel(reports, view);
    window.addListHeader(reports, panel);
    l.startUp();
    app.addItem(u"P1"_s, u"Hinge"_s, u"4"_s)->setBought(u"2.50"_s);
    QCOMPARE(panel->reportPopUp()->currentText(), u"Current Customers"_s);

    // The first report runs when the tab comes to the front.
    window.show();
    window.selectTab(u"tabReports"_s);
    QTRY_COMPARE(reports->currentReport(), u"Current Customers"_s);

    const int stocktake = panel->reportPopUp()->findText(u"Stocktake"_s);
    panel->reportPopUp()->setCurrentIndex(stocktake);
    Q_EMIT panel->reportPopUp()->activated(stocktake);
    QCOMPARE(reports->currentReport(), u"Stocktake"_s);
    QCOMPARE(view->model()->rowCount(), 1 + 2);
    QCOMPARE(view->columnWidth(0), 90);
    QCOMPARE(view->model()->index(2, 4).data().toString(), u"10.00"_s);

    app.addItem(u"P2"_s, u"Latch"_s, u"1"_s);
    QTest::mouseClick(panel->runButton(), Qt::LeftButton);
    QCOMPARE(view->model()->rowCount(), 2 + 2);
}

QTEST_MAIN(tst_ReportsPanel)
#include "tst_reportspanel.moc"
