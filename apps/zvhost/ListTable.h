#pragma once

#include <QTableView>

namespace zv::host {

/// Table whose rows are selected whole and not edited. Its columns share the width there is until a person
/// drags one; Home and End go to the first and the last row; a cell that is cut shows itself whole as a
/// tooltip.
class ListTable final : public QTableView {
public:
    explicit ListTable(QWidget* parent = nullptr);

    /// Selects one row alone, whatever keys are held down (selectRow() would take Ctrl for one row more).
    void choose(int row);
    /// Lets the columns share the width again, and hereafter with each new size of the table.
    void share();
    /// Whether the columns share the width, or stand as a person dragged them.
    bool shares() const { return shares_; }
    /// Sets the widths that a person had dragged.
    void setWidths(const QList<int>& widths);
    QList<int> widths() const;
    /// Says in the middle why there are no rows; "" says nothing.
    void sayEmpty(const QString& why);

protected:
    void paintEvent(QPaintEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    bool viewportEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fit();

    QString empty_;
    bool shares_ = true;
    bool fitting_ = false;
};

} // namespace zv::host
