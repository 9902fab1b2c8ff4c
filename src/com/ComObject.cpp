#include "com/ComObject.h"

namespace zv::com {

namespace {

ZvResult ZV_CALL queryInterface(Face* face, const ZvGuid* interface, void** place)
{
    if (place == nullptr)
        return ZV_E_POINTER;
    *place = nullptr;
    if (interface == nullptr)
        return ZV_E_POINTER;
    if (!(*interface == ZV_IID_IUnknown) && !face->object->answers(*interface))
        return ZV_E_NOINTERFACE;
    face->object->addRef();
    *place = face;
    return ZV_OK;
}

std::uint32_t ZV_CALL addRef(Face* face) { return face->object->addRef(); }

std::uint32_t ZV_CALL release(Face* face) { return face->object->release(); }

} // namespace

std::atomic<int>& inUse()
{
    static std::atomic<int> count{0};
    return count;
}

ComObject::ComObject(const FunctionTable& table) : face_{table.data(), this} { ++inUse(); }

ComObject::~ComObject() { --inUse(); }

std::uint32_t ComObject::release()
{
    const std::uint32_t left = --references_;
    if (left == 0)
        std::unique_ptr<ComObject>(this).reset();
    return left;
}

FunctionTable unknownFunctions() { return {slot(queryInterface), slot(addRef), slot(release)}; }

} // namespace zv::com
