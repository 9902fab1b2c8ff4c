#pragma once

#include <QKeyEvent>
#include <QSize>

#include <optional>

namespace zv {

/// What a window may take of a screen of this size: without its frame and title, which only the desktop
/// knows.
inline QSize withoutFrame(const QSize& screen) { return screen - QSize(8, 40); }

/// Magnification of the dialogs, which a person sets with Ctrl and + − 0 in any of them.
class Zoom {
public:
    /// In hundredths of the size that desktop and screen ask for.
    int percent() const { return percent_; }
    /// Reads what was set last, and from now on keeps what is set.
    void remember();
    /// Whether it was a zoom key; the size has changed then.
    bool press(const QKeyEvent& event);

    /// Size of screen to reckon with, if it is not the real one.
    std::optional<QSize> bound() const { return bound_; }
    void boundTo(const QSize& screen) { bound_ = screen; }

private:
    std::optional<QSize> bound_;
    int percent_ = 100;
    bool remembered_ = false;
};

} // namespace zv
