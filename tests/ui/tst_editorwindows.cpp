// The editor windows, the picker and the list bars reach their models: controls
// their state fields, buttons their actions, a dropped file the attachments, the
// reports pop-up its engine. The rules themselves are the models' own tests.
#include "accounts/ActionManager.h"
#include "accounts/BillManager.h"
#include "core/RecordTable.h"
#include "invoices/Invoice.h"
#include "invoices/Stationery.h"
#include "orders/BOMManager.h"
#include "orders/OrderManager.h"
#include "prefs/PrefsController.h"
#include "products/Picker.h"
#include "products/Item.h"
#include "support/AppFixture.h"
#include "support/TestRecord.h"
#include "support/Widgets.h"
#include "ui/ActionEditor.h"
#include "ui/BillEditor.h"
#include "ui/BillListControls.h"
#include "ui/CustomInvoiceWindow.h"
#include "ui/MainWindow.h"
#include "ui/MyImageView.h"
#include "ui/OrderEditor.h"
#include "ui/PickerWindow.h"
#include "ui/integrityTableView.h"
#include "ui/ReportsPanel.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QFile>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

class tst_EditorWindows : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { Q_INIT_RESOURCE(icons); }
    void taskEditorCalculatesAndCommits();
    void billEditorCalculatesAndCommits();
    void billBarEnablesItsStartWithThePeriod();
    void takingAnOrder();
    void reportsPopUpAndButtonRunReports();
    void pickerWindowForwardsTheUsersActions();
};

namespace {
void type(QWidget *window, const char *name, const QString &text)
{
    control<QLineEdit>(window, QLatin1String(name))->setText(text);
}
QString shown(QWidget *window, const char *name)
{
    return control<QLineEdit>(window, QLatin1String(name))->text();
}
} // namespace

void tst_EditorWindows::taskEditorCalculatesAndCommits()
{
    AppFixture app;
    ActionManager *actions = app.ledgerwick->getActionManager();
    ActionEditor editor(actions);
    actions->create(nullptr);
    QVERIFY(editor.isVisible());
    type(&editor, "titleEdit", u"Fit kitchen"_s);
    // A date that reads the same day in either order of day and month.
    for (const char *name : {"startDateEdit", "endDateEdit"})
        type(&editor, name, u"01/02/09"_s);
    type(&editor, "startTimeEdit", u"09:00"_s);
    type(&editor, "endTimeEdit", u"17:30"_s);
    type(&editor, "rateEdit", u"20"_s);
    clickButton(&editor, u"calculateTimeButton"_s);
    QCOMPARE(shown(&editor, "totalTimeEdit"), u"8.5"_s);
    clickButton(&editor, u"calculateChargeButton"_s);
    QCOMPARE(shown(&editor, "totalChargeEdit"), u"170"_s);
    clickButton(&editor, u"okButton"_s);
    QVERIFY(!editor.isVisible());
    QCOMPARE(actions->getCount(), 1);
    QCOMPARE(actions->currentItem()->getTitle(), u"Fit kitchen"_s);
    QCOMPARE(actions->currentItem()->getTotalCharge(), u"170"_s);
}

void tst_EditorWindows::billEditorCalculatesAndCommits()
{
    AppFixture app;
    BillManager *bills = app.ledgerwick->getBillManager();
    BillEditor editor(bills);
    bills->create(nullptr);
    QVERIFY(editor.isVisible());
    type(&editor, "nameEdit", u"Gas"_s);
    type(&editor, "netEdit", u"100"_s);
    type(&editor, "vatEdit", u"17.5"_s);
    clickButton(&editor, u"calculateButton"_s);
    QCOMPARE(shown(&editor, "amountEdit"), u"117.50"_s);
    clickButton(&editor, u"okButton"_s);
    QVERIFY(!editor.isVisible());
    QCOMPARE(bills->getCount(), 1);
    QCOMPARE(bills->currentItem()->getName(), u"Gas"_s);
}

void tst_EditorWindows::billBarEnablesItsStartWithThePeriod()
{
    AppFixture app;
    BillManager *bills = app.ledgerwick->getBillManager();
    BillListControls bar(bills);
    auto *period = bar.findChild<QComboBox *>(bills->objectName() + u"Filter"_s);
    auto *from = bar.findChild<QLineEdit *>(u"billsFromDate"_s);
    QVERIFY(period && from);
    QVERIFY(!from->isEnabled()); // "All" needs no start
    period->setCurrentIndex(period->findText(u"1 Week"_s));
    QVERIFY(from->isEnabled());
    from->setText(u"02/02/09"_s);
    QMetaObject::invokeMethod(from, "editingFinished");
    QCOMPARE(bills->editorState().fromDate, u"02/02/09"_s);
}

void tst_EditorWindows::takingAnOrder()
{
    AppFixture app;
    OrderManager *orders = app.ledgerwick->getOrderManager();
    QVERIFY(Stationery::installStationary());
    OrderEditor editor(orders, app.ledgerwick->getBOMManager());
    auto press = [&](const char *name) { clickButton(&editor, QLatin1String(name)); };
    orders->create(nullptr);
    QVERIFY(editor.isVisible());
    QCOMPARE(shown(&editor, "orderNumEdit"), u"ORD1"_s);
    QCOMPARE(editor.linesTable()->model(), app.ledgerwick->getBOMManager());

    press("adHocButton");
    QCOMPARE(editor.linesTable()->model()->rowCount(), 1);
    editor.linesTable()->model()->setData(editor.linesTable()->model()->index(0, 4), u"12"_s); // cost
    press("insertTotalButton");
    QCOMPARE(shown(&editor, "valueEdit"), u"12.000000"_s);
    QCOMPARE(shown(&editor, "balanceEdit"), u"12"_s);

    const QString file = app.home(u"plan.txt"_s);
    QFile(file).open(QIODevice::WriteOnly);
    QVERIFY(dropFiles(editor.findChild<MyImageView *>(), {file, app.home(u"other.txt"_s)}));
    QCOMPARE(orders->getNumberOfAttachments(), 1); // only the first of several

    type(&editor, "titleEdit", u"Fence"_s);
    // Print commits the edit, keeps the editor open and fills the chosen template.
    editor.stationeryPopUp()->setCurrentText(u"Reminder"_s);
    press("printInvoiceButton");
    QVERIFY(editor.isVisible());
    QCOMPARE(orders->currentItem()->getTitle(), u"Fence"_s);
    auto *invoice = editor.findChild<CustomInvoiceWindow *>();
    QVERIFY(invoice);
    QVERIFY2(invoice->windowTitle().startsWith(u"Reminder"_s), qPrintable(invoice->windowTitle()));
    QVERIFY(invoice->invoiceTextView()->toPlainText().contains(u"ORD1"_s));
    invoice->saveAsPdf(); // the panel is cancelled: nothing is written
    QCOMPARE(app.platform.panels.last().suggestedName, u"Reminder ORD1.pdf"_s);
    invoice->close();
    // The simple form: the same commit, the user's header and footer around the money.
    type(&editor, "depositEdit", u"5"_s);
    press("simpleInvoiceButton");
    QCOMPARE(orders->currentItem()->getDeposit(), u"5"_s);
    auto *simple = editor.findChildren<CustomInvoiceWindow *>().constLast();
    QVERIFY(simple != invoice);
    QCOMPARE(simple->windowTitle(), u"Invoice"_s);
    QVERIFY(QFile::exists(Invoice::headerPath()));
    const QString currency = app.ledgerwick->getPrefsController()->getCurrency();
    QVERIFY2(simple->invoiceTextView()->toPlainText().contains(u"Deposit: "_s + currency + u"5"_s),
             qPrintable(simple->invoiceTextView()->toPlainText()));
    simple->close();
    press("okButton");
    QVERIFY(!editor.isVisible());
    QCOMPARE(orders->getCount(), 1);
    QCOMPARE(orders->currentItem()->getTitle(), u"Fence"_s);
    QCOMPARE(orders->currentItem()->getValue(), u"12.000000"_s);
}

void tst_EditorWindows::reportsPopUpAndButtonRunReports()
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

void tst_EditorWindows::pickerWindowForwardsTheUsersActions()
{
    RecordTable source;
    for (const QString &name : {u"Bolt"_s, u"Acme"_s, u"Crane"_s}) // ids 1, 2, 3
        source.add(std::make_shared<TestRecord>(name));
    Picker picker;
    QAbstractItemModelTester tester(&picker, QAbstractItemModelTester::FailureReportingMode::QtTest);
    PickerWindow window(&picker);
    QList<dataObject *> picked;
    const auto open = [&] {
        picker.beginfor([&](dataObject *record) { picked << record; }, &source, u"name"_s, u"id"_s, u"Part"_s);
    };
    QTableView *table = window.table();
    const auto shownNames = [&picker] {
        QStringList names;
        for (int row = 0; row < picker.rowCount(); ++row)
            names << picker.index(row, 0).data().toString();
        return names;
    };

    window.searchBox()->setText(u"left over"_s);
    open();
    QVERIFY(window.isVisible());
    QCOMPARE(window.windowTitle(), u"Select Part"_s);
    QCOMPARE(window.searchBox()->text(), u""_s);
    // The headers name the fields shown, and the columns fit the width.
    QCOMPARE(picker.headerData(0, Qt::Horizontal).toString(), u"Name"_s);
    QCOMPARE(picker.headerData(1, Qt::Horizontal).toString(), u"Id"_s);
    QTRY_VERIFY(!table->horizontalScrollBar()->isVisible());
    // Down in the search field moves into the list, on its first row.
    window.searchBox()->setFocus();
    QTest::keyClick(window.searchBox(), Qt::Key_Down);
    QCOMPARE(picker.selectedRow(), 0);
    QTRY_VERIFY(table->hasFocus());

    // Each header click sorts, the first with the flag set: largest first.
    QHeaderView *header = table->horizontalHeader();
    const QPoint section(header->sectionViewportPosition(0) + 5, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, section);
    QCOMPARE(shownNames(), (QStringList{u"Crane"_s, u"Bolt"_s, u"Acme"_s}));
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, section);
    QCOMPARE(shownNames(), (QStringList{u"Acme"_s, u"Bolt"_s, u"Crane"_s}));

    QTest::keyClicks(window.searchBox(), u"cr"_s);
    QCOMPARE(shownNames(), QStringList{u"Crane"_s});
    // Enter in the search field picks the first match, through the dialog's OK.
    window.searchBox()->setFocus();
    QTest::keyClick(window.searchBox(), Qt::Key_Return);
    QVERIFY(!window.isVisible());
    QCOMPARE(picked, QList<dataObject *>{source.getItemById(3)});

    open();
    clickRow(table, table->model()->index(1, 0)); // opening again shows the source's order: Acme
    QVERIFY(!window.isVisible());
    QCOMPARE(picked.last(), source.getItemById(2));

    open();
    clickRow(table, table->model()->index(0, 0), false);
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(!window.isVisible());
    QCOMPARE(picked.size(), 2);
}

QTEST_MAIN(tst_EditorWindows)
#include "tst_editorwindows.moc"
