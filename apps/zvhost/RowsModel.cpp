#include "zvhost/RowsModel.h"

#include "qt/QtText.h"
#include "runtime/Csv.h"
#include "zvhost/Icons.h"

#include <QIODevice>

#include <algorithm>

namespace zv::host {
namespace {

/// Bytes that are written at once.
constexpr qsizetype writtenAtOnce = 1 << 16;

QString titleOf(const ListColumn& column) { return toQt(column.title); }

} // namespace

bool ShownList::writeCsv(QIODevice& target) const
{
    QString text(QChar(0xFEFF));
    const auto cell = [&](int column, QStringView letters) {
        if (column > 0)
            text += u';';
        text += toQt(csvCell(StringView(letters.utf16(), static_cast<std::size_t>(letters.size()))));
    };
    const auto written = [&] {
        const QByteArray bytes = text.toUtf8();
        text.clear();
        return target.write(bytes) == bytes.size();
    };
    const int columns = static_cast<int>(rows.columns().size());
    for (int column = 0; column < columns; ++column)
        cell(column, titleOf(rows.columns()[static_cast<std::size_t>(column)]));
    text += QStringLiteral("\r\n");
    for (const int row : *order) {
        for (int column = 0; column < columns; ++column)
            cell(column, rows.cell(row, column));
        text += QStringLiteral("\r\n");
        if (text.size() >= writtenAtOnce && !written())
            return false;
    }
    return written();
}

QString ShownList::text(const std::vector<int>& places) const
{
    QString lines;
    for (const int place : places) {
        if (!lines.isEmpty())
            lines += u'\n';
        for (int column = 0; column < static_cast<int>(rows.columns().size()); ++column) {
            if (column > 0)
                lines += u'\t';
            // A tab or a line of the text itself would begin another cell.
            lines += rows.cell((*order)[static_cast<std::size_t>(place)], column).toString().simplified();
        }
    }
    return lines;
}

RowsModel::RowsModel(int atOnce) : atOnce_(atOnce), shown_{0, {}, arranged({}, {}, nullptr, stop_)} {}

RowsModel::~RowsModel() { stop_ = true; }

void RowsModel::show(RowLetters rows, Wish wish)
{
    ++list_;
    wish_ = std::move(wish);
    wish_.gone.clear();
    rows_ = std::move(rows);
    arrange();
}

void RowsModel::show(std::span<const ListColumn> columns, std::span<const Row> rows)
{
    RowLetters letters(columns);
    letters.add(rows);
    show(std::move(letters));
}

void RowsModel::grow(RowLetters rows)
{
    rows_ = std::move(rows);
    arrange();
}

void RowsModel::hide(std::span<const Long> keys)
{
    for (const Long key : keys)
        if (const int row = rows_.rowOf(key); row >= 0)
            wish_.gone.push_back(row);
    std::ranges::sort(wish_.gone);
    arrange();
}

void RowsModel::search(const QString& words)
{
    wish_.words = searchWords(words);
    arrange();
}

void RowsModel::follow(int progress, bool hides)
{
    wish_.progress = progress;
    wish_.hidesWhole = hides;
    arrange();
}

void RowsModel::sort(int column, Qt::SortOrder order)
{
    wish_.column = column;
    wish_.descending = order == Qt::DescendingOrder;
    arrange();
}

/// One piece of work at a time: what is wished for meanwhile comes after it, and stops it if it would be in
/// vain.
void RowsModel::arrange()
{
    const bool few = rows_.size() <= atOnce_;
    if (working_.valid()) {
        stop_ = few || work_.list != list_ || work_.wish.column != wish_.column;
        stale_ = true;
        if (!few)
            return;
        working_ = {};
    }
    stop_ = false;
    stale_ = false;
    const auto before = shown_.list == list_ ? shown_.arrangement : nullptr;
    if (few) {
        apply({list_, rows_, arranged(rows_, wish_, before.get(), stop_)});
        return;
    }
    work_ = {work_.number + 1, list_, wish_};
    working_ = std::async(std::launch::async, [this, work = work_, rows = rows_, before] {
        Shown next{work.list, rows, arranged(rows, work.wish, before.get(), stop_)};
        QMetaObject::invokeMethod(
            this, [this, number = work.number] { take(number); }, Qt::QueuedConnection);
        return next;
    });
}

void RowsModel::take(int number)
{
    if (!working_.valid() || work_.number != number)
        return;
    Shown next = working_.get();
    if (next.arrangement != nullptr && next.list == list_)
        apply(std::move(next));
    if (stale_ && !working_.valid())
        arrange();
}

void RowsModel::apply(Shown next)
{
    beginResetModel();
    shown_ = std::move(next);
    endResetModel();
}

std::pair<int, int> RowsModel::lacking() const
{
    return {shown_.arrangement->lacking, shown_.arrangement->found};
}

void RowsModel::mark(std::map<Long, QString> held)
{
    if (held == held_)
        return;
    held_ = std::move(held);
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int RowsModel::rowOf(Long key) const
{
    const int row = rows().rowOf(key);
    const RowNumbers& shown = *shown_.arrangement->shown;
    const auto found = std::ranges::find(shown, row);
    return found == shown.end() ? -1 : static_cast<int>(found - shown.begin());
}

ShownList RowsModel::shownList() const { return {shown_.rows, shown_.arrangement->shown}; }

int RowsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(shown_.arrangement->shown->size());
}

int RowsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows().columns().size());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const auto text = [&] { return rows().cell(numberAt(index.row()), index.column()).toString(); };
    if (role == Qt::DisplayRole)
        return text();
    const auto held = held_.find(keyAt(index.row()));
    if (held == held_.end())
        return {};
    if (role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole)
        return held->second;
    if (index.column() != 0)
        return {};
    return role == Qt::DecorationRole       ? QVariant(heldIcon())
           : role == Qt::AccessibleTextRole ? QVariant(text() + QStringLiteral(", en uso"))
                                            : QVariant();
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    // Rows are headed, unseen, by their first cell.
    if (orientation == Qt::Vertical)
        return data(index(section, 0), role);
    if (role != Qt::DisplayRole || section >= columnCount())
        return {};
    return titleOf(rows().columns()[static_cast<std::size_t>(section)]);
}

} // namespace zv::host
