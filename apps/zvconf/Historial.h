#pragma once

#include "zvconf/Command.h"

#include "data/Connection.h"
#include "data/DataError.h"
#include "data/history/HistoryConnection.h"
#include "data/history/Log.h"
#include "runtime/Time.h"

#include <memory>
#include <stdexcept>

namespace zv::zvconf {

/// Subcommands of `historial`; their arguments are those behind the subcommand's name.

int activarHistorial(Arguments arguments);
int desactivarHistorial(Arguments arguments);
int comprobarHistorial(Arguments arguments);
int olvidarHistorial(Arguments arguments);
int plazoHistorial(Arguments arguments);
int exportarHistorial(Arguments arguments);
int verHistorial(Arguments arguments);
int deshacerHistorial(Arguments arguments);
int cortadosHistorial(Arguments arguments);

// For the subcommands, and others that write.

/// As whom the command line writes.
Opening ourselves();

/// A number from 1 that stands behind an option; what is no such number fails with a UsageError.
Long numberFrom(const String& text);
/// Condition of the rows whose key begins with the number, as the history has it. A table that the module
/// does not know fails with a UsageError. `table` becomes the table's own spelling.
String rowOf(String& table, const String& number);
/// A local time "AAAA-MM-DD HH:MM", or a day alone; any other text fails with a UsageError.
Seconds momentFrom(const String& text);
/// The live database of a school that has a history; one that has none fails with a RuntimeError.
std::shared_ptr<history::HistoryConnection> openHistory(StringView url);
/// Does what reads the history's tables, and tells a person what it means where they are missing, or a newer
/// version's.
template <class Work>
auto withHistory(Connection& centro, Work work)
{
    try {
        history::requireKnown(centro);
        return work();
    } catch (const DataError& error) {
        if (error.number() != failure::tableMissing)
            throw;
        throw std::runtime_error("Este centro no tiene historial: lo activa «zvconf historial activar».");
    }
}

} // namespace zv::zvconf
