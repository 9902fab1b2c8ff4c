#include "qt/paper/Breaks.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextLayout>
#include <QTextTable>

#include <algorithm>
#include <utility>
#include <vector>

namespace zv::paper {
namespace {

/// Rounding of positions, in the units of the layout.
constexpr double tolerance = 2;
/// Each break is made once; a document of so many is none of ours.
constexpr int mostBreaks = 400;
/// Shares of a page.
constexpr double highestHead = 0.4;
constexpr double longestText = 0.4;

/// Block or table of the document's outermost frame.
struct Piece {
    QTextBlock block;
    QTextTable* table = nullptr;
};

struct Span {
    double top = 0;
    double bottom = 0;
};

class Breaker {
public:
    explicit Breaker(QTextDocument& document) : document_(document) {}

    /// Mends the first fault from the top; false if there is none.
    bool mend()
    {
        collect();
        for (std::size_t place = 0; place < pieces_.size(); ++place)
            if (isHeading(pieces_[place])         ? mendHeading(place)
                : pieces_[place].table != nullptr ? mendTable(place)
                                                  : mendText(place))
                return true;
        return !std::exchange(endMended_, true) && mendEnd();
    }

private:
    void collect()
    {
        pieces_.clear();
        const QTextFrame* root = document_.rootFrame();
        for (auto each = root->begin(); !each.atEnd(); ++each)
            if (auto* table = qobject_cast<QTextTable*>(each.currentFrame()))
                pieces_.push_back({{}, table});
            else if (each.currentBlock().isValid())
                pieces_.push_back({each.currentBlock(), nullptr});
    }
    int page(double y) const { return static_cast<int>(y / document_.pageSize().height()); }
    bool fits(const Span& span) const { return page(span.top) == page(span.bottom - tolerance); }
    static bool isHeading(const Piece& piece)
    {
        return piece.block.isValid() && piece.block.blockFormat().headingLevel() > 0;
    }
    Span ofBlock(const QTextBlock& block) const
    {
        const QRectF place = document_.documentLayout()->blockBoundingRect(block);
        return {place.top(), place.bottom()};
    }
    Span ofRow(QTextTable& table, int row) const
    {
        Span span{1e12, 0};
        for (int column = 0; column < table.columns(); ++column) {
            const QTextTableCell cell = table.cellAt(row, column);
            span.top = std::min(span.top, ofBlock(cell.firstCursorPosition().block()).top);
            span.bottom = std::max(span.bottom, ofBlock(cell.lastCursorPosition().block()).bottom);
        }
        return span;
    }
    /// What a heading has to stand with: the first line of a text, a table's head and first row.
    Span beginningOf(const Piece& piece) const
    {
        if (piece.table != nullptr) {
            const int first = std::min(piece.table->format().headerRowCount(), piece.table->rows() - 1);
            return {ofRow(*piece.table, 0).top, ofRow(*piece.table, first).bottom};
        }
        const Span whole = ofBlock(piece.block);
        const QTextLayout* lines = piece.block.layout();
        return {whole.top,
                lines->lineCount() > 0 ? whole.top + lines->lineAt(0).rect().bottom() : whole.bottom};
    }
    static bool isEmpty(const Piece& piece)
    {
        return piece.table == nullptr && piece.block.text().trimmed().isEmpty();
    }
    bool breaksBefore(const Piece& piece) const
    {
        const auto policy = piece.table != nullptr ? piece.table->format().pageBreakPolicy()
                                                   : piece.block.blockFormat().pageBreakPolicy();
        return (policy & QTextFormat::PageBreak_AlwaysBefore) != 0;
    }
    static void setBreak(const Piece& piece, QTextFormat::PageBreakFlags policy)
    {
        if (piece.table != nullptr) {
            QTextTableFormat format = piece.table->format();
            format.setPageBreakPolicy(policy);
            piece.table->setFormat(format);
        } else {
            QTextBlockFormat format = piece.block.blockFormat();
            format.setPageBreakPolicy(policy);
            QTextCursor(piece.block).setBlockFormat(format);
        }
    }
    /// Begins a page with the piece and the headings above it. False if it does so already.
    bool breakBefore(std::size_t place)
    {
        while (place > 0 && (isHeading(pieces_[place - 1]) ||
                             (isEmpty(pieces_[place - 1]) && place > 1 && isHeading(pieces_[place - 2]))))
            --place;
        const Piece& piece = pieces_[place];
        if (place == 0 || breaksBefore(piece))
            return false;
        setBreak(piece, QTextFormat::PageBreak_AlwaysBefore);
        return true;
    }
    bool mendHeading(std::size_t place)
    {
        std::size_t next = place + 1;
        while (next < pieces_.size() && (isEmpty(pieces_[next]) || isHeading(pieces_[next])))
            ++next;
        if (next == pieces_.size())
            return false;
        return !fits({ofBlock(pieces_[place].block).top, beginningOf(pieces_[next]).bottom}) &&
               breakBefore(place);
    }
    /// A paragraph stands on one page, unless it is so long that much of the page before would be empty.
    bool mendText(std::size_t place)
    {
        const Span whole = ofBlock(pieces_[place].block);
        return !isEmpty(pieces_[place]) && !fits(whole) &&
               whole.bottom - whole.top < document_.pageSize().height() * longestText && breakBefore(place);
    }
    /// What ends a report, its signatures say, stands on no page alone.
    bool mendEnd()
    {
        const auto before = [&](std::size_t place) {
            while (place > 0 && isEmpty(pieces_[place - 1]))
                --place;
            return place;
        };
        const std::size_t last = before(pieces_.size());
        const std::size_t other = last == 0 ? 0 : before(last - 1);
        if (other == 0)
            return false;
        const Piece& former = pieces_[other - 1];
        const double end = former.table != nullptr ? ofRow(*former.table, former.table->rows() - 1).bottom
                                                   : ofBlock(former.block).bottom;
        if (page(beginningOf(pieces_[last - 1]).top) == page(end - tolerance))
            return false;
        setBreak(pieces_[last - 1], QTextFormat::PageBreak_Auto);
        if (former.table == nullptr || former.table->rows() - former.table->format().headerRowCount() < 2)
            return breakBefore(other - 1);
        split(*former.table, former.table->rows() - 1);
        return true;
    }
    /// A head that would leave no room for the rows under it is repeated on no page.
    bool shortenHead(QTextTable& table) const
    {
        QTextTableFormat format = table.format();
        const int heads = format.headerRowCount();
        if (heads == 0 || ofRow(table, heads - 1).bottom - ofRow(table, 0).top <
                              document_.pageSize().height() * highestHead)
            return false;
        format.setHeaderRowCount(0);
        table.setFormat(format);
        return true;
    }
    bool mendTable(std::size_t place)
    {
        QTextTable& table = *pieces_[place].table;
        if (shortenHead(table))
            return true;
        const int heads = table.format().headerRowCount();
        for (int row = 0; row < table.rows(); ++row) {
            if (fits(ofRow(table, row)))
                continue;
            if (row <= heads) {
                if (breakBefore(place))
                    return true;
                continue; // Higher than a page.
            }
            split(table, row);
            return true;
        }
        return false;
    }
    /// Copies a cell into the table's continuation.
    static void copy(const QTextTableCell& from, QTextTableCell to)
    {
        to.setFormat(from.format());
        QTextCursor whole = from.firstCursorPosition();
        whole.setPosition(from.lastCursorPosition().position(), QTextCursor::KeepAnchor);
        QTextCursor into = to.firstCursorPosition();
        into.setBlockFormat(from.firstCursorPosition().blockFormat());
        into.setBlockCharFormat(from.firstCursorPosition().blockCharFormat());
        into.insertFragment(whole.selection());
    }
    /// The rows from that one on become a table of the next page, with the same head.
    static void split(QTextTable& table, int row)
    {
        const int heads = table.format().headerRowCount();
        QTextCursor behind = table.lastCursorPosition();
        // One edit, laid out once at its end.
        behind.beginEditBlock();
        behind.movePosition(QTextCursor::NextBlock);
        QTextTableFormat format = table.format();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextTable& rest = *behind.insertTable(heads + table.rows() - row, table.columns(), format);
        for (int to = 0; to < rest.rows(); ++to) {
            const int from = to < heads ? to : row + to - heads;
            for (int column = 0; column < table.columns(); ++column) {
                const QTextTableCell cell = table.cellAt(from, column);
                if (cell.row() != from || cell.column() != column)
                    continue;
                if (cell.columnSpan() > 1)
                    rest.mergeCells(to, column, 1, cell.columnSpan());
                copy(cell, rest.cellAt(to, column));
            }
        }
        table.removeRows(row, table.rows() - row);
        behind.endEditBlock();
    }

    QTextDocument& document_;
    std::vector<Piece> pieces_;
    bool endMended_ = false;
};

} // namespace

void breakWell(QTextDocument& document)
{
    Breaker breaker(document);
    for (int made = 0; made < mostBreaks && document.pageCount() > 1 && breaker.mend(); ++made) {
    }
}

} // namespace zv::paper
