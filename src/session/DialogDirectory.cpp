#include "session/DialogDirectory.h"

namespace zv {

void DialogDirectory::add(StringView name, DialogEntry entry) { entries_[String(name)] = std::move(entry); }

const DialogEntry& DialogDirectory::find(StringView name) const
{
    const auto found = entries_.find(name);
    if (found == entries_.end())
        throw RuntimeError(failure::classMissing,
                           u"El diálogo " + String(name) + u" no forma parte de esta versión del módulo.");
    return found->second;
}

bool DialogDirectory::has(StringView name) const { return entries_.find(name) != entries_.end(); }

std::vector<String> DialogDirectory::names() const
{
    std::vector<String> result;
    for (const auto& [name, entry] : entries_)
        result.push_back(name);
    return result;
}

// A plain static and no single<T>(): a reset of the process state must not forget what the module consists
// of.
DialogDirectory& dialogs()
{
    static DialogDirectory directory;
    return directory;
}

} // namespace zv
