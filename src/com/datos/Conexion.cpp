#include "com/datos/Conexion.h"

#include "com/NamedObject.h"
#include "data/Engine.h"
#include "runtime/Members.h"

#include <zvconfiguracion/zvdatos.h>

namespace zv::com {

namespace {

constexpr std::int32_t alreadyOpen = 3705;

/// Field of the current row, with a copy of its value.
class Campo final : public Object {
public:
    Campo(String name, Value value) : name_(std::move(name)), value_(std::move(value)) {}
    StringView TypeName() const override { return u"Field"; }

private:
    const Member* memberNamed(StringView name) const override
    {
        static constexpr Member members[] = {method<&Campo::value_>(u"Value"),
                                             method<&Campo::name_>(u"Name")};
        return findMember(members, name);
    }
    String name_;
    Value value_;
};

/// Adapter of a recordset whose fields are objects, as hosts expect them.
class Filas final : public Object {
public:
    explicit Filas(RecordsetPtr rows) : rows_(std::move(rows)) {}
    StringView TypeName() const override { return u"Recordset"; }
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        return memberNamed(member) != nullptr ? Object::invoke(member, access, arguments)
                                              : rows_->invoke(member, access, arguments);
    }

private:
    ObjectPtr Fields(const String& name) { return std::make_shared<Campo>(name, rows_->Fields(name)); }
    const Member* memberNamed(StringView name) const override
    {
        static constexpr Member members[] = {method<&Filas::Fields>(u"Fields")};
        return findMember(members, name);
    }
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

private:
    void Open(const Value& address, const std::optional<Value>& database)
    {
        if (connection_)
            throw RuntimeError(alreadyOpen, u"La conexión ya está abierta.");
        const String url = CStr(address);
        const Database which =
            database && !database->isEmpty() ? databaseNamed(CStr(*database)) : Database::centro;
        Engine& engine = engineOf(url);
        ConnectionPtr opened = engine.open(locationOf(url), which);
        engine.settle(*opened);
        connection_ = std::move(opened);
    }
    ObjectPtr Execute(const Value& statement)
    {
        return std::make_shared<Filas>(connection().Execute(CStr(statement)));
    }
    Long State() const { return connection_ ? 1 : 0; }
    void Close()
    {
        connection();
        connection_.reset();
    }
    // What the module tells, by name only, of the dialogs above: for a history.
    void AbreVentana(const String& dialog, Long row, bool creates, Integer user, const String& userName,
                     const String& station)
    {
        if (connection_)
            connection_->dialogOpened({dialog, row, creates, user, userName, station});
    }
    void CierraVentana()
    {
        if (connection_)
            connection_->dialogClosed();
    }
    void ReposaVentana()
    {
        if (connection_)
            connection_->dialogAtRest();
    }
    const Member* memberNamed(StringView name) const override
    {
        // Optional arguments behind the statement, a counter of rows and options, are ignored.
        static constexpr Member members[] = {
            method<&Conexion::Open>(u"Open"),
            method<&Conexion::Execute>(u"Execute").taking(3),
            method<&Conexion::State>(u"State"),
            method<&Conexion::Close>(u"Close"),
            method<&Conexion::AbreVentana>(u"AbreVentana"),
            method<&Conexion::CierraVentana>(u"CierraVentana"),
            method<&Conexion::ReposaVentana>(u"ReposaVentana"),
        };
        return findMember(members, name);
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

std::unique_ptr<ComObject> newConexion()
{
    // Numbered as in the interface definition.
    return newNamedObject(std::make_shared<Conexion>(), {u"Open", u"Execute", u"State", u"Close"},
                          &ZV_IID_Conexion);
}

} // namespace zv::com
