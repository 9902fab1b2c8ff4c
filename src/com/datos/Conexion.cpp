#include "com/datos/Conexion.h"

#include "com/NamedObject.h"
#include "data/Engine.h"

namespace zv::com {

namespace {

constexpr std::int32_t alreadyOpen = 3705;

void expect(const Arguments& arguments, std::size_t least, std::size_t most)
{
    if (arguments.size() < least || arguments.size() > most)
        fail(failure::argumentCount);
}

/// A field of the present row, by the name that hosts give it.
class Campo final : public Object {
public:
    Campo(String name, Value value) : name_(std::move(name)), value_(std::move(value)) {}
    StringView TypeName() const override { return u"Field"; }
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        expect(arguments, 0, 0);
        if (access != Access::let && sameName(member, u"Value"))
            return value_;
        if (access != Access::let && sameName(member, u"Name"))
            return name_;
        fail(failure::memberMissing, member);
    }

private:
    String name_;
    Value value_;
};

/// The engine's rows, whose fields are objects.
class Filas final : public Object {
public:
    explicit Filas(RecordsetPtr rows) : rows_(std::move(rows)) {}
    StringView TypeName() const override { return u"Recordset"; }
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        if (!sameName(member, u"Fields"))
            return rows_->invoke(member, access, arguments);
        const String name = CStr(argument(arguments, 0));
        return std::make_shared<Campo>(name, rows_->Fields(name));
    }

private:
    RecordsetPtr rows_;
};

Database databaseNamed(StringView name)
{
    constexpr std::pair<StringView, Database> names[] = {
        {u"centro", Database::centro}, {u"borrado", Database::borrado}, {u"entrada", Database::entrada}};
    for (const auto& [each, database] : names)
        if (sameName(each, name))
            return database;
    throw RuntimeError(failure::invalidCall, u"La base de datos es centro, borrado o entrada.");
}

class Conexion final : public Object {
public:
    StringView TypeName() const override { return u"Connection"; }
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        if (access == Access::let)
            fail(failure::memberMissing, member);
        if (sameName(member, u"Open"))
            return open(arguments);
        if (sameName(member, u"Execute"))
            return execute(arguments);
        const bool state = sameName(member, u"State");
        if (!state && !sameName(member, u"Close"))
            fail(failure::memberMissing, member);
        expect(arguments, 0, 0);
        if (state)
            return Long{connection_ ? 1 : 0};
        connection();
        connection_.reset();
        return {};
    }

private:
    Value open(const Arguments& arguments)
    {
        expect(arguments, 1, 2);
        if (connection_)
            throw RuntimeError(alreadyOpen, u"La conexión ya está abierta.");
        const String url = CStr(arguments.front());
        const bool named = arguments.size() == 2 && !arguments[1].isEmpty();
        const Database which = named ? databaseNamed(CStr(arguments[1])) : Database::centro;
        Engine& engine = engineOf(url);
        ConnectionPtr opened = engine.open(locationOf(url), which);
        engine.settle(*opened);
        connection_ = std::move(opened);
        return {};
    }
    Value execute(const Arguments& arguments)
    {
        // Behind the statement hosts may give where to count rows, and options: neither changes it.
        expect(arguments, 1, 3);
        return std::make_shared<Filas>(connection().Execute(CStr(arguments.front())));
    }
    Connection& connection()
    {
        if (!connection_)
            throw RuntimeError(failure::connectionLost, u"La conexión está cerrada: ábrala antes con Open.");
        return *connection_;
    }

    ConnectionPtr connection_;
};

} // namespace

std::unique_ptr<ComObject> newConexion() { return newNamedObject(std::make_shared<Conexion>()); }

} // namespace zv::com
