#pragma once

#include "journal/Act.h"

#include <string>
#include <string_view>
#include <variant>

namespace zv::journal {

/// A button is being pressed: what it does may open another dialog, save, or never end.
struct Begun {
    Act act;
};

/// A dialog was opened within the one that the journal is of, and changes its contents only.
struct Inner {
    String dialog;
};

/// What stands in a journal. A place comes before the first act that changes it.
using Record = std::variant<Opening, Place, Act, Begun, Inner>;

/// Serialisation of a journal's records. A text that is typed letter by letter costs what changed of it: each
/// side knows what a place held last.
class Records {
public:
    std::string pack(const Record& record);
    /// nullopt for what pack() did not write.
    std::optional<Record> unpack(std::string_view bytes);

private:
    std::vector<std::optional<Content>> contents_; ///< Of each place, as the last change left it.
};

} // namespace zv::journal
