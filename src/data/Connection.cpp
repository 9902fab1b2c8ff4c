#include "data/Connection.h"

#include "runtime/Convert.h"

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
        // Optional arguments that callers may give behind the statement, a counter of rows and options: both
        // are ignored.
        members.method(u"Execute", [](Connection& self, Arguments& arguments) {
            expectArguments(arguments, 1, 3, u"Execute");
            return Value(self.Execute(CStr(arguments.front())));
        });
        return members;
    }();
    return table;
}

} // namespace

Value Recordset::invoke(StringView member, Access access, Arguments& arguments)
{
    return recordsetMembers().invoke(*this, member, access, arguments);
}

Value Connection::invoke(StringView member, Access access, Arguments& arguments)
{
    return connectionMembers().invoke(*this, member, access, arguments);
}

} // namespace zv
