#pragma once

#include <QKeyEvent>

namespace zv {

/// Magnification of the dialogs, which a person sets with Ctrl and + − 0 in any of them.
class Zoom {
public:
    /// In hundredths of the size that desktop and screen ask for.
    int percent() const { return percent_; }
    /// Reads what was set last, and from now on keeps what is set.
    void remember();
    /// Whether it was a zoom key; the size has changed then.
    bool press(const QKeyEvent& event);

    /// Whether windows are whole even where the screen is smaller: pictures of them are.
    bool whole() const { return whole_; }
    void showWhole() { whole_ = true; }

private:
    bool whole_ = false;
    int percent_ = 100;
    bool remembered_ = false;
};

} // namespace zv
