#include "core/PropertyListReader.h"
#include "core/PropertyListWriter.h"
#include "support/CliRunner.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

using Records = QList<QList<QPair<QString, QString>>>;

PropertyListReader::Status read(const QByteArray &data, Records &records, const char *key = "contacts")
{
    records.clear();
    return PropertyListReader::readCollection(data, key, [&](const PropertyListReader::Dict &dict) {
        QList<QPair<QString, QString>> fields;
        for (const auto &field : dict.fields())
            fields.append({QString::fromUtf8(field.key.data(), qsizetype(field.key.size())), field.value});
        records.append(fields);
    });
}

QByteArray wrap(const QByteArray &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>\n";
}

} // namespace

class TestPropertyList : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void writesThePlatformsForm();
    void roundTripsAnyText();
    void readsWhatOtherWritersProduce_data();
    void readsWhatOtherWritersProduce();
    void refusesDamagedFiles_data();
    void refusesDamagedFiles();
    void readsFilesAndTheLockDictionary();
};

void TestPropertyList::writesThePlatformsForm()
{
    PropertyListWriter writer("contacts");
    writer.beginRecord();
    writer.field("company", QStringLiteral("0"));
    writer.field("id", QStringLiteral("1"));
    writer.field("name", QStringLiteral("Fish & Chips <Ltd> \"Q\""));
    writer.endRecord();
    writer.beginRecord();
    writer.field("id", QStringLiteral("2"));
    writer.field("title", QString());
    writer.endRecord();
    writer.finish();
    const QByteArray expected = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                "<plist version=\"1.0\">\n"
                                "<dict>\n"
                                "\t<key>contacts</key>\n"
                                "\t<array>\n"
                                "\t\t<dict>\n"
                                "\t\t\t<key>company</key>\n"
                                "\t\t\t<string>0</string>\n"
                                "\t\t\t<key>id</key>\n"
                                "\t\t\t<string>1</string>\n"
                                "\t\t\t<key>name</key>\n"
                                "\t\t\t<string>Fish &amp; Chips &lt;Ltd&gt; \"Q\"</string>\n"
                                "\t\t</dict>\n"
                                "\t\t<dict>\n"
                                "\t\t\t<key>id</key>\n"
                                "\t\t\t<string>2</string>\n"
                                "\t\t\t<key>title</key>\n"
                                "\t\t\t<string></string>\n"
                                "\t\t</dict>\n"
                                "\t</array>\n"
                                "</dict>\n"
                                "</plist>\n";
    QCOMPARE(writer.data(), expected);

    // A lone surrogate cannot be stored; it becomes the replacement character.
    QByteArray escaped;
    PropertyListWriter::appendEscaped(escaped,
                                      QStringLiteral("abcdefgh") + QChar(0xD800) + QStringLiteral("ijklmnop<"));
    QCOMPARE(escaped, QByteArray("abcdefgh\xEF\xBF\xBDijklmnop&lt;"));
}

void TestPropertyList::roundTripsAnyText()
{
    const QStringList values{QStringLiteral(""),
                             QStringLiteral("&amp; literally"),
                             QStringLiteral("a\r\nb\rc\nd"),
                             QStringLiteral("\ttabbed\t"),
                             QStringLiteral("  spaced  "),
                             QStringLiteral("]]> <![CDATA["),
                             QString::fromUtf8("Zoë Ångström – 東京 😀"),
                             QStringLiteral("<string>x</string>"),
                             QStringLiteral("'\"quotes\"'"),
                             QString(1 << 20, QLatin1Char('x'))};
    PropertyListWriter writer("orders");
    for (const QString &value : values) {
        writer.beginRecord();
        writer.field("description", value);
        writer.field("id", QStringLiteral("1"));
        writer.endRecord();
    }
    writer.finish();
    Records records;
    QCOMPARE(read(writer.data(), records, "orders"), PropertyListReader::Status::Ok);
    QCOMPARE(records.size(), values.size());
    for (qsizetype i = 0; i < values.size(); ++i) {
        QCOMPARE(records.at(i).at(0).first, QStringLiteral("description"));
        QCOMPARE(records.at(i).at(0).second, values.at(i));
    }
}

void TestPropertyList::readsWhatOtherWritersProduce_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("expected"); // records as key=value;... separated by |

    QTest::addRow("other indentation and key order")
        << wrap("\n  <dict><key>contacts</key>\n<array>\n  <dict>\n    <key>name</key> <string>Ann</string>\n"
                "    <key>id</key><string>4</string></dict></array></dict>\n")
        << u"name=Ann;id=4"_s;
    QTest::addRow("empty string element") << wrap("<dict><key>contacts</key><array><dict><key>title</key><string/"
                                                  "><key>x</key><string></string></dict></array></dict>")
                                          << u"title=;x="_s;
    QTest::addRow("entities and character references")
        << wrap("<dict><key>contacts</key><array><dict><key>name</key><string>A&amp;B &lt;&gt; &quot;&apos; "
                "&#233;&#x1F600;</string></dict></array></dict>")
        << QString::fromUtf8("name=A&B <> \"' é😀");
    QTest::addRow("cdata and comments")
        << wrap("<!-- top --><dict><!-- a --><key>contacts</key><array><dict><key>name</key>"
                "<string>x<![CDATA[<&>]]>y<!-- gone -->z</string></dict><!-- b --></array></dict>")
        << u"name=x<&>yz"_s;
    QTest::addRow("other value types")
        << wrap(
               "<dict><key>contacts</key><array><dict><key>id</key><integer>12</integer><key>rate</key><real>1.5</real>"
               "<key>sent</key><true/><key>gone</key><false/><key>when</key><date>2007-03-01T14:05:09Z</date>"
               "<key>blob</key><data>AAE=</data></dict></array></dict>")
        << u"id=12;rate=1.5;sent=YES;gone=NO;when=2007-03-01T14:05:09Z;blob=AAE="_s;
    QTest::addRow("byte order mark and doctype")
        << QByteArray(
               "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
               "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\"><dict><key>contacts</key>"
               "<array><dict><key>id</key><string>1</string></dict><dict/></array></dict></plist>")
        << u"id=1|"_s;
    QTest::addRow("empty collection") << wrap("<dict><key>contacts</key><array/></dict>") << u""_s;
    QTest::addRow("no plist element")
        << QByteArray("<dict><key>contacts</key><array><dict><key>id</key><string>5</string></dict></array></dict>")
        << u"id=5"_s;
}

void TestPropertyList::readsWhatOtherWritersProduce()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, expected);
    Records records;
    QCOMPARE(read(document, records), PropertyListReader::Status::Ok);
    QStringList got;
    for (const auto &record : records) {
        QStringList pairs;
        for (const auto &[key, value] : record)
            pairs << key + QLatin1Char('=') + value;
        got << pairs.join(QLatin1Char(';'));
    }
    QCOMPARE(got.join(QLatin1Char('|')), expected);

    // The same document in UTF-16 reads the same.
    QString text = QString::fromUtf8(document);
    QByteArray utf16("\xFF\xFE", 2);
    utf16.append(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    Records again;
    QCOMPARE(read(utf16, again), PropertyListReader::Status::Ok);
    QCOMPARE(again, records);
}

void TestPropertyList::refusesDamagedFiles_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addRow("empty") << QByteArray();
    QTest::addRow("not xml") << QByteArray("hello");
    QTest::addRow("unterminated comment") << QByteArray("<!-- forever <plist>");
    QTest::addRow("root is an array") << wrap("<array><dict/></array>");
    QTest::addRow("collection key missing") << wrap("<dict><key>orders</key><array/></dict>");
    QTest::addRow("collection is not an array") << wrap("<dict><key>contacts</key><string>x</string></dict>");
    QTest::addRow("truncated") << QByteArray(
        "<plist><dict><key>contacts</key><array><dict><key>id</key><string>1</str");
    QTest::addRow("cut in a value") << QByteArray("<plist><dict><key>contacts</key><array><dict><key>id</key><string>1");
    QTest::addRow("cut after a tag") << QByteArray("<plist><dict><key>contacts</key><array>");
    QTest::addRow("mismatched tags") << wrap(
        "<dict><key>contacts</key><array><dict><key>id</key><string>1</key></dict></array></dict>");
    QTest::addRow("unknown entity") << wrap(
        "<dict><key>contacts</key><array><dict><key>id</key><string>&nbsp;</string></dict></array></dict>");
    QTest::addRow("zero reference") << wrap(
        "<dict><key>contacts</key><array><dict><key>id</key><string>&#0;</string></dict></array></dict>");
    QTest::addRow("key without value") << wrap(
        "<dict><key>contacts</key><array><dict><key>id</key></dict></array></dict>");
    QTest::addRow("element in a value") << wrap(
        "<dict><key>contacts</key><array><dict><key>id</key><string>a<b/></string></dict></array></dict>");
    QTest::addRow("garbage after") << wrap("<dict><key>contacts</key><array/></dict>") + "junk";
}

void TestPropertyList::refusesDamagedFiles()
{
    QFETCH(QByteArray, document);
    Records records;
    QCOMPARE(read(document, records), PropertyListReader::Status::Unreadable);
    QVERIFY(!PropertyListReader::lastError().isEmpty());
}

void TestPropertyList::readsFilesAndTheLockDictionary()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("contacts.xml"));
    Records records;
    QCOMPARE(PropertyListReader::readCollection(path, "contacts", [](const auto &) {}),
             PropertyListReader::Status::Missing);

    PropertyListWriter writer("contacts");
    writer.beginRecord();
    writer.field("id", QStringLiteral("9"));
    writer.endRecord();
    writer.finish();
    QVERIFY(PropertyListWriter::writeFile(path, writer.data()));
    int count = 0;
    QCOMPARE(PropertyListReader::readCollection(path, "contacts",
                                                [&](const PropertyListReader::Dict &dict) {
                                                    ++count;
                                                    QVERIFY(dict.find("id"));
                                                    QCOMPARE(*dict.find("id"), QStringLiteral("9"));
                                                    QVERIFY(!dict.find("name"));
                                                }),
             PropertyListReader::Status::Ok);
    QCOMPARE(count, 1);

    // An empty existing file is damaged, not missing.
    QVERIFY(writeBytes(dir.filePath(QStringLiteral("orders.xml")), QByteArray()));
    QCOMPARE(
        PropertyListReader::readCollection(dir.filePath(QStringLiteral("orders.xml")), "orders", [](const auto &) {}),
        PropertyListReader::Status::Unreadable);

    // A write into a folder that does not exist fails and says why.
    QString error;
    QVERIFY(!PropertyListWriter::writeFile(dir.filePath(QStringLiteral("nowhere/x.xml")), "x", &error));
    QVERIFY(!error.isEmpty());

    std::vector<std::pair<QString, QString>> lock;
    QCOMPARE(
        PropertyListReader::readDictionary(
            PropertyListWriter::dictionary({{QStringLiteral("datetime"), QStringLiteral("2007-03-01 14:05:09 +0000")}}),
            lock),
        PropertyListReader::Status::Ok);
    QCOMPARE(lock.size(), size_t(1));
    QCOMPARE(lock.at(0).second, QStringLiteral("2007-03-01 14:05:09 +0000"));
    QCOMPARE(PropertyListReader::readDictionary("<plist><array/></plist>", lock),
             PropertyListReader::Status::Unreadable);
}

QTEST_GUILESS_MAIN(TestPropertyList)
#include "tst_propertylist.moc"
