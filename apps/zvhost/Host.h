#pragma once

#include "data/Connection.h"
#include "runtime/PropertyBag.h"
#include "session/cConstCol.h"
#include "zvhost/Nodes.h"

#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace zv::host {

/// Session settings of a person: user, profile, mode.
struct Choices {
    Integer user = 1;
    String userName = u"usuario";
    Integer profile = 0;
    bool readOnly = false;
    bool mtp = false;
};

/// Row of a user or a profile in the entry database.
struct UserOrProfile {
    Integer number = 0;
    String name;
    Integer profile = 0; ///< A user's profile.
};

/// Row of a node's list: its key, and what its columns hold.
struct Row {
    Long key = 0;
    std::vector<Value> values;
};

/// Facade of the window on the module: an open school and the session on it. Failures are RuntimeErrors.
class Host {
public:
    Host(String url, School school, Choices choices = {});

    const String& url() const { return url_; }
    School& school() { return school_; }
    /// Whether the engine knows LIMIT at the end of a query.
    bool limits() const { return limits_; }
    const Choices& choices() const { return choices_; }
    void choose(Choices choices);
    std::vector<UserOrProfile> users();
    std::vector<UserOrProfile> profiles();

    /// Hands the session over to the module, for what asks it before a dialog is opened.
    void handSession() { hand(cConstCol::NUEVO, 0); }
    /// Opens the dialog behind a node and blocks until it has closed. `branches`: a bank for its branches.
    void open(const Node& node, Byte action, Long row, bool branches = false);
    /// Existence check: another station may have deleted the row.
    bool has(const Node& node, Long row);
    /// Hands the session over and asks the module's guard (`Eliminar`).
    bool guardAgrees(const Node& node, Long row);

    /// Runs work that is the host's own, and no dialog's, as one act in the school's history. Gives the
    /// number of its opening; 0 where nothing was noted.
    Long act(const std::function<void()>& work);
    /// How such an act stands in the history.
    Opening ownOpening() const;

private:
    std::vector<UserOrProfile> usersOrProfiles(StringView query);
    void hand(Byte action, Long row);

    String url_;
    School school_;
    Choices choices_;
    std::shared_ptr<PropertyBag> session_;
    bool limits_ = true;
};

/// Reads a node's list in parts, each by a statement of its own that goes on after the last key: nothing is
/// open in between, and no driver has the whole list in memory.
class RowReader {
public:
    static constexpr Long all = std::numeric_limits<Long>::max();
    RowReader(Host& host, const Node& node) : host_(&host), node_(&node) {}

    /// The next rows by their keys, at most so many; all that are left where the engine knows no limit.
    std::vector<Row> next(Long atMost);
    bool isDone() const { return done_; }

private:
    String statementFor(std::optional<Long> atMost) const;

    Host* host_;
    const Node* node_;
    std::optional<Long> last_; ///< Key of the last row that was read.
    bool done_ = false;
};

/// Deciphers a text; where it cannot, the text is what a person must know instead.
String deciphered(const Value& text);
/// Formats a value for a list, "" for Null.
String shown(const Value& value, const ListColumn& column);

} // namespace zv::host
