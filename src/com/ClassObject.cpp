#include "com/ClassObject.h"

#include <algorithm>

namespace zv::com {

namespace {

class ClassObject final : public ComObject {
public:
    explicit ClassObject(const Creatable& what);
    bool answers(const ZvGuid& interface) const override { return interface == ZV_IID_IClassFactory; }
    const Creatable& what() const { return what_; }

private:
    const Creatable& what_;
};

/// Queries the interface for the host, and releases the initial reference.
ZvResult handOver(std::unique_ptr<ComObject> made, const ZvGuid* interface, void** place)
{
    const Held<ZvUnknown> own(made.release()->face<ZvUnknown>());
    return own.get()->vtbl->QueryInterface(own.get(), interface, place);
}

ZvResult createInstance(Face* face, ZvUnknown* outer, const ZvGuid* interface, void** place)
{
    if (place == nullptr)
        return ZV_E_POINTER;
    *place = nullptr;
    if (outer != nullptr)
        return ZV_CLASS_NOAGGREGATION;
    return guarded([&] {
        const ZvResult given = handOver(Self<ClassObject>(face)->what().make(), interface, place);
        if (given < 0)
            throw Refusal{given};
    });
}

ZvResult lockServer(Face* /*face*/, std::int32_t lock)
{
    static std::atomic<int> locks{0};
    if (lock != 0) {
        ++locks;
        ++inUse();
        return ZV_OK;
    }
    // Unbalanced unlock is an error: it would take away the count of a live object.
    int held = locks;
    while (held > 0 && !locks.compare_exchange_weak(held, held - 1)) {
    }
    if (held == 0)
        return ZV_E_UNEXPECTED;
    --inUse();
    return ZV_OK;
}

const FunctionTable& functions()
{
    static const FunctionTable table = [] {
        FunctionTable made = unknownFunctions();
        made.push_back(reinterpret_cast<AnyFunction>(createInstance));
        made.push_back(reinterpret_cast<AnyFunction>(lockServer));
        return made;
    }();
    return table;
}

ClassObject::ClassObject(const Creatable& what) : ComObject(functions()), what_(what) {}

} // namespace

ZvResult classObject(std::span<const Creatable> classes, const ZvGuid* classId, const ZvGuid* interface,
                     void** place)
{
    if (place == nullptr)
        return ZV_E_POINTER;
    *place = nullptr;
    if (classId == nullptr || interface == nullptr)
        return ZV_E_POINTER;
    const auto found =
        std::ranges::find_if(classes, [&](const Creatable& each) { return each.classId == *classId; });
    if (found == classes.end())
        return ZV_CLASS_NOTAVAILABLE;
    return guarded([&] {
        const ZvResult given = handOver(std::make_unique<ClassObject>(*found), interface, place);
        if (given < 0)
            throw Refusal{given};
    });
}

} // namespace zv::com
