#include "zvhost/Host.h"

#include "data/Statement.h"
#include "data/history/HistoryConnection.h"
#include "qt/QtText.h"
#include "runtime/Convert.h"
#include "services/cZEncryptoAPI.h"
#include "session/DialogDirectory.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "session/cConstCol.h"
#include "session/cNombreNodo.h"
#include "suite/Station.h"
#include "zvhost/Widgets.h"

namespace zv::host {

Host::Host(String url, School school, Choices choices)
    : url_(std::move(url)), school_(std::move(school)), session_(newHostSession(school_))
{
    const String engine = school_.centro->engine().name;
    const bool server = engine.find(u"SQL Server") != String::npos;
    limits_ = !server && engine.find(u"ACCESS") == String::npos;
    let(*session_, u"sqlserver", server);
    // What tells this school from another one on the same machine.
    let(*session_, u"RutaBD", fromQt(shownUrl(url_)));
    choose(std::move(choices));
}

void Host::choose(Choices choices)
{
    choices_ = std::move(choices);
    let(*session_, u"IDUsuario", choices_.user);
    let(*session_, u"NombreUsuario", choices_.userName);
    let(*session_, u"IDPerfil", choices_.profile);
    let(*session_, u"Activa", !choices_.readOnly);
    let(*session_, u"MTP", choices_.mtp);
}

std::vector<UserOrProfile> Host::usersOrProfiles(StringView query)
{
    std::vector<UserOrProfile> found;
    try {
        for (const RecordsetPtr rows = school_.entrada->Execute(query); !rows->Eof(); rows->MoveNext()) {
            const std::vector<Value> row = rows->row();
            found.push_back({CInt(row[0]), String() + row[1], row[2].isNull() ? Integer{0} : CInt(row[2])});
        }
    } catch (const RuntimeError&) {
        // No failure: a suite without these tables keeps its users elsewhere.
        found.clear();
    }
    return found;
}

std::vector<UserOrProfile> Host::users()
{
    return usersOrProfiles(u"SELECT IDUsuario, Nombre, CodPerfil FROM Usuario ORDER BY Nombre");
}

std::vector<UserOrProfile> Host::profiles()
{
    return usersOrProfiles(u"SELECT IDPerfil, Nombre, IDPerfil AS Mismo FROM Perfil ORDER BY IDPerfil");
}

void Host::hand(Byte action, Long row)
{
    let(*session_, u"Accion", action);
    let(*session_, u"lngRowData", row);
    cAsignarDatos().ObtenerDatos(session_);
}

void Host::open(const Node& node, Byte action, Long row, bool branches)
{
    hand(action, row);
    if (branches)
        cAsignarDatos().BloquearBanco();
    // Bypasses the facade, in which no number opens this dialog.
    if (node.number == cNombreNodo::TiposTarea)
        dialogs().find(node.form).instance().Show();
    else
        cAsignarDatos().ActivarFormulario(node.number);
}

bool Host::has(const Node& node, Long row)
{
    return !school_.centro
                ->Execute(statement(u"SELECT {} FROM {} WHERE {}={}",
                                    {Value(node.key), Value(node.table), Value(node.key), row}))
                ->Eof();
}

bool Host::guardAgrees(const Node& node, Long row)
{
    hand(cConstCol::Modificado, row);
    return cAsignarDatos().Eliminar(node.number);
}

Opening Host::ownOpening() const
{
    return {.dialog = u"zvhost",
            .user = choices_.user,
            .userName = choices_.userName,
            .station = thisStation().identity};
}

Long Host::act(const std::function<void()>& work)
{
    {
        const ActGuard act(*school_.centro, ownOpening());
        work();
    }
    history::HistoryConnection* history = history::historyOf(school_.centro);
    const auto closed = history != nullptr ? history->takeClosed() : std::nullopt;
    return closed ? closed->parts.front().number : 0;
}

String RowReader::statementFor(std::optional<Long> atMost) const
{
    const StringView query = node_->query;
    if (!atMost)
        return String(query);
    // "SELECT key, …": it may have its table's alias.
    const std::size_t begin = query.find(u' ') + 1;
    const String key(query.substr(begin, query.find_first_of(u" ,", begin) - begin));
    return String(query) + (last_ ? u" WHERE " + key + u">" + decimalText(*last_) : String()) +
           u" ORDER BY " + key + u" LIMIT " + decimalText(*atMost);
}

std::vector<Row> RowReader::next(Long atMost)
{
    Connection& centro = *host_->school().centro;
    const bool limits = host_->limits();
    std::vector<Row> found;
    const RecordsetPtr rows = centro.Execute(statementFor(limits ? std::optional(atMost) : std::nullopt));
    for (; !rows->Eof(); rows->MoveNext()) {
        std::vector<Value> values = rows->row();
        const Long key = CLng(values.front());
        values.erase(values.begin());
        for (std::size_t i = 0; i < values.size(); ++i)
            if (node_->columns[i].kind == ListColumn::Kind::enciphered)
                values[i] = deciphered(values[i]);
        found.push_back({key, std::move(values)});
    }
    done_ = !limits || found.size() < static_cast<std::size_t>(atMost);
    if (!found.empty())
        last_ = found.back().key;
    return found;
}

String deciphered(const Value& text)
{
    String plain = String() + text;
    if (plain.empty())
        return {};
    try {
        cZEncryptoAPI::create().descifrar(plain);
        return plain;
    } catch (const RuntimeError&) {
        return u"(no se puede descifrar con la clave de este equipo)";
    }
}

String shown(const Value& value, const ListColumn& column)
{
    if (value.isNull())
        return {};
    // Type check: a school made elsewhere may hold there neither a truth value nor a number.
    const bool number = IsNumeric(value);
    if (column.kind == ListColumn::Kind::flag && number)
        return isTrue(value) ? u"Sí" : u"No";
    if (column.kind == ListColumn::Kind::word && number) {
        const Double place = CDbl(value);
        if (place < 1 || place > static_cast<Double>(column.words.size()))
            return {};
        return String(column.words[static_cast<std::size_t>(place) - 1]);
    }
    return CStr(value);
}

} // namespace zv::host
