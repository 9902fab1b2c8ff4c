#include "zvhost/ProgressDelegate.h"

#include <QPainter>

#include <algorithm>

namespace zv::host {

void ProgressDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    const QStringList parts = index.data().toString().split(QStringLiteral(" de "));
    const int done = parts.value(0).toInt();
    const int all = parts.value(1).toInt();
    QStyledItemDelegate::paint(painter, option, index);
    if (parts.size() != 2 || all <= 0)
        return;
    // Under the text, so that it is read on the cell's own colour.
    const int thick = std::max(2, option.rect.height() / 8);
    QRect bar(option.rect.left() + thick * 2, option.rect.bottom() - thick - 1,
              option.rect.width() - thick * 4, thick);
    QColor ground = option.palette.color(QPalette::Text);
    ground.setAlphaF(0.2F);
    painter->fillRect(bar, ground);
    bar.setWidth(bar.width() * std::min(done, all) / all);
    painter->fillRect(bar, option.state.testFlag(QStyle::State_Selected)
                               ? option.palette.color(QPalette::HighlightedText)
                               : option.palette.color(QPalette::Highlight));
}

} // namespace zv::host
