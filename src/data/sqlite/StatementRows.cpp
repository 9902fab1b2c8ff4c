#include "data/sqlite/StatementRows.h"

#include "data/Dialect.h"
#include "data/sqlite/Failure.h"

#include <sqlite3.h>

namespace zv::sqlite {
namespace {

Cursor::Field fieldOf(sqlite3_stmt* statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return wholeNumber(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
        return Value(sqlite3_column_double(statement, column));
    case SQLITE_TEXT: {
        const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(statement, column));
        const auto bytes = static_cast<std::size_t>(sqlite3_column_bytes16(statement, column));
        return text ? Value(String(text, bytes / sizeof(char16_t))) : Value(String());
    }
    case SQLITE_NULL:
        return Value(Null());
    default:
        return std::nullopt;
    }
}

} // namespace

StatementPtr prepare(sqlite3* handle, StringView statement)
{
    sqlite3_stmt* prepared = nullptr;
    const void* tail = nullptr;
    const auto bytes = static_cast<int>(statement.size() * sizeof(char16_t));
    const int result = sqlite3_prepare16_v3(handle, statement.data(), bytes, 0, &prepared, &tail);
    if (result != SQLITE_OK)
        throw failureOf(handle, Phase::preparing, statement);
    StatementPtr only(prepared);
    if (!only)
        throw DataError(failure::badStatement, "", u"la instrucción está vacía", statement);
    const auto taken = static_cast<const char16_t*>(tail) - statement.data();
    refuseSecond(statement.substr(static_cast<std::size_t>(taken)), statement);
    return only;
}

void bind(sqlite3_stmt* statement, const Parameters& parameters)
{
    int place = 0;
    for (const Parameters::Value& value : parameters.values) {
        ++place;
        const auto* text = std::get_if<std::string>(&value);
        const int result = text ? sqlite3_bind_text64(statement, place, text->data(), text->size(),
                                                      SQLITE_STATIC, SQLITE_UTF8)
                                : sqlite3_bind_int64(statement, place, std::get<std::int64_t>(value));
        if (result != SQLITE_OK)
            throw failureOf(sqlite3_db_handle(statement), Phase::preparing, parameters.text);
    }
}

StatementRows::StatementRows(std::shared_ptr<Handle> handle, StatementPtr prepared, StringView statement,
                             std::optional<Parameters> parameters)
    : handle_(std::move(handle)), prepared_(std::move(prepared)), statement_(statement),
      parameters_(std::move(parameters)), onlyReads_(sqlite3_stmt_readonly(prepared_.get()) != 0)
{
    begin();
    if (!isOver())
        handle_->cursors.push_back(this);
}

StatementRows::~StatementRows() { StatementRows::finish(); }

void StatementRows::finish()
{
    if (!handle_)
        return;
    if (parameters_) {
        sqlite3_reset(prepared_.get());
        sqlite3_clear_bindings(prepared_.get());
        handle_->ready.keep(std::move(parameters_->text), std::move(prepared_));
    }
    prepared_.reset();
    std::erase(handle_->cursors, this);
    handle_.reset();
}

bool StatementRows::read(Row& row)
{
    const int result = sqlite3_step(prepared_.get());
    if (names_.empty())
        readNames();
    const bool failed = result != SQLITE_ROW && result != SQLITE_DONE;
    if (failed && isDiskFull(handle_->database.get()))
        throw DataError(failure::otherData, std::to_string(result), u"el disco está lleno: deje sitio",
                        statement_);
    if (failed)
        throw failureOf(handle_->database.get(), Phase::running, statement_);
    if (result == SQLITE_DONE)
        return false;
    row.reserve(names_.size());
    for (int column = 0; column < static_cast<int>(names_.size()); ++column)
        row.push_back(fieldOf(prepared_.get(), column));
    return true;
}

/// Read only once it runs, since a changed schema is noticed then: another station may have changed the table
/// since the handle looked at it last.
void StatementRows::readNames()
{
    const int columns = sqlite3_column_count(prepared_.get());
    for (int column = 0; column < columns; ++column)
        names_.emplace_back(static_cast<const char16_t*>(sqlite3_column_name16(prepared_.get(), column)));
}

} // namespace zv::sqlite
