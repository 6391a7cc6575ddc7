#include "core/RecordTable.h"
#include "products/Picker.h"
#include "support/TestRecord.h"
#include "support/Widgets.h"
#include "ui/integrityTableView.h"
#include "ui/PickerWindow.h"

#include <QAbstractItemModelTester>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_PickerWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void forwardsTheUsersActions();
};

void tst_PickerWindow::forwardsTheUsersActions()
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
    clickRow(table, table->model()->index(0, 0), false);
    window.buttons()->button(QDialogButtonBox::Ok)->click();
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

QTEST_MAIN(tst_PickerWindow)
#include "tst_pickerwindow.moc"
