#pragma once

#include <QStringList>
#include <QTextCharFormat>

class QTextDocument;
class QTextTable;

// A document as lines of text, one per block, run, picture, table and cell,
// each with its effective formats (what the document would show), so that
// two documents compare with QCOMPARE and a difference reads plainly.
namespace DocumentSnapshot {

QStringList describe(const QTextDocument &document);

// The document's text with pictures, tables and breaks spelled out:
// "[img]", "|" between cells, "/" between rows, "\n" between blocks.
QString outline(const QTextDocument &document);

// The format of the first character of the first occurrence of text.
QTextCharFormat formatOf(const QTextDocument &document, const QString &text);

// The first table of the document's root frame, or null.
QTextTable *firstTable(const QTextDocument &document);

} // namespace DocumentSnapshot
