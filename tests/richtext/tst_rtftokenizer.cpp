#include "richtext/RtfTokenizer.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

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

class TestRtfTokenizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tokens_data();
    void tokens();
    void positionNeverPassesTheEnd();
};

void TestRtfTokenizer::tokens_data()
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

void TestRtfTokenizer::tokens()
{
    QFETCH(QByteArray, input);
    QTEST(describe(input), "expected");
}

void TestRtfTokenizer::positionNeverPassesTheEnd()
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

QTEST_GUILESS_MAIN(TestRtfTokenizer)
#include "tst_rtftokenizer.moc"
