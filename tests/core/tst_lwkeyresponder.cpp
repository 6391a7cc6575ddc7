#include "core/lwDataSource.h"
#include "core/lwKeyResponder.h"
#include "support/TestRecord.h"

#include <QKeyEvent>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>

namespace {

class CountingManager : public lwDataSource
{
public:
    void deleteKey(QObject *sender) override
    {
        ++deletes;
        lastSender = sender;
    }
    void edit(QObject *sender) override
    {
        ++edits;
        lastSender = sender;
    }
    QString objectValueForTableColumn(const QString &identifier, int row) const override
    {
        const dataObject *record = getnthVisibleItem(row);
        return record ? record->getFieldByName(identifier) : QString();
    }
    int deletes = 0;
    int edits = 0;
    QObject *lastSender = nullptr;
};

// Records the keys that travel past the table.
class Parent : public QWidget
{
public:
    int keys = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        ++keys;
        event->accept();
    }
};

} // namespace

class TestLwKeyResponder : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void deleteKeysReachTheOwner_data();
    void deleteKeysReachTheOwner();
    void lettersDoNothing();
    void arrowsStillMoveTheSelection();
    void keysTheViewIgnoresGoNoFurther();
    void enterOpensTheSelectedRow_data();
    void enterOpensTheSelectedRow();

private:
    Parent *m_parent = nullptr;
    QTableView *m_view = nullptr;
    CountingManager *m_manager = nullptr;
    lwKeyResponder *m_responder = nullptr;
};

void TestLwKeyResponder::init()
{
    m_parent = new Parent;
    auto *layout = new QVBoxLayout(m_parent);
    m_view = new QTableView(m_parent);
    layout->addWidget(m_view);
    m_manager = new CountingManager;
    m_manager->setParent(m_view);
    m_manager->setColumns({{QStringLiteral("name"), QStringLiteral("Name"), 100}});
    for (const char *name : {"apple", "banana", "cherry"})
        m_manager->add(std::make_shared<TestRecord>(QString::fromLatin1(name)));
    m_view->setModel(m_manager);
    m_manager->setTableSelection(m_view->selectionModel());
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_responder = new lwKeyResponder(m_view);
    m_responder->setOwner(m_manager);
    m_view->installEventFilter(m_responder);
    m_parent->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_parent));
    m_view->setFocus();
    m_view->setCurrentIndex(m_manager->index(0, 0));
}

void TestLwKeyResponder::cleanup()
{
    delete m_parent;
}

void TestLwKeyResponder::deleteKeysReachTheOwner_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addRow("forward delete") << int(Qt::Key_Delete) << int(Qt::NoModifier);
    QTest::addRow("backspace") << int(Qt::Key_Backspace) << int(Qt::NoModifier);
    QTest::addRow("shifted delete") << int(Qt::Key_Delete) << int(Qt::ShiftModifier);
}

void TestLwKeyResponder::deleteKeysReachTheOwner()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QTest::keyClick(m_view, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(m_manager->deletes, 1);
    QCOMPARE(m_manager->lastSender, m_responder);
    QCOMPARE(m_parent->keys, 0);
    // The responder's own deleteKey does nothing.
    m_responder->deleteKey(nullptr);
    QCOMPARE(m_manager->deletes, 1);
}

void TestLwKeyResponder::lettersDoNothing()
{
    QTest::keyClicks(m_view, QStringLiteral("cherry"));
    QCOMPARE(m_view->currentIndex().row(), 0); // no type-to-select
    QCOMPARE(m_manager->deletes, 0);
    QCOMPARE(m_parent->keys, 0);
}

void TestLwKeyResponder::arrowsStillMoveTheSelection()
{
    QTest::keyClick(m_view, Qt::Key_Down);
    QCOMPARE(m_view->currentIndex().row(), 1);
    QTest::keyClick(m_view, Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(m_view->currentIndex().row(), 2);
    QTest::keyClick(m_view, Qt::Key_Up);
    QCOMPARE(m_view->currentIndex().row(), 1);
    QCOMPARE(m_manager->deletes, 0);
}

void TestLwKeyResponder::keysTheViewIgnoresGoNoFurther()
{
    QTest::keyClick(m_view, Qt::Key_F7);
    QTest::keyClick(m_view, Qt::Key_Return);
    QCOMPARE(m_parent->keys, 0);
    // Without the responder the same key travels on to the parent.
    m_view->removeEventFilter(m_responder);
    QTest::keyClick(m_view, Qt::Key_F7);
    QCOMPARE(m_parent->keys, 1);
}

void TestLwKeyResponder::enterOpensTheSelectedRow_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<int>("edits");
    QTest::addRow("return") << int(Qt::Key_Return) << int(Qt::NoModifier) << true << 1;
    QTest::addRow("keypad enter") << int(Qt::Key_Enter) << int(Qt::KeypadModifier) << true << 1;
    QTest::addRow("nothing selected") << int(Qt::Key_Return) << int(Qt::NoModifier) << false << 0;
    QTest::addRow("shift return") << int(Qt::Key_Return) << int(Qt::ShiftModifier) << true << 0;
}

void TestLwKeyResponder::enterOpensTheSelectedRow()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, selected);
    QFETCH(int, edits);
    if (selected)
        m_view->selectRow(1);
    else
        m_view->clearSelection();
    QTest::keyClick(m_view, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(m_manager->edits, edits);
    QCOMPARE(m_manager->lastSender, edits ? m_responder : nullptr);
    QCOMPARE(m_parent->keys, 0);
}

QTEST_MAIN(TestLwKeyResponder)
#include "tst_lwkeyresponder.moc"
