#pragma once

#include <QLabel>

#include <functional>
#include <vector>

namespace zv::host {

/// Line of the status bar that tells what was done last, with a link to what a person may want next: to take
/// it back, most of the time.
class Undo final : public QLabel {
public:
    /// `changed`: there is something to take back now, or nothing any more.
    explicit Undo(std::function<void()> changed);

    /// Tells what was done; `back` takes it back.
    void did(const QString& text, std::function<void()> back);
    /// Tells something, with a link of that text.
    void tell(const QString& text, const QString& link = {}, std::function<void()> follows = {});
    bool possible() const { return !steps_.empty(); }
    /// Takes the last step back.
    void undo();
    /// Forgets all steps, and what was told.
    void forget();
    /// Does what the line leads to, if to anything.
    void followLink();

protected:
    // The whole line is the link, for the keyboard: Enter and the space bar follow it, and the focus shows.
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void colorLink();

    QString said_; ///< As markup, the link without a colour.
    std::function<void()> changed_;
    std::function<void()> follows_;
    std::vector<std::function<void()>> steps_;
};

} // namespace zv::host
