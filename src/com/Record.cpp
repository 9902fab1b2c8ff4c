#include "com/Record.h"

#include "com/Classes.h"
#include "com/ItemCollection.h"
#include "com/Slots.h"

namespace zv::com {

namespace {

class Record final : public Instance {
public:
    Record(const FunctionTable& table, const ClassInfo& info) : Instance(table, info), fields_(info.fields)
    {
        for (const Field& field : fields_)
            values_.push_back(emptyOf(field.kind));
    }
    Value read(std::size_t field) override
    {
        Value& value = values_[field];
        // Lazy creation; wrapped once, so that the host gets the same object each time.
        if (fields_[field].kind == Kind::collection && !*value.as<ObjectPtr>())
            value = objectOf(dispatchOf(std::make_shared<ItemCollection>()));
        return value;
    }
    void write(std::size_t field, Value value) override { values_[field] = std::move(value); }
    Value run(std::size_t /*method*/, const Value& /*argument*/) override { return {}; }

private:
    std::span<const Field> fields_;
    std::vector<Value> values_;
};

template <const auto& Fields>
std::unique_ptr<ComObject> newRecord(const ClassInfo& info)
{
    return std::make_unique<Record>(fieldFunctions<Fields>(), info);
}

} // namespace

std::unique_ptr<ComObject> newDatosSesion() { return newRecord<cDatosSesionFields>(cDatosSesionClass); }

std::unique_ptr<ComObject> newConsejoOrientador()
{
    return newRecord<cConsejoOrientadorFields>(cConsejoOrientadorClass);
}

std::unique_ptr<ComObject> newInformeInd() { return newRecord<cInformeIndFields>(cInformeIndClass); }

std::unique_ptr<ComObject> newInfPrimaria() { return newRecord<cInfPrimariaFields>(cInfPrimariaClass); }

} // namespace zv::com
