#include "data/LateBound.h"

#include <algorithm>
#include <utility>

namespace zv {
namespace {

constexpr Long optionsNotStated = -1;

class LateRows final : public Recordset {
public:
    explicit LateRows(ObjectPtr rows) : rows_(std::move(rows)) {}

    bool Eof() override { return CBool(get(opened(), u"EOF")); }
    void MoveNext() override
    {
        moved_ = true;
        call(opened(), u"MoveNext");
    }
    /// No-op on the first row: moving there would re-run the statement, where the host can do that at all.
    void MoveFirst() override
    {
        opened();
        if (moved_)
            call(rows_, u"MoveFirst");
        moved_ = false;
    }
    Value Fields(StringView name) override { return field(Value(name)); }
    std::vector<Value> row() override
    {
        const Long count = CLng(get(CObj(get(opened(), u"Fields")), u"Count"));
        std::vector<Value> result;
        constexpr Long believable = 1024;
        result.reserve(static_cast<std::size_t>(std::clamp(count, Long{0}, believable)));
        for (Long position = 0; position < count; ++position)
            result.push_back(field(position));
        return result;
    }
    Long State() const override
    {
        try {
            return rows_ ? CLng(get(rows_, u"State")) : 0;
        } catch (const RuntimeError& error) {
            if (error.number() != failure::memberMissing)
                throw;
            return 1; // Default: rows without State are open until they are closed here.
        }
    }
    void Close() override
    {
        opened();
        const ObjectPtr closing = std::exchange(rows_, nullptr);
        call(closing, u"Close");
    }

private:
    const ObjectPtr& opened() const
    {
        if (!rows_)
            throw DataError(failure::closedRecordset, "", u"", u"");
        return rows_;
    }
    Value field(Value which) const
    {
        const Value found = get(opened(), u"Fields", {std::move(which)});
        return found.as<ObjectPtr>() ? get(CObj(found), u"Value") : found;
    }

    ObjectPtr rows_;
    bool moved_ = false;
};

class LateConnection final : public Connection {
public:
    explicit LateConnection(ObjectPtr object) : object_(std::move(object)) {}
    const ObjectPtr& object() const { return object_; }

    RecordsetPtr Execute(StringView statement) override
    {
        const Value rows = call(object_, u"Execute", {statement, Value(), optionsNotStated});
        const auto* object = rows.as<ObjectPtr>();
        return std::make_shared<LateRows>(object ? *object : nullptr);
    }
    /// Untranslated: which SQL the host's object speaks is unknown.
    RecordsetPtr executeNative(StringView statement) override { return Execute(statement); }
    EngineInfo engine() override { return {String(object_->TypeName()), {}}; }

    void dialogOpened(const Opening& opening) override
    {
        tell(u"AbreVentana",
             {opening.dialog, opening.row, opening.creates, opening.user, opening.userName, opening.station});
    }
    void dialogClosed() override { tell(u"CierraVentana"); }
    void dialogAtRest() override { tell(u"ReposaVentana"); }

private:
    /// Tells an object that has such a member; what is no failure of a statement never reaches a dialog.
    void tell(StringView member, Arguments arguments = {})
    {
        if (deaf_)
            return;
        try {
            call(object_, member, std::move(arguments));
        } catch (const RuntimeError&) {
            deaf_ = true;
        }
    }

    ObjectPtr object_;
    bool deaf_ = false; ///< It has no such members.
};

} // namespace

ConnectionPtr connectionOf(const ObjectPtr& object)
{
    if (!object)
        return nullptr;
    if (auto own = std::dynamic_pointer_cast<Connection>(object))
        return own;
    return std::make_shared<LateConnection>(object);
}

ObjectPtr hostObjectOf(const ObjectPtr& connection)
{
    const auto* late = dynamic_cast<const LateConnection*>(connection.get());
    return late ? late->object() : connection;
}

} // namespace zv
