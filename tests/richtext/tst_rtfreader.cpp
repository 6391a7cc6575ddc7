#include "DocumentSnapshot.h"
#include "richtext/RtfReader.h"
#include "richtext/RtfTokenizer.h"
#include "support/CliRunner.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kData = QStringLiteral(LW_TEST_DATA "/richtext/");

QByteArray rtf(const QByteArray &body)
{
    return "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Helvetica;}{\\f1\\fmodern Courier;}}"
           "{\\colortbl;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}" +
           body + "}";
}

// The text of every block, tables' included, one line each: unlike
// toPlainText() it keeps line separators and no-break spaces as they are.
QString blockText(const QTextDocument &document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        lines << block.text();
    return lines.join(QLatin1Char('\n'));
}

Qt::Alignment horizontal(const QTextBlockFormat &format)
{
    return format.alignment() & Qt::AlignHorizontal_Mask;
}

QList<QTextImageFormat> images(const QTextDocument &document)
{
    QList<QTextImageFormat> result;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it)
            if (it.fragment().charFormat().isImageFormat())
                result.append(it.fragment().charFormat().toImageFormat());
    return result;
}

QImage imageOf(const QTextDocument &document, const QTextImageFormat &format)
{
    return document.resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>();
}


// The tokens as one readable line: "{ W:rtf1 T:abc H:e9 S:~ B:3 }".
QString describe(const QByteArray &input)
{
    RtfTokenizer tokenizer(input);
    QStringList parts;
    for (int guard = 0; guard < 10000; ++guard) {
        const RtfTokenizer::Token token = tokenizer.next();
        switch (token.type) {
        case RtfTokenizer::Type::End:
            return parts.join(QLatin1Char(' '));
        case RtfTokenizer::Type::GroupStart:
            parts << QStringLiteral("{");
            break;
        case RtfTokenizer::Type::GroupEnd:
            parts << QStringLiteral("}");
            break;
        case RtfTokenizer::Type::ControlWord:
            parts << QStringLiteral("W:") + QString::fromLatin1(token.word) +
                         (token.hasParameter ? QString::number(token.parameter) : QString());
            break;
        case RtfTokenizer::Type::ControlSymbol:
            parts << QStringLiteral("S:") +
                         (token.symbol == '\n' ? QStringLiteral("NL") : QString(QLatin1Char(token.symbol)));
            break;
        case RtfTokenizer::Type::HexByte:
            parts << QStringLiteral("H:") + QString::number(token.byte, 16);
            break;
        case RtfTokenizer::Type::Text:
            parts << QStringLiteral("T:") + QString::fromLatin1(token.data);
            break;
        case RtfTokenizer::Type::Binary:
            parts << QStringLiteral("B:") + QString::fromLatin1(token.data.toByteArray().toHex());
            break;
        }
    }
    return QStringLiteral("runaway tokenizer");
}


} // namespace

class TestRtfReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_data();
    void text();
    void characterFormats();
    void formatsFollowGroups();
    void paragraphFormats();
    void tables_data();
    void tables();
    void tableSpansAndCellFormats();
    void pictures();
    void rtfdAttachments();
    void attachmentOutsidePackageIsNotRead();
    void fixtures_data();
    void fixtures();
    void fixtureDetails();
    void notRtf_data();
    void notRtf();
    void damagedInput_data();
    void damagedInput();
    void tokens_data();
    void tokens();
    void positionNeverPassesTheEnd();
};

void TestRtfReader::text_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("expected");

    QTest::addRow("windows-1252 escape") << rtf("caf\\'e9 \\'80") << QStringLiteral("café €");
    QTest::addRow("windows-1250") << QByteArray("{\\rtf1\\ansi\\ansicpg1250 \\'9ato\\'e8ek}")
                                  << QStringLiteral("štoček");
    QTest::addRow("windows-1251") << QByteArray("{\\rtf1\\ansi\\ansicpg1251 \\'cf\\'f0\\'e8}") << QStringLiteral("При");
    QTest::addRow("font charset beats the document's")
        << QByteArray(
               "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset204 Arial Cyr;}}\\f1 \\'cf\\f0 \\'e9}")
        << QStringLiteral("Пé");
    QTest::addRow("shift-jis run decoded whole")
        << QByteArray("{\\rtf1\\ansi\\ansicpg932 \\'93\\'fa\\'96\\'7b}") << QStringLiteral("日本");
    QTest::addRow("shift-jis trail byte as a letter")
        << QByteArray("{\\rtf1\\ansi\\ansicpg932 \\'83e\\'83X\\'83g}") << QStringLiteral("テスト");
    QTest::addRow("gbk") << QByteArray("{\\rtf1\\ansi\\ansicpg936 \\'d6\\'d0\\'ce\\'c4}") << QStringLiteral("中文");
    QTest::addRow("mac roman font charset")
        << QByteArray("{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset77 Geneva;}}\\f0 caf\\'8e}") << QStringLiteral("café");
    QTest::addRow("mac roman document") << QByteArray("{\\rtf1\\mac caf\\'8e}") << QStringLiteral("café");
    QTest::addRow("unknown code page falls back")
        << QByteArray("{\\rtf1\\ansi\\ansicpg4242 caf\\'e9}") << QStringLiteral("café");
    QTest::addRow("unicode with fallback") << rtf("\\uc1\\u1047\\'3f\\u1072?") << QStringLiteral("За");
    QTest::addRow("two fallback bytes") << QByteArray("{\\rtf1\\ansi\\ansicpg932\\uc2\\u26085\\'93\\'fa!}")
                                        << QStringLiteral("日!");
    QTest::addRow("fallback is a hex byte") << rtf("\\u8364\\'80x") << QStringLiteral("€x");
    QTest::addRow("a control word counts as a fallback") << rtf("\\u8364\\emdash x") << QStringLiteral("€x");
    QTest::addRow("a control symbol counts as a fallback") << rtf("\\u233\\~x") << QStringLiteral("éx");
    QTest::addRow("fonts outside groups")
        << QByteArray("{\\rtf1\\ansi{\\fonttbl\\f0 Arial;\\f1\\fcharset204 Cyr;}\\f1 \\'cf}") << QStringLiteral("П");
    QTest::addRow("negative value") << rtf("\\u-4064 ?") << QString(QChar(0xF020));
    QTest::addRow("surrogate pair") << rtf("\\u-10179?\\u-8704?") << QStringLiteral("😀");
    QTest::addRow("lone surrogate dropped") << rtf("a\\u-10179?b") << QStringLiteral("ab");
    QTest::addRow("uc is scoped to its group") << rtf("{\\uc0\\u233 }\\u233 xy") << QStringLiteral("ééy");
    QTest::addRow("line and tab") << rtf("a\\line b\\tab c") << QStringLiteral("a\u2028b\tc");
    QTest::addRow("special characters")
        << rtf("\\emdash\\endash\\bullet\\lquote\\rquote\\ldblquote\\rdblquote\\~\\-\\_")
        << QStringLiteral("—–•‘’“”\u00a0\u00ad\u2011");
    QTest::addRow("backslash-newline paragraphs") << rtf("one\\\ntwo\\\r\nthree") << QStringLiteral("one\ntwo\nthree");
    QTest::addRow("par and final par") << rtf("one\\par two\\par ") << QStringLiteral("one\ntwo");
    QTest::addRow("field keeps its result")
        << rtf("{\\field{\\*\\fldinst{ PAGE }}{\\fldrslt 7}} of 9") << QStringLiteral("7 of 9");
    QTest::addRow("ignorable destination skipped") << rtf("a{\\*\\unknownthing b{c}}d") << QStringLiteral("ad");
    QTest::addRow("unknown word keeps its text") << rtf("a{\\unknownword b}c") << QStringLiteral("abc");
    QTest::addRow("header footer info stylesheet skipped")
        << rtf("{\\stylesheet{\\s0 Normal;}}{\\info{\\author Me}}{\\header head}{\\footer foot}body")
        << QStringLiteral("body");
    QTest::addRow("binary data skipped") << rtf("a{\\*\\blob\\bin5 }}}}}b}c") << QStringLiteral("ac");
    QTest::addRow("binary counts as one fallback") << rtf("\\u233\\bin2 xyz") << QStringLiteral("éz");
    QTest::addRow("control characters dropped") << rtf("a\\'00\\'07\\u65532?b\\'0d") << QStringLiteral("ab");
    QTest::addRow("list text kept") << rtf("{\\listtext \\bullet\\tab}item") << QStringLiteral("•\titem");
    QTest::addRow("page break ends a paragraph") << rtf("a\\page b") << QStringLiteral("a\nb");
    QTest::addRow("text after the document ignored") << rtf("a") + "trailing}" << QStringLiteral("a");
}

void TestRtfReader::text()
{
    QFETCH(QByteArray, input);
    QTextDocument document;
    RtfReader reader;
    QVERIFY2(reader.read(input, &document), qPrintable(reader.errorString()));
    QTEST(blockText(document), "expected");
}

void TestRtfReader::characterFormats()
{
    // Each character format the writer also uses is read back, with its
    // value, by the writer's rich document snapshot; here the rest.
    QTextDocument document;
    QVERIFY(RtfReader().read(rtf("\\f1\\fs30 big {\\b bold}{\\cf1 red}{\\highlight1 marked}\\b\\i\\plain plain"),
                             &document));
    const QTextCharFormat big = DocumentSnapshot::formatOf(document, QStringLiteral("big"));
    QCOMPARE(big.fontFamilies().toStringList(), QStringList{QStringLiteral("Courier")});
    QCOMPARE(big.fontPointSize(), 15.0);
    QVERIFY(big.fontWeight() < QFont::DemiBold);
    QCOMPARE(DocumentSnapshot::formatOf(document, QStringLiteral("bold")).fontWeight(), int(QFont::Bold));
    QCOMPARE(DocumentSnapshot::formatOf(document, QStringLiteral("red")).foreground().color(), QColor(255, 0, 0));
    QCOMPARE(DocumentSnapshot::formatOf(document, QStringLiteral("marked")).background().color(), QColor(255, 0, 0));

    // \plain: back to the default font at 12 points, nothing else.
    const QTextCharFormat plain = DocumentSnapshot::formatOf(document, QStringLiteral("plain"));
    QCOMPARE(plain.fontFamilies().toStringList(), QStringList{QStringLiteral("Helvetica")});
    QCOMPARE(plain.fontPointSize(), 12.0);
    QVERIFY(plain.fontWeight() < QFont::DemiBold);
    QVERIFY(!plain.fontItalic());
    QVERIFY(!plain.hasProperty(QTextFormat::ForegroundBrush));
    // The default font becomes the document's, for text added later.
    QCOMPARE(document.defaultFont().family(), QStringLiteral("Helvetica"));
}

void TestRtfReader::formatsFollowGroups()
{
    QTextDocument document;
    QVERIFY(RtfReader().read(rtf("\\b a{\\b0\\cf1 b{\\i c}d}e\\b0 f\\cf9 g"), &document));
    QCOMPARE(document.toPlainText(), QStringLiteral("abcdefg"));
    const QString letters = QStringLiteral("abcdefg");
    const bool bold[] = {true, false, false, false, true, false, false};
    const bool italic[] = {false, false, true, false, false, false, false};
    const bool red[] = {false, true, true, true, false, false, false};
    for (int i = 0; i < 7; ++i) {
        const QTextCharFormat format = DocumentSnapshot::formatOf(document, letters.mid(i, 1));
        QVERIFY2((format.fontWeight() == QFont::Bold) == bold[i], qPrintable(letters.mid(i, 1)));
        QVERIFY2(format.fontItalic() == italic[i], qPrintable(letters.mid(i, 1)));
        // \cf9 names no colour: the text keeps the default.
        QVERIFY2(format.hasProperty(QTextFormat::ForegroundBrush) == red[i], qPrintable(letters.mid(i, 1)));
    }
}

void TestRtfReader::paragraphFormats()
{
    QTextDocument document;
    QVERIFY(RtfReader().read(rtf("\\qc centred\\par\\qr\\li720\\ri360\\fi-240\\sb120\\sa60 right\\par"
                                 "\\pard justified is reset\\qj\\par"
                                 "{\\pard\\qc grouped\\par}after\\par\\pard\\pagebb new page"),
                             &document));
    QCOMPARE(document.blockCount(), 6);
    const QTextBlockFormat centred = document.findBlockByNumber(0).blockFormat();
    QCOMPARE(horizontal(centred), Qt::Alignment(Qt::AlignHCenter));
    const QTextBlockFormat right = document.findBlockByNumber(1).blockFormat();
    QCOMPARE(horizontal(right), Qt::Alignment(Qt::AlignRight));
    QCOMPARE(right.leftMargin(), 48.0); // the other margins' values: the writer's snapshot
    // Properties in force at \par belong to the paragraph it ends.
    const QTextBlockFormat justified = document.findBlockByNumber(2).blockFormat();
    QCOMPARE(horizontal(justified), Qt::Alignment(Qt::AlignJustify));
    QCOMPARE(justified.leftMargin(), 0.0);
    // A group's paragraph properties end with it.
    QCOMPARE(horizontal(document.findBlockByNumber(3).blockFormat()), Qt::Alignment(Qt::AlignHCenter));
    QCOMPARE(horizontal(document.findBlockByNumber(4).blockFormat()), Qt::Alignment(Qt::AlignJustify));
    QVERIFY(document.findBlockByNumber(5).blockFormat().pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore);
}

void TestRtfReader::tables_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("expected");

    QTest::addRow("cocoa rows with definitions first")
        << rtf("before\\par\\trowd\\cellx1000\\cellx2000\\pard\\intbl a\\cell b\\cell\\row"
               "\\trowd\\cellx1000\\cellx2000\\pard\\intbl c\\cell d\\cell\\row\\pard after")
        << u"before\n<a|b/c|d>\nafter"_s;
    QTest::addRow("word rows with definitions last")
        << rtf("\\pard\\intbl{a\\cell b\\cell}{\\trowd\\cellx1000\\cellx2000\\row}\\pard\\intbl{c\\cell d\\cell}"
               "{\\trowd\\cellx1000\\cellx2000\\row}\\pard\\par")
        << u"\n<a|b/c|d>\n"_s;
    QTest::addRow("paragraphs inside a cell")
        << rtf("\\trowd\\cellx1000\\pard\\intbl one\\par two\\cell\\row") << u"\n<one\ntwo>\n"_s;
    QTest::addRow("empty cells")
        << rtf("\\trowd\\cellx1000\\cellx2000\\cellx3000\\pard\\intbl\\cell x\\cell\\cell\\row") << u"\n<|x|>\n"_s;
    QTest::addRow("rows of different lengths") << rtf("\\trowd\\cellx1000\\cellx2000\\pard\\intbl a\\cell "
                                                      "b\\cell\\row\\trowd\\cellx1000\\pard\\intbl c\\cell\\row")
                                               << u"\n<a|b/c|>\n"_s;
    QTest::addRow("truncated table keeps its cells")
        << QByteArray("{\\rtf1\\trowd\\cellx1000\\cellx2000\\pard\\intbl a\\cell b") << u"\n<a|b>\n"_s;
    QTest::addRow("two tables apart")
        << rtf("\\trowd\\cellx1000\\pard\\intbl a\\cell\\row\\pard\\par\\trowd\\cellx1000\\pard\\intbl b\\cell\\row")
        << u"\n<a>\n\n<b>\n"_s;
    QTest::addRow("nested table flattened")
        << rtf("\\trowd\\cellx4000\\pard\\intbl outer\\par\\itap2 x\\nestcell y\\nestcell{\\nestrow}\\cell\\row")
        << u"\n<outer\nx\ty\t\n>\n"_s;
    QTest::addRow("cell without row still a table")
        << rtf("text\\par\\pard\\intbl lonely\\cell\\pard end") << u"text\n<lonely>\nend"_s;
}

void TestRtfReader::tables()
{
    QFETCH(QByteArray, input);
    QTextDocument document;
    QVERIFY(RtfReader().read(input, &document));
    QTEST(DocumentSnapshot::outline(document), "expected");
}

void TestRtfReader::tableSpansAndCellFormats()
{
    // Boundaries that differ between rows make spans, as Cocoa writes them;
    // \clvmgf/\clvmrg and \clmrg as Word writes them.
    QTextDocument document;
    QVERIFY(RtfReader().read(
        rtf("\\trowd\\trgaph150\\clbrdrt\\brdrs\\brdrw30\\clcbpat1\\cellx1500\\cellx3000\\cellx4500"
            "\\pard\\intbl a\\cell b\\cell c\\cell\\row"
            "\\trowd\\clvmgf\\cellx1500\\cellx4500\\pard\\intbl d\\cell ef\\cell\\row"
            "\\trowd\\clvmrg\\cellx1500\\cellx3000\\clmrg\\cellx4500\\pard\\intbl\\cell g\\cell\\cell\\row"),
        &document));
    QTextTable *table = DocumentSnapshot::firstTable(document);
    QVERIFY(table);
    QCOMPARE(table->rows(), 3);
    QCOMPARE(table->columns(), 3);
    QCOMPARE(table->cellAt(1, 0).rowSpan(), 2);
    QCOMPARE(table->cellAt(1, 1).columnSpan(), 2);
    QCOMPARE(table->cellAt(2, 1).columnSpan(), 2);
    QCOMPARE(table->cellAt(2, 1).firstCursorPosition().block().text(), QStringLiteral("g"));
    QCOMPARE(table->cellAt(0, 0).format().background().color(), QColor(255, 0, 0));
    QVERIFY(!table->cellAt(0, 1).format().hasProperty(QTextFormat::BackgroundBrush));
    const QTextTableFormat format = table->format();
    QCOMPARE(format.border(), 2.0);
    QCOMPARE(format.cellPadding(), 10.0);
    const QList<QTextLength> widths = format.columnWidthConstraints();
    QCOMPARE(widths.size(), 3);
    for (const QTextLength &width : widths) {
        QCOMPARE(width.type(), QTextLength::FixedLength);
        QCOMPARE(width.rawValue(), 100.0);
    }
}

void TestRtfReader::pictures()
{
    // A picture of 4 by 3 pixels.
    const QString swatch = kData + QStringLiteral("picture.rtfd/swatch.png");
    const QImage source = QImage(swatch).convertToFormat(QImage::Format_RGB32);
    const QByteArray png = fileBytes(swatch);
    QByteArray input = rtf("a{\\pict\\pngblip\\picw4\\pich3\\picwgoal90\\pichgoal60 " + png.toHex() +
                           "}"
                           "{\\pict\\pngblip\\picscalex200\\picscaley50 " +
                           png.toHex() +
                           "}"
                           "{\\pict\\wmetafile8\\picw100\\pich50\\picwgoal1500\\pichgoal750 0100090000}"
                           "{\\pict\\pngblip\\bin" +
                           QByteArray::number(png.size()) + " " + png +
                           "}"
                           "{\\pict\\pngblip 0011zz}b");
    QTextDocument document;
    QVERIFY(RtfReader().read(input, &document));
    QCOMPARE(blockText(document), QStringLiteral("a\uFFFC\uFFFC\uFFFC\uFFFC\uFFFCb"));
    const QList<QTextImageFormat> formats = images(document);
    QCOMPARE(formats.size(), 5);

    // Goal size in twips, data decoded.
    QCOMPARE(formats[0].width(), 6.0);
    QCOMPARE(formats[0].height(), 4.0);
    QCOMPARE(imageOf(document, formats[0]).convertToFormat(QImage::Format_RGB32), source);
    // Scaled natural size.
    QCOMPARE(formats[1].width(), 8.0);
    QCOMPARE(formats[1].height(), 1.5);
    // A metafile cannot be drawn: an empty picture of its size holds its place.
    QCOMPARE(formats[2].width(), 100.0);
    QCOMPARE(formats[2].height(), 50.0);
    const QImage placeholder = imageOf(document, formats[2]);
    QVERIFY(!placeholder.isNull());
    QCOMPARE(qAlpha(placeholder.pixel(0, 0)), 0);
    // Raw \bin data.
    QCOMPARE(imageOf(document, formats[3]).convertToFormat(QImage::Format_RGB32), source);
    // Broken data: still a placeholder, never a null picture.
    QVERIFY(!imageOf(document, formats[4]).isNull());
}

void TestRtfReader::rtfdAttachments()
{
    QTextDocument document;
    RtfReader reader;
    QVERIFY2(reader.readFile(kData + QStringLiteral("picture.rtfd"), &document), qPrintable(reader.errorString()));
    // The stand-in character after each attachment is not text.
    QCOMPARE(blockText(document), QStringLiteral("Logo: \uFFFC\nSmall again: \uFFFC done\nMissing: \uFFFC"));
    const QList<QTextImageFormat> formats = images(document);
    QCOMPARE(formats.size(), 3);
    QCOMPARE(formats[0].width(), 80.0);
    const QImage swatch = imageOf(document, formats[0]);
    QCOMPARE(swatch.size(), QSize(4, 3));
    QCOMPARE(QColor(swatch.pixel(0, 0)), QColor(255, 0, 0));
    QCOMPARE(QColor(swatch.pixel(2, 1)), QColor(0, 255, 255));
    // The same file twice is one resource, each with its own size.
    QCOMPARE(formats[1].name(), QStringLiteral("swatch.png"));
    QCOMPARE(formats[1].width(), 4.0);
    // A file the package lacks: a placeholder of the size the text gives.
    QCOMPARE(formats[2].width(), 48.0);
    QCOMPARE(qAlpha(imageOf(document, formats[2]).pixel(0, 0)), 0);
}

void TestRtfReader::attachmentOutsidePackageIsNotRead()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QImage secret(5, 5, QImage::Format_RGB32);
    secret.fill(Qt::red);
    QVERIFY(secret.save(dir.filePath(QStringLiteral("secret.png"))));
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("doc.rtfd")));
    QTextDocument document;
    QVERIFY(RtfReader().read(rtf("{{\\NeXTGraphic ../secret.png \\width300 \\height300}\\'ac}"), &document,
                             dir.filePath(QStringLiteral("doc.rtfd"))));
    const QList<QTextImageFormat> formats = images(document);
    QCOMPARE(formats.size(), 1);
    QCOMPARE(formats[0].width(), 20.0);
    QCOMPARE(qAlpha(imageOf(document, formats[0]).pixel(0, 0)), 0);
}

void TestRtfReader::fixtures_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("expected");

    QTest::addRow("cocoa") << u"cocoa.rtf"_s << QString()
                           << QStringLiteral("Ledgerwick Trading\n"
                                             "Invoice\t<ordernumber>\t€<total>\n"
                                             "Date:\t<date>\n"
                                             "Thank you for your order, <contactname>. Café crème – naïve and old and "
                                             "marked.\n"
                                             "\n"
                                             "<Item|Price/Widget|€12.50/Gadget[br](blue)|€3.00>\n"
                                             "\n"
                                             "Total due: <total>");
    QTest::addRow("libreoffice") << u"libreoffice.rtf"_s << QStringLiteral("Reminder")
                                 << QStringLiteral("Reminder Заказ\n"
                                                   "Dear <contactname>, your balance of €<balance> is due. “Quoted” "
                                                   "and italic red—highlighted.\n"
                                                   "Left\tCentre\t12.50\n"
                                                   "Pay online or call.\n"
                                                   "[img] Signed");
    QTest::addRow("word 1251") << u"word1251.rtf"_s << QStringLiteral("Счёт")
                               << QStringLiteral("Счёт № <ordernumber>\n"
                                                 "Customer: Петров Иван\n"
                                                 "·\tТовар один\n"
                                                 "<Товар|Кол-во|Сумма/Товар два\nи три|2|30,00/Итого 30,00>\n"
                                                 "[img] [img]\n"
                                                 "Подпись: ·");
    QTest::addRow("shift-jis") << u"shiftjis.rtf"_s << QStringLiteral("請求書")
                               << QStringLiteral("請求書 <ordernumber>\nテスト テスト\nMixed: 日本€ end");
}

void TestRtfReader::fixtures()
{
    QFETCH(QString, name);
    QTextDocument document;
    RtfReader reader;
    QVERIFY2(reader.readFile(kData + name, &document), qPrintable(reader.errorString()));
    QTEST(DocumentSnapshot::outline(document), "expected");
    QTEST(document.metaInformation(QTextDocument::DocumentTitle), "title");
}

void TestRtfReader::fixtureDetails()
{
    QTextDocument cocoa;
    QVERIFY(RtfReader().readFile(kData + QStringLiteral("cocoa.rtf"), &cocoa));
    const QList<QTextOption::Tab> tabs = cocoa.findBlockByNumber(1).blockFormat().tabPositions();
    QCOMPARE(tabs.size(), 3);
    QCOMPARE(tabs[2].type, QTextOption::RightTab);
    QCOMPARE(tabs[2].position, 8504 / 15.0);
    QCOMPARE(horizontal(DocumentSnapshot::firstTable(cocoa)->cellAt(0, 1).firstCursorPosition().blockFormat()),
             Qt::Alignment(Qt::AlignRight));

    QTextDocument word;
    QVERIFY(RtfReader().readFile(kData + QStringLiteral("word1251.rtf"), &word));
    QTextTable *table = DocumentSnapshot::firstTable(word);
    QVERIFY(table);
    QCOMPARE(table->cellAt(1, 0).rowSpan(), 2);
    QCOMPARE(table->cellAt(2, 1).columnSpan(), 2);
    const QList<QTextImageFormat> formats = images(word);
    QCOMPARE(formats.size(), 2);
    // The JPEG of \shppict, not the metafile of \nonshppict.
    QCOMPARE(formats[0].width(), 16.0);
    const QImage photo = imageOf(word, formats[0]);
    QCOMPARE(photo.size(), QSize(16, 8));
    QVERIFY(qBlue(photo.pixel(8, 4)) > 150 && qRed(photo.pixel(8, 4)) < 80);

    // A font's own name is in its charset too.
    QTextDocument japanese;
    QVERIFY(RtfReader().readFile(kData + QStringLiteral("shiftjis.rtf"), &japanese));
    QCOMPARE(DocumentSnapshot::formatOf(japanese, QStringLiteral("請求書")).fontFamilies().toStringList(),
             QStringList{QStringLiteral("ＭＳ 明朝")});
}

void TestRtfReader::notRtf_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addRow("empty") << QByteArray();
    QTest::addRow("plain text") << QByteArray("Dear customer,");
    QTest::addRow("html") << QByteArray("<html><body>{\\rtf1}</body></html>");
    QTest::addRow("almost") << QByteArray("{\\rtx1 a}");
    QTest::addRow("binary") << QByteArray("\x89PNG\r\n\x1a\n", 8);
}

void TestRtfReader::notRtf()
{
    QFETCH(QByteArray, input);
    QTextDocument document;
    document.setPlainText(QStringLiteral("kept"));
    RtfReader reader;
    QVERIFY(!reader.read(input, &document));
    QVERIFY(!reader.errorString().isEmpty());
    QCOMPARE(document.toPlainText(), QStringLiteral("kept"));

    QVERIFY(!reader.readFile(kData + QStringLiteral("no-such-file.rtf"), &document));
    QVERIFY(reader.errorString().contains(QStringLiteral("no-such-file.rtf")));
}

void TestRtfReader::damagedInput_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("expected");

    QTest::addRow("unclosed groups") << QByteArray("{\\rtf1 a{\\b b{\\i c") << QStringLiteral("abc");
    QTest::addRow("too many closes") << QByteArray("{\\rtf1 a}}}}b") << QStringLiteral("a");
    QTest::addRow("cut in an escape") << QByteArray("{\\rtf1 a\\'e") << QStringLiteral("ae");
    QTest::addRow("cut in a unicode fallback") << QByteArray("{\\rtf1 a\\u233") << QStringLiteral("aé");
    QTest::addRow("cut in the font table") << QByteArray("{\\rtf1{\\fonttbl{\\f0 Ari") << QString();
    QTest::addRow("cut in a picture") << QByteArray("{\\rtf1 a{\\pict\\pngblip 89504e") << QStringLiteral("a\uFFFC");
    QTest::addRow("huge parameters")
        << QByteArray("{\\rtf1\\fs99999999999\\li-99999999999\\tx99999999999\\cf99999999\\f99999999"
                      "\\u99999999?a\\uc99999999 b\\bin99999999999 }")
        << QStringLiteral("ab");
    QTest::addRow("huge picture goal") << QByteArray(
                                              "{\\rtf1{\\pict\\wmetafile\\picwgoal2147483647\\pichgoal2147483647 00}}")
                                       << QStringLiteral("\uFFFC");
    QTest::addRow("deep nesting") << QByteArray("{\\rtf1 a" + QByteArray(100000, '{') + "hidden" +
                                                QByteArray(100000, '}') + "b}")
                                  << QStringLiteral("ab");
    QTest::addRow("many cell boundaries")
        << QByteArray("{\\rtf1\\trowd" + QByteArray("\\cellx5").repeated(500) + "\\pard\\intbl x\\cell\\row}")
        << QStringLiteral("\nx\n");
    QTest::addRow("decreasing boundaries")
        << QByteArray("{\\rtf1\\trowd\\cellx3000\\cellx1000\\cellx-5\\pard\\intbl a\\cell b\\cell c\\cell\\row}")
        << QStringLiteral("\na\nb\nc\n");
    QTest::addRow("merge with nothing to merge")
        << QByteArray("{\\rtf1\\trowd\\clvmrg\\clmrg\\cellx1000\\pard\\intbl a\\cell\\row}") << QStringLiteral("\na\n");
    QTest::addRow("row without cells") << QByteArray("{\\rtf1\\row\\row x}") << QStringLiteral("\n\n\nx");
    QTest::addRow("garbage after the header")
        << QByteArray("{\\rtf1 ok\x01\x02\xff\xfe\\\\\\'zz\\u-\\'") << QStringLiteral("ok\u00ff\u00fe\\zz-");
}

void TestRtfReader::damagedInput()
{
    QFETCH(QByteArray, input);
    QTextDocument document;
    QVERIFY(RtfReader().read(input, &document));
    QTEST(blockText(document), "expected");
}

void TestRtfReader::tokens_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("expected");

    QTest::addRow("word with parameter") << QByteArray("{\\rtf1 x}") << u"{ W:rtf1 T:x }"_s;
    QTest::addRow("negative parameter") << QByteArray("\\u-4064 ?") << u"W:u-4064 T:?"_s;
    QTest::addRow("one delimiter space only") << QByteArray("\\b  bold") << u"W:b T: bold"_s;
    QTest::addRow("delimiter is not a letter") << QByteArray("\\par;x") << u"W:par T:;x"_s;
    QTest::addRow("minus without digits ends the word") << QByteArray("\\li-x") << u"W:li T:-x"_s;
    QTest::addRow("control symbols") << QByteArray("\\~\\-\\_\\*\\{\\}\\\\") << u"S:~ S:- S:_ S:* S:{ S:} S:\\"_s;
    QTest::addRow("hex bytes") << QByteArray("\\'e9\\'0AZ") << u"H:e9 H:a T:Z"_s;
    QTest::addRow("hex needs two digits") << QByteArray("\\'g1") << u"S:' T:g1"_s;
    QTest::addRow("backslash-newline ends a paragraph") << QByteArray("a\\\nb\\\r\nc") << u"T:a S:NL T:b S:NL T:c"_s;
    QTest::addRow("line ends in text are dropped") << QByteArray("ab\r\ncd\n") << u"T:ab T:cd"_s;
    QTest::addRow("binary bytes are raw") << QByteArray("\\bin3 {\\}x") << u"B:7b5c7d T:x"_s;
    QTest::addRow("binary cut at the end") << QByteArray("\\bin99 ab") << u"B:6162"_s;
    QTest::addRow("negative binary length") << QByteArray("\\bin-5 ab") << u"B: T:ab"_s;
    QTest::addRow("huge parameter clamps") << QByteArray("\\fs99999999999999999999 x") << u"W:fs2147483647 T:x"_s;
    QTest::addRow("huge negative parameter clamps") << QByteArray("\\li-99999999999 x") << u"W:li-2147483647 T:x"_s;
    QTest::addRow("long words are cut") << QByteArray("\\" + QByteArray(40, 'a') + " x")
                                        << u"W:"_s + QString(32, QLatin1Char('a')) + " T:x";
    QTest::addRow("lone backslash at the end") << QByteArray("ab\\") << u"T:ab"_s;
    QTest::addRow("hex cut at the end") << QByteArray("\\'e") << u"S:' T:e"_s;
}

void TestRtfReader::tokens()
{
    QFETCH(QByteArray, input);
    QTEST(describe(input), "expected");
}

void TestRtfReader::positionNeverPassesTheEnd()
{
    // Every prefix of a document with every kind of token: the tokenizer
    // must end without reading past the bytes it was given.
    const QByteArray document("{\\rtf1\\ansi{\\fonttbl\\f0 A;}\\'e9\\u-3913 ?\\bin4 \x01{}\x02\\\n\\~text}");
    for (qsizetype size = 0; size <= document.size(); ++size) {
        const QByteArray prefix = document.left(size);
        RtfTokenizer tokenizer(prefix);
        int tokens = 0;
        while (tokenizer.next().type != RtfTokenizer::Type::End) {
            QVERIFY(tokenizer.position() <= prefix.size());
            QVERIFY2(++tokens <= prefix.size(), "more tokens than bytes");
        }
        QCOMPARE(tokenizer.position(), prefix.size());
    }
}

QTEST_MAIN(TestRtfReader)
#include "tst_rtfreader.moc"
