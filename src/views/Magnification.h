#pragma once

#include <functional>

namespace zv {

/// Magnification of the dialogs, which a person sets with Ctrl and + − 0 in any of them.
class Magnification {
public:
    enum class Change : unsigned char { larger, smaller, usual };

    /// In hundredths of the size that desktop and screen ask for.
    int percent() const { return percent_; }
    void change(Change change);

protected:
    /// Takes what was set last, if there is something, and from now on keeps what is set, by that function.
    void remember(int last, std::function<void(int percent)> keep);

private:
    int percent_ = 100;
    std::function<void(int)> keep_;
};

/// Factor to a dialog's natural size: that of the desktop's letters to the dialogs' own, as far as the screen
/// has room for it (`room` to `natural`, across and down), and the magnification. Somewhat less than natural
/// where that much is lacking; what lacks more scrolls.
double magnified(double letters, double across, double down, int percent);

} // namespace zv
