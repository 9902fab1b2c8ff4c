#include "data/Connection.h"

#include "runtime/Convert.h"

#include <array>
#include <charconv>
#include <stdexcept>
#include <type_traits>

namespace zv {
namespace {

void expectArguments(const Arguments& arguments, std::size_t least, std::size_t most, StringView member)
{
    if (arguments.size() < least || arguments.size() > most)
        fail(failure::argumentCount, member);
}

const MemberTable<Recordset>& recordsetMembers()
{
    static const auto table = [] {
        MemberTable<Recordset> members;
        members.property(u"EOF", [](Recordset& self, const Arguments&) { return Value(self.Eof()); });
        members.property(u"State", [](Recordset& self, const Arguments&) { return Value(self.State()); });
        members.property(u"Fields", [](Recordset& self, const Arguments& arguments) {
            expectArguments(arguments, 1, 1, u"Fields");
            return self.Fields(CStr(arguments.front()));
        });
        members.method(u"MoveNext", [](Recordset& self, Arguments&) {
            self.MoveNext();
            return Value();
        });
        members.method(u"MoveFirst", [](Recordset& self, Arguments&) {
            self.MoveFirst();
            return Value();
        });
        members.method(u"Close", [](Recordset& self, Arguments&) {
            self.Close();
            return Value();
        });
        return members;
    }();
    return table;
}

const MemberTable<Connection>& connectionMembers()
{
    static const auto table = [] {
        MemberTable<Connection> members;
        // Behind the statement callers may give where to count rows, and options: neither changes it.
        members.method(u"Execute", [](Connection& self, Arguments& arguments) {
            expectArguments(arguments, 1, 3, u"Execute");
            return Value(self.Execute(CStr(arguments.front())));
        });
        return members;
    }();
    return table;
}

template <class Number>
String pointText(Number number)
{
    std::array<char, 64> room{};
    const auto end = std::to_chars(room.data(), room.data() + room.size(), number);
    return {room.data(), end.ptr};
}

/// A value as statements take it, whatever the regional settings.
struct StatementText {
    String operator()(Empty /*none*/) const { return {}; }
    String operator()(Null /*none*/) const { return {}; }
    String operator()(bool truth) const { return truth ? u"-1" : u"0"; }
    String operator()(const String& text) const { return text; }
    String operator()(Currency amount) const
    {
        return pointText(static_cast<double>(amount.tenThousandths) / 10000);
    }
    template <class T>
    String operator()(const T& other) const
    {
        if constexpr (std::is_floating_point_v<T>)
            return pointText(other);
        else if constexpr (std::is_integral_v<T>)
            return decimalText(other);
        else
            fail(failure::typeMismatch);
    }
};

} // namespace

Value Recordset::invoke(StringView member, Access access, Arguments& arguments)
{
    return recordsetMembers().invoke(*this, member, access, arguments);
}

Value Connection::invoke(StringView member, Access access, Arguments& arguments)
{
    return connectionMembers().invoke(*this, member, access, arguments);
}

String textLiteral(StringView text) { return u"'" + Replace(text, u"'", u"''") + u"'"; }

String literal(const Value& value)
{
    if (value.isNull() || value.isEmpty())
        return u"NULL";
    if (const auto* text = value.as<String>())
        return textLiteral(*text);
    if (const auto* flag = value.as<bool>())
        return *flag ? u"-1" : u"0";
    return Trim(Str(value));
}

String statement(StringView pattern, std::span<const Value> values)
{
    constexpr StringView place = u"{}";
    String result;
    for (const Value& value : values) {
        const std::size_t found = pattern.find(place);
        if (found == StringView::npos)
            throw std::logic_error("statement: more values than places");
        result += pattern.substr(0, found);
        result += std::visit(StatementText(), value.data());
        pattern.remove_prefix(found + place.size());
    }
    if (pattern.find(place) != StringView::npos)
        throw std::logic_error("statement: more places than values");
    return result += pattern;
}

} // namespace zv
