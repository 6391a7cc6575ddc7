#include "core/DatabasePaths.h"
#include "products/Item.h"
#include "support/TestRecord.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Every name an item answers by name, in the order it tests them.
const QStringList kReadNames = {
    u"bought"_s,        u"code"_s,           u"buttoncode"_s,     u"condition"_s,  u"decreaseqty"_s, u"description"_s,
    u"comments"_s,      u"exportsitemoss"_s, u"hidebuttoncode"_s, u"item"_s,       u"id"_s,          u"price"_s,
    u"qty"_s,           u"quantitymethod"_s, u"optimumqty"_s,     u"reorderqty"_s, u"shipping"_s,    u"status"_s,
    u"supplier"_s,      u"variation"_s,      u"warnlevel"_s,      u"stockcost"_s,  u"stockretail"_s, u"taxcode"_s,
    u"websitefolder"_s,
};

} // namespace

class tst_Item : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void writeByName_data();
    void writeByName();
    void quantityMethodIsRefusedByName();
    void adjustQty_data();
    void adjustQty();
    void stockFigures_data();
    void stockFigures();
    void contains_data();
    void contains();
    void imageIsWrittenAsTiffAndReadBack();
    void noImageMakesOnlyTheFolder();

private:
    QTemporaryDir m_home;
};

void tst_Item::initTestCase()
{
    QVERIFY(m_home.isValid());
    qputenv("HOME", m_home.path().toLocal8Bit());
}

void tst_Item::writeByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("changed"); // the names that read differently afterwards, in read order

    QTest::addRow("code") << u"code"_s << u"x"_s << QStringList{u"code"_s};
    const QStringList description{u"description"_s, u"comments"_s};
    QTest::addRow("description") << u"description"_s << u"x"_s << description;
    QTest::addRow("comments is the description") << u"comments"_s << u"x"_s << description;
    QTest::addRow("qty") << u"qty"_s << u"4"_s << QStringList{u"qty"_s, u"reorderqty"_s};
    QTest::addRow("optimumqty") << u"optimumqty"_s << u"9"_s << QStringList{u"optimumqty"_s, u"reorderqty"_s};
    QTest::addRow("id takes the leading integer") << u"id"_s << u"12abc"_s << QStringList{u"id"_s};
    QTest::addRow("decreaseqty YES") << u"decreaseqty"_s << u"YES"_s << QStringList{u"decreaseqty"_s};
    QTest::addRow("hidebuttoncode: yes is not YES")
        << u"hidebuttoncode"_s << u"yes"_s << QStringList{u"hidebuttoncode"_s};
    for (const char *name : {"reorderqty", "stockcost", "stockretail"})
        QTest::addRow("%s is read-only", name) << QString::fromLatin1(name) << u"5"_s << QStringList{};
    QTest::addRow("names are case-sensitive") << u"Code"_s << u"x"_s << QStringList{};
    QTest::addRow("a null value is ignored") << u"code"_s << QString() << QStringList{};
}

void tst_Item::writeByName()
{
    QFETCH(QString, name);
    QFETCH(QString, value);

    Item item;
    QTEST(namesChangedByWriting(item, kReadNames, name, value), "changed");
    QCOMPARE(item.getFieldByName(u"decreaseQty"_s), u""_s); // the file's mixed-case key is no item name
}

void tst_Item::quantityMethodIsRefusedByName()
{
    Item item;
    QVERIFY(!item.setFieldByName(u"quantitymethod"_s, u"Show quantity"_s));
    QCOMPARE(item.getFieldByName(u"quantitymethod"_s), u""_s);
    // The editor and the database reader set it directly; it reads by name.
    item.setQuantityMethod(u"Show quantity"_s);
    QVERIFY(!item.setFieldByName(u"quantitymethod"_s, u"Just when out of stock"_s));
    QCOMPARE(item.getFieldByName(u"quantitymethod"_s), u"Show quantity"_s);
}

void tst_Item::adjustQty_data()
{
    QTest::addColumn<QString>("qty");
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("result");

    QTest::addRow("empty, down one") << u""_s << -1 << -1;
    QTest::addRow("non-numeric counts as 0") << u"lots"_s << 3 << 3;
    QTest::addRow("leading integer, fraction dropped") << u"2.9 boxes"_s << 1 << 3;
    QTest::addRow("below zero") << u"1"_s << -4 << -3;
}

void tst_Item::adjustQty()
{
    QFETCH(QString, qty);
    QFETCH(int, delta);
    QFETCH(int, result);

    Item item;
    item.setQty(qty);
    QCOMPARE(item.adjustQty(delta), result);
    QCOMPARE(item.getQty(), QString::number(result));
    QCOMPARE(item.incQty(), result + 1);
    QCOMPARE(item.decQty(), result);
}

void tst_Item::stockFigures_data()
{
    QTest::addColumn<QString>("bought");
    QTest::addColumn<QString>("qty");
    QTest::addColumn<QString>("optimum");
    QTest::addColumn<QString>("stockCost");
    QTest::addColumn<QString>("reorder");

    QTest::addRow("stock of 4 at 2.50") << u"2.50"_s << u"4"_s << u""_s << u"10.00"_s << u"-4.00"_s;
    QTest::addRow("optimum above stock") << u"1"_s << u"4"_s << u"10"_s << u"4.00"_s << u"6.00"_s;
    QTest::addRow("empty optimum") << u""_s << u"3"_s << u""_s << u"0.00"_s << u"-3.00"_s;
    QTest::addRow("empty quantity") << u"5"_s << u""_s << u"2"_s << u"0.00"_s << u"2.00"_s;
    QTest::addRow("comma stops the number") << u"1,250.00"_s << u"1.5"_s << u"2"_s << u"1.50"_s << u"0.50"_s;
}

void tst_Item::stockFigures()
{
    QFETCH(QString, bought);
    QFETCH(QString, qty);
    QFETCH(QString, optimum);
    QFETCH(QString, stockCost);

    Item item;
    item.setBought(bought);
    item.setPrice(u"9.99"_s); // never used: retail comes from the buying price
    item.setQty(qty);
    item.setOptimumQty(optimum);
    QCOMPARE(item.getFieldByName(u"stockcost"_s), stockCost);
    QCOMPARE(item.getFieldByName(u"stockretail"_s), stockCost);
    QTEST(item.getFieldByName(u"reorderqty"_s), "reorder");
}

void tst_Item::contains_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("found");

    for (const char *name : {"code", "condition", "description", "item", "status"})
        QTest::addRow("%s", name) << QString::fromLatin1(name) << true;
    for (const char *name : {"supplier", "price", "variation", "taxcode"})
        QTest::addRow("not %s", name) << QString::fromLatin1(name) << false;
}

void tst_Item::contains()
{
    QFETCH(QString, field);

    Item item;
    QVERIFY(item.setFieldByName(field, u"abc-1"_s));
    QTEST(item.contains(u"ABC"_s), "found");
    QVERIFY(!item.contains(u"xyz"_s));
    QVERIFY(!item.contains(u""_s));
}

void tst_Item::imageIsWrittenAsTiffAndReadBack()
{
    const QString folder =
        m_home.path() + u"/Library/Application Support/Ledgerwick/ledgerwickdatabase.lwkdb/ItemImages"_s;
    QCOMPARE(DatabasePaths::itemImageFile(12), folder + u"/12.tiff"_s);
    QCOMPARE(DatabasePaths::databaseLocation(), QFileInfo(folder).path());
    QCOMPARE(DatabasePaths::databaseLocation(u"~/db.lwkdb"_s), m_home.path() + u"/db.lwkdb"_s);
    QCOMPARE(DatabasePaths::expandTilde(u"~"_s), m_home.path());
    QCOMPARE(DatabasePaths::expandTilde(u"~other/x"_s), u"~other/x"_s);
    Item item;
    item.setID(12);
    QVERIFY(item.getImage().isNull()); // no folder yet

    QImage picture(4, 3, QImage::Format_RGB32);
    picture.fill(qRgb(200, 30, 60));
    picture.setPixel(1, 2, qRgb(0, 255, 0));
    item.setImage(picture);

    QFile file(folder + u"/12.tiff"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray head = file.read(4);
    QVERIFY2(head == QByteArray("II*\0", 4) || head == QByteArray("MM\0*", 4), head.toHex().constData());
    QCOMPARE(QImageReader(file.fileName()).format(), QByteArray("tiff"));
    file.close();

    Item reread;
    reread.setID(12);
    QCOMPARE(reread.getImage().pixel(1, 2), qRgb(0, 255, 0));
    // Once read, the picture is kept even when the file goes.
    QVERIFY(file.remove());
    QCOMPARE(reread.getImage().pixel(0, 0), qRgb(200, 30, 60));
    Item other;
    other.setID(12);
    QVERIFY(other.getImage().isNull());
}

void tst_Item::noImageMakesOnlyTheFolder()
{
    QVERIFY(QDir(DatabasePaths::itemImagesFolder()).removeRecursively());
    Item item;
    item.setID(5);
    item.setImage(QImage()); // no folder, no file: the folder is made, nothing fails
    QVERIFY(QDir(DatabasePaths::itemImagesFolder()).exists());
    QVERIFY(!QFile::exists(DatabasePaths::itemImageFile(5)));

    // The kept picture given again is written again, under the current id.
    QImage picture(2, 2, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    item.setImage(picture);
    item.setID(6);
    item.setImage(item.getImage());
    QVERIFY(QFile::exists(DatabasePaths::itemImageFile(6)));
}

QTEST_GUILESS_MAIN(tst_Item)
#include "tst_item.moc"
