#include "core/DatabasePaths.h"
#include "prefs/PrefsController.h"
#include "products/Item.h"
#include "products/ItemManager.h"
#include "support/AppFixture.h"
#include "support/CliRunner.h"
#include "support/TestRecord.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList codesShown(const ItemManager &items)
{
    QStringList codes;
    for (int row = 0; row < items.numberOfRowsInTableView(); ++row)
        codes << items.getnthVisibleItem(row)->getFieldByName(u"code"_s);
    return codes;
}

QImage picture(QColor colour)
{
    QImage image(6, 4, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

// Every name an item answers by name, in the order it tests them.
const QStringList kReadNames = {
    u"bought"_s,        u"code"_s,           u"buttoncode"_s,     u"condition"_s,  u"decreaseqty"_s, u"description"_s,
    u"comments"_s,      u"exportsitemoss"_s, u"hidebuttoncode"_s, u"item"_s,       u"id"_s,          u"price"_s,
    u"qty"_s,           u"quantitymethod"_s, u"optimumqty"_s,     u"reorderqty"_s, u"shipping"_s,    u"status"_s,
    u"supplier"_s,      u"variation"_s,      u"warnlevel"_s,      u"stockcost"_s,  u"stockretail"_s, u"taxcode"_s,
    u"websitefolder"_s,
};

} // namespace

class tst_ItemManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_app.reset(); }

    void popUpsStartFilled();
    void createGivesPrefixIdAndStockWarning();
    void finishCopiesTheControlsButNotTheStatus();
    void finishKeepsFieldsWhosePopUpShowsNothing();
    void createSimilarCopiesTheCommittedItem();
    void editLoadsTheSelectedItem();
    void deleteImageRemovesTheFileAtOnce();
    void pictureFilesAndWebsiteFolder();
    void pickSupplierOpensThePickerOnSuppliers();
    void filter_data();
    void filter();
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
    std::shared_ptr<Item> addItem(const QString &code, const QString &name, const QString &qty)
    {
        return m_app->addItem(code, name, qty);
    }
    void select(int row) { m_app->select(m_items, row); }
    QString itemsFile() const { return m_app->bundleFile(u"items.xml"_s); }
    QString site() const { return m_app->home(u"site"_s); }

    std::unique_ptr<AppFixture> m_app;
    ItemManager *m_items = nullptr;
};

void tst_ItemManager::init()
{
    m_app = std::make_unique<AppFixture>();
    QVERIFY(QDir().mkpath(site() + u"/objects"_s));
    m_items = m_app->ledgerwick->getItemManager();
    new QAbstractItemModelTester(m_items, m_items);
    m_app->addContact(u"Acme Supplies"_s, 5);
}

void tst_ItemManager::popUpsStartFilled()
{
    // The website export knows the quantity methods by their exact text.
    QCOMPARE(m_items->editorState().quantityMethod.entries,
             (QStringList{u"Just when out of stock"_s, u"Out of stock / in stock"_s, u"Show quantity"_s}));
    // Only "S" is taxed on an order line; the preferences name the tax.
    m_app->ledgerwick->getPrefsController()->controls().taxStatement = u"GST"_s;
    m_app->ledgerwick->getPrefsController()->controls().taxRate = u"15"_s;
    QCOMPARE(m_items->taxCodeDescription(u"S"_s), u"Standard: GST at 15.00%"_s);
    QCOMPARE(m_items->taxCodeDescription(u"Z"_s), u"Zero rated: no tax"_s);
}

void tst_ItemManager::createGivesPrefixIdAndStockWarning()
{
    addItem(u"P1"_s, u"Widget"_s, u"4"_s);
    addItem(u"P2"_s, u"Gadget"_s, u"1"_s);
    m_app->ledgerwick->getPrefsController()->controls().itemPrefix = u"SKU-"_s;
    m_app->ledgerwick->getPrefsController()->controls().stockWarn = u"7"_s;
    m_items->create(nullptr);
    QCOMPARE(m_items->currentItem()->getID(), 3);
    QCOMPARE(m_items->currentItem()->getCode(), u"SKU-3"_s);
    QCOMPARE(m_items->currentItem()->getWarnlevel(), u"7"_s);
    QCOMPARE(m_items->editorState().code, u"SKU-3"_s);
    QCOMPARE(m_items->editorState().warnLevel, u"7"_s);
}

void tst_ItemManager::finishCopiesTheControlsButNotTheStatus()
{
    // The text fields are checked control by control in the editor's test,
    // the commit cycle in the managers' contract; here the boxes and pop-ups.
    m_items->create(nullptr);
    ItemEditorState &s = m_items->editorState();
    s.code = u"W-1"_s;
    s.qty = u"3"_s;
    s.decreaseQty = true;
    s.condition.selectTitle(u"Used"_s);
    s.taxCode.selectTitle(u"Z"_s);
    s.status.selectTitle(u"Discontinued"_s);
    s.supplierName = u"Acme Supplies"_s;
    s.exportSitemoss = true;
    s.hideButtonCode = false;
    s.websiteFolder = site();
    s.quantityMethod.selectTitle(u"Show quantity"_s);

    m_items->finish(nullptr);

    const Item *item = m_items->currentItem();
    const QStringList names{u"decreaseqty"_s,    u"condition"_s,      u"taxcode"_s, u"supplier"_s,
                            u"exportsitemoss"_s, u"hidebuttoncode"_s, u"status"_s};
    QStringList values;
    for (const QString &name : names)
        values << item->getFieldByName(name);
    QCOMPARE(values, (QStringList{u"YES"_s, u"Used"_s, u"Z"_s, u"5"_s, u"YES"_s, u"NO"_s, u""_s}));
    QCOMPARE(item->getQuantityMethod(), u"Show quantity"_s);

    // The website object is written.
    QFile object(site() + u"/objects/LwkItemW-1"_s);
    QVERIFY(object.open(QIODevice::ReadOnly));
    QVERIFY(object.readAll().contains("Quantity:3"));
}

void tst_ItemManager::finishKeepsFieldsWhosePopUpShowsNothing()
{
    auto item = addItem(u"P1"_s, u"Widget"_s, u"2"_s);
    item->setCondition(u"Mint"_s);
    item->setTaxCode(u"T9"_s);
    item->setQuantityMethod(u"Show quantity"_s);
    item->setSupplier(u"5"_s);
    select(0);
    m_items->edit(nullptr);
    ItemEditorState &s = m_items->editorState();
    // Titles the lists lack leave the condition and tax code pop-ups empty.
    QCOMPARE(s.condition.index, -1);
    QCOMPARE(s.taxCode.index, -1);
    s.quantityMethod.index = -1;
    s.supplierName = u"Nobody Known"_s;
    s.name = QString(); // an emptied field
    m_items->finish(nullptr);
    QCOMPARE(item->getCondition(), u"Mint"_s);
    QCOMPARE(item->getTaxCode(), u"T9"_s);
    QCOMPARE(item->getQuantityMethod(), u"Show quantity"_s);
    QCOMPARE(item->getSupplier(), u"0"_s); // an unknown supplier name
    QCOMPARE(item->getItem(), u""_s);
    QCOMPARE(m_items->getCount(), 1);
    QVERIFY(!QFile::exists(DatabasePaths::itemImageFile(item->getID()))); // an empty well stores nothing
}

void tst_ItemManager::createSimilarCopiesTheCommittedItem()
{
    auto original = addItem(u"P1"_s, u"Widget"_s, u"2"_s);
    original->setStatus(u"Available"_s);
    select(0);
    m_items->edit(nullptr);
    ItemEditorState &s = m_items->editorState();
    s.price = u"9.99"_s;
    s.supplierName = u"Acme Supplies"_s;
    s.websiteFolder = site();
    s.image = picture(Qt::blue);

    m_items->createSimilar(nullptr);

    QCOMPARE(original->getPrice(), u"9.99"_s); // committed first
    QVERIFY(m_items->isEditorShown());
    Item *similar = m_items->currentItem();
    QCOMPARE(similar->getID(), 2);
    QCOMPARE(s.code, u"P2"_s);
    QCOMPARE(s.name, u"Widget"_s); // the editor keeps the committed values
    QCOMPARE(s.price, u"9.99"_s);

    m_items->finish(nullptr);
    QCOMPARE(m_items->getCount(), 2);
    QCOMPARE(m_items->getnthItem(1), similar);
    QCOMPARE(similar->getItem(), u"Widget"_s);
    QCOMPARE(similar->getPrice(), u"9.99"_s);
    QCOMPARE(similar->getSupplier(), u"5"_s);
    QCOMPARE(similar->getStatus(), u""_s); // never copied from the editor
    // The well's picture is stored for each, the original and the copy.
    for (int id : {1, 2})
        QCOMPARE(QImage(DatabasePaths::itemImageFile(id)).pixelColor(0, 0), QColor(Qt::blue));
}

void tst_ItemManager::editLoadsTheSelectedItem()
{
    addItem(u"P1"_s, u"Widget"_s, u"2"_s);
    auto item = addItem(u"P2"_s, u"Gadget"_s, u"7"_s);
    item->setSupplier(u"5"_s);
    item->setCondition(u"Used"_s);
    item->setStatus(u"Sold to trade"_s);
    item->setTaxCode(u"E"_s);
    item->setQuantityMethod(u"Out of stock / in stock"_s);
    item->setDecreaseQty(true);
    item->setImage(picture(Qt::green));
    select(1);
    m_items->edit(nullptr);
    const ItemEditorState &s = m_items->editorState();
    QCOMPARE(s.code, u"P2"_s);
    QCOMPARE(s.supplierName, u"Acme Supplies"_s);
    QCOMPARE(s.condition.selectedTitle(), u"Used"_s);
    QCOMPARE(s.status.selectedTitle(), u"Sold to trade"_s); // shown although the list lacked it
    // The next item's unknown status takes its place; the pop-up does not grow.
    const int entries = int(s.status.entries.size());
    item->setStatus(u"Sold at auction"_s);
    m_items->edit(nullptr);
    QCOMPARE(s.status.selectedTitle(), u"Sold at auction"_s);
    QCOMPARE(int(s.status.entries.size()), entries);
    QVERIFY(!s.status.entries.contains(u"Sold to trade"_s));
    QCOMPARE(s.taxCode.selectedTitle(), u"E"_s);
    QCOMPARE(s.quantityMethod.selectedTitle(), u"Out of stock / in stock"_s);
    QVERIFY(s.decreaseQty);
    QCOMPARE(s.image.pixelColor(0, 0), QColor(Qt::green));

    // An empty tax code or quantity method leaves the pop-up as it was.
    item->setTaxCode(u""_s);
    item->setQuantityMethod(u""_s);
    item->setCondition(u""_s);
    m_items->edit(nullptr);
    QCOMPARE(s.taxCode.selectedTitle(), u"E"_s);
    QCOMPARE(s.quantityMethod.selectedTitle(), u"Out of stock / in stock"_s);
    QCOMPARE(s.condition.index, -1);
}

void tst_ItemManager::deleteImageRemovesTheFileAtOnce()
{
    auto item = addItem(u"P1"_s, u"Widget"_s, u"2"_s);
    item->setImage(picture(Qt::red));
    const QString file = DatabasePaths::itemImageFile(1);
    QVERIFY(QFile::exists(file));
    select(0);
    m_items->edit(nullptr);
    QVERIFY(!m_items->editorState().image.isNull());

    m_items->deleteImage(nullptr);
    QVERIFY(m_items->editorState().image.isNull());
    QVERIFY(!QFile::exists(file));
    m_items->cancel(nullptr); // even a cancelled edit does not bring it back
    QVERIFY(!QFile::exists(file));
}

void tst_ItemManager::pictureFilesAndWebsiteFolder()
{
    m_items->create(nullptr);
    const QString png = m_app->home(u"photo.png"_s);
    QVERIFY(picture(Qt::yellow).save(png));
    const QString notAPicture = m_app->home(u"notes.png"_s);
    QVERIFY(writeBytes(notAPicture, "plain text"));

    QVERIFY(!m_items->setImageFromFile(notAPicture));
    QVERIFY(m_items->editorState().image.isNull());
    QVERIFY(m_items->setImageFromFile(png));
    QCOMPARE(m_items->editorState().image.pixelColor(0, 0), QColor(Qt::yellow));

    // The chooser: a cancelled panel changes nothing, an unreadable file beeps.
    m_items->editorState().image = QImage();
    m_items->chooseImage(nullptr);
    QVERIFY(m_items->editorState().image.isNull());
    m_app->platform.panelAnswers.enqueue(notAPicture);
    m_items->chooseImage(nullptr);
    QCOMPARE(m_app->platform.beeps, 1);
    m_app->platform.panelAnswers.enqueue(png);
    m_items->chooseImage(nullptr);
    QVERIFY(!m_items->editorState().image.isNull());
    QVERIFY(m_app->platform.panels.last().fileTypes.contains(u"png"_s));

    m_app->platform.panelAnswers.enqueue(site());
    m_items->selectWebsiteLocation(nullptr);
    QCOMPARE(m_items->editorState().websiteFolder, site());
    QVERIFY(m_app->platform.panels.last().chooseDirectories);
}

void tst_ItemManager::pickSupplierOpensThePickerOnSuppliers()
{
    m_items->create(nullptr);
    m_items->setPickerOpener({});
    m_items->setSupplierSource(nullptr);
    m_items->pickSupplier(nullptr); // no picker: nothing happens

    RecordTable suppliers;
    QStringList asked;
    std::function<void(dataObject *)> answer;
    m_items->setPickerOpener([&](lwDataSource *source, const QString &field1, const QString &field2,
                                 const QString &type, std::function<void(dataObject *)> done) {
        asked << (source == &suppliers ? u"suppliers"_s : u"other"_s) << field1 << field2 << type;
        answer = std::move(done);
    });
    m_items->pickSupplier(nullptr);
    QVERIFY(asked.isEmpty()); // nor without the supplier list
    m_items->setSupplierSource(&suppliers);
    m_items->pickSupplier(nullptr);
    QCOMPARE(asked, (QStringList{u"suppliers"_s, u"name"_s, u"address"_s, u"Supplier"_s}));

    QSignalSpy changed(m_items, &ItemManager::editorStateChanged);
    answer(m_app->ledgerwick->getContactManager()->getItemById(5));
    QCOMPARE(m_items->editorState().supplierName, u"Acme Supplies"_s);
    QCOMPARE(changed.count(), 1);
    m_items->finish(nullptr);
    QCOMPARE(m_items->currentItem()->getSupplier(), u"5"_s);
}

void tst_ItemManager::filter_data()
{
    QTest::addColumn<QString>("search");
    QTest::addColumn<QString>("stock");
    QTest::addColumn<QStringList>("shown");
    const QString all = u"All"_s;
    const QString inStock = ItemManager::stockFilterEntries().at(1);
    QTest::addRow("everything") << u""_s << all << QStringList{u"abc-1"_s, u"B2"_s, u"C3"_s, u"D4"_s, u"E5"_s};
    QTest::addRow("in stock, empty qty kept") << u""_s << inStock << QStringList{u"abc-1"_s, u"C3"_s};
    QTest::addRow("name and description") << u"widget"_s << all << QStringList{u"abc-1"_s, u"C3"_s};
    QTest::addRow("search and stock") << u"WIDGET"_s << inStock << QStringList{u"abc-1"_s, u"C3"_s};
    QTest::addRow("code, any case") << u"ABC"_s << all << QStringList{u"abc-1"_s};
    QTest::addRow("condition") << u"used"_s << all << QStringList{u"B2"_s};
    QTest::addRow("status, out of stock") << u"discontinued"_s << inStock << QStringList{};
    QTest::addRow("status") << u"discontinued"_s << all << QStringList{u"D4"_s};
    QTest::addRow("price not searched") << u"9.99"_s << all << QStringList{};
    QTest::addRow("supplier not searched") << u"77"_s << all << QStringList{};
}

void tst_ItemManager::filter()
{
    QFETCH(QString, search);
    QFETCH(QString, stock);
    auto a = addItem(u"abc-1"_s, u"Widget"_s, u"5"_s);
    a->setPrice(u"9.99"_s);
    a->setSupplier(u"77"_s);
    addItem(u"B2"_s, u"Gadget"_s, u"0"_s)->setCondition(u"Used"_s);
    addItem(u"C3"_s, u"Sprocket"_s, u""_s)->setDescription(u"Spare for the widget"_s);
    addItem(u"D4"_s, u"Bolt"_s, u"-2"_s)->setStatus(u"Discontinued"_s);
    addItem(u"E5"_s, u"Nut"_s, u"none"_s);
    ItemEditorState &s = m_items->editorState();
    s.searchText = search;
    s.stockFilter.selectTitle(stock);
    QSignalSpy reset(m_items, &QAbstractItemModel::modelReset);

    m_items->filter(nullptr);

    QTEST(codesShown(*m_items), "shown");
    QCOMPARE(reset.count(), 1);
}

void tst_ItemManager::writeByName_data()
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

void tst_ItemManager::writeByName()
{
    QFETCH(QString, name);
    QFETCH(QString, value);

    Item item;
    QTEST(namesChangedByWriting(item, kReadNames, name, value), "changed");
    QCOMPARE(item.getFieldByName(u"decreaseQty"_s), u""_s); // the file's mixed-case key is no item name
}

void tst_ItemManager::quantityMethodIsRefusedByName()
{
    Item item;
    QVERIFY(!item.setFieldByName(u"quantitymethod"_s, u"Show quantity"_s));
    QCOMPARE(item.getFieldByName(u"quantitymethod"_s), u""_s);
    // The editor and the database reader set it directly; it reads by name.
    item.setQuantityMethod(u"Show quantity"_s);
    QVERIFY(!item.setFieldByName(u"quantitymethod"_s, u"Just when out of stock"_s));
    QCOMPARE(item.getFieldByName(u"quantitymethod"_s), u"Show quantity"_s);
}

void tst_ItemManager::adjustQty_data()
{
    QTest::addColumn<QString>("qty");
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("result");

    QTest::addRow("empty, down one") << u""_s << -1 << -1;
    QTest::addRow("non-numeric counts as 0") << u"lots"_s << 3 << 3;
    QTest::addRow("leading integer, fraction dropped") << u"2.9 boxes"_s << 1 << 3;
    QTest::addRow("below zero") << u"1"_s << -4 << -3;
}

void tst_ItemManager::adjustQty()
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

void tst_ItemManager::stockFigures_data()
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

void tst_ItemManager::stockFigures()
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

void tst_ItemManager::contains_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("found");

    for (const char *name : {"code", "condition", "description", "item", "status"})
        QTest::addRow("%s", name) << QString::fromLatin1(name) << true;
    for (const char *name : {"supplier", "price", "variation", "taxcode"})
        QTest::addRow("not %s", name) << QString::fromLatin1(name) << false;
}

void tst_ItemManager::contains()
{
    QFETCH(QString, field);

    Item item;
    QVERIFY(item.setFieldByName(field, u"abc-1"_s));
    QTEST(item.contains(u"ABC"_s), "found");
    QVERIFY(!item.contains(u"xyz"_s));
    QVERIFY(!item.contains(u""_s));
}

void tst_ItemManager::imageIsWrittenAsTiffAndReadBack()
{
    const QString folder =
        m_app->home() + u"/Library/Application Support/Ledgerwick/ledgerwickdatabase.lwkdb/ItemImages"_s;
    QCOMPARE(DatabasePaths::itemImageFile(12), folder + u"/12.tiff"_s);
    QCOMPARE(DatabasePaths::databaseLocation(), QFileInfo(folder).path());
    QCOMPARE(DatabasePaths::databaseLocation(u"~/db.lwkdb"_s), m_app->home() + u"/db.lwkdb"_s);
    QCOMPARE(DatabasePaths::expandTilde(u"~"_s), m_app->home());
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

void tst_ItemManager::noImageMakesOnlyTheFolder()
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

QTEST_GUILESS_MAIN(tst_ItemManager)
#include "tst_itemmanager.moc"
