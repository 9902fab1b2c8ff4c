#pragma once

#include "zvhost/Host.h"

#include <QAbstractTableModel>
#include <QCollator>
#include <QSortFilterProxyModel>

#include <map>

namespace zv::host {

/// A text without case and accents, for comparing.
QString plainLetters(const QString& text);

/// Table model of a node's rows.
class RowsModel final : public QAbstractTableModel {
public:
    void show(std::span<const ListColumn> columns, std::vector<Row> rows);
    /// Marks rows that somebody has open: key, and who has it.
    void mark(std::map<Long, QString> held);
    const std::map<Long, QString>& marked() const { return held_; }
    Long keyAt(int row) const { return rows_[static_cast<std::size_t>(row)].key; }
    /// Index of the row with that key, -1 if there is none.
    int rowOf(Long key) const;
    std::vector<Long> keys() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::span<const ListColumn> columns_;
    std::vector<Row> rows_;
    std::vector<std::vector<QString>> texts_;
    std::map<Long, QString> held_;
};

/// Proxy model that sorts and filters: without regard to case and accents, numbers by size.
class RowsView final : public QSortFilterProxyModel {
public:
    RowsView();
    /// Sets the filter: rows that hold every word somewhere.
    void search(const QString& words);
    /// Hides rows whose progress in that column is whole and whose last column has nothing to tell; -1 for
    /// none.
    void hideWhole(int column);
    /// Of the rows that the search finds, those that are not whole in that column, and all.
    std::pair<int, int> lacking(int column) const;
    /// Exports what is shown now, for a spreadsheet: UTF-8 with its mark, semicolons, one heading row.
    QByteArray csv() const;

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    bool isFound(int row) const;
    bool isWhole(int row, int column) const;

    QStringList words_;
    int whole_ = -1; ///< Column of which whole rows are hidden.
    QCollator collator_;
};

} // namespace zv::host
