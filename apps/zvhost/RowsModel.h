#pragma once

#include "zvhost/Host.h"

#include <QAbstractTableModel>
#include <QCollator>
#include <QSortFilterProxyModel>

namespace zv::host {

/// The rows of a node's list.
class RowsModel final : public QAbstractTableModel {
public:
    void show(std::span<const ListColumn> columns, std::vector<Row> rows);
    Long keyAt(int row) const { return rows_[static_cast<std::size_t>(row)].key; }
    /// The row with that key, -1 if there is none.
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
};

/// The same rows as a person sorts and searches them: without regard to case and accents, numbers by size.
class RowsView final : public QSortFilterProxyModel {
public:
    RowsView();
    /// Only rows that hold every word somewhere.
    void search(const QString& words);
    /// What is shown now, as a file for a spreadsheet: UTF-8 with its mark, semicolons, one heading row.
    QByteArray csv() const;

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    QStringList words_;
    QCollator collator_;
};

} // namespace zv::host
