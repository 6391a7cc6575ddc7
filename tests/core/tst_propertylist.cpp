#include "core/PropertyListReader.h"
#include "core/PropertyListWriter.h"
#include "support/CliRunner.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>

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

// The writer's escaping rules spelled out plainly: what XML 1.0 cannot hold
// becomes U+FFFD, the mark-up and carriage returns are escaped, and Qt
// converts the result to UTF-8.
QByteArray referenceEscaped(const QString &text, qsizetype &replaced)
{
    QString clean;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            clean += text.mid(i++, 2);
            continue;
        }
        const bool allowed =
            c == u'\t' || c == u'\n' || c == u'\r' || (c >= 0x20 && !QChar::isSurrogate(c) && c < 0xFFFE);
        replaced += !allowed;
        clean += allowed ? QChar(c) : QChar(QChar::ReplacementCharacter);
    }
    clean.replace(u'&', u"&amp;"_s).replace(u'<', u"&lt;"_s).replace(u'>', u"&gt;"_s).replace(u'\r', u"&#13;"_s);
    return clean.toUtf8();
}

// Text made mostly of plain ASCII runs, as record fields are, with every
// kind of unit the writer treats apart mixed in.
QString randomText(QRandomGenerator &random)
{
    static const char16_t special[] = {
        u'&', u'<',  u'>',  u'\r', u'\n',  u'\t',  0x00,   0x1F,   0x7F,   0x80,   0xE9,
        0xFF, 0x100, 0x7FF, 0x800, 0x20AC, 0xD7FF, 0xE000, 0xFFFD, 0xFFFE, 0xFFFF,
    };
    const int length = random.bounded(8) == 0 ? random.bounded(200) : random.bounded(40);
    QString text;
    while (text.size() < length) {
        const int pick = random.bounded(100);
        if (pick < 70) {
            for (int n = random.bounded(1, 24); n > 0; --n) // a plain ASCII run
                text += QChar(char16_t(random.bounded(0x20, 0x7F)));
        } else if (pick < 80) {
            text += QChar(special[random.bounded(int(std::size(special)))]);
        } else if (pick < 85) {
            text += QChar(char16_t(random.bounded(0x20))); // any control
        } else if (pick < 90) {
            text += QChar(char16_t(random.bounded(0x80, 0x10000))); // anything in the BMP, surrogates too
        } else if (pick < 95) {
            const char32_t beyondBmp = char32_t(random.bounded(0x10000, 0x110000));
            text += QChar(QChar::highSurrogate(beyondBmp));
            text += QChar(QChar::lowSurrogate(beyondBmp));
        } else {
            text += QChar(char16_t(random.bounded(0xD800, 0xE000))); // a surrogate alone
        }
    }
    return text;
}

} // namespace

class TestPropertyList : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void writesThePlatformsForm();
    void roundTripsAnyText();
    void escapesAsTheReferenceDoes();
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
    writer.field(PropertyListWriter::Key("id"), 2);
    writer.flag(PropertyListWriter::Key("sent"), false);
    writer.flag(PropertyListWriter::Key("sold"), true);
    writer.field(PropertyListWriter::Key("title"), QString());
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
                                "\t\t\t<key>sent</key>\n"
                                "\t\t\t<string>NO</string>\n"
                                "\t\t\t<key>sold</key>\n"
                                "\t\t\t<string>YES</string>\n"
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

void TestPropertyList::escapesAsTheReferenceDoes()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    QRandomGenerator random(seed);
    // A short key is copied whole from its padded mark-up, a long one by its length.
    const PropertyListWriter::Key keys[] = {PropertyListWriter::Key("name"),
                                            PropertyListWriter::Key(std::string(48, 'k'))};
    PropertyListWriter writer(qsizetype(0));
    for (int round = 0; round < 20000; ++round) {
        const QString made = randomText(random);
        // In a block of its own size, so that AddressSanitizer sees any read beyond the text.
        const auto units = std::make_unique<char16_t[]>(size_t(made.size()));
        std::copy_n(made.utf16(), made.size(), units.get());
        const QString text = QString::fromRawData(reinterpret_cast<const QChar *>(units.get()), made.size());
        qsizetype replaced = 0;
        const QByteArray expected = referenceEscaped(text, replaced);
        QByteArray escaped("x");
        PropertyListWriter::appendEscaped(escaped, text);
        const PropertyListWriter::Key &key = keys[round % 2];
        writer.restart();
        writer.field(key, text);
        const QByteArray field = QByteArray(writer.bytes(), writer.size());
        const QByteArray expectedField =
            QByteArray(key.opening().data(), qsizetype(key.opening().size())) + expected + "</string>\n";
        if (escaped != "x" + expected || field != expectedField || writer.replacedCharacters() != replaced) {
            const QByteArray units(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
            qWarning("seed %u, text in UTF-16: %s", seed, units.toHex().constData());
            QCOMPARE(escaped, "x" + expected);
            QCOMPARE(field, expectedField);
            QCOMPARE(writer.replacedCharacters(), replaced);
        }
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
