#pragma once

#include "runtime/Value.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>

#include <functional>
#include <vector>

namespace zv::host {

/// Bar over the list: something that a person has to know, with what can be done about it, until it is done
/// or he has taken note. Each button has its key on it: Alt+R, Alt+D, Alt+U, Alt+E.
class Notice final : public QFrame {
public:
    Notice();

    struct Message {
        QString text;
        std::function<void()> shows;
        std::function<void()> gives;     ///< None where nothing may be written.
        std::vector<Long> openings = {}; ///< Of the dialogs that it tells of.
        bool foretells = false; ///< What a dialog will do: told until something is told of what one did.
        std::function<void()> joins = {}; ///< None but where a row is there twice.
    };
    /// Tells it, behind those that wait already.
    void tell(Message message);
    /// The next one, or none.
    void next();
    void forget();
    /// What tells of one of these openings need not be known any more.
    void forget(const std::vector<Long>& openings);

private:
    void button(QPushButton& button, const QString& text, int key, const std::function<void()>& does);
    void follow();

    QLabel text_;
    QPushButton show_, give_, join_, done_;
    std::vector<Message> waiting_; ///< The first one is shown.
};

} // namespace zv::host
