#pragma once

#include "zvhost/RowOrder.h"

#include <QAbstractTableModel>

#include <atomic>
#include <future>
#include <map>

class QIODevice;

namespace zv::host {

/// A list as it is shown at the moment, for threads that write it down.
struct ShownList {
    RowLetters rows;
    std::shared_ptr<const RowNumbers> order;

    /// Writes it for a spreadsheet: UTF-8 with its mark, semicolons, one heading row. False if the device
    /// took less.
    bool writeCsv(QIODevice& target) const;
    /// The rows at those places of it as text, a line each, columns by tabs.
    QString text(const std::vector<int>& places) const;
};

/// Table model of a list that may be long: many rows are sorted and searched in a thread, and shown when that
/// is done; few at once. What is shown changes by modelReset alone: whoever keeps a selection keeps
/// it by keys.
class RowsModel final : public QAbstractTableModel {
public:
    /// Lists of up to `atOnce` rows are arranged in the window's thread; 3000 take some milliseconds.
    explicit RowsModel(int atOnce = 3000);
    RowsModel(const RowsModel&) = delete;
    RowsModel& operator=(const RowsModel&) = delete;
    ~RowsModel() override;

    /// Shows another list, or the same one read anew, in the place of what is there.
    void show(RowLetters rows, Wish wish);
    void show(RowLetters rows) { show(std::move(rows), wish_); }
    void show(std::span<const ListColumn> columns, std::span<const Row> rows);
    /// Shows the same list with more rows at its end.
    void grow(RowLetters rows);
    /// Takes rows away before the list is read anew.
    void hide(std::span<const Long> keys);
    /// Sets the filter: rows that hold every word somewhere.
    void search(const QString& words);
    /// Counts the rows that are not whole in that column, -1 for none, and hides the others if it `hides`.
    void follow(int progress, bool hides);
    void sort(int column, Qt::SortOrder order) override;
    /// Whether what was asked for last is still to be shown.
    bool isBusy() const { return working_.valid() || stale_; }
    /// The words of the search that is shown.
    const QStringList& words() const { return shown_.arrangement->wish.words; }
    /// Of the rows that the search finds, those that are not whole, and all.
    std::pair<int, int> lacking() const;

    /// Marks rows that somebody has open: key, and who has it.
    void mark(std::map<Long, QString> held);
    const std::map<Long, QString>& marked() const { return held_; }
    Long keyAt(int row) const { return shown_.rows.keyAt(numberAt(row)); }
    /// Where the row with that key is shown; -1 if it is not.
    int rowOf(Long key) const;
    /// The list, with the rows that the search hides.
    const RowLetters& rows() const { return shown_.rows; }
    ShownList shownList() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    /// A list, told apart from the one before by its number, and how it was arranged.
    struct Shown {
        int list = 0;
        RowLetters rows;
        std::shared_ptr<const Arrangement> arrangement;
    };

    int numberAt(int row) const { return (*shown_.arrangement->shown)[static_cast<std::size_t>(row)]; }
    void arrange();
    void take(int number);
    void apply(Shown next);

    const int atOnce_;
    std::atomic<bool> stop_ = false;
    Shown shown_;
    std::map<Long, QString> held_;
    int list_ = 0;    ///< Number of the list that is wished for.
    RowLetters rows_; ///< Its rows so far.
    Wish wish_;
    /// A piece of work, and what it is for.
    struct Work {
        int number = 0;
        int list = 0;
        Wish wish = {};
    } work_;
    bool stale_ = false;         ///< It is not all that is wished for.
    std::future<Shown> working_; ///< The first to be destroyed: waits for the thread.
};

} // namespace zv::host
