// The rows of a list that a person may take for one.
#include "care/joins/Join.h"
#include "care/joins/LookAlike.h"
#include "data/Statement.h"
#include "data/history/Words.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <map>

namespace zv::care {
namespace {

/// Columns that tell rows of one name apart: with another value there they are not meant to be one. Of an
/// answer its question; of others a number by which the bank or the tax office knows them, what they count
/// or whom they are for, where both have one.
constexpr struct {
    StringView table;
    StringView column;
} apart[] = {{u"ConsejoOrientador_Respuesta", u"CodConsejoOrientador"},
             {u"TipoRespInfInd", u"CodTipo"},
             {u"Banco", u"Numero"},
             {u"Presentador", u"NIF"},
             {u"Presentador", u"Sufijo"},
             {u"Emisor", u"CIF"},
             {u"Emisor", u"Sufijo"},
             {u"TipoIva", u"Valor"},
             {u"ponderacion", u"puntuacion"},
             {u"TipoOcurrencia", u"Lectivo"},
             {u"Turno", u"TipoTurno"},
             {u"TipoMiembroCentro", u"Tipo"},
             {u"TipoTarea", u"codTipoMiembroCentro"},
             {u"TipoIncidencia", u"Justificante"},
             {u"TipoIncidencia", u"Boletin"},
             {u"TipoIncidencia", u"Ausencia"},
             {u"Observacion", u"DescripcionLarga"}};

struct Candidate {
    Long key = 0;
    String name = {};
    std::vector<String> marks = {}; ///< What tells it from others of its name.
    Long references = 0;
};

bool mayBeOne(const Candidate& one, const Candidate& other)
{
    return std::ranges::equal(one.marks, other.marks, [](const String& a, const String& b) {
        return a.empty() || b.empty() || folded(a) == folded(b);
    });
}

StringView nameColumn(const schema::Table& table)
{
    for (const schema::Column& each : table.columns())
        if (each.type == schema::Type::text)
            return each.name;
    return keyOf(table);
}

/// The rows by what they look like.
std::map<String, std::vector<Candidate>> candidates(Connection& centro, const schema::Table& table,
                                                    const Deciphers& deciphers)
{
    const StringView name = nameColumn(table);
    const bool secret = history::isSecret(table.name, name);
    std::vector<StringView> marks;
    for (const auto& each : apart)
        if (sameName(each.table, table.name))
            marks.push_back(each.column);
    String columns = String(keyOf(table)) + u", " + String(name);
    for (const StringView each : marks)
        columns += u", " + String(each);
    std::map<String, std::vector<Candidate>> found;
    for (const RecordsetPtr rows = centro.Execute(u"SELECT " + columns + u" FROM " + String(table.name) +
                                                  u" ORDER BY " + String(keyOf(table)));
         !rows->Eof(); rows->MoveNext()) {
        const std::vector<Value> row = rows->row();
        try {
            Candidate each{.key = CLng(row[0]), .name = secret ? deciphers(row[1]) : String() + row[1]};
            for (std::size_t i = 2; i < row.size(); ++i)
                each.marks.push_back(String() + row[i]);
            if (const String fold = folded(each.name); !fold.empty())
                found[fold].push_back(std::move(each));
        } catch (const RuntimeError&) {
            // What cannot be deciphered looks like nothing.
        }
    }
    return found;
}

} // namespace

std::vector<Alike> lookAlikes(Connection& centro, const ModuleNode& node, const Deciphers& deciphers,
                              Long only)
{
    std::vector<Alike> found;
    const schema::Table& table = definitionOf(node.table);
    for (auto& [fold, rows] : candidates(centro, table, deciphers)) {
        if (rows.size() < 2 || (only != 0 && std::ranges::find(rows, only, &Candidate::key) == rows.end()))
            continue;
        for (Candidate& each : rows)
            for (const Referrer& who : referrers(centro, table.name, each.key, Parts::refer))
                each.references += who.count;
        std::ranges::stable_sort(rows, std::ranges::greater(), &Candidate::references);
        // Each with the first that it may be one with, so that no row is told twice.
        for (auto goes = rows.begin() + 1; goes != rows.end(); ++goes) {
            const auto stays = std::find_if(rows.begin(), goes,
                                            [&](const Candidate& each) { return mayBeOne(each, *goes); });
            if (stays != goes && (only == 0 || stays->key == only || goes->key == only))
                found.push_back({{&node, stays->key, goes->key}, stays->name, goes->name});
        }
    }
    return found;
}

} // namespace zv::care
