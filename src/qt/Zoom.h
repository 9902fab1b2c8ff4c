#pragma once

#include "views/Magnification.h"

#include <QKeyEvent>
#include <QSize>

#include <optional>

namespace zv {

/// What a window may take of a screen of this size: without its frame and title, which only the desktop
/// knows.
inline QSize withoutFrame(const QSize& screen) { return screen - QSize(8, 40); }

/// Magnification of the dialogs, by the toolkit's keys and settings.
class Zoom final : public Magnification {
public:
    /// Reads what was set last, and from now on keeps what is set.
    void remember();
    /// Whether it was a zoom key; the size has changed then.
    bool press(const QKeyEvent& event);

    /// Size of screen to reckon with, if it is not the real one.
    std::optional<QSize> bound() const { return bound_; }
    void boundTo(const QSize& screen) { bound_ = screen; }

private:
    std::optional<QSize> bound_;
};

} // namespace zv
