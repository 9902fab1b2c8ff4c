#include "data/odbc/Schemas.h"

#include "data/DataError.h"
#include "runtime/Convert.h"

#include <random>

namespace zv::odbc {
namespace {

constexpr StringView ofGuion = u"zv_guion_";
constexpr StringView ofNewSchool = u"zv_nuevo_";

StringView suffixOf(Database which)
{
    switch (which) {
    case Database::borrado:
        return u"_borrado";
    case Database::entrada:
        return u"_entrada";
    case Database::centro:
        break;
    }
    return u"";
}

/// Creates it before a link selects it: a server may refuse to select what is not there.
const Target& created(Pool& by, const Target& target)
{
    schemasOf(*target.server).create(by, target.schema);
    return target;
}

} // namespace

const Schemas& schemasOf(const Server& server)
{
    return server.ddl == DdlStyle::mariadb ? mariadbSchemas() : postgresqlSchemas();
}

String schemaName(StringView school, Database which) { return String(school) + String(suffixOf(which)); }

std::vector<std::array<String, 2>> pairs(Pool& pool, StringView statement)
{
    std::vector<std::array<String, 2>> result;
    const std::unique_ptr<Cursor> rows = pool.run(statement);
    for (; rows->row(); rows->advance())
        result.push_back({CStr(rows->value(0)), CStr(rows->value(1))});
    return result;
}

void Schemas::dropOrphan(Pool& pool, StringView schema) const
{
    try {
        drop(pool, schema);
    } catch (const DataError& failure) {
        if (failure.number() == failure::connectionLost)
            throw;
    }
}

String passingName(Purpose purpose)
{
    std::random_device chance;
    String result(purpose == Purpose::guion ? ofGuion : ofNewSchool);
    for (int part = 0; part < 3; ++part)
        result += decimalText(static_cast<Long>(chance() & 0x7FFFFFFF));
    return result;
}

bool isPassing(StringView name) { return name.starts_with(ofGuion) || name.starts_with(ofNewSchool); }

Target withoutSchema(Target target)
{
    target.schema.clear();
    target.selection.clear();
    return target;
}

TemporarySchema::TemporarySchema(const Target& target)
    : owner(withoutSchema(target)), pool(created(owner, target))
{}

TemporarySchema::~TemporarySchema()
{
    try {
        schemasOf(*pool.target().server).drop(owner, pool.target().schema);
    } catch (const RuntimeError&) {
        // Server gone: leftovers are dropped by the next process that creates schemas (dropOrphans).
    }
}

} // namespace zv::odbc
