#include "data/history/Export.h"

#include "data/DataError.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "data/history/Fields.h"
#include "data/history/Words.h"
#include "runtime/Json.h"

#include <map>
#include <optional>

namespace zv::history {
namespace {

constexpr StringView hidden = u"…";

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
        String result = u"{\"asiento\":" + literal(entry.number) + u",\"momento\":" + jsonText(entry.moment) +
                        u",\"clase\":" + jsonText(wordFor(entry.kind)) + u",\"apertura\":" +
                        literal(entry.opening) + u",\"guardado\":" + literal(entry.save) + u",\"tabla\":" +
                        jsonText(entry.table) + u",\"fila\":" +
                        jsonText(hides_ ? row(entry.row) : entry.row) + u",\"antes\":" +
                        contents(entry, entry.before) + u",\"despues\":" + contents(entry, entry.after);
        if (!hides_)
            result += u",\"huella\":" + jsonText(entry.digest) + u",\"enlace\":" + jsonText(entry.link);
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
            return jsonText(hides_ ? hidden : StringView(text));
        }
        String result;
        for (const Field& each : *fields)
            result += (result.empty() ? u"{" : u",") + jsonText(each.column) + u":" + value(entry, each);
        return result.empty() ? u"null" : result + u"}";
    }

    String value(const Entry& entry, const Field& field)
    {
        const auto* text = field.value.as<String>();
        if (!hides_)
            return text ? jsonText(*text) : field.value.isNull() ? u"null" : literal(field.value);
        if (field.value.isNull())
            return u"null";
        if (entry.kind == Kind::opened && sameName(field.column, u"IDUsuario"))
            return users_.of(literal(field.value));
        if (entry.kind == Kind::opened && sameName(field.column, u"Puesto"))
            return jsonText(u"puesto " + stations_.of(*text));
        if (isPupil(field.column))
            return pupils_.of(literal(field.value));
        // What the history itself says of a dialog or an erasure is nobody's text.
        const bool ours = entry.kind == Kind::erased || sameName(field.column, u"Dialogo");
        return !text ? literal(field.value) : jsonText(ours ? StringView(*text) : hidden);
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
