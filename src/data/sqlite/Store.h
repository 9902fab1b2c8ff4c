#pragma once

#include "data/Handles.h"
#include "data/sqlite/Handle.h"
#include "data/sqlite/Parameters.h"

namespace zv::sqlite {

/// A database: one handle in memory; for a file as many as there are cursors open at a time. A statement runs
/// on a handle without cursors, so that it sees the newest rows and its writing waits for no reader of ours.
class Store {
public:
    /// A database in memory.
    explicit Store(Reuse reuse);
    /// A file. Fails with a RuntimeError that tells a person what to do.
    Store(std::filesystem::path file, Opening opening, Durability durability, Reuse reuse);

    /// From then on who reads keeps nobody from writing: the file itself remembers it. Fails as opening does.
    void settle();
    /// Runs a statement and reads its first rows. None if it has no columns.
    std::unique_ptr<Cursor> run(StringView statement);

private:
    std::shared_ptr<Handle> handle(StringView statement);
    std::pair<StatementPtr, std::optional<Parameters>> ready(Handle& handle, StringView statement) const;
    void refuseVanished(Handle& handle, StringView statement) const;

    std::filesystem::path file_;
    Opening opening_ = Opening::existing;
    Durability durability_ = Durability::full;
    Reuse reuse_ = Reuse::yes;
    Handles<Handle> handles_;
};

} // namespace zv::sqlite
