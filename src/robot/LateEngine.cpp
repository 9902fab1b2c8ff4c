#include "robot/LateEngine.h"

#include "data/LateBound.h"
#include "runtime/Members.h"

namespace zv {
namespace {

/// Field of the current row; a new object for each request, holding a copy of the value.
class PlainField final : public Object {
public:
    explicit PlainField(Value value) : value_(std::move(value)) {}
    StringView TypeName() const override { return u"Campo"; }

private:
    const Member* memberNamed(StringView name) const override
    {
        static constexpr Member members[] = {property<&PlainField::value_>(u"Value")};
        return findMember(members, name);
    }
    Value value_;
};

class PlainRows final : public Object {
public:
    explicit PlainRows(RecordsetPtr rows) : rows_(std::move(rows)) {}
    StringView TypeName() const override { return u"Filas"; }

private:
    bool Eof() { return rows_->Eof(); }
    ObjectPtr Fields(StringView name) { return std::make_shared<PlainField>(rows_->Fields(name)); }
    void MoveNext() { rows_->MoveNext(); }
    void Close() { rows_->Close(); }
    const Member* memberNamed(StringView name) const override
    {
        static constexpr Member members[] = {
            property<&PlainRows::Eof>(u"EOF"),
            property<&PlainRows::Fields>(u"Fields"),
            method<&PlainRows::MoveNext>(u"MoveNext"),
            method<&PlainRows::Close>(u"Close"),
        };
        return findMember(members, name);
    }
    RecordsetPtr rows_;
};

class PlainConnection final : public Object {
public:
    explicit PlainConnection(ConnectionPtr inner) : inner_(std::move(inner)) {}
    StringView TypeName() const override { return u"Conexion"; }

private:
    Value Execute(StringView statement)
    {
        const RecordsetPtr rows = inner_->Execute(statement);
        // Nothing for a statement without rows, where our own connections give a closed recordset.
        return rows->State() != 0 ? Value(std::make_shared<PlainRows>(rows)) : Value();
    }
    const Member* memberNamed(StringView name) const override
    {
        static constexpr Member members[] = {method<&PlainConnection::Execute>(u"Execute").taking(3)};
        return findMember(members, name);
    }
    ConnectionPtr inner_;
};

class LateSchoolConnection final : public ConnectionDecorator {
public:
    explicit LateSchoolConnection(ConnectionPtr inner)
        : ConnectionDecorator(std::move(inner)),
          late_(connectionOf(std::make_shared<PlainConnection>(this->inner())))
    {}
    RecordsetPtr Execute(StringView statement) override { return late_->Execute(statement); }

private:
    ConnectionPtr late_;
};

class LateEngine final : public Engine {
public:
    StringView scheme() const override { return u"tardia"; }
    bool isForPeople() const override { return false; }
    DdlStyle ddl(Connection& connection) override
    {
        return inner_->ddl(*dynamic_cast<LateSchoolConnection&>(connection).inner());
    }
    ConnectionPtr open(StringView url, Database which) override { return reached(url, which, &Engine::open); }
    ConnectionPtr inspect(StringView url, Database which) override
    {
        return reached(url, which, &Engine::inspect);
    }
    void settle(Connection& connection) override
    {
        inner_->settle(*dynamic_cast<LateSchoolConnection&>(connection).inner());
    }
    ConnectionPtr create(StringView url, Database which) override
    {
        return reached(url, which, &Engine::create);
    }
    std::unique_ptr<SchoolToBe> make(StringView url, StringView kept) override
    {
        return std::make_unique<ForwardedSchoolToBe>(url, kept);
    }
    std::vector<String> damage(Connection& connection) override
    {
        return inner_->damage(*dynamic_cast<LateSchoolConnection&>(connection).inner());
    }
    bool scrub(Connection& connection) override
    {
        return inner_->scrub(*dynamic_cast<LateSchoolConnection&>(connection).inner());
    }
    void remove(StringView url, Database which) override { engineOf(url).remove(locationOf(url), which); }
    ConnectionPtr temporary(StringView url, Database which) override
    {
        return reached(url, which, &Engine::temporary);
    }
    std::vector<FoundTable> tables(Connection& connection) override
    {
        return inner_->tables(*dynamic_cast<LateSchoolConnection&>(connection).inner());
    }

private:
    ConnectionPtr reached(StringView url, Database which, ConnectionPtr (Engine::*way)(StringView, Database))
    {
        inner_ = &engineOf(url);
        return std::make_shared<LateSchoolConnection>((inner_->*way)(locationOf(url), which));
    }

    Engine* inner_ = nullptr; ///< Engine of the URL opened last; one is enough for a program.
};

} // namespace

std::unique_ptr<Engine> lateEngine() { return std::make_unique<LateEngine>(); }

} // namespace zv
