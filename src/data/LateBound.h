#pragma once

#include "data/Connection.h"

namespace zv {

/// Adapter of a host's object to Connection; one of our own comes back as it is, nullptr gives nullptr. Any
/// other is late-bound: `Execute(statement, , -1)`, the third argument being "options not stated", and of the
/// rows that it gives `EOF`, `MoveNext`, `Fields(name)` (a value, or a field with a `Value`) and `Close`;
/// `MoveFirst` and, for values in order, `Fields.Count` and `Fields(position)` only when they are asked for.
/// What it lacks fails with 438, and its own failures keep number and text. A result that is no object reads
/// as a closed recordset. Nothing is called before the first statement but, if the object has them,
/// `AbreVentana`, `CierraVentana` and `ReposaVentana`, the observer callbacks of a connection with a history.
ConnectionPtr connectionOf(const ObjectPtr& object);

/// A late-bound argument, as the above.
template <>
inline ConnectionPtr valueTo(const Value& value)
{
    const auto* object = value.as<ObjectPtr>();
    return connectionOf(object && !*object ? nullptr : CObj(value));
}

/// The host's own object behind a connection of the above, for whoever of the host is handed the connection;
/// any other object as it is.
ObjectPtr hostObjectOf(const ObjectPtr& connection);

} // namespace zv
