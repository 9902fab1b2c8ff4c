// What the dialogs of the lists do with their rows, and what the recycle bin does with those that were
// deleted.
#include "care/rules/RuleFacts.h"

#include "data/Schema.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::care {
namespace {

void taskWithoutStaff(Facts& facts, Found& found)
{
    const auto& kinds = facts.names(u"TipoMiembroCentro", u"IDTMC", u"Nombre");
    for (const auto& row : facts.rows(u"SELECT IDTipoTarea, Nombre, codTipoMiembroCentro FROM TipoTarea"))
        if (!kinds.contains(longIn(row[2])))
            found.add(
                u"TipoTarea", longIn(row[0]),
                statement(u"Al abrir la tarea {} sale «ERROR Se eliminaron datos necesarios…»: su tipo de "
                          u"miembro del centro (número {}) ya no está, y sin otro no se acepta.",
                          {inQuotes(textIn(row[1])), longIn(row[2])}),
                u"Restáurelo de la papelera, o abra la tarea y elija otro.");
}

void unknownKind(Facts& facts, Found& found)
{
    const auto look = [&](const Rows& rows, StringView table, Long most, StringView what,
                          StringView instead) {
        for (const auto& row : rows)
            if (const Long kind = longIn(row[2]); kind < 1 || kind > most)
                found.add(
                    table, longIn(row[0]),
                    statement(
                        u"{} {} tiene el tipo {}, que no existe: la ventana muestra «{}», y al aceptar un "
                        u"cambio se guarda así.",
                        {Value(what), inQuotes(textIn(row[1])), kind, Value(instead)}),
                    u"Ábrala, elija su tipo, retoque el nombre y acepte.");
    };
    look(facts.rows(u"SELECT IDTurno, Descripcion, TipoTurno FROM Turno"), u"Turno", 4, u"El turno",
         u"Diurno");
    look(facts.rows(u"SELECT IDTMC, Nombre, Tipo FROM TipoMiembroCentro"), u"TipoMiembroCentro", 3,
         u"El tipo de miembro del centro", u"Personal de administración");
}

bool isWritten(const schema::Table& table)
{
    return table.use == schema::Use::named || table.use == schema::Use::positional;
}

/// The first column of the table that a person would call the row by; "" for none that he may read.
StringView nameColumn(const schema::Table& table)
{
    if (sameName(table.name, u"Enfermedad"))
        return {};
    const auto columns = table.columns();
    const auto text = std::ranges::find(columns, schema::Type::text, &schema::Column::type);
    return text == columns.end() ? StringView() : text->name;
}

/// Restoring refuses a key that is taken, and keys are given above the largest of both tables.
void keyTaken(Facts& facts, Found& found)
{
    for (const schema::Table& table : schema::tables(Database::borrado)) {
        if (!isWritten(table) || table.keyColumns != 1 || !table.columns().front().refersTo.empty())
            continue;
        const StringView key = table.columns().front().name;
        const StringView column = nameColumn(table).empty() ? key : nameColumn(table);
        const std::map<Long, String>& deleted = facts.names(table.name, key, column, Database::borrado);
        if (deleted.empty())
            continue;
        const std::map<Long, String>& live = facts.names(table.name, key, column);
        for (const auto& [row, name] : deleted)
            if (const auto other = live.find(row); other != live.end() && !name.empty())
                found.add(
                    table.name, row,
                    column == key
                        ? statement(
                              u"La papelera no podrá devolver la fila {} de {}: otra tiene ya su número.",
                              {row, Value(table.name)})
                        : statement(u"La papelera no podrá devolver {} (tabla {}): su número, {}, lo tiene "
                                    u"ahora {}.",
                                    {inQuotes(name), Value(table.name), row, inQuotes(other->second)}),
                    u"Si hace falta, dela de alta de nuevo; si es la misma, no hace falta hacer nada.");
    }
}

void unreadable(Facts& facts, Found& found)
{
    if (!facts.decipher())
        return;
    const Rows& rows = facts.rows(u"SELECT IDEnfermedad, Nombre, Descripcion FROM Enfermedad");
    std::vector<std::pair<Long, String>> failed;
    for (const auto& row : rows)
        try {
            for (const std::size_t column : {1U, 2U})
                if (const String text = textIn(row[column]); !text.empty())
                    static_cast<void>(facts.decipher()(text));
        } catch (const RuntimeError& error) {
            failed.emplace_back(longIn(row[0]), error.description());
        }
    if (failed.size() > 1 && failed.size() == rows.size()) {
        found.add(u"Enfermedad", 0,
                  statement(u"Al abrir cualquiera de las {} enfermedades los campos salen vacíos, y aceptar "
                            u"escribiría encima: aquí no se puede descifrar ninguna.",
                            {static_cast<Long>(failed.size())}),
                  failed.front().second);
        return;
    }
    for (const auto& [row, why] : failed)
        found.add(
            u"Enfermedad", row,
            statement(
                u"Al abrir la enfermedad número {} salen campos vacíos, y aceptar escribiría encima: su "
                u"texto no se descifra con la clave que descifra los demás.",
                {row}),
            u"No la acepte. Si se cifró con otra clave, búsquela; si no, el historial o una copia de "
            u"seguridad "
            u"tienen lo que había.");
}

/// The dialogs' boxes cut what is longer than they are, and save what they show.
void tooLong(Facts& facts, Found& found)
{
    for (const schema::Table& table : schema::tables(Database::centro)) {
        std::vector<const schema::Column*> columns;
        for (const schema::Column& column : table.columns())
            if (column.type == schema::Type::text && column.width > 0)
                columns.push_back(&column);
        if (!isWritten(table) || columns.empty())
            continue;
        String names(table.columns().front().name);
        for (const schema::Column* column : columns)
            names += u", " + String(column->name);
        for (const auto& row : facts.rows(u"SELECT " + names + u" FROM " + String(table.name)))
            for (std::size_t place = 0; place < columns.size(); ++place) {
                const auto* text = row[place + 1].as<String>();
                const auto width = static_cast<std::size_t>(columns[place]->width);
                if (text == nullptr || text->size() <= width)
                    continue;
                found.add(
                    table.name, longIn(row[0]),
                    statement(
                        u"Al abrir {} (tabla {}) se ve cortado a {} letras, y al aceptar se pierde el final: "
                        u"{}.",
                        {inQuotes(String(cut(*text, std::min<std::size_t>(width, 30))) + u"…"),
                         Value(table.name), Long{columns[place]->width}, inQuotes(text->substr(width))}),
                    u"Acórtelo usted, o no acepte esa ventana.");
            }
    }
}

constexpr Rule rules[] = {
    {u"tarea-sin-tipo", Area::lists, false, taskWithoutStaff},
    {u"tipo-desconocido", Area::lists, false, unknownKind},
    {u"papelera", Area::lists, false, keyTaken},
    {u"enfermedad-ilegible", Area::lists, false, unreadable},
    {u"texto-largo", Area::lists, false, tooLong},
};

} // namespace

std::span<const Rule> listRules() { return rules; }

} // namespace zv::care
