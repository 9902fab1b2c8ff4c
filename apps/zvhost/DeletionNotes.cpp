#include "zvhost/DeletionNotes.h"

#include "data/Schema.h"
#include "data/Statement.h"
#include "qt/QtText.h"
#include "runtime/Convert.h"

#include <QDateTime>

#include <map>

namespace zv::host {
namespace {

String conditionFor(StringView table, Long key)
{
    return u" WHERE Tabla=" + textLiteral(table) + statement(u" AND Fila={}", {key});
}

/// Where a note cannot be written or read the rest goes on; a server that went away is told.
template <class Use>
void asFarAsPossible(Use&& use)
{
    try {
        use();
    } catch (const RuntimeError& error) {
        if (error.number() == failure::connectionLost)
            throw;
    }
}

} // namespace

void noteDeletion(Connection& borrado, StringView table, Long key, Integer user)
{
    const String now =
        fromQt(QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")));
    const auto write = [&] {
        borrado.Execute(u"DELETE FROM RegistroPapelera" + conditionFor(table, key));
        borrado.Execute(
            statement(u"INSERT INTO RegistroPapelera (Tabla, Fila, Momento, IDUsuario) VALUES ({},{},{},{})",
                      {textLiteral(table), key, textLiteral(now), user}));
    };
    asFarAsPossible([&] {
        try {
            write();
        } catch (const RuntimeError& error) {
            if (error.number() != failure::tableMissing)
                throw;
            borrado.executeNative(schema::recycleBinNotes.definition);
            write();
        }
    });
}

void addNotes(Connection& borrado, std::vector<DeletedRow>& rows)
{
    asFarAsPossible([&] {
        std::map<std::pair<String, Long>, DeletedRow*> places;
        for (DeletedRow& each : rows)
            places[{lowerName(each.table), each.key}] = &each;
        const RecordsetPtr notes =
            borrado.Execute(u"SELECT Tabla, Fila, Momento, IDUsuario FROM RegistroPapelera");
        for (; !notes->Eof(); notes->MoveNext()) {
            const std::vector<Value> note = notes->row();
            const auto place = places.find({lowerName(String() + note[0]), CLng(note[1])});
            if (place == places.end())
                continue;
            place->second->moment = String() + note[2];
            place->second->user = CInt(note[3]);
        }
    });
}

void forgetNote(Connection& borrado, StringView table, Long key)
{
    asFarAsPossible([&] { borrado.Execute(u"DELETE FROM RegistroPapelera" + conditionFor(table, key)); });
}

} // namespace zv::host
