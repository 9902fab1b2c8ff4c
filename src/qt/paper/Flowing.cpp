#include "qt/paper/Flowing.h"

#include <QTextCursor>
#include <QTextFrame>
#include <QTextTable>

namespace zv::paper {
namespace {

void joinParagraphs(const QTextTableCell& cell)
{
    QTextCursor at = cell.firstCursorPosition();
    while (at.movePosition(QTextCursor::EndOfBlock), at.position() < cell.lastPosition()) {
        const QTextCharFormat format = at.charFormat();
        at.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
        at.insertText(QString(QChar::LineSeparator), format);
    }
}

void suit(QTextTable& table)
{
    QTextTableFormat format = table.format();
    for (int row = 0; row < table.rows(); ++row)
        for (int column = 0; column < table.columns(); ++column) {
            QTextTableCell cell = table.cellAt(row, column);
            if (cell.row() != row || cell.column() != column)
                continue;
            joinParagraphs(cell);
            QTextTableCellFormat own = cell.format().toTableCellFormat();
            if (!own.hasProperty(QTextFormat::BackgroundBrush) &&
                format.hasProperty(QTextFormat::BackgroundBrush))
                own.setBackground(format.background());
            cell.setFormat(own);
            if (own.topBorder() > 0) {
                format.setBorder(own.topBorder());
                format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
                format.setBorderBrush(own.topBorderBrush());
            }
        }
    table.setFormat(format);
}

void suitTables(QTextFrame& frame)
{
    for (QTextFrame* inner : frame.childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(inner))
            suit(*table);
        suitTables(*inner);
    }
}

} // namespace

void suitWriter(QTextDocument& document)
{
    suitTables(*document.rootFrame());
    QTextCursor all(&document);
    all.select(QTextCursor::Document);
    QTextCharFormat level;
    level.setVerticalAlignment(QTextCharFormat::AlignNormal);
    all.mergeCharFormat(level);
}

} // namespace zv::paper
