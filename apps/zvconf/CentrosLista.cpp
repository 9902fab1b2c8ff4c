#include "zvconf/CentrosLista.h"

#include "data/Engine.h"
#include "data/SchoolPlace.h"
#include "runtime/Convert.h"
#include "runtime/OwnerOnly.h"
#include "runtime/WholeFile.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

namespace zv::zvconf {
namespace {

namespace fs = std::filesystem;

constexpr StringView blanks = u" \t";
constexpr std::size_t longestName = 60;
/// More come of a file that is no list.
constexpr Long mostFaults = 20;

String trimmed(StringView text)
{
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == StringView::npos)
        return {};
    return String(text.substr(begin, text.find_last_not_of(blanks) - begin + 1));
}

bool isPlain(char16_t letter)
{
    return (letter >= u'a' && letter <= u'z') || (letter >= u'A' && letter <= u'Z') ||
           (letter >= u'0' && letter <= u'9');
}

SchoolPlace placeOf(StringView url)
{
    const String scheme(engineOf(url).scheme());
    const StringView location = locationOf(url);
    if (scheme == u"odbc")
        return placeIn(location);
    if (scheme != u"sqlite")
        return placeOf(location);
    std::error_code ignored;
    const fs::path file = fs::weakly_canonical(fs::absolute(fs::path(String(location))), ignored);
    return {{u"sqlite:" + (ignored ? String(location) : file.u16string())}, {}};
}

/// A list as it is read, line by line.
class Reader {
public:
    explicit Reader(const fs::path& list) : list_(list) {}

    void read(std::string_view bytes)
    {
        if (bytes.starts_with("\xEF\xBB\xBF"))
            bytes.remove_prefix(3);
        for (line_ = 1; !bytes.empty(); ++line_) {
            const std::size_t end = std::min(bytes.find('\n'), bytes.size());
            std::string_view line = bytes.substr(0, end);
            if (line.ends_with('\r'))
                line.remove_suffix(1);
            take(line);
            bytes.remove_prefix(std::min(end + 1, bytes.size()));
        }
        if (schools_.empty() && faults_.empty())
            faults_ = u"\n«" + list_.u16string() +
                      u"» no tiene ningún centro: escriba uno en cada línea, su nombre y su URL.";
        if (count_ > mostFaults)
            faults_ += u"\n(... y " + decimalText(count_ - mostFaults) +
                       u" más: mire si es la lista de los centros, o corrija éstos.)";
        if (hasPassword_ && owneronly::openToOthers(list_))
            faults_ += u"\n«" + list_.u16string() +
                       u"» lleva contraseñas y la pueden leer otros: quíteles el permiso (" +
                       String(owneronly::closingCommand()) + u").";
        if (!faults_.empty())
            throw std::runtime_error(toUtf8(faults_.substr(1) + u"\nNo se ha hecho nada."));
    }
    std::vector<ListedSchool> schools() && { return std::move(schools_); }

private:
    void fault(const String& text)
    {
        if (++count_ <= mostFaults)
            faults_ += u"\n" + list_.u16string() + u", línea " + decimalText(line_) + u": " + text;
    }

    void take(std::string_view bytes)
    {
        String line;
        try {
            line = trimmed(fromUtf8(bytes));
        } catch (const std::invalid_argument&) {
            fault(u"no está en UTF-8: guarde la lista como texto en UTF-8.");
            return;
        }
        if (std::ranges::any_of(line, [](char16_t each) { return each < u' ' && each != u'\t'; })) {
            fault(u"tiene caracteres que no son texto: guarde la lista como texto en UTF-8.");
            return;
        }
        if (line.empty() || line.starts_with(u'#'))
            return;
        const std::size_t end = std::min(line.find_first_of(blanks), line.size());
        const ListedSchool school{line.substr(0, end), trimmed(StringView(line).substr(end))};
        if (isNamed(school) && isPlaced(school))
            schools_.push_back(school);
    }

    bool isNamed(const ListedSchool& school)
    {
        const bool plain = isPlain(school.name.front()) && school.name.size() <= longestName &&
                           std::ranges::all_of(school.name, [](char16_t each) {
                               return isPlain(each) || each == u'-' || each == u'_';
                           });
        if (!plain) {
            fault(u"«" + withoutPassword(school.name) +
                  u"» no vale de nombre: hasta 60 letras de la a a la z, cifras, «-» y «_», sin "
                  u"acentos ni ñ, y lo primero una letra o una cifra.");
            return false;
        }
        return isFirst(names_, lowerName(school.name), u"el nombre «" + school.name + u"»");
    }

    bool isPlaced(const ListedSchool& school)
    {
        if (school.url.empty() || locationOf(school.url).empty() || school.url.find(u':') == String::npos) {
            fault(u"a «" + school.name +
                  u"» le falta el URL: escriba detrás del nombre, con un espacio, sqlite:FICHERO "
                  u"u odbc:CONEXIÓN.");
            return false;
        }
        hasPassword_ = hasPassword_ || withoutPassword(school.url) != school.url;
        try {
            return isFirstAt(placeOf(school.url), u"el centro de " + withoutPassword(school.url));
        } catch (const std::exception& error) {
            fault(fromUtf8(error.what()));
            return false;
        }
    }

    bool isFirst(std::map<String, Long>& seen, const String& key, const String& what)
    {
        const auto [first, isNew] = seen.try_emplace(key, line_);
        if (!isNew)
            faultAgain(what, first->second);
        return isNew;
    }

    /// Of one name on servers that have nothing in common, they are two.
    bool isFirstAt(const SchoolPlace& place, const String& what)
    {
        for (const String& name : place.names)
            for (const auto& [line, other] : places_[name])
                if (shareServer(place, other)) {
                    faultAgain(what, line);
                    return false;
                }
        for (const String& name : place.names)
            places_[name].emplace_back(line_, place);
        return true;
    }

    void faultAgain(const String& what, Long first)
    {
        fault(what + u" está ya en la línea " + decimalText(first) + u": quite una de las dos.");
    }

    const fs::path& list_;
    Long line_ = 1;
    Long count_ = 0; ///< Of faults.
    bool hasPassword_ = false;
    String faults_;
    std::vector<ListedSchool> schools_;
    std::map<String, Long> names_;
    std::map<String, std::vector<std::pair<Long, SchoolPlace>>> places_; ///< Of each name, by lines.
};

} // namespace

std::vector<ListedSchool> schoolsIn(const fs::path& list)
{
    const auto bytes = wholeFile(list);
    if (!bytes)
        throw std::runtime_error("«" + toUtf8(list.u16string()) +
                                 "» no se puede leer: dé el fichero de texto con la lista de los centros.");
    Reader reader(list);
    reader.read(*bytes);
    return std::move(reader).schools();
}

} // namespace zv::zvconf
