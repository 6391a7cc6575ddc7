#pragma once

#include <QStringList>

class QTextDocument;

// A document as lines of text, one per block, run, picture, table and cell,
// each with its effective formats (what the document would show), so that
// two documents compare with QCOMPARE and a difference reads plainly.
namespace DocumentSnapshot {

QStringList describe(const QTextDocument &document);

// The document's text with pictures, tables and breaks spelled out:
// "[img]", "|" between cells, "/" between rows, "\n" between blocks.
QString outline(const QTextDocument &document);

} // namespace DocumentSnapshot
