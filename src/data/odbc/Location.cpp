#include "data/odbc/Location.h"

#include "data/odbc/Password.h"
#include "data/odbc/Schemas.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace zv::odbc {

String whyClosed(const DataError& failure)
{
    const std::string& code = failure.engineCode();
    if (code.starts_with("IM002"))
        return u"nombra una fuente de datos que este equipo no tiene: corrija DSN, o créela (odbc.ini)";
    if (code.starts_with("IM003") || code.starts_with("01000"))
        return u"nombra un controlador de ODBC que este equipo no tiene: instálelo, o corrija Driver";
    if (code == "57P03")
        return u"no admite cambios ahora: si está arrancando, espere y repita; si es una reserva, "
               u"promuévala; en "
               u"un grupo de nodos, espere a que vuelva la mayoría";
    return u"no responde: compruebe el servidor, la base, el usuario y la contraseña";
}

bool isLasting(const DataError& failure)
{
    if (std::ranges::any_of(std::array{"IM", "01000", "28"},
                            [&](const char* each) { return failure.engineCode().starts_with(each); }))
        return true;
    // PostgreSQL's driver has one state for all, and the server its language.
    const String words = lowerName(failure.engineText());
    return std::ranges::any_of(std::array{u"password", u"contraseña", u"autenti", u"authenti", u"pg_hba"},
                               [&](StringView each) { return words.find(each) != String::npos; });
}

namespace {

/// Attribute that selects the database, on servers without schemas.
StringView nameAttribute(const ConnectionText& text)
{
    for (const StringView name : {u"DATABASE", u"DBQ", u"DB", u"DSN"})
        if (text.find(name))
            return name;
    failFor(text, u"no nombra ninguna base de datos: añada DATABASE=NOMBRE o DSN=NOMBRE.");
}

} // namespace

void nameDatabase(ConnectionText& text, Placing placing, Database which)
{
    const StringView attribute = nameAttribute(text);
    const String live = *text.find(attribute);
    if (placing == Placing::files && !sameName(attribute, u"DSN"))
        text.set(attribute, fileOf(live, which).u16string());
    else
        text.set(attribute, schemaName(live, which));
}

void addOptions(ConnectionText& text, StringView options)
{
    for (std::size_t from = 0; from < options.size();) {
        const std::size_t end = std::min(options.find(u';', from), options.size());
        const StringView option = options.substr(from, end - from);
        const std::size_t sign = option.find(u'=');
        if (!text.find(option.substr(0, sign)))
            text.set(option.substr(0, sign), String(option.substr(sign + 1)));
        from = end + 1;
    }
}

ConnectionText forDriver(ConnectionText text)
{
    text.take(u"ESQUEMA");
    text.take(u"ESPERA");
    text.take(u"SERVIDORES");
    if (!text.find(u"PWD") && !text.find(u"Password"))
        if (const std::optional<String> password = passwordFromOutside())
            text.set(u"PWD", *password);
    return text;
}

std::chrono::seconds longestStatement(const ConnectionText& text)
{
    const std::optional<String> wish = text.find(u"ESPERA");
    if (!wish)
        return std::chrono::seconds(60);
    const std::string digits = toUtf8(*wish);
    constexpr Long longest = 86400;
    Long number = -1;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || number < 0 || number > longest)
        failFor(text, u"espera mal: ESPERA=N es el número de segundos que puede tardar una instrucción, "
                      u"hasta 86400; con 0, los que hagan falta.");
    return std::chrono::seconds(number);
}

std::chrono::seconds longestSilence(const ConnectionText& text)
{
    const std::chrono::seconds longest = longestStatement(text);
    return longest.count() == 0 ? longest : longest + std::chrono::seconds(5);
}

ConnectionText nameless(ConnectionText text)
{
    text.take(u"ESQUEMA");
    return text;
}

} // namespace zv::odbc
