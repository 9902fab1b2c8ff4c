#pragma once

#include <QStyledItemDelegate>

namespace zv::host {

/// Item delegate of a column of progress: draws a bar behind a text like "18 de 23"; other texts as they are.
class ProgressDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace zv::host
