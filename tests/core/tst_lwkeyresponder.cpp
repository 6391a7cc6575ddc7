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
    void keysReachTheOwnerOrStop_data();
    void keysReachTheOwnerOrStop();
    void withoutTheResponderKeysTravelOn();

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

void TestLwKeyResponder::keysReachTheOwnerOrStop_data()
{
    QTest::addColumn<QList<int>>("keys"); // each a key with its modifiers
    QTest::addColumn<int>("selected");    // the row selected first: -1 none, -2 the first, as opened
    QTest::addColumn<int>("row");         // the current row after
    QTest::addColumn<int>("deletes");
    QTest::addColumn<int>("edits");
    const int shift = Qt::ShiftModifier;
    QTest::addRow("forward delete") << QList<int>{Qt::Key_Delete} << -2 << 0 << 1 << 0;
    QTest::addRow("backspace") << QList<int>{Qt::Key_Backspace} << -2 << 0 << 1 << 0;
    QTest::addRow("shifted delete") << QList<int>{shift | Qt::Key_Delete} << -2 << 0 << 1 << 0;
    QTest::addRow("letters: no type-to-select") << QList<int>{Qt::Key_C, Qt::Key_H, Qt::Key_E} << -2 << 0 << 0 << 0;
    QTest::addRow("arrows still move") << QList<int>{Qt::Key_Down, int(Qt::ControlModifier) | Qt::Key_End, Qt::Key_Up}
                                       << -2 << 1 << 0 << 0;
    QTest::addRow("a key the view ignores") << QList<int>{Qt::Key_F7} << -2 << 0 << 0 << 0;
    QTest::addRow("return") << QList<int>{Qt::Key_Return} << 1 << 1 << 0 << 1;
    QTest::addRow("keypad enter") << QList<int>{int(Qt::KeypadModifier) | Qt::Key_Enter} << 1 << 1 << 0 << 1;
    QTest::addRow("return, nothing selected") << QList<int>{Qt::Key_Return} << -1 << 0 << 0 << 0;
    QTest::addRow("shift return") << QList<int>{shift | Qt::Key_Return} << 1 << 1 << 0 << 0;
}

void TestLwKeyResponder::keysReachTheOwnerOrStop()
{
    QFETCH(QList<int>, keys);
    QFETCH(int, selected);
    QFETCH(int, deletes);
    QFETCH(int, edits);
    if (selected >= 0)
        m_view->selectRow(selected);
    else if (selected == -1)
        m_view->clearSelection();
    for (int key : keys)
        QTest::keyClick(m_view, Qt::Key(key & ~Qt::KeyboardModifierMask),
                        Qt::KeyboardModifiers(key & Qt::KeyboardModifierMask));
    QTEST(m_view->currentIndex().row(), "row");
    QCOMPARE(m_manager->deletes, deletes);
    QCOMPARE(m_manager->edits, edits);
    QCOMPARE(m_manager->lastSender, deletes + edits ? m_responder : nullptr);
    QCOMPARE(m_parent->keys, 0); // nothing travels past the table
}

void TestLwKeyResponder::withoutTheResponderKeysTravelOn()
{
    m_responder->deleteKey(nullptr); // the responder's own deleteKey does nothing
    QCOMPARE(m_manager->deletes, 0);
    m_view->removeEventFilter(m_responder);
    QTest::keyClick(m_view, Qt::Key_F7);
    QCOMPARE(m_parent->keys, 1);
}

QTEST_MAIN(TestLwKeyResponder)
#include "tst_lwkeyresponder.moc"
