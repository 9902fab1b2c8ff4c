#pragma once

#include "runtime/Collection.h"
#include "runtime/Object.h"

namespace zv::com {

/// A collection that hosts fill: Add(Item, Key), Item and Remove by key or by position from 1, Count. Fails
/// as Collection does.
class ItemCollection final : public Object {
public:
    StringView TypeName() const override { return u"Collection"; }
    Value invoke(StringView member, Access access, Arguments& arguments) override;

private:
    Collection<Value> items_;
};

} // namespace zv::com
