#pragma once

#include "data/Handles.h"
#include "data/sqlite/Handle.h"
#include "data/sqlite/Parameters.h"

namespace zv::sqlite {

/// Pool of the handles of one database: one in memory; for a file as many as there are cursors open at a
/// time. A statement runs on an idle handle, so that it sees the newest rows, and its write waits for no
/// reader of ours.
class Pool {
public:
    /// A database in memory.
    explicit Pool(Reuse reuse);
    /// A file. Fails with a RuntimeError that tells a person what to do.
    Pool(std::filesystem::path file, OpenAs as, Durability durability, Reuse reuse);

    /// Switches the file to write-ahead logging, for good: readers do not block writers. Fails as opening
    /// does.
    void settle();
    /// Copies the database, as the running transaction sees it, into a new file.
    void backup(const std::filesystem::path& file);
    /// Runs a statement and reads its first rows. nullptr if it has no columns.
    std::unique_ptr<Cursor> run(StringView statement);

private:
    std::shared_ptr<Handle> handle(StringView statement);
    std::pair<StatementPtr, std::optional<Parameters>> ready(Handle& handle, StringView statement) const;
    void refuseVanished(Handle& handle, StringView statement) const;

    std::filesystem::path file_;
    OpenAs as_ = OpenAs::existing;
    Durability durability_ = Durability::full;
    Reuse reuse_ = Reuse::yes;
    Handles<Handle> handles_;
};

} // namespace zv::sqlite
