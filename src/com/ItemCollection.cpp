#include "com/ItemCollection.h"

namespace zv::com {

namespace {

using Items = Collection<Value>;

std::size_t position(const Value& which)
{
    const Long number = CLng(which);
    return number < 0 ? 0 : static_cast<std::size_t>(number);
}

void expect(const Arguments& arguments, std::size_t least, std::size_t most)
{
    if (arguments.size() < least || arguments.size() > most)
        fail(failure::argumentCount);
}

Value add(Items& items, const Arguments& arguments)
{
    expect(arguments, 1, 2);
    const bool keyed = arguments.size() == 2 && !arguments[1].isEmpty();
    items.Add(arguments[0], keyed ? CStr(arguments[1]) : String());
    return {};
}

Value item(Items& items, const Arguments& arguments)
{
    expect(arguments, 1, 1);
    const auto* key = arguments[0].as<String>();
    return key != nullptr ? items.Item(*key) : items.Item(position(arguments[0]));
}

Value remove(Items& items, const Arguments& arguments)
{
    expect(arguments, 1, 1);
    if (const auto* key = arguments[0].as<String>())
        items.Remove(*key);
    else
        items.Remove(position(arguments[0]));
    return {};
}

Value count(Items& items, const Arguments& arguments)
{
    expect(arguments, 0, 0);
    return static_cast<Long>(items.Count());
}

constexpr struct {
    StringView name;
    Value (*run)(Items&, const Arguments&);
} members[] = {{u"Add", add}, {u"Item", item}, {u"Remove", remove}, {u"Count", count}};

} // namespace

Value ItemCollection::invoke(StringView member, Access access, Arguments& arguments)
{
    for (const auto& each : members)
        if (sameName(each.name, member) && access != Access::let)
            return each.run(items_, arguments);
    fail(failure::memberMissing, member);
}

} // namespace zv::com
