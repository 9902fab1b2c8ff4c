#include "data/Connection.h"

#include "runtime/Members.h"

namespace zv {

const Member* Recordset::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        property<&Recordset::Eof>(u"EOF"),           property<&Recordset::State>(u"State"),
        property<&Recordset::Fields>(u"Fields"),     method<&Recordset::MoveNext>(u"MoveNext"),
        method<&Recordset::MoveFirst>(u"MoveFirst"), method<&Recordset::Close>(u"Close"),
    };
    return findMember(members, name);
}

const Member* Connection::memberNamed(StringView name) const
{
    // Behind the statement callers may give where to count rows, and options: neither changes it.
    static constexpr Member members[] = {method<&Connection::Execute>(u"Execute").taking(3)};
    return findMember(members, name);
}

} // namespace zv
