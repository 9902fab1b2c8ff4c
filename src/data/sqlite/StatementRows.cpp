#include "data/sqlite/StatementRows.h"

#include "data/Dialect.h"
#include "data/sqlite/Failure.h"

#include <sqlite3.h>

namespace zv::sqlite {
namespace {

/// Decodes UTF-8 of ASCII and two-byte letters, which most texts are made of, in a fraction of the engine's
/// time. False for any other, broken ones among them: what becomes of those is the engine's to say.
bool decodeCommon(std::string_view bytes, String& text)
{
    text.resize(bytes.size());
    char16_t* to = text.data();
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto lead = static_cast<unsigned char>(bytes[at]);
        if (lead < 0x80) {
            *to++ = lead;
            continue;
        }
        const unsigned next = at + 1 < bytes.size() ? static_cast<unsigned char>(bytes[at + 1]) : 0U;
        if (lead < 0xC2 || lead > 0xDF || (next & 0xC0U) != 0x80U)
            return false;
        *to++ = static_cast<char16_t>((lead & 0x1FU) << 6U | (next & 0x3FU));
        ++at;
    }
    text.resize(static_cast<std::size_t>(to - text.data()));
    return true;
}

/// Reads into the room of the text that the field held before.
void readText(sqlite3_value* value, Cursor::Field& field)
{
    String* held = std::get_if<String>(&field);
    String& text = held ? *held : field.emplace<String>();
    // The engine's bytes are unsigned. NOLINTNEXTLINE(*-reinterpret-cast)
    if (const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(value)))
        if (decodeCommon({bytes, static_cast<std::size_t>(sqlite3_value_bytes(value))}, text))
            return;
    const auto* units = static_cast<const char16_t*>(sqlite3_value_text16(value));
    const auto bytes = static_cast<std::size_t>(sqlite3_value_bytes16(value));
    text = units ? StringView(units, bytes / sizeof(char16_t)) : StringView();
}

void readField(sqlite3_value* value, Cursor::Field& field)
{
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        field = wholeNumber(sqlite3_value_int64(value));
        break;
    case SQLITE_FLOAT:
        field = sqlite3_value_double(value);
        break;
    case SQLITE_TEXT:
        readText(value, field);
        break;
    case SQLITE_NULL:
        field = Null();
        break;
    default:
        field = Cursor::Bytes();
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
    row.resize(names_.size());
    for (std::size_t column = 0; column < row.size(); ++column)
        readField(sqlite3_column_value(prepared_.get(), static_cast<int>(column)), row[column]);
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
