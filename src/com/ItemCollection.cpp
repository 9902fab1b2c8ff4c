#include "com/ItemCollection.h"

#include "runtime/Members.h"

namespace zv::com {

namespace {

std::size_t position(const Value& which)
{
    const Long number = CLng(which);
    return number < 0 ? 0 : static_cast<std::size_t>(number);
}

} // namespace

void ItemCollection::Add(const Value& item, const std::optional<Value>& key)
{
    items_.Add(item, key && !key->isEmpty() ? CStr(*key) : String());
}

Value ItemCollection::Item(const Value& which)
{
    const auto* key = which.as<String>();
    return key != nullptr ? items_.Item(*key) : items_.Item(position(which));
}

void ItemCollection::Remove(const Value& which)
{
    if (const auto* key = which.as<String>())
        items_.Remove(*key);
    else
        items_.Remove(position(which));
}

const Member* ItemCollection::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        method<&ItemCollection::Add>(u"Add"),
        method<&ItemCollection::Item>(u"Item"),
        method<&ItemCollection::Remove>(u"Remove"),
        method<&ItemCollection::Count>(u"Count"),
    };
    return findMember(members, name);
}

} // namespace zv::com
