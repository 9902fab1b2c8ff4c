#pragma once

#include "zvhost/ListTable.h"
#include "zvhost/ProgressDelegate.h"
#include "zvhost/Remembered.h"
#include "zvhost/RowsModel.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <functional>
#include <optional>

namespace zv::host {

/// Row as a person knows it.
struct NamedRow {
    Long key = 0;
    QString name;
};

/// The page of a node: its rows with a search above and their number below; for a node without a list, the
/// way into its dialog.
class ListPage final : public QWidget {
public:
    /// Callbacks to the window around the page.
    struct Calls {
        std::function<void()> opened;   ///< A row was opened.
        std::function<void()> direct;   ///< The dialog of a node without a list was asked for.
        std::function<void()> selected; ///< The selection changed, to other rows or to none.
        std::function<void(const QPoint&)> menu;
    };
    explicit ListPage(Calls calls);

    /// Shows a node as it was left, or the first rows of it: grow() brings more, and setReading() says
    /// whether there are.
    void show(const Node& node, RowLetters rows, const ListLook& look);
    void grow(RowLetters rows) { model_.grow(std::move(rows)); }
    /// Rows that are there, the hidden ones too.
    int rowsThere() const { return model_.rows().size(); }
    enum class Reading {
        done,
        goesOn, ///< Rows are still to come.
        again,  ///< What is there is being read anew.
        failed
    };
    void setReading(Reading reading);
    /// Whether of the list that is shown rows are missing.
    bool isPartial() const { return partial_; }
    /// Whether all rows are there, as they were asked for last.
    bool isWhole() const { return reading_ == Reading::done && !model_.isBusy(); }
    /// Shows a group of nodes: there is nothing to do on it but to choose a list.
    void showGroup(const QString& name);
    ListLook look() const;
    enum class Added { may, shows };
    /// Announces that the rows of the same node are being read anew. The selection will stay where it is, or
    /// go to the row that is new, unless the person chooses another meanwhile; Added::shows: a search that
    /// hides that row is cleared. `then` is called with its key once the new list stands there; not if
    /// none is new, nor if rows were missing before.
    void expect(Added added, std::function<void(Long added)> then = {});
    /// Shows them, in the place of what is there; `whole`: they are all.
    void refresh(RowLetters rows, bool whole);
    /// They could not be read.
    void forgetExpected();
    /// Takes away rows that are deleted, before the list is read anew.
    void takeAway(std::span<const Long> keys);
    /// Marks rows that somebody has open.
    void mark(std::map<Long, QString> held) { model_.mark(std::move(held)); }
    const std::map<Long, QString>& marked() const { return model_.marked(); }
    /// Moves the focus to the list, or to the button of a node without one.
    void enter();
    /// Lets the columns share the width again, after a person dragged one.
    void shareColumns() { table_.share(); }
    void findRow() { search_.setFocus(Qt::ShortcutFocusReason); }
    /// Selects a row, if it is shown, or when it will be.
    void select(Long key);
    /// The selected rows, from the top.
    std::vector<NamedRow> selection() const;
    /// Key of the selected row; empty if none or several are.
    std::optional<Long> selected() const;
    bool hasSelection() const { return table_.selectionModel()->hasSelection(); }
    /// Places of the selected rows, from the top, in what is shown.
    std::vector<int> selectedPlaces() const;
    ShownList shownList() const { return model_.shownList(); }
    /// The text of the current cell.
    QString cellAsText() const { return table_.currentIndex().data().toString(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void arrange();
    void showParts(bool list, const QString& direct, const QString& explanation);
    void showProgress(const Node& node);
    void hideWhole();
    /// Follows the row: what is called missing in a report of its kind.
    void tellDefinition();
    QString nameAt(int row) const;
    void tellCount();
    void chooseFirst();
    void chosenByPerson();
    /// Nothing of the list that was shown is waited for any more.
    void forgetReading();
    /// Keys of the selected rows, from the top; of very many the current one.
    std::vector<Long> selectedKeys() const;
    /// Notes what is selected, before other rows are shown.
    void keepSelection();
    /// Selects what is to be among the rows that are shown now.
    void settle();

    /// What was shown before.
    struct Kept {
        std::vector<Long> list = {}; ///< Keys of all its rows, sorted; of one that is to be compared.
        std::vector<Long> selected = {};
        std::optional<Long> current = {};
        int place = 0; ///< Of the current row.
        int column = 0;
        int count = 0;
        QStringList words = {}; ///< Of the search.
        bool all = false;       ///< All rows are selected, more than are kept by keys.
    };
    /// A list that is read anew.
    struct Expected {
        Added added = Added::may;
        std::function<void(Long)> then = {};
        std::vector<Long> selected = {}; ///< When it began.
    };
    /// Of a list read anew: the row that is new. It is awaited, unless the person has chosen another.
    std::optional<Long> settleAnew(const Expected& expected);
    void restoreSelection(bool anew);
    /// False if none of them is shown.
    bool selectKeys(const std::vector<Long>& keys);

    Calls calls_;
    RowsModel model_;
    Reading reading_ = Reading::done;
    std::optional<Expected> expected_;
    Kept kept_;
    std::optional<Long> awaited_;                             ///< Key of a row to select when it is shown.
    enum class Swap { none, part, whole } swap_ = Swap::none; ///< Rows that were read anew are to be shown.
    bool partial_ = false;
    bool first_ = false; ///< The first row is selected, and nobody has chosen it: it changes while rows come.
    bool gone_ = false;  ///< The selected row is deleted: the next one takes its place.
    bool settling_ = false; ///< Nobody chooses: the page does.
    QLabel title_;
    QLabel explanation_;
    QLineEdit search_;
    ListTable table_;
    QLabel count_;
    QCheckBox whole_; ///< On the page of what reports lack: shows those that lack nothing too.
    QLabel definition_;
    int lacking_ = -1; ///< Its column of progress; -1 on another page.
    QPushButton direct_;
    ProgressDelegate progress_;
};

} // namespace zv::host
