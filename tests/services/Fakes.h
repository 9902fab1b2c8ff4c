#pragma once

#include "runtime/PropertyBag.h"

#include <initializer_list>

namespace zv::test {

/// A collection that is reached by name: Count, Item(n).
class FakeCollection final : public Object {
public:
    FakeCollection(Long first, std::vector<ObjectPtr> items) : first_(first), items_(std::move(items)) {}
    StringView TypeName() const override { return u"Coleccion"; }
    Value invoke(StringView member, Access, Arguments& arguments) override
    {
        if (sameName(member, u"Count"))
            return static_cast<Long>(items_.size());
        if (!sameName(member, u"Item"))
            fail(failure::memberMissing, member);
        return items_.at(static_cast<std::size_t>(CLng(arguments.at(0)) - first_));
    }

private:
    Long first_;
    std::vector<ObjectPtr> items_;
};

inline ObjectPtr fake(StringView kind, std::initializer_list<std::pair<StringView, Value>> members)
{
    auto bag = std::make_shared<PropertyBag>(String(kind));
    for (const auto& [name, value] : members)
        bag->add(name, value);
    return bag;
}

inline ObjectPtr fakeForm(StringView tag, std::vector<ObjectPtr> controls)
{
    return fake(u"frmPrueba", {{u"Tag", tag},
                               {u"Caption", u"diseño"},
                               {u"Controls", std::make_shared<FakeCollection>(0, std::move(controls))}});
}

inline String text(const ObjectPtr& object, StringView member) { return CStr(get(object, member)); }

} // namespace zv::test
