#pragma once

#include "richtext/RtfParagraph.h"

#include <QColor>
#include <QList>

class QTextCursor;
class QTextTable;

// Collects the rows of an RTF table (\trowd ... \cellx ... \cell ... \row)
// and builds the QTextTable once the table is complete, so that its column
// grid comes from every row's cell boundaries at once.
class RtfTableBuilder
{
public:
    static constexpr int kMaxColumns = 63;
    // Beyond this many cells the rest of a table is dropped: no document
    // needs more, and garbage input must not build a huge table.
    static constexpr int kMaxCells = 20000;

    struct CellDefinition
    {
        int right = 0; // twips from the row's left edge
        QColor background;
        bool mergedLeft = false;  // \clmrg: part of the cell before it
        bool mergedAbove = false; // \clvmrg: part of the cell above
    };

    // \trowd: a new row definition.
    void resetRowDefinition();
    // Properties of the cell being defined, until its \cellx.
    CellDefinition &pendingCell() { return m_pendingCell; }
    void endCellDefinition(int right);
    void setCellPadding(int twips) { m_padding = twips; }
    void setAlignment(Qt::Alignment alignment) { m_alignment = alignment; }
    void noteBorder(int widthTwips);

    // A paragraph ended by \par inside the current cell.
    void addParagraph(const RtfParagraph &paragraph);
    void endCell(const RtfParagraph &paragraph);
    void endRow();

    bool isEmpty() const { return m_rows.isEmpty() && m_cells.isEmpty() && m_paragraphs.isEmpty(); }
    // Inserts the table at the cursor and forgets it.
    QTextTable *insert(QTextCursor &cursor);

private:
    struct Cell
    {
        QList<RtfParagraph> paragraphs;
        CellDefinition definition;
    };
    struct Placement
    {
        int row = 0;
        int column = 0;
        int rowSpan = 1;
        int columnSpan = 1;
        QList<const Cell *> cells; // the first holds the formats; the others add content
    };

    // Where each cell goes in the column grid, and the grid's widths in twips.
    QList<Placement> place(int *columns, QList<int> *widths) const;

    QList<CellDefinition> m_definitions;
    CellDefinition m_pendingCell;
    QList<QList<Cell>> m_rows;
    qsizetype m_cellCount = 0;
    QList<Cell> m_cells;              // finished cells of the current row
    QList<RtfParagraph> m_paragraphs; // paragraphs of the current cell
    int m_padding = 108;              // twips between a cell's edge and its text
    int m_borderWidth = 0;
    Qt::Alignment m_alignment = Qt::AlignLeft;
};
