#pragma once

#include "data/ConnectionText.h"
#include "data/DataError.h"
#include "data/Engine.h"
#include "data/odbc/Server.h"

#include <chrono>

namespace zv::odbc {

/// What a location's connection string asks for, beside what the driver takes from it.

/// Advice for a refused connection, by SQLSTATE: the driver manager's own ones are for what this machine
/// lacks.
String whyClosed(const DataError& failure);
/// Whether no waiting helps: this machine lacks the data source or the driver, or the server lets this person
/// in with another password at most.
bool isLasting(const DataError& failure);
/// Sets the database of `which`, on servers without schemas.
void nameDatabase(ConnectionText& text, Placing placing, Database which);
/// Adds those of the options that the text lacks.
void addOptions(ConnectionText& text, StringView options);
/// Connection string for the driver: without our own attributes, and with a password from outside.
ConnectionText forDriver(ConnectionText text);
/// Timeout of a statement, enforced by servers that can (Server::patience); zero: none.
std::chrono::seconds longestStatement(const ConnectionText& text);
/// Timeout of the connection, longer than that of a statement: a live server would have ended the statement
/// by then.
std::chrono::seconds longestSilence(const ConnectionText& text);
/// Without the schema, whose temporary name would tell a person nothing.
ConnectionText nameless(ConnectionText text);

} // namespace zv::odbc
