#pragma once

#include "runtime/Object.h"

#include <map>

namespace zv {

/// Late-bound object with a dynamic set of members: a host's session object, say. Reading or writing a member
/// that was never added fails with 438.
class PropertyBag : public Object {
public:
    explicit PropertyBag(String typeName) : typeName_(std::move(typeName)) {}

    void add(StringView member, Value value) { members_[String(member)] = std::move(value); }
    bool has(StringView member) const { return members_.find(member) != members_.end(); }
    void remove(StringView member);

    StringView TypeName() const override { return typeName_; }
    Value invoke(StringView member, Access access, Arguments& arguments) override;

private:
    String typeName_;
    std::map<String, Value, NameLess> members_;
};

} // namespace zv
