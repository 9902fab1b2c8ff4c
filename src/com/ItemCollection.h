#pragma once

#include "runtime/Collection.h"
#include "runtime/Object.h"

#include <optional>

namespace zv::com {

/// Late-bound adapter of Collection for hosts: Add(Item, Key), Item and Remove by key or by position from 1,
/// Count. Fails as Collection does.
class ItemCollection final : public Object {
public:
    StringView TypeName() const override { return u"Collection"; }

    void Add(const Value& item, const std::optional<Value>& key);
    Value Item(const Value& which);
    void Remove(const Value& which);
    std::size_t Count() const { return items_.Count(); }

private:
    const Member* memberNamed(StringView name) const override;
    Collection<Value> items_;
};

} // namespace zv::com
