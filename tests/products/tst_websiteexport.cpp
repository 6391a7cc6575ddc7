#include "core/lwDataSource.h"
#include "products/Item.h"
#include "products/WebsiteExport.h"
#include "support/CliRunner.h"
#include "support/LogCapture.h"
#include "support/ScriptedPlatform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

// What every fragment starts and ends with.
const QString kOpen = u"<div class = \"singlelinepayment\"><div class = \"price\">"_s;
const QString kClose = u"\n<div style = \"clear:both; height:1px;\"></div>\n</div>"_s;

std::shared_ptr<Item> makeItem(const QString &code, const QString &folder, const QString &price = u"12.00"_s)
{
    auto item = std::make_shared<Item>();
    item->setCode(code);
    item->setWebsiteFolder(folder);
    item->setPrice(price);
    item->setQty(u"3"_s);
    item->setQuantityMethod(u"Out of stock / in stock"_s);
    item->setButtonCode(u"<form>buy</form>"_s);
    return item;
}

} // namespace

class tst_WebsiteExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void fragment_data();
    void fragment();
    void writesUtf8OverAnEarlierFile();
    void tildeIsNotExpanded();
    void codesOutsideTheObjectsFolderAreRefused_data();
    void codesOutsideTheObjectsFolderAreRefused();
    void bulkExportTakesFlaggedItemsInOrder();
    void chooseFolder_data();
    void chooseFolder();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString site() const { return m_dir->filePath(u"site"_s); }
};

void tst_WebsiteExport::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    QVERIFY(QDir().mkpath(site() + u"/objects"_s));
}

void tst_WebsiteExport::cleanup()
{
    m_dir.reset();
}

void tst_WebsiteExport::fragment_data()
{
    QTest::addColumn<QString>("variation");
    QTest::addColumn<QString>("price");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("qty");
    QTest::addColumn<bool>("hideButton");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("expected");

    const QString inOut = u"Out of stock / in stock"_s;
    const QString show = u"Show quantity"_s;
    // What lies between the fragment's fixed start and end.
    auto row = [](const char *name, const QString &price, const QString &method, const QString &qty, bool hide,
                  const QString &middle, const QString &variation = {}, const QString &button = u"B"_s) {
        QTest::addRow("%s", name) << variation << price << method << qty << hide << button << kOpen + middle + kClose;
    };
    row("in stock, whole pounds", u"12.00"_s, inOut, u"3"_s, true,
        u"<strong>&pound;12</strong><% smt:instock %></div>\nB"_s);
    row("out of stock hides the button", u"12.00"_s, inOut, u"0"_s, true,
        u"<strong>&pound;12</strong><% smt:OOS %></div>\n"_s);
    row("out of stock keeps the button when not hidden", u"12.00"_s, inOut, u"0"_s, false,
        u"<strong>&pound;12</strong><% smt:OOS %></div>\nB"_s);
    row("qty read up to the first non-digit", u"4.99"_s, inOut, u"3 boxes"_s, true,
        u"<strong>&pound;4.99</strong><% smt:instock %></div>\nB"_s);
    row("show quantity in stock has class OOS", u"12.00"_s, show, u"5"_s, true,
        u"<strong>&pound;12</strong><span class = \"OOS\">Quantity:5</span></div>\nB"_s);
    row("show quantity out of stock has class instock", u"12.00"_s, show, u"0"_s, true,
        u"<strong>&pound;12</strong><span class = \"instock\">Quantity:0</span></div>\n"_s);
    row("just when out of stock, none left", u"12.00"_s, u"Just when out of stock"_s, u"0"_s, true,
        u"<strong>&pound;12</strong><% smt:OOS %></div>\n"_s);
    row("no method shows no stock", u"12.00"_s, u""_s, u"0"_s, false, u"<strong>&pound;12</strong></div>\nB"_s);
    row("removal is literal", u"1.005"_s, inOut, u"1"_s, true,
        u"<strong>&pound;15</strong><% smt:instock %></div>\nB"_s);
    // One pass over the text: the ".00" that the removal itself brings together stays.
    row("removal is one pass", u"5.0.000"_s, inOut, u"1"_s, true,
        u"<strong>&pound;5.00</strong><% smt:instock %></div>\nB"_s);
    row("variation loses its .00 too", u"3.00"_s, inOut, u"1"_s, true,
        u"1 kg : <strong>&pound;3</strong><% smt:instock %></div>\nB"_s, u"1.00 kg"_s);
    row("button code is left as it is", u"2.00"_s, u""_s, u"1"_s, true,
        u"<strong>&pound;2</strong></div>\n<input value=\"2.00\">\n<b>&amp;</b>"_s, {},
        u"<input value=\"2.00\">\n<b>&amp;</b>"_s);
}

void tst_WebsiteExport::fragment()
{
    QFETCH(QString, variation);
    QFETCH(QString, price);
    QFETCH(QString, method);
    QFETCH(QString, qty);
    QFETCH(bool, hideButton);
    QFETCH(QString, button);
    Item item;
    item.setVariation(variation);
    item.setPrice(price);
    item.setQuantityMethod(method);
    item.setQty(qty);
    item.setHideButtonCode(hideButton);
    item.setButtonCode(button);
    QTEST(WebsiteExport::fragment(item), "expected");
}

void tst_WebsiteExport::writesUtf8OverAnEarlierFile()
{
    const QString path = site() + u"/objects/LwkItemP12"_s;
    QVERIFY(writeBytes(path, QByteArray(4096, 'x')));
    auto item = makeItem(u"P12"_s, site()); // no trailing slash
    item->setVariation(u"Größe ½"_s);
    LogCapture log;
    QVERIFY(WebsiteExport::exportItemAsSitemossObject(*item));
    QCOMPARE(fileBytes(path), QByteArray("<div class = \"singlelinepayment\"><div class = \"price\">"
                                         "Gr\xc3\xb6\xc3\x9f"
                                         "e \xc2\xbd : <strong>&pound;12</strong><% smt:instock %></div>\n"
                                         "<form>buy</form>\n<div style = \"clear:both; height:1px;\"></div>\n</div>"));
    QCOMPARE(log.lines(), QStringList());
    // Nothing left beside it (the atomic write's temporary file is gone).
    QCOMPARE(QDir(site() + u"/objects"_s).entryList(QDir::Files), QStringList{u"LwkItemP12"_s});
}

void tst_WebsiteExport::tildeIsNotExpanded()
{
    // "~" is an ordinary folder name here: with the working folder holding a
    // folder of that name, the object lands there and not in the home folder.
    const QByteArray oldHome = qgetenv("HOME");
    const QString oldCurrent = QDir::currentPath();
    QVERIFY(QDir().mkpath(m_dir->filePath(u"home/sites/mysite/objects"_s)));
    QVERIFY(QDir().mkpath(m_dir->filePath(u"work/~/sites/mysite/objects"_s)));
    qputenv("HOME", QFile::encodeName(m_dir->filePath(u"home"_s)));
    QVERIFY(QDir::setCurrent(m_dir->filePath(u"work"_s)));

    const auto item = makeItem(u"P1"_s, Item().getWebsiteFolder());
    const bool written = WebsiteExport::exportItemAsSitemossObject(*item);
    QDir::setCurrent(oldCurrent);
    qputenv("HOME", oldHome);

    QVERIFY(written);
    QCOMPARE(fileBytes(m_dir->filePath(u"work/~/sites/mysite/objects/LwkItemP1"_s)),
             WebsiteExport::fragment(*item).toUtf8());
    QVERIFY(!QFileInfo::exists(m_dir->filePath(u"home/sites/mysite/objects/LwkItemP1"_s)));
}

void tst_WebsiteExport::codesOutsideTheObjectsFolderAreRefused_data()
{
    QTest::addColumn<QString>("code");
    QTest::addRow("climbs out") << u"../LwkItemX"_s;
    QTest::addRow("into a sub-folder") << u"a/b"_s;
    QTest::addRow("backslash") << u"a\\b"_s;
}

void tst_WebsiteExport::codesOutsideTheObjectsFolderAreRefused()
{
    QFETCH(QString, code);
    // Folders the path could reach if it were written.
    QVERIFY(QDir().mkpath(site() + u"/objects/LwkItema"_s));
    QVERIFY(QDir().mkpath(site() + u"/objects/LwkItem"_s));
    const auto item = makeItem(code, site() + u"/"_s);
    LogCapture log;
    QVERIFY(!WebsiteExport::exportItemAsSitemossObject(*item));
    QCOMPARE(log.lines(), QStringList{u"Not exporting the item with the code \""_s + code +
                                      u"\": its page object would not be a file of the objects folder ("_s + site() +
                                      u"/objects/LwkItem"_s + code + u")"_s});
    QCOMPARE(QDir(site()).entryList(QDir::Files), QStringList());
    QCOMPARE(QDir(site() + u"/objects"_s).entryList(QDir::Files), QStringList());
    QCOMPARE(QDir(site() + u"/objects/LwkItema"_s).entryList(QDir::Files), QStringList());
    QCOMPARE(QDir(site() + u"/objects/LwkItem"_s).entryList(QDir::Files), QStringList());
}

void tst_WebsiteExport::bulkExportTakesFlaggedItemsInOrder()
{
    const QString other = m_dir->filePath(u"other/"_s);
    QVERIFY(QDir().mkpath(other + u"objects"_s));

    lwDataSource items;
    auto shown = makeItem(u"A"_s, site()), hidden = makeItem(u"B"_s, other, u"8.00"_s);
    auto unflagged = makeItem(u"C"_s, site());
    auto first = makeItem(u"DUP"_s, site(), u"1.00"_s), second = makeItem(u"DUP"_s, site(), u"2.00"_s);
    auto lostA = makeItem(u"L1"_s, m_dir->filePath(u"gone1"_s)), lostB = makeItem(u"L2"_s, m_dir->filePath(u"gone2"_s));
    hidden->setVisible(false);
    for (const auto &item : {shown, lostB, hidden, unflagged, first, lostA, second}) {
        item->setExportSitemoss(item != unflagged);
        items.add(item);
    }

    ScriptedPlatform platform;
    LogCapture log;
    WebsiteExport::exportAsSitemossObjects(items, &platform);

    QCOMPARE(QDir(site() + u"/objects"_s).entryList(QDir::Files, QDir::Name),
             (QStringList{u"LwkItemA"_s, u"LwkItemDUP"_s}));
    QCOMPARE(fileBytes(site() + u"/objects/LwkItemA"_s), WebsiteExport::fragment(*shown).toUtf8());
    QCOMPARE(fileBytes(other + u"objects/LwkItemB"_s), WebsiteExport::fragment(*hidden).toUtf8());
    // The later of two items with one code is the one left on disk.
    QCOMPARE(fileBytes(site() + u"/objects/LwkItemDUP"_s), WebsiteExport::fragment(*second).toUtf8());
    // Failures are logged in collection order and do not stop the export.
    QCOMPARE(log.lines(), (QStringList{
                              u"Unsuccessful exporting data to "_s + m_dir->filePath(u"gone2/objects/LwkItemL2\n"_s),
                              u"Unsuccessful exporting data to "_s + m_dir->filePath(u"gone1/objects/LwkItemL1\n"_s),
                          }));
    QVERIFY(!QFileInfo::exists(m_dir->filePath(u"gone1"_s))); // no folder is made for a failed object
    QCOMPARE(platform.alerts.size(), 1);                      // one alert at the end, however many failed
}

void tst_WebsiteExport::chooseFolder_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("startsIn");
    QTest::addColumn<QString>("answer"); // "": the panel is cancelled and the folder kept
    const QString chosen = u"/home/me/sites/newshop"_s;
    QTest::addRow("trailing slash") << u"/srv/www/shop/"_s << u"/srv/www"_s << chosen;
    QTest::addRow("no trailing slash") << u"/srv/www/shop"_s << u"/srv/www"_s << chosen;
    QTest::addRow("under home") << u"~/sites/mysite/"_s << QDir::homePath() + u"/sites"_s << chosen;
    QTest::addRow("bare name") << u"shop"_s << u""_s << chosen;
    QTest::addRow("cancelled") << u"~/sites/mysite/"_s << QDir::homePath() + u"/sites"_s << u""_s;
}

void tst_WebsiteExport::chooseFolder()
{
    QFETCH(QString, current);
    QFETCH(QString, answer);
    ScriptedPlatform platform;
    platform.panelAnswers.enqueue(answer);
    QCOMPARE(WebsiteExport::selectWebsiteLocation(&platform, current), answer.isEmpty() ? current : answer);
    QCOMPARE(platform.panels.size(), 1);
    const Platform::Panel &panel = platform.panels[0];
    QCOMPARE(panel.title, u"Choose a Sitemoss website folder"_s);
    QCOMPARE(panel.prompt, u"Choose"_s);
    QCOMPARE(panel.nameLabel, u"Folder name"_s);
    QVERIFY(panel.chooseDirectories);
    QTEST(panel.directory, "startsIn");
    QVERIFY(platform.alerts.isEmpty());
}

QTEST_GUILESS_MAIN(tst_WebsiteExport)
#include "tst_websiteexport.moc"
