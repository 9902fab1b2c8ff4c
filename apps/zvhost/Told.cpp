#include "zvhost/Told.h"

#include "data/Schema.h"
#include "qt/QtText.h"
#include "runtime/Convert.h"
#include "runtime/Time.h"
#include "zvhost/Deletion.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace zv::host {
namespace {

using history::Field;
using history::Fields;
using history::Loss;
using Losses = std::vector<const Loss*>;

/// Pupils, rows or persons that a sentence names; of more only the number is told.
constexpr qsizetype named = 3;

/// Columns that have no telling name of their own.
constexpr std::array<std::pair<StringView, StringView>, 15> labels{{
    {u"Dificultad", u"Dificultades de asimilación"},
    {u"Valoracion", u"Valoración y promoción"},
    {u"Apreciacion", u"Medidas educativas"},
    {u"Alumno1", u"Cognitivas-Intelectuales"},
    {u"Alumno2", u"Equilibrio Personal"},
    {u"Alumno3", u"Inserción Social"},
    {u"Alumno4", u"Motrices"},
    {u"Alumno5", u"Relación Interpersonal"},
    {u"Procedimiento1", u"Procedimientos, 1"},
    {u"Procedimiento2", u"Procedimientos, 2"},
    {u"Procedimiento3", u"Procedimientos, 3"},
    {u"Procedimiento4", u"Procedimientos, 4"},
    {u"Procedimiento5", u"Procedimientos, 5"},
    {u"Actitud1", u"Actitudes, 1"},
    {u"Actitud2", u"Actitudes, 2"},
}};

const schema::Column* columnOf(StringView table, StringView column)
{
    const schema::Table* definition = schema::table(table);
    if (definition == nullptr)
        return nullptr;
    const auto found = std::ranges::find_if(
        definition->columns(), [&](const schema::Column& each) { return sameName(each.name, column); });
    return found == definition->columns().end() ? nullptr : &*found;
}

/// "A, B y C", "A, B, C y 4 más".
QString listed(QStringList names)
{
    names.removeDuplicates();
    const qsizetype more = names.size() - named;
    if (more > 1)
        names = names.mid(0, named) << QStringLiteral("%1 más").arg(more);
    if (names.size() < 2)
        return names.join(QString());
    const QString last = names.takeLast();
    return names.join(QStringLiteral(", ")) + QStringLiteral(" y ") + last;
}

QString plural(qsizetype count, const char* one, const char* several)
{
    return QStringLiteral("%1 %2").arg(count).arg(QString::fromUtf8(count == 1 ? one : several));
}

/// "Se ha borrado 1 respuesta", "Se han borrado 3".
QString verb(qsizetype count, const char* one, const char* several)
{
    return QString::fromUtf8(count == 1 ? one : several);
}

qsizetype fieldsOf(const Losses& losses)
{
    qsizetype count = 0;
    for (const Loss* each : losses)
        count += std::ssize(each->was);
    return count;
}

/// The reason of a failure as the end of a sentence.
QString reason(const String& words)
{
    QString text = toQt(words);
    if (text.contains(QStringLiteral("disco está lleno")) || text.contains(QStringLiteral("No space left")))
        return QStringLiteral("el disco está lleno");
    if (!text.isEmpty())
        text[0] = text[0].toLower();
    while (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

String keyText(StringView condition)
{
    const std::optional<Fields> key = history::fieldsOfCondition(condition);
    return key && key->size() == 1 && IsNumeric(key->front().value) ? CStr(key->front().value) : String();
}

} // namespace

QString counted(const Losses& losses)
{
    qsizetype ratings = 0;
    qsizetype answers = 0;
    qsizetype texts = 0;
    qsizetype others = 0;
    for (const Loss* loss : losses)
        for (const Field& each : loss->was)
            ++(sameName(each.column, u"codResp")     ? ratings
               : sameName(each.column, u"codCOResp") ? answers
               : each.value.as<String>() != nullptr  ? texts
                                                     : others);
    QStringList parts;
    if (texts > 0)
        parts += plural(texts, "texto", "textos");
    if (answers > 0)
        parts += plural(answers, "respuesta", "respuestas");
    if (ratings > 0)
        parts += plural(ratings, "valoración", "valoraciones");
    if (others > 0)
        parts += plural(others, "dato", "datos");
    return listed(parts);
}

QString Told::nameOf(StringView table, Long key)
{
    const auto [place, isNew] = names_.try_emplace({lowerName(table), key});
    if (!isNew)
        return place->second;
    if (schema::table(table) != nullptr) {
        const String name = nameOfRow(*host_.school().centro, table, key);
        const Node* node = nodeOfTable(table);
        const bool enciphered = node != nullptr && node->columns.front().kind == ListColumn::Kind::enciphered;
        place->second = toQt(enciphered ? deciphered(name) : name);
    }
    return place->second;
}

QString Told::person(const Opening& opening)
{
    if (opening.user == 0 && opening.userName.empty())
        return QStringLiteral("alguien");
    const QString known = people_.known(opening.user);
    return !known.isEmpty()            ? known
           : !opening.userName.empty() ? toQt(opening.userName)
                                       : people_.name(opening.user);
}

QString Told::time(const String& moment)
{
    const std::optional<Seconds> when = momentIn(moment);
    return when ? saidTime(toQt(localText(*when))) : QString();
}

QString Told::row(StringView table, StringView condition, const Fields& known)
{
    if (const schema::Table* definition = schema::table(table))
        for (const schema::Column& each : definition->columns())
            if (each.refersTo == u"Alumno") {
                const std::optional<Fields> key = history::fieldsOfCondition(condition);
                const Value* pupil = history::valueOf(known, each.name);
                if (pupil == nullptr && key)
                    pupil = history::valueOf(*key, each.name);
                if (pupil != nullptr && IsNumeric(*pupil))
                    return nameOf(u"Alumno", CLng(*pupil));
            }
    if (const String key = keyText(condition); !key.empty())
        if (QString name = nameOf(table, CLng(key)); !name.isEmpty())
            return name;
    for (const Field& each : known)
        if (const auto* text = each.value.as<String>(); text != nullptr && !text->empty())
            return value(table, each.column, each.value);
    return toQt(condition);
}

QString Told::field(StringView table, StringView condition, StringView column, const Fields& known)
{
    const auto reference = [&](StringView name) {
        const schema::Column* found = columnOf(table, name);
        const std::optional<Fields> key = history::fieldsOfCondition(condition);
        const Value* number = history::valueOf(known, name);
        if (number == nullptr && key)
            number = history::valueOf(*key, name);
        return found == nullptr || number == nullptr ? QString() : value(table, name, *number);
    };
    if (sameName(column, u"codResp"))
        return reference(u"codMateria") + QStringLiteral(" · ") + reference(u"codTipo");
    if (sameName(column, u"codCOResp"))
        return reference(u"codConsejoOrientador");
    for (const auto& [name, words] : labels)
        if (sameName(name, column))
            return toQt(words);
    const QString plain = toQt(column);
    return plain.startsWith(QStringLiteral("cod"), Qt::CaseInsensitive) && plain.size() > 3 ? plain.mid(3)
                                                                                            : plain;
}

QString Told::value(StringView table, StringView column, const Value& value)
{
    if (value.isNull())
        return {};
    const schema::Column* found = columnOf(table, column);
    const Node* node = nodeOfTable(table);
    if (node != nullptr && node->columns.front().kind == ListColumn::Kind::enciphered &&
        value.as<String>() != nullptr)
        return QStringLiteral("(cifrado)");
    if (found != nullptr && !found->refersTo.empty() && IsNumeric(value)) {
        if (CLng(value) == 0)
            return {};
        if (QString name = nameOf(found->refersTo, CLng(value)); !name.isEmpty())
            return name;
    }
    return toQt(CStr(value));
}

QString Told::names(const Losses& losses)
{
    QStringList names;
    for (const Loss* each : losses)
        names += each->pupil != 0
                     ? nameOf(u"Alumno", each->pupil)
                     : row(each->table, each->row, each->whole.empty() ? each->was : each->whole);
    return listed(names);
}

/// One part for each person; the time is that of what he wrote last.
QString Told::writtenOver(const Losses& losses)
{
    std::map<QString, Losses> byPerson;
    QStringList order;
    for (const Loss* each : losses) {
        const QString who = person(each->author.opening);
        if (!byPerson.contains(who))
            order += who;
        byPerson[who].push_back(each);
    }
    QStringList parts;
    for (const QString& who : order.mid(0, named)) {
        const Losses& his = byPerson[who];
        const QString when = time((*std::ranges::max_element(his, {}, [](const Loss* each) {
                                      return each->author.moment;
                                  }))->author.moment);
        parts +=
            QStringLiteral("%1 que %2 guardó %3: %4")
                .arg(counted(his), who,
                     when.startsWith(QStringLiteral("la")) ? QStringLiteral("a ") + when : when, names(his));
    }
    if (order.size() > named)
        parts += QStringLiteral("lo de %1").arg(plural(order.size() - named, "persona más", "personas más"));
    return QStringLiteral("Ha sustituido ") + parts.join(QStringLiteral("; "));
}

QString Told::replaced(const Loss& loss)
{
    const auto name = [&](const Fields& fields) {
        const Value* found = history::valueOf(fields, u"Nombre");
        return found != nullptr ? toQt(String() + *found) : row(loss.table, loss.row, fields);
    };
    return QStringLiteral("Al guardar «%1» se ha sustituido «%2» (%3)")
        .arg(name(loss.is), name(loss.was), toQt(nameOfTable(loss.table)));
}

QString Told::nowhere(const Losses& losses)
{
    const qsizetype count = fieldsOf(losses);
    if (losses.front()->pupil != 0)
        return verb(count, "No se ha guardado ", "No se han guardado ") + counted(losses) +
               QStringLiteral(" de ") + names(losses);
    return QStringLiteral("No se ha guardado «%1» (%2): su fila no está")
        .arg(names(losses), toQt(nameOfTable(losses.front()->table)));
}

QString Told::removed(const Losses& losses)
{
    Losses here;
    Losses left;
    for (const Loss* each : losses)
        (each->left ? left : here).push_back(each);
    QStringList parts;
    for (const auto& [some, gone] : {std::pair(&here, false), std::pair(&left, true)})
        if (!some->empty()) {
            const bool several = some->front()->pupil != some->back()->pupil;
            parts += counted(*some) + QStringLiteral(" de ") + names(*some) +
                     (!gone     ? QString()
                      : several ? QStringLiteral(", que ya no están en la sección")
                                : QStringLiteral(", que ya no está en la sección"));
        }
    return verb(fieldsOf(losses), "Se ha borrado ", "Se han borrado ") + parts.join(QStringLiteral(" y "));
}

QString Told::failed(const Losses& losses, const history::SavedShare& share)
{
    const QString why = reason(share.why);
    if (share.tried > 0)
        return QStringLiteral("%1 de %2 respuestas se han guardado; %3")
            .arg(share.saved)
            .arg(share.tried)
            .arg(why);
    return verb(fieldsOf(losses), "No se ha guardado ", "No se han guardado ") + counted(losses) +
           QStringLiteral(" de %1, ni lo que seguía; %2").arg(names(losses), why);
}

QString Told::sentence(const std::vector<Loss>& losses, const history::SavedShare& share)
{
    using Kind = Loss::Kind;
    std::map<Kind, Losses> byKind;
    for (const Loss& each : losses)
        byKind[each.kind].push_back(&each);
    QStringList parts;
    if (byKind.contains(Kind::writtenOver))
        parts += writtenOver(byKind[Kind::writtenOver]);
    for (const Loss* each : byKind[Kind::replaced])
        parts += replaced(*each);
    if (!byKind[Kind::nowhere].empty())
        parts += nowhere(byKind[Kind::nowhere]);
    if (!byKind[Kind::removed].empty())
        parts += removed(byKind[Kind::removed]);
    if (!byKind[Kind::failed].empty())
        parts += failed(byKind[Kind::failed], share);
    return parts.join(QStringLiteral(". "));
}

} // namespace zv::host
