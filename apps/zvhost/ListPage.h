#pragma once

#include "zvhost/RowsModel.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableView>

#include <functional>
#include <optional>

namespace zv::host {

/// The page of a node: its rows with a search above and their number below, or, for a node without a list,
/// the way into its dialog.
class ListPage final : public QWidget {
public:
    /// Callbacks to the window around the page.
    struct Calls {
        std::function<void()> opened;   ///< A row was opened, or the node without a list.
        std::function<void()> selected; ///< The selection changed, to another row or to none.
        std::function<void(const QPoint&)> menu;
    };
    explicit ListPage(Calls calls);

    /// Shows a node; resets sorting and search.
    void show(const Node& node, std::vector<Row> rows);
    /// Refreshes the rows of the same node. The selection stays where it was, or goes to the row that is new.
    void refresh(const Node& node, std::vector<Row> rows);
    /// Moves the focus to the list, or to the button of a node without one.
    void enter();
    void findRow() { search_.setFocus(Qt::ShortcutFocusReason); }
    std::optional<Long> selected() const;
    /// Display name of the selected row.
    QString selectedName() const;
    QByteArray csv() const { return view_.csv(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void select(Long key);
    void tellCount();

    Calls calls_;
    RowsModel model_;
    RowsView view_;
    QLabel title_;
    QStackedWidget pages_;
    QLineEdit search_;
    QTableView table_;
    QLabel count_;
    QLabel explanation_;
    QPushButton direct_;
};

} // namespace zv::host
