#pragma once

#include "data/Connection.h"
#include "runtime/PropertyBag.h"
#include "zvhost/Nodes.h"

#include <vector>

namespace zv::host {

/// What a person works as.
struct Choices {
    Integer user = 1;
    String userName = u"usuario";
    Integer profile = 0;
    bool readOnly = false;
    bool mtp = false;
};

/// A user or a profile that the entry database knows.
struct Known {
    Integer number = 0;
    String name;
    Integer profile = 0; ///< Of a user.
};

/// A row of a node's list: its key, and what its columns hold.
struct Row {
    Long key = 0;
    std::vector<Value> values;
};

/// A school that is open, the session on it, and the module behind it. Failures are RuntimeErrors.
class Host {
public:
    Host(String url, School school, Choices choices = {});

    const String& url() const { return url_; }
    School& school() { return school_; }
    const Choices& choices() const { return choices_; }
    void choose(Choices choices);
    std::vector<Known> users();
    std::vector<Known> profiles();

    /// Opens the dialog behind a node and returns when it has closed. `branches`: a bank for its branches.
    void open(const Node& node, Byte action, Long row, bool branches = false);
    /// Whether the row is there still: another station may have deleted it.
    bool has(const Node& node, Long row);
    /// Whether the module lets the row go.
    bool mayDelete(const Node& node, Long row);
    std::vector<Row> rows(const Node& node);

private:
    std::vector<Known> known(StringView query);
    void hand(Byte action, Long row);

    String url_;
    School school_;
    Choices choices_;
    std::shared_ptr<PropertyBag> session_;
};

/// The suite's cipher undone, or what a person must know where it cannot be.
String deciphered(const Value& text);
/// A value as a list shows it, "" for Null.
String shown(const Value& value, const ListColumn& column);

} // namespace zv::host
