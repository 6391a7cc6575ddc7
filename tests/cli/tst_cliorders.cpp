// The order commands of the command-line tool, run as a user would on a
// bundle written by the model.
#include "contacts/Contact.h"
#include "orders/BOMManager.h"
#include "orders/OrderManager.h"
#include "support/AppFixture.h"
#include "support/CliRunner.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_CliOrders : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_app.reset(); }
    void exportsOrdersThroughTheListsFilter_data();
    void exportsOrdersThroughTheListsFilter();
    void repeatsCopiesWhatIsDueOnce();

private:
    CliRun cli(QStringList args)
    {
        args << u"--db"_s << m_app->home(u"db.lwkdb"_s);
        return runCli(QStringLiteral(LW_CLI), args, m_app->home());
    }
    std::unique_ptr<AppFixture> m_app;
};

void tst_CliOrders::init()
{
    m_app = std::make_unique<AppFixture>();
    Ledgerwick &l = *m_app->ledgerwick;
    auto ann = m_app->addContact(u"Annabel"_s);
    const struct { const char *title, *status, *last; } orders[] = {
        {"Fence", "Quote", ""}, {"Gate", "Complete", ""}, {"Hedge", "Complete", "01/01/09"}};
    for (const auto &o : orders) {
        auto order = std::make_shared<Order>();
        order->setTitle(QString::fromLatin1(o.title));
        order->setStatus(QString::fromLatin1(o.status));
        l.getOrderManager()->add(order);
        order->setOrderNum(u"ORD"_s + QString::number(order->getID()));
        order->setRepeats(*o.last != 0);
        order->setLastRepeatDate(QString::fromLatin1(o.last));
    }
    static_cast<Order *>(l.getOrderManager()->getItemById(2))->setContactId(ann->getID());
    l.getBOMManager()->setCurrentOrder(3);
    l.getBOMManager()->create(nullptr);
    l.getBOMManager()->setObjectValueForTableColumn(u"9.5"_s, u"cost"_s, 0);
    QVERIFY(l.writeDatabase(&l));
    m_app->ledgerwick.reset(); // the bundle's writer ends, as the app would before the commands run
}

void tst_CliOrders::exportsOrdersThroughTheListsFilter_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("out");
    QTest::addRow("incomplete at start") << QStringList() << u"\"Title\"\r\"Fence\"\r"_s;
    QTest::addRow("all") << QStringList{u"--filter"_s, u"All"_s} << u"\"Title\"\r\"Fence\"\r\"Gate\"\r\"Hedge\"\r"_s;
    QTest::addRow("customer") << QStringList{u"--search"_s, u"annab"_s} << u"\"Title\"\r\"Gate\"\r"_s;
}

void tst_CliOrders::exportsOrdersThroughTheListsFilter()
{
    QFETCH(QStringList, options);
    const CliRun run = cli(QStringList{u"export"_s, u"orders"_s, u"--csv"_s, u"--columns"_s, u"title:Title"_s} + options);
    QCOMPARE(run.status, 0);
    QTEST(run.out, "out");
}

void tst_CliOrders::repeatsCopiesWhatIsDueOnce()
{
    const CliRun run = cli({u"repeats"_s});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, u"ORD3 -> ORD4\n"_s); // one period per pass, however far behind
    QVERIFY2(run.err.contains(u"Order 'Hedge' has been duplicated. The number of the new Order is ORD4"_s),
             qPrintable(run.err));
    QVERIFY(!QFile::exists(m_app->bundleFile(u"lock.xml"_s)));
    // The copy's lines, through the export of one order's lines.
    QCOMPARE(cli({u"export"_s, u"materials"_s, u"--csv"_s, u"--order"_s, u"4"_s}).out,
             u"\"Code\",\"Item\",\"Qty\",\"Unit\",\"Cost\",\"Total\",\"Tax\"\r"
             "\"\",\"New Item\",\"1\",\"\",\"9.50\",\"9.50\",\"\"\r"_s);
    QCOMPARE(cli({u"repeats"_s}).out, u"ORD3 -> ORD5\n"_s);
}

QTEST_GUILESS_MAIN(tst_CliOrders)
#include "tst_cliorders.moc"
