#include "DocumentSnapshot.h"
#include "richtext/RichTextTools.h"
#include "richtext/RtfReader.h"
#include "support/CliRunner.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kData = QStringLiteral(LW_TEST_DATA "/richtext/");

// A table of the given column width with many rows, after a title.
void fillTable(QTextDocument *document, qreal columnWidth, int rows)
{
    QTextCursor cursor(document);
    cursor.insertText(QStringLiteral("Lines"));
    QTextTableFormat format;
    format.setColumnWidthConstraints(
        {QTextLength(QTextLength::FixedLength, columnWidth), QTextLength(QTextLength::FixedLength, columnWidth)});
    QTextTable *table = cursor.insertTable(rows, 2, format);
    for (int r = 0; r < rows; ++r)
        table->cellAt(r, 0).firstCursorPosition().insertText(QStringLiteral("Item %1").arg(r));
}

int printedPages(const QTextDocument &document)
{
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(QPageSize::A4));
    return RichTextTools::print(&document, &writer);
}

} // namespace

class TestRichTextTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replaceAll_data();
    void replaceAll();
    void replaceAllKeepsFormat();
    void replaceInsideTable();
    void insertHtmlAtFirstOccurrence();
    void pdfOfFixture();
    void wideContentIsFittedToThePage();
};

void TestRichTextTools::replaceAll_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("find");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("count");

    QTest::addRow("every occurrence") << u"a <x> b <x>"_s << u"<x>"_s << u"1"_s << u"a 1 b 1"_s << 2;
    QTest::addRow("value holding its placeholder") << u"<x>!"_s << u"<x>"_s << u"<x><x>"_s << u"<x><x>!"_s << 1;
    QTest::addRow("empty value removes") << u"a<x>b"_s << u"<x>"_s << u""_s << u"ab"_s << 1;
    QTest::addRow("empty find") << u"abc"_s << u""_s << u"z"_s << u"abc"_s << 0;
    QTest::addRow("across paragraphs") << u"<a>\n<a> <a>"_s << u"<a>"_s << u"b"_s << u"b\nb b"_s << 3;
}

void TestRichTextTools::replaceAll()
{
    QFETCH(QString, text);
    QFETCH(QString, find);
    QFETCH(QString, replacement);
    QTextDocument document;
    document.setPlainText(text);
    QTEST(RichTextTools::replaceAll(&document, find, replacement), "count");
    QTEST(document.toPlainText(), "expected");
}

void TestRichTextTools::replaceAllKeepsFormat()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextCharFormat plain;
    plain.setFontPointSize(12);
    QTextCharFormat strong = plain;
    strong.setFontWeight(QFont::Bold);
    strong.setForeground(Qt::red);
    QTextCharFormat slanted = plain;
    slanted.setFontItalic(true);
    cursor.insertText(QStringLiteral("Dear "), plain);
    cursor.insertText(QStringLiteral("<name>"), strong);
    cursor.insertText(QStringLiteral(", from "), plain);
    // A placeholder whose characters differ: it takes its first one's format.
    cursor.insertText(QStringLiteral("<com"), slanted);
    cursor.insertText(QStringLiteral("pany>"), plain);
    cursor.insertText(QStringLiteral(" <name>."), plain);

    QCOMPARE(RichTextTools::replaceAll(&document, QStringLiteral("<name>"), QStringLiteral("Alice")), 2);
    QCOMPARE(RichTextTools::replaceAll(&document, QStringLiteral("<company>"), QStringLiteral("Acme")), 1);
    QCOMPARE(document.toPlainText(), QStringLiteral("Dear Alice, from Acme Alice."));
    const QTextCharFormat name = DocumentSnapshot::formatOf(document, QStringLiteral("Alice"));
    QCOMPARE(name.fontWeight(), int(QFont::Bold));
    QCOMPARE(name.foreground().color(), QColor(Qt::red));
    QVERIFY(DocumentSnapshot::formatOf(document, QStringLiteral("Acme")).fontItalic());
    const QTextCharFormat second = DocumentSnapshot::formatOf(document, QStringLiteral("Alice."));
    QVERIFY(!second.fontItalic() && second.fontWeight() < QFont::DemiBold);
}

void TestRichTextTools::replaceInsideTable()
{
    QTextDocument document;
    QVERIFY(RtfReader().readFile(kData + QStringLiteral("cocoa.rtf"), &document));
    QVERIFY(RichTextTools::replaceAll(&document, QStringLiteral("Widget"), QStringLiteral("Sprocket, large")) == 1);
    QCOMPARE(RichTextTools::replaceAll(&document, QStringLiteral("<total>"), QStringLiteral("€15.50")), 2);
    QCOMPARE(DocumentSnapshot::firstTable(document)->cellAt(1, 0).firstCursorPosition().block().text(),
             QStringLiteral("Sprocket, large"));
    QVERIFY(document.toPlainText().contains(QStringLiteral("Total due: €15.50")));
    QVERIFY(!document.toPlainText().contains(QStringLiteral("<total>")));
}

void TestRichTextTools::insertHtmlAtFirstOccurrence()
{
    QTextDocument document;
    document.setPlainText(QStringLiteral("Items:\n<itemsordered>\nEnd <itemsordered>"));
    QVERIFY(RichTextTools::insertHtml(
        &document, QStringLiteral("<itemsordered>"),
        QStringLiteral(
            "<table border=\"1\"><tr><th>Item</th><th>Price</th></tr><tr><td>Bolt</td><td>0.10</td></tr></table>")));
    QTextTable *table = DocumentSnapshot::firstTable(document);
    QVERIFY(table);
    QCOMPARE(table->cellAt(1, 0).firstCursorPosition().block().text(), QStringLiteral("Bolt"));
    QVERIFY(DocumentSnapshot::formatOf(document, QStringLiteral("Price")).fontWeight() >= QFont::DemiBold);
    // Only the first placeholder: the second stays in the text.
    const QString text = document.toPlainText();
    QCOMPARE(text.count(QStringLiteral("<itemsordered>")), 1);
    QVERIFY(text.startsWith(QStringLiteral("Items:")));
    QVERIFY(text.endsWith(QStringLiteral("End <itemsordered>")));

    QTextDocument none;
    none.setPlainText(QStringLiteral("No lines here"));
    QVERIFY(!RichTextTools::insertHtml(&none, QStringLiteral("<itemsordered>"), QStringLiteral("<b>x</b>")));
    QVERIFY(!RichTextTools::insertHtml(&none, QString(), QStringLiteral("<b>x</b>")));
    QCOMPARE(none.toPlainText(), QStringLiteral("No lines here"));
}

void TestRichTextTools::pdfOfFixture()
{
    QTextDocument document;
    QVERIFY(RtfReader().readFile(kData + u"picture.rtfd"_s, &document));
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("out.pdf"));
    QString error;
    QVERIFY2(RichTextTools::writePdf(&document, path, &error), qPrintable(error));
    const QByteArray data = fileBytes(path);
    QVERIFY(data.startsWith("%PDF-"));
    QVERIFY(data.contains("/Type /Page"));
    QVERIFY(data.size() > 1000);
    // The caller's document is not laid out for the printer.
    QCOMPARE(document.pageSize().width(), QTextDocument().pageSize().width());
}

void TestRichTextTools::wideContentIsFittedToThePage()
{
    // The same rows in columns three times wider than an A4 page: scaled to
    // the page width, they take about a third of the pages.
    QTextDocument narrow;
    fillTable(&narrow, 150, 400);
    QTextDocument wide;
    fillTable(&wide, 1200, 400);
    const int narrowPages = printedPages(narrow);
    const int widePages = printedPages(wide);
    QVERIFY2(narrowPages >= 6, qPrintable(QString::number(narrowPages)));
    QVERIFY2(widePages * 2 < narrowPages, qPrintable(QStringLiteral("%1 vs %2").arg(widePages).arg(narrowPages)));
    QVERIFY(widePages >= 1);
}

QTEST_MAIN(TestRichTextTools)
#include "tst_richtexttools.moc"
