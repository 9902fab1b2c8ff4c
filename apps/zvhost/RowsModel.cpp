#include "zvhost/RowsModel.h"

#include "qt/QtText.h"
#include "runtime/Csv.h"
#include "zvhost/Icons.h"

#include <algorithm>

namespace zv::host {

QString plainLetters(const QString& text)
{
    QString letters;
    for (const QChar each : text.normalized(QString::NormalizationForm_D))
        if (each.category() != QChar::Mark_NonSpacing)
            letters += each.toCaseFolded();
    return letters;
}

void RowsModel::show(std::span<const ListColumn> columns, std::vector<Row> rows)
{
    beginResetModel();
    columns_ = columns;
    rows_ = std::move(rows);
    texts_.clear();
    for (const Row& row : rows_) {
        std::vector<QString>& texts = texts_.emplace_back();
        for (std::size_t i = 0; i < columns_.size(); ++i)
            texts.push_back(toQt(shown(row.values[i], columns_[i])));
    }
    endResetModel();
}

void RowsModel::mark(std::map<Long, QString> held)
{
    if (held == held_)
        return;
    held_ = std::move(held);
    if (!rows_.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int RowsModel::rowOf(Long key) const
{
    const auto found = std::ranges::find(rows_, key, &Row::key);
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

std::vector<Long> RowsModel::keys() const
{
    std::vector<Long> all;
    for (const Row& each : rows_)
        all.push_back(each.key);
    return all;
}

int RowsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int RowsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const QString& text =
        texts_[static_cast<std::size_t>(index.row())][static_cast<std::size_t>(index.column())];
    if (role == Qt::DisplayRole)
        return text;
    const auto held = held_.find(keyAt(index.row()));
    if (held == held_.end())
        return {};
    if (role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole)
        return held->second;
    if (index.column() != 0)
        return {};
    return role == Qt::DecorationRole       ? QVariant(heldIcon())
           : role == Qt::AccessibleTextRole ? QVariant(text + QStringLiteral(", en uso"))
                                            : QVariant();
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    // Rows are headed, unseen, by their first cell.
    if (orientation == Qt::Vertical)
        return data(index(section, 0), role);
    if (role != Qt::DisplayRole || section >= columnCount())
        return {};
    return toQt(columns_[static_cast<std::size_t>(section)].title);
}

RowsView::RowsView() : collator_(QLocale(QLocale::Spanish))
{
    collator_.setNumericMode(true);
    collator_.setCaseSensitivity(Qt::CaseInsensitive);
}

void RowsView::search(const QString& words)
{
    words_ = plainLetters(words).split(u' ', Qt::SkipEmptyParts);
    invalidateFilter();
}

void RowsView::hideWhole(int column)
{
    whole_ = column;
    invalidateFilter();
}

bool RowsView::isFound(int row) const
{
    QString text;
    for (int column = 0; !words_.isEmpty() && column < sourceModel()->columnCount(); ++column)
        text += plainLetters(sourceModel()->index(row, column).data().toString()) + u'\n';
    return std::ranges::all_of(words_, [&](const QString& word) { return text.contains(word); });
}

bool RowsView::isWhole(int row, int column) const
{
    const QStringList parts =
        sourceModel()->index(row, column).data().toString().split(QStringLiteral(" de "));
    return parts.front() == parts.back();
}

std::pair<int, int> RowsView::lacking(int column) const
{
    std::pair<int, int> counts;
    for (int row = 0; row < sourceModel()->rowCount(); ++row)
        if (isFound(row)) {
            counts.first += isWhole(row, column) ? 0 : 1;
            ++counts.second;
        }
    return counts;
}

bool RowsView::filterAcceptsRow(int row, const QModelIndex& /*parent*/) const
{
    const auto tells = [&] {
        return !sourceModel()->index(row, sourceModel()->columnCount() - 1).data().toString().isEmpty();
    };
    return (whole_ < 0 || !isWhole(row, whole_) || tells()) && isFound(row);
}

bool RowsView::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const QString a = left.data().toString();
    const QString b = right.data().toString();
    bool numbers = false;
    const double first = QLocale(QLocale::Spanish).toDouble(a, &numbers);
    if (numbers) {
        const double second = QLocale(QLocale::Spanish).toDouble(b, &numbers);
        if (numbers && first != second)
            return first < second;
    }
    return collator_.compare(a, b) < 0;
}

QByteArray RowsView::csv() const
{
    QString text(QChar(0xFEFF));
    const auto line = [&](const auto& field) {
        QStringList fields;
        for (int column = 0; column < columnCount(); ++column)
            fields += toQt(csvCell(fromQt(field(column).toString())));
        text += fields.join(u';') + QStringLiteral("\r\n");
    };
    line([&](int column) { return headerData(column, Qt::Horizontal, Qt::DisplayRole); });
    for (int row = 0; row < rowCount(); ++row)
        line([&](int column) { return index(row, column).data(); });
    return text.toUtf8();
}

} // namespace zv::host
