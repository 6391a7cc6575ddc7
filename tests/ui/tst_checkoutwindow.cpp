// The checkout window's wiring: buttons reach the checkout's actions, the
// tender sheet follows the typing, Escape asks before dropping a sale. The
// rules are tested on the manager.
#include "orders/BOMManager.h"
#include "orders/CheckoutManager.h"
#include "support/AppFixture.h"
#include "ui/CheckoutWindow.h"
#include "ui/integrityTableView.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_CheckoutWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Q_INIT_RESOURCE(icons); }
    void aSaleAtTheCounter();
};

void tst_CheckoutWindow::aSaleAtTheCounter()
{
    AppFixture app;
    CheckoutManager *checkout = app.ledgerwick->getCheckoutManager();
    CheckoutWindow window(checkout, app.ledgerwick->getBOMManager());
    auto field = [&](const char *name) { return window.findChild<QLineEdit *>(QLatin1String(name)); };
    checkout->editRecord(nullptr);
    QVERIFY(window.isVisible());
    QCOMPARE(window.linesTable()->model(), app.ledgerwick->getBOMManager());

    QTest::mouseClick(window.findChild<QPushButton *>(u"adHocButton"_s), Qt::LeftButton);
    QCOMPARE(window.linesTable()->model()->rowCount(), 1);
    QCOMPARE(app.ledgerwick->getOrderManager()->getCount(), 1);
    // The lines take the sale's status colour from the preferences.
    QSettings(u"Ledgerwick"_s, u"Ledgerwick"_s)
        .setValue(u"LedgerwickFlagColours"_s,
                  QVariantList{QVariantMap{{u"Status"_s, u"Quote"_s}, {u"redComponent"_s, u"1"_s},
                                           {u"greenComponent"_s, u"0.5"_s}, {u"blueComponent"_s, u"0"_s}}});
    checkout->currentItem()->setStatus(u"Quote"_s);
    Q_EMIT checkout->editorStateChanged();
    QCOMPARE(window.linesTable()->rowColour(), QColor::fromRgbF(1, 0.5f, 0));

    checkout->editorState().balance = u"10"_s;
    QTest::mouseClick(window.findChild<QPushButton *>(u"tenderButton"_s), Qt::LeftButton);
    QVERIFY(window.tenderPanel()->isVisible());
    QCOMPARE(field("tenderDueEdit")->text(), u"10.00"_s);
    QTest::keyClicks(field("tenderedEdit"), u"25"_s);
    QCOMPARE(field("tenderBalanceEdit")->text(), u"15.00"_s);
    QCOMPARE(window.tenderPanel()->findChild<QLabel *>(u"tenderInformativeText"_s)->text(), u"Change Due"_s);
    QTest::keyClick(field("tenderedEdit"), Qt::Key_Return);
    QVERIFY(!window.tenderPanel()->isVisible());
    QVERIFY(checkout->checkoutState().tendered);
    QCOMPARE(field("balancePaidEdit")->text(), checkout->checkoutState().balancePaid);
    QVERIFY(!field("balancePaidEdit")->text().isEmpty());

    // Escape goes through the question; Cancel keeps the sale in the window.
    checkout->checkoutState().tendered = false;
    app.platform.alertAnswers.enqueue(2);
    QTest::keyClick(&window, Qt::Key_Escape);
    QCOMPARE(app.platform.alerts.size(), 1);
    QCOMPARE(app.platform.alerts.first().title, u"Close Checkout"_s);
    QVERIFY(window.isVisible());
}

QTEST_MAIN(tst_CheckoutWindow)
#include "tst_checkoutwindow.moc"
