#pragma once

#include "zvhost/Host.h"

#include <QString>
#include <QStringView>

#include <memory>
#include <span>
#include <vector>

namespace zv::host {

/// Rows of a list as letters, in the order in which they were read, 0 the first. They are kept in parts that
/// never change, and that copies share, threads too.
class RowLetters {
public:
    RowLetters() = default;
    explicit RowLetters(std::span<const ListColumn> columns) : columns_(columns) {}

    void add(std::span<const Row> rows);

    std::span<const ListColumn> columns() const { return columns_; }
    int size() const { return begins_.back(); }
    Long keyAt(int row) const;
    /// Empty for a column that the list does not have.
    QStringView cell(int row, int column) const;
    /// The row with that key, -1 if there is none.
    int rowOf(Long key) const;
    /// All keys, from the smallest.
    std::vector<Long> sortedKeys() const;

private:
    struct Part {
        std::vector<Long> keys;
        QString letters;             ///< Of all cells, one after the other.
        std::vector<qsizetype> ends; ///< Where each ends.
    };
    /// The part that a row is in, and its place there.
    std::pair<const Part&, std::size_t> placeOf(int row) const;

    std::span<const ListColumn> columns_;
    std::vector<std::shared_ptr<const Part>> parts_;
    std::vector<int> begins_{0}; ///< The first row of each part, and of the one to come.
};

} // namespace zv::host
