#pragma once

#include "forms/Form.h"

#include <functional>
#include <map>

namespace zv {

/// A dialog that the facade can open, or whose guard it can ask.
struct DialogEntry {
    std::function<Form&()> instance;            ///< The single instance, made at first use, not loaded.
    std::function<bool()> ComprobarEliminacion; ///< The guard on that instance; empty if the dialog has none.
};

/// Which dialog stands behind a name. The facade knows names only; the composition root fills this in.
class DialogDirectory {
public:
    void add(StringView name, DialogEntry entry);
    /// Fails with 429 if no dialog of that name is part of this build.
    const DialogEntry& find(StringView name) const;
    bool has(StringView name) const;
    std::vector<String> names() const;

private:
    std::map<String, DialogEntry, NameLess> entries_;
};

/// The directory of the module.
DialogDirectory& dialogs();

} // namespace zv
