#include "richtext/RtfTableBuilder.h"

#include <QTextCursor>
#include <QTextTable>

#include <algorithm>

namespace {

constexpr qreal kTwipsPerPixel = 15.0;

bool hasContent(const QList<RtfParagraph> &paragraphs)
{
    return std::any_of(paragraphs.begin(), paragraphs.end(), [](const RtfParagraph &p) { return !p.isEmpty(); });
}

} // namespace

void RtfTableBuilder::resetRowDefinition()
{
    m_definitions.clear();
    m_pendingCell = CellDefinition();
}

void RtfTableBuilder::endCellDefinition(int right)
{
    m_pendingCell.right = std::clamp(right, 0, 1000000);
    if (m_definitions.size() < kMaxColumns)
        m_definitions.append(m_pendingCell);
    m_pendingCell = CellDefinition();
}

void RtfTableBuilder::noteBorder(int widthTwips)
{
    m_borderWidth = std::max({m_borderWidth, widthTwips, 1});
}

void RtfTableBuilder::addParagraph(const RtfParagraph &paragraph)
{
    m_paragraphs.append(paragraph);
}

void RtfTableBuilder::endCell(const RtfParagraph &paragraph)
{
    m_paragraphs.append(paragraph);
    m_cells.append({m_paragraphs, CellDefinition()});
    m_paragraphs.clear();
}

void RtfTableBuilder::endRow()
{
    if (!m_paragraphs.isEmpty())
        endCell(RtfParagraph());
    // Word writes the row's definition after its cells, Cocoa before them:
    // either way it is the one in force at \row.
    for (qsizetype i = 0; i < m_cells.size() && i < m_definitions.size(); ++i)
        m_cells[i].definition = m_definitions.at(i);
    if (m_cellCount + std::max<qsizetype>(m_cells.size(), 1) <= kMaxCells) {
        m_cellCount += std::max<qsizetype>(m_cells.size(), 1);
        m_rows.append(m_cells);
    }
    m_cells.clear();
}

QList<RtfTableBuilder::Placement> RtfTableBuilder::place(int *columns, QList<int> *widths) const
{
    // Each cell's right edge, forced to grow along the row; cells without a
    // definition get the next free edge.
    QList<QList<int>> rights;
    QList<int> grid;
    for (const QList<Cell> &row : m_rows) {
        QList<int> edges;
        int previous = 0;
        for (const Cell &cell : row) {
            previous = std::max(cell.definition.right, previous + 1);
            edges.append(previous);
            grid.append(previous);
        }
        rights.append(edges);
    }
    std::sort(grid.begin(), grid.end());
    grid.erase(std::unique(grid.begin(), grid.end()), grid.end());
    const bool byIndex = grid.size() > kMaxColumns;
    if (byIndex) {
        // Edges that do not line up into a sane grid: one column per cell.
        grid.clear();
        for (int i = 1; i <= kMaxColumns; ++i)
            grid.append(i);
        for (QList<int> &edges : rights)
            for (qsizetype i = 0; i < edges.size(); ++i)
                edges[i] = int(std::min<qsizetype>(i + 1, kMaxColumns));
    }
    *columns = std::max<int>(int(grid.size()), 1);

    QList<Placement> placements;
    QList<int> lastAtColumn(*columns, -1);
    for (qsizetype r = 0; r < m_rows.size(); ++r) {
        const QList<Cell> &row = m_rows.at(r);
        int rowStart = int(placements.size());
        for (qsizetype i = 0; i < row.size(); ++i) {
            const Cell &cell = row.at(i);
            const int end = int(std::lower_bound(grid.begin(), grid.end(), rights[r][i]) - grid.begin());
            const int start =
                i == 0 ? 0 : int(std::lower_bound(grid.begin(), grid.end(), rights[r][i - 1]) - grid.begin()) + 1;
            if (start > end || start >= *columns) {
                // Past the last column (cells beyond the limit): keep the text.
                if (placements.size() > rowStart && hasContent(cell.paragraphs))
                    placements.last().cells.append(&cell);
                continue;
            }
            if (cell.definition.mergedLeft && placements.size() > rowStart) {
                Placement &left = placements.last();
                left.columnSpan = end - left.column + 1;
                if (hasContent(cell.paragraphs))
                    left.cells.append(&cell);
                continue;
            }
            if (cell.definition.mergedAbove && lastAtColumn[start] >= 0) {
                Placement &above = placements[lastAtColumn[start]];
                if (above.row + above.rowSpan == r && above.column + above.columnSpan - 1 == end) {
                    ++above.rowSpan;
                    if (hasContent(cell.paragraphs))
                        above.cells.append(&cell);
                    continue;
                }
            }
            Placement placement;
            placement.row = int(r);
            placement.column = start;
            placement.columnSpan = end - start + 1;
            placement.cells.append(&cell);
            lastAtColumn[start] = int(placements.size());
            placements.append(placement);
        }
    }

    // Spans that would overlap (only garbage does that) are cut back.
    QList<bool> taken(m_rows.size() * *columns, false);
    auto isFree = [&](const Placement &p) {
        for (int r = p.row; r < p.row + p.rowSpan; ++r)
            for (int c = p.column; c < p.column + p.columnSpan; ++c)
                if (taken[r * *columns + c])
                    return false;
        return true;
    };
    QList<Placement> result;
    for (Placement p : placements) {
        if (!isFree(p)) {
            p.rowSpan = p.columnSpan = 1;
            if (!isFree(p))
                continue;
        }
        for (int r = p.row; r < p.row + p.rowSpan; ++r)
            for (int c = p.column; c < p.column + p.columnSpan; ++c)
                taken[r * *columns + c] = true;
        result.append(p);
    }

    if (!byIndex) {
        int previous = 0;
        for (int edge : grid) {
            widths->append(edge - previous);
            previous = edge;
        }
    }
    return result;
}

QTextTable *RtfTableBuilder::insert(QTextCursor &cursor)
{
    if (!m_cells.isEmpty() || !m_paragraphs.isEmpty())
        endRow();
    if (m_rows.isEmpty()) {
        *this = RtfTableBuilder();
        return nullptr;
    }

    int columns = 0;
    QList<int> columnWidths;
    const QList<Placement> placements = place(&columns, &columnWidths);

    QTextTableFormat format;
    format.setBorder(m_borderWidth > 0 ? std::max(1.0, m_borderWidth / kTwipsPerPixel) : 0);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderCollapse(true);
    format.setCellSpacing(0);
    format.setCellPadding(std::clamp(m_padding, 0, 1440) / kTwipsPerPixel);
    if (m_alignment != Qt::AlignLeft)
        format.setAlignment(m_alignment);
    if (columnWidths.size() == columns) {
        QList<QTextLength> widths;
        for (int width : columnWidths)
            widths.append(QTextLength(QTextLength::FixedLength, std::min(width, 31680) / kTwipsPerPixel));
        format.setColumnWidthConstraints(widths);
    }

    // Cells take the cursor's character format for their marks: start clean.
    cursor.setCharFormat(QTextCharFormat());
    QTextTable *table = cursor.insertTable(int(m_rows.size()), columns, format);
    for (const Placement &p : placements)
        if (p.rowSpan > 1 || p.columnSpan > 1)
            table->mergeCells(p.row, p.column, p.rowSpan, p.columnSpan);
    for (const Placement &p : placements) {
        QTextTableCell cell = table->cellAt(p.row, p.column);
        const QColor background = p.cells.first()->definition.background;
        if (background.isValid()) {
            QTextTableCellFormat cellFormat = cell.format().toTableCellFormat();
            cellFormat.setBackground(background);
            cell.setFormat(cellFormat);
        }
        QTextCursor cellCursor = cell.firstCursorPosition();
        bool first = true;
        for (const Cell *part : p.cells) {
            for (const RtfParagraph &paragraph : part->paragraphs) {
                if (!first)
                    cellCursor.insertBlock(paragraph.format, paragraph.markFormat);
                paragraph.fill(cellCursor, !first);
                first = false;
            }
        }
    }
    *this = RtfTableBuilder();
    return table;
}
