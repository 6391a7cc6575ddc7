#include "DocumentSnapshot.h"
#include "richtext/RtfReader.h"
#include "richtext/RtfWriter.h"
#include "support/CliRunner.h"

#include <QDir>
#include <QImage>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>

#include <memory>

namespace {

const QString kData = QStringLiteral(LW_TEST_DATA "/richtext/");

QImage checkerImage(int width, int height, QRgb a, QRgb b)
{
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, (x + y) % 2 ? a : b);
    return image;
}

QTextCharFormat textFormat(const QString &family, qreal size)
{
    QTextCharFormat format;
    format.setFontFamilies({family});
    format.setFontPointSize(size);
    return format;
}

// A document with every kind of content the writer must carry.
std::unique_ptr<QTextDocument> richDocument()
{
    auto document = std::make_unique<QTextDocument>();
    document->setMetaInformation(QTextDocument::DocumentTitle, QStringLiteral("Invoice {draft} \\ €"));
    document->addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("logo.png")),
                          checkerImage(5, 4, qRgba(255, 0, 0, 255), qRgba(0, 0, 255, 128)));
    document->addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("photo one.jpg")),
                          checkerImage(3, 3, qRgb(0, 200, 0), qRgb(250, 250, 250)));
    QTextCursor cursor(document.get());

    QTextBlockFormat centred;
    centred.setAlignment(Qt::AlignHCenter);
    cursor.setBlockFormat(centred);
    QTextCharFormat base = textFormat(QStringLiteral("Helvetica"), 12);
    QTextCharFormat format = base;
    format.setFontWeight(QFont::Bold);
    cursor.insertText(QStringLiteral("Bold "), format);
    format = base;
    format.setFontItalic(true);
    cursor.insertText(QStringLiteral("italic "), format);
    const QTextCharFormat::UnderlineStyle underlines[] = {QTextCharFormat::SingleUnderline,
                                                          QTextCharFormat::DashUnderline, QTextCharFormat::DotLine,
                                                          QTextCharFormat::WaveUnderline};
    for (auto style : underlines) {
        format = base;
        format.setUnderlineStyle(style);
        cursor.insertText(QStringLiteral("under%1 ").arg(int(style)), format);
    }
    format = base;
    format.setFontStrikeOut(true);
    format.setForeground(QColor(200, 10, 20));
    format.setBackground(QColor(255, 255, 0));
    cursor.insertText(QStringLiteral("struck coloured "), format);
    format = textFormat(QStringLiteral("Courier"), 9.5);
    format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    cursor.insertText(QStringLiteral("up"), format);
    format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    cursor.insertText(QStringLiteral("down "), format);
    format = base;
    format.setAnchor(true);
    format.setAnchorHref(QStringLiteral("https://example.com/?a=1&b=2"));
    format.setForeground(QColor(0, 0, 238));
    cursor.insertText(QStringLiteral("a link"), format);

    QTextBlockFormat tabbed;
    tabbed.setLeftMargin(48);
    tabbed.setRightMargin(12);
    tabbed.setTextIndent(-24);
    tabbed.setTopMargin(6);
    tabbed.setBottomMargin(9);
    tabbed.setTabPositions({QTextOption::Tab(100, QTextOption::LeftTab), QTextOption::Tab(300, QTextOption::RightTab),
                            QTextOption::Tab(350, QTextOption::CenterTab),
                            QTextOption::Tab(420, QTextOption::DelimiterTab, QLatin1Char('.'))});
    cursor.insertBlock(tabbed);
    cursor.insertText(QStringLiteral("a\tb\tc\td\u2028line two \\{braces}\u00a0nbsp soft\u00adhyphen non\u2011break ") +
                          QStringLiteral("Привет 日本語 😀 € ß ÿ Œ"),
                      base);

    QTextBlockFormat pageBreak;
    pageBreak.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    pageBreak.setAlignment(Qt::AlignJustify);
    cursor.insertBlock(pageBreak);
    cursor.insertText(QStringLiteral("On a new page, justified."), textFormat(QStringLiteral("Times"), 14));
    cursor.insertBlock(QTextBlockFormat(), textFormat(QStringLiteral("Times"), 20)); // an empty line
    cursor.insertBlock(QTextBlockFormat(), base);
    cursor.insertText(QStringLiteral("Pictures: "), base);
    QTextImageFormat image;
    image.setName(QStringLiteral("logo.png"));
    image.setWidth(50);
    image.setHeight(40);
    cursor.insertImage(image);
    QTextImageFormat natural;
    natural.setName(QStringLiteral("photo one.jpg"));
    cursor.insertImage(natural);
    cursor.insertImage(image);

    auto tableFormat = [](QList<qreal> widths) {
        QTextTableFormat format;
        format.setBorder(1);
        format.setCellPadding(6);
        QList<QTextLength> lengths;
        for (qreal width : widths)
            lengths.append(QTextLength(QTextLength::FixedLength, width));
        format.setColumnWidthConstraints(lengths);
        return format;
    };
    cursor.insertBlock(QTextBlockFormat(), base);
    cursor.insertText(QStringLiteral("Table follows"), base);
    QTextTable *table = cursor.insertTable(4, 3, tableFormat({120, 80, 60}));
    table->mergeCells(0, 0, 1, 2);
    table->mergeCells(1, 2, 2, 1);
    const QStringList texts = {QStringLiteral("wide"), QStringLiteral("c"), QStringLiteral("d"), QStringLiteral("e"),
                               QStringLiteral("tall"), QStringLiteral("f"), QStringLiteral("g"), QStringLiteral("h"),
                               QStringLiteral("i"),    QStringLiteral("j")};
    int next = 0;
    for (int r = 0; r < table->rows(); ++r)
        for (int c = 0; c < table->columns(); ++c) {
            QTextTableCell cell = table->cellAt(r, c);
            if (cell.row() != r || cell.column() != c)
                continue;
            QTextCursor cellCursor = cell.firstCursorPosition();
            cellCursor.insertText(texts.value(next++), base);
            if (r == 1 && c == 0) {
                QTextTableCellFormat cellFormat = cell.format().toTableCellFormat();
                cellFormat.setBackground(QColor(220, 230, 240));
                cell.setFormat(cellFormat);
                QTextBlockFormat right;
                right.setAlignment(Qt::AlignRight);
                cellCursor.insertBlock(right, base);
                cellCursor.insertText(QStringLiteral("second paragraph"), base);
            }
            if (r == 3 && c == 2)
                cellCursor.insertImage(image);
        }
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral("Between tables"), base);
    cursor.insertBlock();
    cursor.insertTable(1, 2, tableFormat({90, 90}))
        ->cellAt(0, 1)
        .firstCursorPosition()
        .insertText(QStringLiteral("x"), base);
    cursor.movePosition(QTextCursor::End);
    cursor.insertTable(1, 1, tableFormat({200}))
        ->cellAt(0, 0)
        .firstCursorPosition()
        .insertText(QStringLiteral("last"), base);
    return document;
}

std::unique_ptr<QTextDocument> readBack(const QByteArray &rtf)
{
    auto document = std::make_unique<QTextDocument>();
    RtfReader reader;
    if (!reader.read(rtf, document.get()))
        return nullptr;
    return document;
}

std::unique_ptr<QTextDocument> fixture(const QString &name)
{
    auto document = std::make_unique<QTextDocument>();
    if (name == QLatin1String("rich"))
        return richDocument();
    if (!RtfReader().readFile(kData + name, document.get()))
        return nullptr;
    return document;
}

} // namespace

class TestRtfWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void roundTrip_data();
    void roundTrip();
    void richDocumentSnapshot();
    void escapes();
    void htmlDocument();
    void packageFiles();
    void packageKeepsFilesThatAreNoPictures();
};

void TestRtfWriter::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));
}

void TestRtfWriter::roundTrip_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"cocoa.rtf", "picture.rtfd", "libreoffice.rtf", "word1251.rtf", "shiftjis.rtf", "rich"})
        QTest::addRow("%s", name) << QString::fromLatin1(name);
}

void TestRtfWriter::roundTrip()
{
    QFETCH(QString, name);
    const auto original = fixture(name);
    QVERIFY(original);
    const QByteArray rtf = RtfWriter().toRtf(original.get());
    QVERIFY(rtf.startsWith("{\\rtf1\\ansi") && rtf.endsWith("}\n"));
    for (char c : rtf)
        QVERIFY2((c >= 0x20 && c < 0x7F) || c == '\n', "not plain ASCII");
    const auto copy = readBack(rtf);
    QVERIFY(copy);
    QCOMPARE(DocumentSnapshot::describe(*copy), DocumentSnapshot::describe(*original));
    QCOMPARE(copy->metaInformation(QTextDocument::DocumentTitle),
             original->metaInformation(QTextDocument::DocumentTitle));
    // Written again, the copy gives the same RTF: nothing drifts.
    QCOMPARE(RtfWriter().toRtf(copy.get()), rtf);
}

void TestRtfWriter::richDocumentSnapshot()
{
    // The round trip above compares like with like; here the rich document
    // is checked to hold what it is meant to, so that a round trip that
    // loses a feature on both sides cannot pass unseen.
    const auto document = richDocument();
    const auto copy = readBack(RtfWriter().toRtf(document.get()));
    QVERIFY(copy);
    const QString lines = DocumentSnapshot::describe(*copy).join(QLatin1Char('\n'));
    for (const char *expected : {"run \"Bold \" font=Helvetica size=12 bold",
                                 "underline=1",
                                 "underline=2",
                                 "underline=3",
                                 "underline=6",
                                 "strike fg=#ffc80a14 bg=#ffffff00",
                                 "font=Courier size=9.5 valign=1",
                                 "valign=2",
                                 "href=https://example.com/?a=1&b=2",
                                 "tabs=[100:0,300:1,350:2,420:3]",
                                 "left=48 right=12 first=-24 before=6 after=9",
                                 "align=8 left=0 right=0 first=0 before=0 after=0 tabs=[] page",
                                 "image 50x40 picture=5x4",
                                 "image 3x3 picture=3x3",
                                 "table 4x3 border=1 padding=6 widths=[120,80,60]",
                                 "cell 0,0 span 1x2",
                                 "cell 1,2 span 2x1",
                                 "bg=#ffdce6f0",
                                 "table 1x2 border=1 padding=6 widths=[90,90]",
                                 "table 1x1"})
        QVERIFY2(lines.contains(QLatin1String(expected)), expected);
    QCOMPARE(DocumentSnapshot::outline(*copy),
             QStringLiteral("Bold italic under1 under2 under3 under6 struck coloured updown a link\n"
                            "a\tb\tc\td[br]line two \\{braces}\u00a0nbsp soft\u00adhyphen non\u2011break "
                            "Привет 日本語 😀 € ß ÿ Œ\n"
                            "On a new page, justified.\n"
                            "\n"
                            "Pictures: [img][img][img]\n"
                            "Table follows\n"
                            "<wide|c/d\nsecond paragraph|e|tall/f|g/h|i|j[img]>\n"
                            "Between tables\n"
                            "\n"
                            "<|x>\n"
                            "\n"
                            "<last>\n"));
}

void TestRtfWriter::escapes()
{
    QTextDocument document;
    QTextCursor(&document).insertText(QStringLiteral("é П 😀 {x} a\\b €"));
    const QByteArray rtf = RtfWriter().toRtf(&document);
    QVERIFY(rtf.contains("\\'e9 \\u1055? \\u-10179?\\u-8704? \\{x\\} a\\\\b \\'80"));
}

void TestRtfWriter::htmlDocument()
{
    // What the invoices insert: HTML turned into a document, then saved.
    QTextDocument document;
    document.setHtml(
        QStringLiteral("<h1>Order <i>42</i></h1><p>Pay <a href=\"https://example.com\">here</a>, <b>now</b>.</p>"
                       "<table border=\"1\"><tr><th>Item</th><th>Qty</th></tr><tr><td>Bolt</td><td>12</td></tr>"
                       "<tr><td colspan=\"2\">Total</td></tr></table><ul><li>one</li><li>two</li></ul>"));
    const auto copy = readBack(RtfWriter().toRtf(&document));
    QVERIFY(copy);
    QCOMPARE(DocumentSnapshot::outline(*copy), DocumentSnapshot::outline(document));
    const QTextCursor link = copy->find(QStringLiteral("here"));
    QTextCursor at(link);
    at.setPosition(link.selectionStart() + 1);
    QCOMPARE(at.charFormat().anchorHref(), QStringLiteral("https://example.com"));
}

void TestRtfWriter::packageFiles()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("notes.rtfd"));
    const auto document = richDocument();
    RtfWriter writer;
    QVERIFY(writer.writeFile(document.get(), path));
    QDir package(path);
    // One file per picture, however often it is shown.
    QCOMPARE(package.entryList(QDir::Files, QDir::Name),
             (QStringList{QStringLiteral("TXT.rtf"), QStringLiteral("logo.png"), QStringLiteral("photo one.png")}));
    const QByteArray rtf = fileBytes(package.filePath(QStringLiteral("TXT.rtf")));
    QCOMPARE(rtf.count("{{\\NeXTGraphic logo.png \\width750 \\height600"), 3);
    QVERIFY(rtf.contains("{{\\NeXTGraphic photo one.png \\width45 \\height45"));
    QCOMPARE(QImage(package.filePath(QStringLiteral("logo.png"))).convertToFormat(QImage::Format_ARGB32),
             checkerImage(5, 4, qRgba(255, 0, 0, 255), qRgba(0, 0, 255, 128)));

    // Saved again without pictures: their files go, other things stay.
    QVERIFY(QDir(path).mkdir(QStringLiteral("kept folder")));
    QVERIFY(writeBytes(package.filePath(QStringLiteral(".hidden")), QByteArray()));
    QTextDocument plain;
    plain.setPlainText(QStringLiteral("no pictures now"));
    QVERIFY(writer.writeFile(&plain, path));
    QCOMPARE(package.entryList(QDir::Files | QDir::Hidden | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name),
             (QStringList{QStringLiteral(".hidden"), QStringLiteral("TXT.rtf"), QStringLiteral("kept folder")}));
    QTextDocument reread;
    QVERIFY(RtfReader().readFile(path, &reread));
    QCOMPARE(reread.toPlainText(), QStringLiteral("no pictures now"));

    // A folder where a new picture's file must go makes the write fail; the text stays as it was.
    QVERIFY(package.mkdir(QStringLiteral("logo.png")));
    const QByteArray before = fileBytes(package.filePath(QStringLiteral("TXT.rtf")));
    QVERIFY(!writer.writeFile(document.get(), path));
    QVERIFY(writer.errorString().contains(QStringLiteral("logo.png")));
    QCOMPARE(fileBytes(package.filePath(QStringLiteral("TXT.rtf"))), before);
}

void TestRtfWriter::packageKeepsFilesThatAreNoPictures()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString source = dir.filePath(QStringLiteral("source.rtfd"));
    QVERIFY(QDir().mkpath(source));
    const QByteArray terms("%PDF-1.4 terms and conditions");
    QVERIFY(writeBytes(source + QStringLiteral("/Terms 2024.pdf"), terms));
    QVERIFY(writeBytes(source + QStringLiteral("/TXT.rtf"),
                       "{\\rtf1 See {{\\NeXTGraphic Terms 2024.pdf \\width600 \\height600}\\'ac} attached.}"));
    QTextDocument document;
    QVERIFY(RtfReader().readFile(source, &document));
    QCOMPARE(document.toPlainText(), QStringLiteral("See \uFFFC attached."));

    // Into another package, and back into its own: the file goes along.
    RtfWriter writer;
    for (const QString &target : {dir.filePath(QStringLiteral("copy.rtfd")), source}) {
        QVERIFY(writer.writeFile(&document, target));
        QCOMPARE(fileBytes(target + QStringLiteral("/Terms 2024.pdf")), terms);
        QVERIFY(fileBytes(target + QStringLiteral("/TXT.rtf"))
                    .contains("{{\\NeXTGraphic Terms 2024.pdf \\width600 \\height600"));
        QCOMPARE(QDir(target).entryList(QDir::Files).size(), 2);
    }
}

QTEST_MAIN(TestRtfWriter)
#include "tst_rtfwriter.moc"
