#pragma once

#include "zvhost/ListTable.h"
#include "zvhost/RowsModel.h"
#include "zvhost/Widgets.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <limits>

namespace zv::host {

/// Dialog with a list, a search above it, and commands on the selected rows.
class ListDialog final : public QDialog {
public:
    /// `read` reads the rows; their keys are their places, from 0.
    ListDialog(QWidget* parent, const QString& title, std::span<const ListColumn> columns,
               std::function<std::vector<Row>()> read);

    using Rows = std::vector<std::size_t>; ///< Places of rows, as `read` gave them.
    enum class Selects { one, several };
    /// Adds a command on the selected rows. Its button as the default one is pressed by Enter and a double
    /// click.
    QPushButton& command(const QString& text, const QString& failed,
                         const std::function<void(const Rows&)>& does, Selects selects = Selects::one);
    /// Searches for what `meant` makes of the words that a person types.
    void searchFor(std::function<QString(const QString&)> meant) { meant_ = std::move(meant); }
    enum class Begins { choosing, searching };
    /// Shows it until it is closed; `whenEmpty` stands in the place of rows.
    void run(const QString& whenEmpty, Begins begins = Begins::choosing);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Rows selection() const;
    void reload(int row);
    void choose(int row);
    void follow();

    std::span<const ListColumn> columns_;
    std::function<std::vector<Row>()> read_;
    std::function<QString(const QString&)> meant_;
    /// Never a moment behind `read`, which the keys count in.
    RowsModel model_{std::numeric_limits<int>::max()};
    QVBoxLayout layout_;
    QLineEdit search_;
    ListTable table_;
    QLabel empty_;
    ButtonRow buttons_;
    std::vector<QPushButton*> commands_;
};

} // namespace zv::host
