#include "data/odbc/Link.h"

#include "data/Dialect.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

#ifdef _WIN32
#include <windows.h> // Declares what the ODBC headers of that system are written in.
#endif
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <set>

namespace zv::odbc {
namespace {

// UTF-16 on both sides: texts need no conversion.
static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));

constexpr std::uintptr_t loginSeconds = 5;

// The C interface has a type of its own for UTF-16, lacks const for texts that it only reads, and passes
// numbers as pointers. NOLINTBEGIN(*-reinterpret-cast,*-const-cast,*-int-to-ptr)
SQLWCHAR* wide(char16_t* text) { return reinterpret_cast<SQLWCHAR*>(text); }
SQLWCHAR* wide(const char16_t* text) { return wide(const_cast<char16_t*>(text)); }
SQLPOINTER attribute(std::uintptr_t value) { return reinterpret_cast<SQLPOINTER>(value); }
// NOLINTEND(*-reinterpret-cast,*-const-cast,*-int-to-ptr)

bool went(SQLRETURN result) { return SQL_SUCCEEDED(result) || result == SQL_NO_DATA; }

void* environment()
{
    static const DriverHandle handle(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
    static const SQLRETURN version =
        SQLSetEnvAttr(handle.get(), SQL_ATTR_ODBC_VERSION, attribute(SQL_OV_ODBC3), 0);
    return went(version) ? handle.get() : nullptr;
}

String information(SQLHDBC connection, SQLUSMALLINT what)
{
    std::array<char16_t, 200> room{};
    SQLSMALLINT bytes = 0;
    SQLGetInfoW(connection, what, room.data(), sizeof room, &bytes);
    return room.data();
}

/// Text column of a catalogue query's current row.
String characters(const DriverHandle& statement, SQLUSMALLINT column)
{
    std::array<char16_t, 200> room{};
    SQLLEN bytes = 0;
    SQLGetData(statement.get(), column, SQL_C_WCHAR, room.data(), sizeof room, &bytes);
    return bytes == SQL_NULL_DATA ? String() : String(room.data());
}

} // namespace

DriverHandle::DriverHandle(std::int16_t kind, void* parent) : kind_(kind)
{
    if (!SQL_SUCCEEDED(SQLAllocHandle(kind, parent, &handle_)))
        throw DataError(failure::connectionLost, "", u"el gestor de ODBC no responde", u"");
}

DriverHandle::~DriverHandle() { SQLFreeHandle(kind_, handle_); }

Diagnosis DriverHandle::diagnosis() const
{
    std::array<char16_t, SQL_SQLSTATE_SIZE + 1> state{};
    std::array<char16_t, SQL_MAX_MESSAGE_LENGTH> words{};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN result = SQLGetDiagRecW(kind_, handle_, 1, wide(state.data()), &native,
                                            wide(words.data()), words.size() - 1, &length);
    if (!SQL_SUCCEEDED(result))
        return {"HY000", 0, u"el controlador no dice por qué"};
    String line = Replace(words.data(), u"\n", u" ");
    while (line.ends_with(u' '))
        line.pop_back();
    return {toUtf8(state.data()), native, line};
}

Link::Link(StringView connectionText, std::chrono::seconds patience)
    : connection_(SQL_HANDLE_DBC, environment()), longest_(patience)
{
    connect(connectionText);
    patience_.emplace(socket_, patience);
}

void Link::connect(StringView connectionText)
{
    // Serialised: Socket finds its socket as the only new one of the process.
    static std::mutex one;
    const std::lock_guard lock(one);
    SQLSetConnectAttrW(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT, attribute(loginSeconds), 0);
    SQLSMALLINT length = 0;
    if (connectionText.size() > INT16_MAX)
        throw DataError(failure::connectionLost, "", u"la cadena de conexión es demasiado larga", u"");
    socket_.expect();
    // A driver may keep to its timeout only until the server's kernel has answered.
    Patience login(socket_, std::chrono::seconds(loginSeconds + 1));
    login.begin();
    const SQLRETURN connected = SQLDriverConnectW(connection_.get(), nullptr, wide(connectionText.data()),
                                                  static_cast<SQLSMALLINT>(connectionText.size()), nullptr, 0,
                                                  &length, SQL_DRIVER_NOPROMPT);
    login.end();
    socket_.find();
    if (!went(connected))
        throw odbc::failureOf(connection_.diagnosis(), true, u"");
}

Link::~Link()
{
    waiting([&] { return SQLDisconnect(connection_.get()); });
}

EngineInfo Link::engine() const
{
    return {information(connection_.get(), SQL_DBMS_NAME), information(connection_.get(), SQL_DBMS_VER)};
}

namespace {

/// Name as an argument of a catalogue query; none if it is empty. It keeps the text that it points to.
class Argument {
public:
    explicit Argument(String name) : name_(std::move(name)) {}
    SQLWCHAR* text() const { return name_.empty() ? nullptr : wide(name_.data()); }
    SQLSMALLINT length() const { return static_cast<SQLSMALLINT>(name_.size()); }

private:
    String name_;
};

/// Both names of a schema, of which the driver wants one.
struct Arguments {
    Argument catalog, schema;
    Arguments(Link::Where where, const String& name)
        : catalog(where.isCatalog ? name : String()), schema(where.isCatalog ? String() : name)
    {}
};

} // namespace

/// Reads a catalogue query to its end: never a part of it, which would read as missing tables.
void Link::forEachFound(const DriverHandle& statement, std::int16_t asked, const std::function<void()>& use)
{
    if (!went(asked))
        throw odbc::failureOf(statement.diagnosis(), false, u"");
    SQLRETURN got = SQL_SUCCESS;
    while (SQL_SUCCEEDED(got = waiting([&] { return SQLFetch(statement.get()); })))
        use();
    if (!went(got))
        throw odbc::failureOf(statement.diagnosis(), false, u"");
}

std::vector<FoundTable> Link::tables()
{
    constexpr SQLUSMALLINT tableColumn = 3;
    constexpr SQLUSMALLINT nameColumn = 4;
    // Some drivers give the columns of indexes too.
    std::set<String> real;
    String kinds = u"TABLE,VIEW";
    const DriverHandle named(SQL_HANDLE_STMT, connection_.get());
    forEachFound(named, waiting([&] {
                     return SQLTablesW(named.get(), nullptr, 0, nullptr, 0, nullptr, 0, wide(kinds.data()),
                                       static_cast<SQLSMALLINT>(kinds.size()));
                 }),
                 [&] { real.insert(characters(named, tableColumn)); });
    const DriverHandle statement(SQL_HANDLE_STMT, connection_.get());
    std::vector<FoundTable> result;
    forEachFound(statement, waiting([&] {
                     return SQLColumnsW(statement.get(), nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0);
                 }),
                 [&] {
                     const String table = characters(statement, tableColumn);
                     if (!real.contains(table))
                         return;
                     if (result.empty() || result.back().name != table)
                         result.push_back({table, {}});
                     result.back().columns.push_back(characters(statement, nameColumn));
                 });
    return result;
}

std::vector<UniqueIndex> Link::uniqueIndexes(Where where, StringView table)
{
    constexpr SQLUSMALLINT nameColumn = 6;
    constexpr SQLUSMALLINT columnColumn = 9;
    const Arguments asked(where, String(where.schema));
    const DriverHandle statement(SQL_HANDLE_STMT, connection_.get());
    std::vector<UniqueIndex> result;
    if (!went(waiting([&] {
            return SQLStatisticsW(statement.get(), asked.catalog.text(), asked.catalog.length(),
                                  asked.schema.text(), asked.schema.length(), wide(table.data()),
                                  static_cast<SQLSMALLINT>(table.size()), SQL_INDEX_UNIQUE, SQL_QUICK);
        })))
        return result;
    while (SQL_SUCCEEDED(waiting([&] { return SQLFetch(statement.get()); }))) {
        const String name = characters(statement, nameColumn);
        if (name.empty()) // A row of table statistics, and no index.
            continue;
        if (result.empty() || result.back().name != name)
            result.push_back({name, {}});
        result.back().columns.push_back(characters(statement, columnColumn));
    }
    return result;
}

std::vector<String> Link::primaryKey(Where where, StringView table)
{
    constexpr SQLUSMALLINT columnColumn = 4;
    const Arguments asked(where, String(where.schema));
    const DriverHandle statement(SQL_HANDLE_STMT, connection_.get());
    std::vector<String> result;
    if (went(waiting([&] {
            return SQLPrimaryKeysW(statement.get(), asked.catalog.text(), asked.catalog.length(),
                                   asked.schema.text(), asked.schema.length(), wide(table.data()),
                                   static_cast<SQLSMALLINT>(table.size()));
        })))
        while (SQL_SUCCEEDED(waiting([&] { return SQLFetch(statement.get()); })))
            result.push_back(characters(statement, columnColumn));
    return result;
}

void Link::begin()
{
    check(SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT, attribute(SQL_AUTOCOMMIT_OFF), 0),
          u"BEGIN");
}

void Link::end(bool commit)
{
    std::optional<DataError> failed;
    if (!went(waiting([&] {
            return SQLEndTran(SQL_HANDLE_DBC, connection_.get(), commit ? SQL_COMMIT : SQL_ROLLBACK);
        })))
        failed = failure(connection_, u"COMMIT");
    // Back to autocommit, whatever the outcome.
    check(SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT, attribute(SQL_AUTOCOMMIT_ON), 0),
          u"COMMIT");
    if (failed)
        throw DataError(*failed);
}

void Link::check(std::int16_t result, StringView text)
{
    if (!went(result))
        throw failure(connection_, text);
}

DataError Link::failure(const DriverHandle& handle, StringView text)
{
    if (wasCut()) {
        lost_ = true;
        return {failure::connectionLost, "HYT00",
                statement(u"el servidor no contesta desde hace {} s", {static_cast<Long>(longest_.count())}),
                text};
    }
    SQLUINTEGER dead = SQL_CD_FALSE;
    const Diagnosis diagnosis = handle.diagnosis();
    SQLGetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, 0, nullptr);
    DataError result = odbc::failureOf(diagnosis, dead == SQL_CD_TRUE, text);
    lost_ = lost_ || result.number() == failure::connectionLost;
    return result;
}

StatementRows::StatementRows(std::shared_ptr<Link> link, StringView statement)
    : link_(std::move(link)), handle_(std::make_unique<DriverHandle>(SQL_HANDLE_STMT, link_->get())),
      statement_(statement), onlyReads_(isQuery(statement))
{
    // No escape processing: braces in a text are not ODBC escapes.
    SQLSetStmtAttrW(handle_->get(), SQL_ATTR_NOSCAN, attribute(SQL_NOSCAN_ON), 0);
    check(link_->waiting([&] {
        return SQLExecDirectW(handle_->get(), wide(statement_.data()),
                              static_cast<SQLINTEGER>(statement_.size()));
    }));
    describe();
    if (!hasColumns()) {
        StatementRows::finish();
        return;
    }
    begin();
    if (!isOver())
        link_->cursors.push_back(this);
}

StatementRows::~StatementRows() { StatementRows::finish(); }

void StatementRows::finish()
{
    if (!link_)
        return;
    link_->waiting([&]() -> SQLRETURN {
        handle_.reset();
        return SQL_SUCCESS;
    });
    std::erase(link_->cursors, this);
    link_.reset();
}

void StatementRows::check(std::int16_t result)
{
    if (!went(result))
        throw link_->failure(*handle_, statement_);
}

void StatementRows::describe()
{
    SQLSMALLINT columns = 0;
    check(SQLNumResultCols(handle_->get(), &columns));
    for (SQLUSMALLINT column = 1; column <= columns; ++column) {
        std::array<char16_t, 200> name{};
        SQLSMALLINT length = 0;
        SQLSMALLINT type = 0;
        SQLULEN size = 0;
        SQLSMALLINT digits = 0;
        SQLSMALLINT nullable = 0;
        check(SQLDescribeColW(handle_->get(), column, wide(name.data()), name.size(), &length, &type, &size,
                              &digits, &nullable));
        names_.emplace_back(name.data());
        kinds_.push_back(kindOf(type));
    }
}

StatementRows::Kind StatementRows::kindOf(std::int16_t type)
{
    switch (type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
        return Kind::whole;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
    case SQL_DECIMAL:
    case SQL_NUMERIC:
        return Kind::decimal;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
        return Kind::bytes;
    default:
        return Kind::text;
    }
}

bool StatementRows::read(Row& row)
{
    const SQLRETURN result = link_->waiting([&] { return SQLFetch(handle_->get()); });
    if (result == SQL_NO_DATA)
        return false;
    check(result);
    row.resize(kinds_.size());
    for (std::size_t column = 0; column < kinds_.size(); ++column)
        row[column] = field(static_cast<std::uint16_t>(column + 1), kinds_[column]);
    return true;
}

Cursor::Field StatementRows::field(std::uint16_t column, Kind kind)
{
    SQLLEN bytes = 0;
    if (kind == Kind::text)
        return text(column);
    if (kind == Kind::bytes) {
        char none = 0;
        check(SQLGetData(handle_->get(), column, SQL_C_BINARY, &none, 0, &bytes));
        return bytes == SQL_NULL_DATA ? Field(Null()) : Field(Bytes());
    }
    if (kind == Kind::decimal) {
        double number = 0;
        check(SQLGetData(handle_->get(), column, SQL_C_DOUBLE, &number, sizeof number, &bytes));
        return bytes == SQL_NULL_DATA ? Field(Null()) : Field(number);
    }
    std::int64_t number = 0;
    check(SQLGetData(handle_->get(), column, SQL_C_SBIGINT, &number, sizeof number, &bytes));
    if (bytes == SQL_NULL_DATA)
        return Null();
    return wholeNumber(number);
}

/// Reads in chunks, as the length is not known in advance.
Cursor::Field StatementRows::text(std::uint16_t column)
{
    String result;
    std::array<char16_t, 2048> piece{};
    for (;;) {
        SQLLEN bytes = 0;
        const SQLRETURN got =
            SQLGetData(handle_->get(), column, SQL_C_WCHAR, piece.data(), sizeof piece, &bytes);
        check(got);
        if (got == SQL_NO_DATA)
            return result;
        if (bytes == SQL_NULL_DATA)
            return Null();
        const bool whole = bytes != SQL_NO_TOTAL && static_cast<std::size_t>(bytes) < sizeof piece;
        std::size_t units = whole ? static_cast<std::size_t>(bytes) / sizeof(char16_t) : piece.size() - 1;
        // Workaround: MariaDB's driver reports too short a length for a text that begins with certain letters
        // (Ú).
        while (got == SQL_SUCCESS && units < piece.size() && piece[units] != 0)
            ++units;
        result.append(piece.data(), units);
        if (got == SQL_SUCCESS)
            return result;
    }
}

} // namespace zv::odbc
