#include "data/Schools.h"

#include "data/Schema.h"
#include "data/Transaction.h"

namespace zv {
ConnectionPtr& baseOf(School& school, Database which)
{
    switch (which) {
    case Database::centro:
        return school.centro;
    case Database::borrado:
        return school.borrado;
    case Database::entrada:
        break;
    }
    return school.entrada;
}

const ConnectionPtr& baseOf(const School& school, Database which)
{
    return baseOf(const_cast<School&>(school), which); // NOLINT(*-const-cast): nothing is changed.
}

namespace {

void makeTables(Engine& engine, Connection& connection, Database which)
{
    // One transaction: each statement by itself would wait for the disk.
    Transaction transaction(connection);
    for (const String& each : schema::definition(which, engine.ddl(connection)))
        connection.executeNative(each);
    transaction.commit();
}

School existing(StringView url, ConnectionPtr (Engine::*open)(StringView, Database))
{
    Engine& engine = engineOf(url);
    School school;
    for (const Database which : everyDatabase)
        baseOf(school, which) = (engine.*open)(locationOf(url), which);
    return school;
}

} // namespace

School openSchool(StringView url, const std::function<void(const School&)>& check)
{
    School school = existing(url, &Engine::open);
    if (check)
        check(school);
    for (const Database which : everyDatabase)
        engineOf(url).settle(*baseOf(school, which));
    return school;
}
School inspectSchool(StringView url) { return existing(url, &Engine::inspect); }

School createSchool(StringView url, const std::function<void(School&)>& fill, StringView kept)
{
    Engine& engine = engineOf(url);
    const std::unique_ptr<SchoolToBe> making = engine.make(locationOf(url), locationOf(kept));
    {
        School school;
        for (const Database which : everyDatabase) {
            baseOf(school, which) = engine.create(making->location(), which);
            makeTables(engine, *baseOf(school, which), which);
        }
        if (fill)
            fill(school);
    }
    making->putInPlace();
    return existing(url, &Engine::open);
}

School temporarySchool(StringView url)
{
    Engine& engine = engineOf(url);
    School school;
    for (const Database which : everyDatabase) {
        baseOf(school, which) = engine.temporary(locationOf(url), which);
        makeTables(engine, *baseOf(school, which), which);
    }
    return school;
}

} // namespace zv
