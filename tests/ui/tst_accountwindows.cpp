// The task and bill windows and the bills' list bar reach their managers:
// the rules themselves are the managers' own tests.
#include "accounts/ActionManager.h"
#include "accounts/BillManager.h"
#include "support/AppFixture.h"
#include "support/Widgets.h"
#include "ui/ActionEditor.h"
#include "ui/BillEditor.h"
#include "ui/BillListControls.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_AccountWindows : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void taskEditorCalculatesAndCommits();
    void billEditorCalculatesAndCommits();
    void billBarEnablesItsStartWithThePeriod();
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

void tst_AccountWindows::taskEditorCalculatesAndCommits()
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

void tst_AccountWindows::billEditorCalculatesAndCommits()
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

void tst_AccountWindows::billBarEnablesItsStartWithThePeriod()
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

QTEST_MAIN(tst_AccountWindows)
#include "tst_accountwindows.moc"
