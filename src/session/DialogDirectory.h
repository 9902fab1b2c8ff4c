#pragma once

#include "forms/Form.h"

#include <functional>
#include <map>

namespace zv {

/// Factory and guard of a dialog, late-bound for the facade.
struct DialogEntry {
    std::function<Form&()> instance;            ///< The single instance, created lazily, not loaded.
    std::function<bool()> ComprobarEliminacion; ///< The guard on that instance; empty if the dialog has none.
};

/// Registry of dialogs by name: dependency inversion, since the facade stands below the dialogs that it
/// opens. The composition root (`module`) fills it.
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

/// The process's one directory.
DialogDirectory& dialogs();

} // namespace zv
