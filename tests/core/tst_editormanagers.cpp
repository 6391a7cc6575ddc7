// One contract for every manager with an editor: each row is a manager with
// its texts and quirks; a new manager adds a row here.
#include "contacts/ContactManager.h"
#include "core/lwEditorManager.h"
#include "orders/OrderManager.h"
#include "support/AppFixture.h"
#include "support/LogCapture.h"
#include "support/TestRecord.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

struct ManagerRow
{
    const char *name;
    std::function<lwEditorManagerBase *(Ledgerwick &)> manager;
    // Adds three records to the manager's list.
    std::function<void(AppFixture &)> addThree;
    QString deleteAlert; // "title | question | buttons"
    QString closeLogLine; // "": closing logs no line of its own
    bool cancelKeepsCreating; // else a cancel takes the new record out again
    QString file;             // the record file a commit writes
};

const std::vector<ManagerRow> &rows()
{
    static const std::vector<ManagerRow> table{
        {"items", [](Ledgerwick &l) -> lwEditorManagerBase * { return l.getItemManager(); },
         [](AppFixture &app) {
             for (const char *code : {"P1", "P2", "P3"})
                 app.addItem(QString::fromLatin1(code), u"Widget"_s, u"1"_s);
         },
         u"Delete Item | Do you want to delete the selected item from the database? | OK, Cancel"_s,
         u"itemmanager windowWillClose:"_s, true, u"items.xml"_s},
        {"contacts", [](Ledgerwick &l) -> lwEditorManagerBase * { return l.getContactManager(); },
         [](AppFixture &app) {
             for (const char *name : {"Ann", "Bea", "Cy"})
                 app.addContact(QString::fromLatin1(name));
         },
         u"Delete contact | Do you want to delete the selected item from the database? | OK, Cancel"_s,
         u"contactmanager windowWillClose:"_s, false, u"contacts.xml"_s},
        {"actions", [](Ledgerwick &l) -> lwEditorManagerBase * { return l.getActionManager(); },
         [](AppFixture &app) {
             for (const char *title : {"Call", "Quote", "Visit"}) {
                 auto action = std::make_shared<Action>();
                 action->setTitle(QString::fromLatin1(title));
                 app.ledgerwick->getActionManager()->add(action);
             }
         },
         u"Delete Task | Do you want to delete the selected item from the database? | OK, Cancel"_s, {}, false,
         u"actions.xml"_s},
        {"bills", [](Ledgerwick &l) -> lwEditorManagerBase * { return l.getBillManager(); },
         [](AppFixture &app) {
             for (const char *name : {"Gas", "Rent", "Water"}) {
                 auto bill = std::make_shared<Bill>();
                 bill->setName(QString::fromLatin1(name));
                 app.ledgerwick->getBillManager()->add(bill);
             }
         },
         u"Delete Bill | Do you want to delete the selected item from the database? | OK, Cancel"_s, {}, true,
         u"bills.xml"_s},
        {"orders", [](Ledgerwick &l) -> lwEditorManagerBase * { return l.getOrderManager(); },
         [](AppFixture &app) {
             for (const char *title : {"Fence", "Gate", "Shed"}) {
                 auto order = std::make_shared<Order>();
                 order->setTitle(QString::fromLatin1(title));
                 order->setTaxRate(u"20.00"_s); // the global rate: opening it asks nothing
                 app.ledgerwick->getOrderManager()->add(order);
             }
             app.ledgerwick->getOrderManager()->filter(nullptr);
         },
         u"Delete Order | Do you want to delete the selected item from the database? | OK, Cancel"_s, QString(),
         false, u"orders.xml"_s},
    };
    return table;
}

} // namespace

class tst_EditorManagers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void createAndFinishAddsAndSaves_data() { managers(); }
    void createAndFinishAddsAndSaves();
    void readOnlyRefusesEveryChange_data() { managers(); }
    void readOnlyRefusesEveryChange();
    void cancelDropsTheEdit_data() { managers(); }
    void cancelDropsTheEdit();
    void editTakesTheSelectedRecord_data() { managers(); }
    void editTakesTheSelectedRecord();
    void closingTheWindowCommitsUntilDisconnected_data() { managers(); }
    void closingTheWindowCommitsUntilDisconnected();
    void deleteAsksFirst_data();
    void deleteAsksFirst();

private:
    void managers();
    const ManagerRow &row() const { return rows().at(size_t(m_row)); }
    void load();

    std::unique_ptr<AppFixture> m_app;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    lwEditorManagerBase *m_manager = nullptr;
    int m_row = 0;
};

void tst_EditorManagers::managers()
{
    QTest::addColumn<int>("row");
    for (size_t i = 0; i < rows().size(); ++i)
        QTest::newRow(rows()[i].name) << int(i);
}

void tst_EditorManagers::init()
{
    m_app = std::make_unique<AppFixture>();
    QVERIFY(m_app->isValid());
}

void tst_EditorManagers::cleanup()
{
    m_tester.reset();
    m_app.reset();
}

void tst_EditorManagers::load()
{
    QFETCH(int, row);
    m_row = row;
    m_manager = rows().at(size_t(row)).manager(*m_app->ledgerwick);
    m_tester = std::make_unique<QAbstractItemModelTester>(m_manager);
    rows().at(size_t(row)).addThree(*m_app);
}

void tst_EditorManagers::createAndFinishAddsAndSaves()
{
    load();
    QSignalSpy shown(m_manager, &lwEditorManagerBase::editorShown);
    QSignalSpy hidden(m_manager, &lwEditorManagerBase::editorHidden);
    m_manager->create(nullptr);
    QCOMPARE(shown.count(), 1);
    QVERIFY(m_manager->isEditorShown());
    QVERIFY(m_manager->isCreating());
    dataObject *record = m_manager->currentRecord();
    QVERIFY(record);
    QCOMPARE(m_manager->getCount(), 3); // added only when committed
    QVERIFY(!QFile::exists(m_app->bundleFile(row().file)));

    m_manager->finish(nullptr);
    QCOMPARE(hidden.count(), 1);
    QVERIFY(!m_manager->isEditorShown());
    QVERIFY(!m_manager->isCreating());
    QCOMPARE(m_manager->getCount(), 4);
    QCOMPARE(m_manager->getnthItem(3), record);
    QVERIFY(record->getVisible()); // filtered
    QVERIFY(QFile::exists(m_app->bundleFile(row().file)));
}

void tst_EditorManagers::readOnlyRefusesEveryChange()
{
    load();
    m_app->select(m_manager, 1);
    m_manager->edit(nullptr);
    m_app->ledgerwick->setReadOnly(true);
    const QString refusal = u"Read-only mode | Database is in read-only mode. | OK"_s;

    m_manager->finish(nullptr); // only hides
    QVERIFY(!m_manager->isEditorShown());
    QCOMPARE(m_app->platform.alerts.size(), 1);
    QCOMPARE(AppFixture::alertText(m_app->platform.alerts.last()), refusal);

    dataObject *before = m_manager->currentRecord();
    m_manager->create(nullptr);
    QVERIFY(!m_manager->isEditorShown());
    QCOMPARE(m_manager->currentRecord(), before);
    QCOMPARE(AppFixture::alertText(m_app->platform.alerts.last()), refusal);

    m_app->select(m_manager, 0);
    m_manager->deleteKey(nullptr); // the question, then the refusal
    QCOMPARE(m_app->platform.alerts.size(), 4);
    QCOMPARE(AppFixture::alertText(m_app->platform.alerts.last()), refusal);
    QCOMPARE(m_manager->getCount(), 3);
    QVERIFY(!QFile::exists(m_app->bundleFile(row().file)));
}

void tst_EditorManagers::cancelDropsTheEdit()
{
    load();
    m_manager->create(nullptr);
    const int handedOut = m_manager->highestId();
    m_manager->cancel(nullptr);
    QVERIFY(!m_manager->isEditorShown());
    QCOMPARE(m_manager->getCount(), 3);
    QCOMPARE(m_manager->highestId(), handedOut);
    QVERIFY(!QFile::exists(m_app->bundleFile(row().file)));
    QCOMPARE(m_manager->isCreating(), row().cancelKeepsCreating);
    if (!row().cancelKeepsCreating)
        return;
    // Deliberately left set: the next commit adds whatever record is in the
    // editor, even an existing one, a second time.
    m_app->select(m_manager, 0);
    m_manager->edit(nullptr);
    dataObject *existing = m_manager->currentRecord();
    m_manager->finish(nullptr);
    QCOMPARE(m_manager->getCount(), 4);
    QCOMPARE(m_manager->getnthItem(3), existing);
}

void tst_EditorManagers::editTakesTheSelectedRecord()
{
    load();
    QSignalSpy shown(m_manager, &lwEditorManagerBase::editorShown);
    m_manager->edit(nullptr);
    QCOMPARE(shown.count(), 0);
    QVERIFY(!m_manager->currentRecord());

    m_app->select(m_manager, 2);
    QSignalSpy changed(m_manager, &lwEditorManagerBase::editorStateChanged);
    m_manager->edit(nullptr);
    QCOMPARE(shown.count(), 1);
    QVERIFY(changed.count() >= 1);
    QCOMPARE(m_manager->currentRecord(), m_manager->getnthVisibleItem(2));
    QVERIFY(!m_manager->isCreating());

    // A record of another kind never reaches the editor.
    TestRecord stranger;
    changed.clear();
    m_manager->setItem(&stranger);
    m_manager->setItem(nullptr);
    QCOMPARE(changed.count(), 0);
}

void tst_EditorManagers::closingTheWindowCommitsUntilDisconnected()
{
    load();
    LogCapture log;
    m_manager->windowWillClose(nullptr); // never opened: nothing to commit
    QVERIFY(log.lines().isEmpty());

    m_manager->create(nullptr);
    m_manager->windowWillClose(nullptr);
    if (!row().closeLogLine.isEmpty())
        QCOMPARE(log.lines().value(0), row().closeLogLine);
    QCOMPARE(m_manager->getCount(), 4);
    QVERIFY(!m_manager->isEditorShown());
    QVERIFY(QFile::exists(m_app->bundleFile(row().file)));

    // Detached at quit, the window's closing commits nothing.
    m_manager->disconnectWindow(nullptr);
    m_manager->create(nullptr);
    m_manager->windowWillClose(nullptr);
    QCOMPARE(m_manager->getCount(), 4);
}

void tst_EditorManagers::deleteAsksFirst_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("answer");
    for (size_t i = 0; i < rows().size(); ++i) {
        QTest::addRow("%s, OK", rows()[i].name) << int(i) << 0;
        QTest::addRow("%s, Cancel", rows()[i].name) << int(i) << 1;
    }
}

void tst_EditorManagers::deleteAsksFirst()
{
    QFETCH(int, answer);
    load();
    m_manager->deleteKey(nullptr); // nothing selected: nothing asked
    QVERIFY(m_app->platform.alerts.isEmpty());

    dataObject *first = m_manager->getnthItem(0);
    dataObject *second = m_manager->getnthItem(1);
    m_app->select(m_manager, 1);
    m_app->platform.alertAnswers.enqueue(answer);
    m_manager->deleteKey(nullptr);
    QCOMPARE(m_app->platform.alerts.size(), 1);
    QCOMPARE(AppFixture::alertText(m_app->platform.alerts.first()), row().deleteAlert);
    QCOMPARE(m_manager->getCount(), answer == 0 ? 2 : 3);
    QCOMPARE(m_manager->getnthItem(0), first);
    QCOMPARE(m_manager->getnthItem(1) == second, answer != 0);
    QVERIFY(!QFile::exists(m_app->bundleFile(row().file))); // saving is left to the editors
}

QTEST_GUILESS_MAIN(tst_EditorManagers)
#include "tst_editormanagers.moc"
