#pragma once

#include "qt/Bar.h"
#include "runtime/Value.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace zv::host {

/// Queue of what the bar over the list has to tell, each until it is done or a person has taken note.
class Notice {
public:
    struct Message {
        QString text;
        std::vector<Bar::Choice> choices; ///< Beside that of having taken note.
        std::vector<Long> openings = {};  ///< Of the dialogs that it tells of.
        std::filesystem::path draft = {}; ///< Journal that it tells of.
        /// Whether it is so still, which is asked often; without one it is.
        std::function<bool()> holds = {};
        bool foretells = false; ///< What a dialog will do: told until something is told of what one did.
    };

    Bar& bar() { return bar_; }
    /// Tells it, behind those that wait already.
    void tell(Message message);
    /// The next one, or none.
    void next();
    void forget();
    /// What tells of one of these openings need not be known any more.
    void forget(const std::vector<Long>& openings);
    enum class Drafts { all, gone };
    /// What tells of a draft need not be known any more; or only of one that is there no longer.
    void forget(Drafts which);
    /// What is so no longer need not be known any more.
    void review();

private:
    void follow();
    void forgetIf(const std::function<bool(const Message&)>& told);

    Bar bar_{QStringLiteral("aviso")};
    std::vector<Message> waiting_; ///< The first one is shown.
};

} // namespace zv::host
