#include "data/history/Export.h"

#include "data/DataError.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "data/history/Fields.h"

#include <map>
#include <optional>

namespace zv::history {
namespace {

constexpr StringView hidden = u"…";

StringView kindName(Kind kind)
{
    switch (kind) {
    case Kind::opened:
        return u"apertura";
    case Kind::added:
        return u"alta";
    case Kind::changed:
        return u"cambio";
    case Kind::removed:
        return u"baja";
    case Kind::read:
        return u"lectura";
    case Kind::failed:
        return u"fallo";
    case Kind::missed:
        return u"sin fila";
    case Kind::opaque:
        return u"instrucción";
    case Kind::ended:
        return u"fin";
    case Kind::erased:
        return u"olvido";
    }
    return u"";
}

String quoted(StringView text)
{
    String result = u"\"";
    for (const char16_t unit : text) {
        constexpr StringView digits = u"0123456789abcdef";
        if (unit < 0x20) {
            result += u"\\u00";
            result += digits[unit >> 4];
            result += digits[unit & 0xF];
            continue;
        }
        if (unit == u'"' || unit == u'\\')
            result += u'\\';
        result += unit;
    }
    return result + u"\"";
}

/// Numbers for names, from 1 in the order of their appearance.
class Pseudonyms {
public:
    String of(StringView name)
    {
        return literal(
            numbers_.try_emplace(String(name), static_cast<Long>(numbers_.size()) + 1).first->second);
    }

private:
    std::map<String, Long> numbers_;
};

class Exporter {
public:
    explicit Exporter(Names names) : hides_(names == Names::hidden) {}

    std::string line(const Entry& entry)
    {
        String result = u"{\"asiento\":" + literal(entry.number) + u",\"momento\":" + quoted(entry.moment) +
                        u",\"clase\":" + quoted(kindName(entry.kind)) + u",\"apertura\":" +
                        literal(entry.opening) + u",\"guardado\":" + literal(entry.save) + u",\"tabla\":" +
                        quoted(entry.table) + u",\"fila\":" + quoted(hides_ ? row(entry.row) : entry.row) +
                        u",\"antes\":" + contents(entry, entry.before) + u",\"despues\":" +
                        contents(entry, entry.after);
        if (!hides_)
            result += u",\"huella\":" + quoted(entry.digest) + u",\"enlace\":" + quoted(entry.link);
        return toUtf8(result + u"}");
    }

private:
    /// An object of the columns; of a statement or an engine's words its text.
    String contents(const Entry& entry, const String& text)
    {
        std::optional<Fields> fields;
        try {
            fields = fieldsIn(text);
        } catch (const DataError&) {
            return quoted(hides_ ? hidden : StringView(text));
        }
        String result;
        for (const Field& each : *fields)
            result += (result.empty() ? u"{" : u",") + quoted(each.column) + u":" + value(entry, each);
        return result.empty() ? u"null" : result + u"}";
    }

    String value(const Entry& entry, const Field& field)
    {
        const String* text = field.value.as<String>();
        if (!hides_)
            return text ? quoted(*text) : field.value.isNull() ? u"null" : literal(field.value);
        if (field.value.isNull())
            return u"null";
        if (entry.kind == Kind::opened && sameName(field.column, u"IDUsuario"))
            return users_.of(literal(field.value));
        if (entry.kind == Kind::opened && sameName(field.column, u"Puesto"))
            return quoted(u"puesto " + stations_.of(*text));
        if (isPupil(field.column))
            return pupils_.of(literal(field.value));
        // What the history itself says of a dialog or an erasure is nobody's text.
        const bool ours = entry.kind == Kind::erased || sameName(field.column, u"Dialogo");
        return !text ? literal(field.value) : quoted(ours ? StringView(*text) : hidden);
    }

    static bool isPupil(StringView column)
    {
        return sameName(column, u"codAlumno") || sameName(column, u"IDAlumno");
    }

    /// A condition, with pupils as numbers of ours and without texts.
    String row(StringView condition)
    {
        String result;
        std::size_t done = 0;
        bool pupil = false;
        Tokens tokens(condition);
        for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
            const StringView word = condition.substr(token.start, token.length);
            const bool text = token.kind == Token::Kind::text;
            if (token.kind == Token::Kind::name)
                pupil = isPupil(unquotedName(word));
            if (!text && !(pupil && token.kind == Token::Kind::number))
                continue;
            result += condition.substr(done, token.start - done);
            result += text ? String(hidden) : pupils_.of(word);
            done = token.start + token.length;
        }
        return result + String(condition.substr(done));
    }

    bool hides_;
    Pseudonyms users_;
    Pseudonyms stations_;
    Pseudonyms pupils_;
};

} // namespace

Head exportAll(Connection& centro, Names names, const std::function<void(const std::string& line)>& write)
{
    Exporter exporter(names);
    Head newest;
    forEach(centro, u"", [&](const Entry& each) {
        write(exporter.line(each));
        newest = {each.number, each.link};
        return true;
    });
    return newest;
}

} // namespace zv::history
