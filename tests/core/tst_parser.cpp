// The application's own XML reader: Parser, DbItem, lwToolBox::replaceSubstring.

#include "core/DbItem.h"
#include "core/lwToolBox.h"
#include "core/Parser.h"
#include "support/CliRunner.h"
#include "support/LogCapture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QString nameOrNone(const QString &text)
{
    return text.isNull() ? u"(none)"_s : text;
}

// One line per item: "name=data [parent, grandparent]", " new" for a new record;
// "(none)" for a null text, so that an empty value shows as such.
QString describe(const DbItem &item)
{
    return item.getName() % u'=' % nameOrNone(item.getData()) % u" ["_s % nameOrNone(item.getParentName()) % u", "_s %
           nameOrNone(item.getGrandParentName()) % u']' % (item.isNewParent() ? u" new"_s : QString());
}

// Walks the whole input; a bounded loop so that a broken reader fails rather than hangs.
QStringList walk(Parser &parser)
{
    QStringList lines;
    for (int i = 0; i < 100000; ++i) {
        const std::unique_ptr<DbItem> item = parser.getItem();
        if (!item)
            return lines;
        lines.append(describe(*item));
    }
    lines.append(u"(walk did not end)"_s);
    return lines;
}

QStringList walk(const QByteArray &bytes)
{
    Parser parser;
    parser.initWithData(bytes);
    return walk(parser);
}

QByteArray record(const QByteArray &fields)
{
    return "<a><b><c>" + fields + "</c></b></a>";
}

} // namespace

class tst_Parser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void items_data();
    void items();
    void afterTheEndEveryCallIsNone_data();
    void afterTheEndEveryCallIsNone();

    void tagLimit_data();
    void tagLimit();
    void valueLimit_data();
    void valueLimit();

    void file_data();
    void file();

    void replaceSubstring_data();
    void replaceSubstring();
};

void tst_Parser::items_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QStringList>("expected");

    QTest::addRow("empty") << QByteArray() << QStringList();
    QTest::addRow("three leaves in two records")
        << QByteArray("<a><b><c><x>1</x><y>2</y></c><c><x>3</x></c></b></a>")
        << QStringList{u"x=1 [c, b] new"_s, u"y=2 [c, b]"_s, u"x=3 [c, b] new"_s};
    // The declaration is an opening tag that never closes: everything is one level down.
    QTest::addRow("declaration shifts depth") << QByteArray("<?xml version=\"1.0\"?>"
                                                            "<a><b><c><x>1</x><y>2</y></c><c><x>3</x></c></b></a>")
                                              << QStringList{u"c= [b, a] new"_s};
    // Real files rely on it: the declaration is depth 1, so the records are at depth 3.
    QTest::addRow("declaration as depth 1")
        << QByteArray("<?xml version=\"1.0\"?>\n<b><c><x>1</x></c><c><x>2</x></c></b>\n")
        << QStringList{u"x=1 [c, b] new"_s, u"x=2 [c, b] new"_s};
    // Declaration at depth 1, comment at depth 2 (so it is the grandparent).
    QTest::addRow("declaration and comment") << QByteArray("<?xml?>\n<!-- c --><a><b><c><x>1</x></c></b></a>")
                                             << QStringList{u"b= [a, !-- c --] new"_s, u"x=1 [a, !-- c --]"_s};
    QTest::addRow("records of a real file")
        << QByteArray("<columns>\n <set>\n  <column>\n   <name>Surname</name>\n"
                      "   <width>120</width>\n  </column>\n  <column>\n"
                      "   <name>City</name>\n  </column>\n </set>\n</columns>\n")
        << QStringList{u"name=Surname [column, set] new"_s, u"width=120 [column, set]"_s,
                       u"name=City [column, set] new"_s};
    QTest::addRow("text between tags skipped")
        << QByteArray("junk<a>junk<b> more <c>\n\t<x>1</x>\nstray\n</c></b></a>trailer")
        << QStringList{u"x=1 [c, b] new"_s};
    QTest::addRow("attributes are tag text") << QByteArray("<a><b><c id=\"7\"><x kind='n'>1</x kind='n'></c></b></a>")
                                             << QStringList{u"x kind='n'=1 [c id=\"7\", b] new"_s};
    QTest::addRow("ends when outermost closes")
        << QByteArray("<a><b><c><x>1</x></c></b></a><a><b><c><x>2</x></c></b></a>") << QStringList{u"x=1 [c, b] new"_s};

    QTest::addRow("escapes: single replacement")
        << record("<x>a &amp; b &amp; c</x>") << QStringList{u"x=a & b &amp; c [c, b] new"_s};
    QTest::addRow("escapes: amp first") << record("<x>&amp;lt;</x>") << QStringList{u"x=< [c, b] new"_s};
    QTest::addRow("escapes: second lt kept")
        << record("<x>&lt;&lt;&gt;&gt;</x>") << QStringList{u"x=<&lt;>&gt; [c, b] new"_s};
    QTest::addRow("escapes: others untouched")
        << record("<x>&quot;&apos;&#38;</x>") << QStringList{u"x=&quot;&apos;&#38; [c, b] new"_s};

    QTest::addRow("trim CR and LF only") << record("<x>\r\n\n  hello \t\r\n\r</x>")
                                         << QStringList{u"x=  hello \t [c, b] new"_s};
    QTest::addRow("inner line breaks kept") << record("<x>\na\r\nb\n</x>") << QStringList{u"x=a\r\nb [c, b] new"_s};
    QTest::addRow("empty leaf") << record("<x></x><y>2</y>") << QStringList{u"x= [c, b] new"_s, u"y=2 [c, b]"_s};

    // The self-closing leaf closes c; z then opens at depth 3 as a record.
    QTest::addRow("self-closing leaf") << record("<x>1</x><y/><z>3</z>") << QStringList{u"x=1 [c, b] new"_s};
    QTest::addRow("self-closing leaf first") << QByteArray("<a><b><c><y/></c><c><x>1</x></c></b></a>") << QStringList();
    // Its first inner tag ends the text; the inner tag is taken as the closing one.
    QTest::addRow("leaf with an element inside")
        << record("<x>1<i>2</i></x><y>3</y>") << QStringList{u"x=1 [c, b] new"_s};
    QTest::addRow("self-closing as a leaf's closing tag")
        << QByteArray("<a><b><c><x>1<x/><y>2</y></c></b></a>") << QStringList{u"x=1 [c, b] new"_s, u"y=2 [c, b]"_s};

    QTest::addRow("non-ASCII value ends the walk")
        << record("<x>1</x><y>caf\xc3\xa9</y><z>3</z>") << QStringList{u"x=1 [c, b] new"_s};
    QTest::addRow("tag text is Latin-1") << record("<caf\xe9>1</caf\xe9>") << QStringList{u"caf\u00e9=1 [c, b] new"_s};
    QTest::addRow("DEL is ASCII") << record("<x>\x7f</x>") << QStringList{u"x=\x7f [c, b] new"_s};

    QTest::addRow("truncated in a value") << QByteArray("<a><b><c><x>1</x><y>2") << QStringList{u"x=1 [c, b] new"_s};
    QTest::addRow("truncated in a tag") << QByteArray("<a><b><c><x>1</x><y") << QStringList{u"x=1 [c, b] new"_s};
    // The closing tag's result is discarded, so the item still comes out.
    QTest::addRow("truncated in a closing tag") << QByteArray("<a><b><c><x>1</x") << QStringList{u"x=1 [c, b] new"_s};
    QTest::addRow("no tags at all") << QByteArray("plain text") << QStringList();
    QTest::addRow("stray closing tags") << QByteArray("</z></z><a><b><c><d><x>1</x></d></c></b></a>") << QStringList();
}

void tst_Parser::items()
{
    QFETCH(QByteArray, input);
    QTEST(walk(input), "expected");
}

void tst_Parser::afterTheEndEveryCallIsNone_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addRow("non-ASCII") << record("<x>1</x><y>\xff</y><z>3</z><w>4</w>");
    QTest::addRow("truncated") << QByteArray("<a><b><c><x>1</x><y>2");
}

void tst_Parser::afterTheEndEveryCallIsNone()
{
    QFETCH(QByteArray, input);
    Parser parser;
    parser.initWithData(input);
    QVERIFY(parser.getItem());
    for (int i = 0; i < 5; ++i)
        QVERIFY(!parser.getItem());
}

void tst_Parser::tagLimit_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<bool>("stopped");

    const QByteArray n32(32, 'n');
    const QByteArray n33(33, 'n');
    QTest::addRow("leaf of 32") << record("<" + n32 + ">1</" + n32 + "><y>2</y>")
                                << QStringList{QString::fromLatin1(n32) + u"=1 [c, b] new"_s, u"y=2 [c, b]"_s} << false;
    QTest::addRow("leaf of 33") << record("<x>1</x><" + n33 + ">2</" + n33 + "><z>3</z>")
                                << QStringList{u"x=1 [c, b] new"_s} << true;
    QTest::addRow("record of 32") << QByteArray("<a><b><" + n32 + "><x>1</x></" + n32 + "></b></a>")
                                  << QStringList{u"x=1 ["_s + QString::fromLatin1(n32) + u", b] new"_s} << false;
    QTest::addRow("record of 33") << QByteArray("<a><b><" + n33 + "><x>1</x></" + n33 + "></b></a>") << QStringList()
                                  << true;
    // The item is complete at its closing tag; the walk stops after it.
    QTest::addRow("closing tag of 33") << record("<x>1</" + n33 + "><y>2</y>") << QStringList{u"x=1 [c, b] new"_s}
                                       << true;
    // Slashes are not tag text: 32 bytes of text plus a slash is within the limit.
    QTest::addRow("self-closing 32 + slash")
        << record("<x>1</x><" + n32 + "/><y>2</y>") << QStringList{u"x=1 [c, b] new"_s} << false;
    QTest::addRow("declaration of 32") << QByteArray("<?xml version=\"1.0\" encoding=\"a\"?>") << QStringList()
                                       << false;
    // The usual declaration with an encoding is 36 bytes of tag text: nothing is read.
    QTest::addRow("declaration with encoding")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a><b><c><x>1</x></c></b></a>") << QStringList()
        << true;
    // The limit counts bytes, not characters: 16 two-byte UTF-8 letters are 32 bytes.
    QTest::addRow("32 bytes of UTF-8") << record("<" + QByteArray("\xc3\xa9").repeated(16) + ">1</x>")
                                       << QStringList{u"\u00c3\u00a9"_s.repeated(16) + u"=1 [c, b] new"_s} << false;
}

void tst_Parser::tagLimit()
{
    QFETCH(QByteArray, input);
    QFETCH(bool, stopped);

    Parser parser;
    parser.initWithData(input);
    QTEST(walk(parser), "expected");
    QCOMPARE(parser.stopped(), stopped);
    if (stopped) {
        QVERIFY(!parser.getItem());
        QVERIFY(!parser.getTag(false));
        QVERIFY(parser.getData().isNull());
    }
}

void tst_Parser::valueLimit_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("expectedSize"); // -1: the walk stops at this value

    QTest::addRow("10,000") << QByteArray(10000, 'v') << 10000;
    QTest::addRow("10,001") << QByteArray(10001, 'v') << -1;
    // The limit applies to the bytes as stored, before trimming and unescaping.
    QTest::addRow("9,999 + LF") << QByteArray(9999, 'v') + '\n' << 9999;
    QTest::addRow("10,000 + LF") << QByteArray(10000, 'v') + '\n' << -1;
    QTest::addRow("2,000 &amp;") << QByteArray("&amp;").repeated(2000) << 9996;
    QTest::addRow("2,000 &amp; + 1") << QByteArray("&amp;").repeated(2000) + 'v' << -1;
    // A long non-ASCII value: the limit is met first.
    QTest::addRow("10,001 non-ASCII") << QByteArray(10001, '\xe9') << -1;
}

void tst_Parser::valueLimit()
{
    QFETCH(QByteArray, value);
    QFETCH(int, expectedSize);

    Parser parser;
    parser.initWithData(record("<x>" + value + "</x><y>2</y>"));
    std::unique_ptr<DbItem> item = parser.getItem();
    if (expectedSize < 0) {
        QVERIFY(!item);
        QVERIFY(parser.stopped());
        QVERIFY(!parser.getItem());
        return;
    }
    QVERIFY(item);
    QCOMPARE(item->getData().size(), expectedSize);
    QVERIFY(!parser.stopped());
    item = parser.getItem();
    QVERIFY(item);
    QCOMPARE(item->getData(), u"2"_s);
}

void tst_Parser::file_data()
{
    QTest::addColumn<QString>("name");     // "~/" is the home folder
    QTest::addColumn<QByteArray>("bytes"); // null: no file
    QTest::addColumn<QStringList>("expected");

    QTest::addRow("missing") << u"nothing.xml"_s << QByteArray() << QStringList();
    QTest::addRow("empty") << u"empty.xml"_s << QByteArray("") << QStringList();
    QTest::addRow("items") << u"columns.xml"_s << QByteArray("<?xml version=\"1.0\"?>\n<b><c><n>1</n></c></b>\n")
                           << QStringList{u"n=1 [c, b] new"_s};
    QTest::addRow("tilde") << u"~/t.xml"_s << record("<x>1</x>") << QStringList{u"x=1 [c, b] new"_s};
}

void tst_Parser::file()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);

    QTemporaryDir home;
    QVERIFY(home.isValid());
    const QString fileName = name.startsWith(u"~/"_s) ? name.mid(2) : name;
    if (!bytes.isNull())
        QVERIFY(writeBytes(home.filePath(fileName), bytes));

    LogCapture log;
    const QByteArray oldHome = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(home.path()));
    Parser parser;
    parser.initWithFilePath(name.startsWith(u"~/"_s) ? name : home.filePath(name));
    qputenv("HOME", oldHome);

    QCOMPARE(log.lines(), QStringList{u"%1 bytes read"_s.arg(bytes.size())});
    QCOMPARE(parser.length(), quint32(bytes.size()));
    QTEST(walk(parser), "expected");
}

void tst_Parser::replaceSubstring_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::addRow("none") << u"&amp;"_s << u"&"_s << QString() << QString();
    QTest::addRow("two occurrences") << u"&amp;"_s << u"&"_s << u"a &amp; b &amp; c"_s << u"a & b &amp; c"_s;
    QTest::addRow("empty target") << QString(u""_s) << u"X"_s << u"abc"_s << u"abc"_s;
    QTest::addRow("null replacement") << u"b"_s << QString() << u"abc"_s << u"ac"_s;
}

void tst_Parser::replaceSubstring()
{
    QFETCH(QString, target);
    QFETCH(QString, replacement);
    QFETCH(QString, text);
    QFETCH(QString, expected);

    const QString result = lwToolBox::replaceSubstring(target, replacement, text);
    QCOMPARE(result, expected);
    QCOMPARE(result.isNull(), expected.isNull());
}

QTEST_GUILESS_MAIN(tst_Parser)
#include "tst_parser.moc"
