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

    /// Shows a node as it was left.
    void show(const Node& node, std::vector<Row> rows, const ListLook& look);
    /// Shows a group of nodes: there is nothing to do on it but to choose a list.
    void showGroup(const QString& name);
    ListLook look() const;
    enum class Added { may, shows };
    /// Refreshes the rows of the same node. The selection stays where it was, or goes to the row that is new;
    /// Added::shows: a search that hides that row is cleared.
    void refresh(const Node& node, std::vector<Row> rows, Added added = Added::may);
    /// Marks rows that somebody has open.
    void mark(std::map<Long, QString> held) { model_.mark(std::move(held)); }
    const std::map<Long, QString>& marked() const { return model_.marked(); }
    /// Moves the focus to the list, or to the button of a node without one.
    void enter();
    /// Lets the columns share the width again, after a person dragged one.
    void shareColumns() { table_.share(); }
    void findRow() { search_.setFocus(Qt::ShortcutFocusReason); }
    /// Selects a row, if it is shown.
    void select(Long key);
    /// The selected rows, from the top.
    std::vector<NamedRow> selection() const;
    /// Key of the selected row; empty if none or several are.
    std::optional<Long> selected() const;
    /// The selected rows as text, a line each, columns by tabs.
    QString rowsAsText() const;
    /// The text of the current cell.
    QString cellAsText() const { return table_.currentIndex().data().toString(); }
    int shownRows() const { return view_.rowCount(); }
    QByteArray csv() const { return view_.csv(); }

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

    Calls calls_;
    RowsModel model_;
    RowsView view_;
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
