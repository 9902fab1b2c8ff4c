#pragma once

#include <QFocusFrame>

namespace zv {

/// Frame around the control that has the focus, in a colour that stands out: what styles draw in a control
/// does not in every palette.
class FocusRing final : public QFocusFrame {
protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace zv
