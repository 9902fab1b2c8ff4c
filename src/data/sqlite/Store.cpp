#include "data/sqlite/Store.h"

#include "data/sqlite/Failure.h"
#include "data/sqlite/File.h"
#include "data/sqlite/StatementRows.h"

#include <sqlite3.h>

namespace zv::sqlite {

Store::Store(Reuse reuse) : reuse_(reuse) { handles_.add(openHandle({}, opening_, durability_)); }

Store::Store(std::filesystem::path file, Opening opening, Durability durability, Reuse reuse)
    : file_(std::move(file)), opening_(opening), durability_(durability), reuse_(reuse)
{
    checkPlace(file_, opening == Opening::fresh);
    try {
        handles_.add(openHandle(file_, opening, durability_));
    } catch (const RuntimeError&) {
        if (opening == Opening::fresh)
            removeFile(file_);
        throw;
    }
}

void Store::settle() { useWriteAheadLog(*handles_.front(), file_); }

/// Inside a transaction all statements run on the handle that began it; in memory there is no other.
std::shared_ptr<Handle> Store::handle(StringView statement)
{
    const auto inTransaction = [](const auto& each) {
        return sqlite3_get_autocommit(each->database.get()) == 0;
    };
    if (auto begun = handles_.find(inTransaction))
        return begun;
    if (file_.empty())
        return handles_.front();
    if (auto idle = handles_.idle())
        return idle;
    refuseVanished(*handles_.front(), statement);
    auto fresh = openHandle(file_, opening_ == Opening::fresh ? Opening::existing : opening_, durability_);
    handles_.add(fresh);
    return fresh;
}

/// A file that was taken away goes on existing for who has it open: what is written to it would be lost.
void Store::refuseVanished(Handle& handle, StringView statement) const
{
    int moved = 0;
    sqlite3_file_control(handle.database.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    if (moved != 0)
        throw DataError(failure::connectionLost, "", u"«" + file_.u16string() + u"» ya no está en su sitio",
                        statement);
}

std::unique_ptr<Cursor> Store::run(StringView statement)
{
    refuseUnstorable(statement);
    std::shared_ptr<Handle> on = handle(statement);
    refuseVanished(*on, statement);
    auto [prepared, parameters] = ready(*on, statement);
    const bool hasRows = sqlite3_column_count(prepared.get()) > 0;
    if (!hasRows || sqlite3_stmt_readonly(prepared.get()) == 0) {
        // Rows that stand open on the same handle stay what they were when they were asked for.
        while (!on->cursors.empty())
            on->cursors.back()->takeAll();
    }
    auto cursor =
        std::make_unique<StatementRows>(std::move(on), std::move(prepared), statement, std::move(parameters));
    return hasRows ? std::move(cursor) : nullptr;
}

/// With values out of it where they can be; what fails so is read as it stands, and tells what is wrong with
/// it.
std::pair<StatementPtr, std::optional<Parameters>> Store::ready(Handle& handle, StringView statement) const
{
    std::optional<Parameters> parameters;
    if (reuse_ == Reuse::yes)
        parameters = parametersOf(statement);
    if (!parameters)
        return {prepare(handle.database.get(), statement), std::nullopt};
    StatementPtr prepared = handle.ready.take(parameters->text);
    try {
        if (!prepared)
            prepared = prepare(handle.database.get(), parameters->text);
        bind(prepared.get(), *parameters);
    } catch (const DataError&) {
        return {prepare(handle.database.get(), statement), std::nullopt};
    }
    return {std::move(prepared), std::move(parameters)};
}

} // namespace zv::sqlite
