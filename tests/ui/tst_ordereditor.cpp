// The order editor's wiring: controls reach their state fields, buttons their
// actions, a dropped file the attachments. The rules are tested on the manager.
#include "invoices/Stationery.h"
#include "orders/BOMManager.h"
#include "orders/OrderManager.h"
#include "support/AppFixture.h"
#include "support/Widgets.h"
#include "ui/CustomInvoiceWindow.h"
#include "ui/MyImageView.h"
#include "ui/OrderEditor.h"

#include <QApplication>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTextEdit>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

class tst_OrderEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Q_INIT_RESOURCE(icons); }
    void takingAnOrder();
};

void tst_OrderEditor::takingAnOrder()
{
    AppFixture app;
    OrderManager *orders = app.ledgerwick->getOrderManager();
    QVERIFY(Stationery::installStationary());
    OrderEditor editor(orders, app.ledgerwick->getBOMManager());
    auto press = [&](const char *name) { clickButton(&editor, QLatin1String(name)); };
    orders->create(nullptr);
    QVERIFY(editor.isVisible());
    QCOMPARE(editor.findChild<QLineEdit *>(u"orderNumEdit"_s)->text(), u"ORD1"_s);
    QCOMPARE(editor.linesTable()->model(), app.ledgerwick->getBOMManager());

    press("adHocButton");
    QCOMPARE(editor.linesTable()->model()->rowCount(), 1);
    editor.linesTable()->model()->setData(editor.linesTable()->model()->index(0, 4), u"12"_s); // cost
    press("insertTotalButton");
    QCOMPARE(editor.findChild<QLineEdit *>(u"valueEdit"_s)->text(), u"12.000000"_s);
    QCOMPARE(editor.findChild<QLineEdit *>(u"balanceEdit"_s)->text(), u"12"_s);

    const QString file = app.home(u"plan.txt"_s);
    QFile(file).open(QIODevice::WriteOnly);
    auto *well = editor.findChild<MyImageView *>();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file), QUrl::fromLocalFile(app.home(u"other.txt"_s))});
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(well, &enter);
    QVERIFY(enter.isAccepted());
    QApplication::sendEvent(well, &drop);
    QVERIFY(drop.isAccepted());
    QCOMPARE(orders->getNumberOfAttachments(), 1); // only the first of several

    editor.findChild<QLineEdit *>(u"titleEdit"_s)->setText(u"Fence"_s);
    // Print commits the edit, keeps the editor open and fills the chosen template.
    editor.stationeryPopUp()->setCurrentText(u"Reminder"_s);
    press("printInvoiceButton");
    QVERIFY(editor.isVisible());
    QCOMPARE(orders->currentItem()->getTitle(), u"Fence"_s);
    auto *invoice = editor.findChild<CustomInvoiceWindow *>();
    QVERIFY(invoice);
    QVERIFY2(invoice->windowTitle().startsWith(u"Reminder"_s), qPrintable(invoice->windowTitle()));
    QVERIFY(invoice->invoiceTextView()->toPlainText().contains(u"ORD1"_s));
    invoice->close();
    press("okButton");
    QVERIFY(!editor.isVisible());
    QCOMPARE(orders->getCount(), 1);
    QCOMPARE(orders->currentItem()->getTitle(), u"Fence"_s);
    QCOMPARE(orders->currentItem()->getValue(), u"12.000000"_s);
}

QTEST_MAIN(tst_OrderEditor)
#include "tst_ordereditor.moc"
