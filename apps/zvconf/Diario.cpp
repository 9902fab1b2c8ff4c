#include "zvconf/Command.h"

#include "journal/Item.h"
#include "journal/Journals.h"
#include "robot/Guion.h"
#include "runtime/Convert.h"
#include "runtime/Counted.h"
#include "runtime/PrivateFile.h"
#include "runtime/Time.h"
#include "session/NodeTable.h"

#include <algorithm>

namespace zv::zvconf {
namespace {

namespace fs = std::filesystem;
using journal::Act;
using journal::Draft;

constexpr StringView keyNames[] = {u"ENTER", u"ESC", u"TAB", u"",    u"BS",     u"DEL",
                                   u"IZQ",   u"DER", u"ARR", u"ABA", u"INICIO", u"FIN"};

fs::path folderIn(const Options& options)
{
    fs::path folder =
        options.has(u"--carpeta") ? fs::path(options.values(u"--carpeta").front()) : journal::folder();
    if (folder.empty())
        throw std::runtime_error("No se sabe dónde están los diarios: dé su carpeta con --carpeta.");
    if (options.has(u"--carpeta") && !fs::is_directory(folder))
        throw std::runtime_error("«" + toUtf8(folder.u16string()) +
                                 "» no es una carpeta: dé la de los diarios.");
    std::error_code error;
    const fs::directory_iterator readable(folder, error);
    if (error && error != std::errc::no_such_file_or_directory)
        throw fs::filesystem_error("no se puede leer", folder, error);
    return folder;
}

String anyOf(std::size_t count, StringView one, StringView several)
{
    return count == 0 ? String() : counted(count, one, several);
}

String contents(const Draft& draft)
{
    String all;
    for (const String& part :
         {anyOf(draft.pupils(), u"alumno", u"alumnos"), anyOf(draft.texts(), u"texto", u"textos"),
          anyOf(draft.choices(), u"elección", u"elecciones"),
          anyOf(draft.rows(), u"fila de su lista", u"filas de su lista")})
        all += (all.empty() || part.empty() ? u"" : u", ") + part;
    return all.empty() ? String(u"nada que recuperar") : all;
}

StringView wordsFor(journal::End end)
{
    switch (end) {
    case journal::End::torn:
        return u"; lo último no llegó entero";
    case journal::End::spoilt:
        return u"; está estropeado, y se lee lo de antes";
    default:
        return u"";
    }
}

String line(const fs::path& file, const journal::Reading& reading)
{
    const String number = file.stem().u16string();
    if (reading.end == journal::End::foreign)
        return number + u": no es un diario, o no se puede leer.";
    if (reading.end == journal::End::newer)
        return number + u": lo escribió una versión más nueva de este programa: ábralo con ella.";
    if (reading.end == journal::End::otherKey)
        return number + u": no se puede leer: lo escribió otra persona, o su clave ya no está.";
    const journal::Opening& opening = reading.draft.opening;
    const Seconds moment{std::chrono::seconds(std::max(reading.draft.moment, opening.moment))};
    String text =
        number + u": " + localText(moment) + u", " + opening.personName + u", " + opening.schoolName;
    if (const StringView origin = opening.origin(); !origin.empty())
        text += u" en «" + String(origin) + u"»";
    text += u", «" + opening.title + u"»";
    if (!opening.section.text.empty())
        text += u" de " + opening.section.text;
    text += u": " + contents(reading.draft) + String(wordsFor(reading.end));
    return text + (journal::inUse(file) ? u"; se está escribiendo." : u".");
}

int list(Arguments arguments)
{
    const Options options(arguments, {{u"--carpeta", 1}});
    const fs::path folder = folderIn(options);
    const auto files = journal::journalFiles(folder);
    if (files.empty()) {
        printLine(u"No hay diarios.");
        return done;
    }
    const journal::SecretKey key = journal::ownKey(folder);
    for (const fs::path& file : files)
        printLine(line(file, journal::readFile(file, key)));
    return done;
}

/// The journal that a number of the list names.
fs::path named(const Options& options)
{
    const String& number = options.operand(0, u"el número del diario, que dice «zvconf diario lista»");
    for (const fs::path& file : journal::journalFiles(folderIn(options)))
        if (file.stem().u16string() == number)
            return file;
    throw UsageError(u"No hay ningún diario con el número «" + number +
                     u"»: los dice «zvconf diario lista».");
}

journal::Reading readable(const fs::path& file)
{
    journal::Reading reading = journal::readFile(file, journal::ownKey(file.parent_path()));
    if (reading.end == journal::End::foreign || reading.end == journal::End::newer ||
        reading.end == journal::End::otherKey)
        throw std::runtime_error(toUtf8(line(file, reading)));
    return reading;
}

int see(Arguments arguments)
{
    const Options options(arguments, {{u"--carpeta", 1}}, 1);
    const fs::path file = named(options);
    const journal::Reading reading = readable(file);
    printLine(line(file, reading));
    for (const journal::Item& item : itemsOf(reading.draft)) {
        String where = item.pupil.empty() ? item.within : item.pupil;
        where += where.empty() ? u"" : u": ";
        printLine(u"  " + where + item.label + u": había " + zv::quoted(item.before) + u", se escribió " +
                  zv::quoted(item.draft));
    }
    return reading.end == journal::End::spoilt ? found : done;
}

String controlOf(const Act& act)
{
    return act.index < 0 ? act.control : act.control + u"(" + decimalText(act.index) + u")";
}

String commandOf(const Act& act)
{
    String start = String(verbNames[static_cast<std::size_t>(act.verb)]) +
                   (act.control.empty() ? u"" : u" ") + controlOf(act);
    switch (act.verb) {
    case ActVerb::type:
    case ActVerb::paste:
        return start + u" " + zv::quoted(act.text);
    case ActVerb::key: {
        const StringView name = keyNames[static_cast<std::size_t>(act.key.value_or(Key::BackTab))];
        return name.empty() ? u"# Mayús+TAB en " + controlOf(act) : start + u" " + String(name);
    }
    case ActVerb::choose:
        return start + u" " + (act.entry.text.empty() ? decimalText(act.first) : zv::quoted(act.entry.text));
    case ActVerb::scroll:
    case ActVerb::clickTab:
        return start + u" " + decimalText(act.first);
    case ActVerb::select:
    case ActVerb::clickCell:
    case ActVerb::doubleClickCell:
        return start + u" " + decimalText(act.first) + u" " + decimalText(act.second);
    default:
        return start;
    }
}

/// How a host opens the dialog: by its node, or by itself where no node opens it.
String openingOf(const String& dialog, const journal::Opening& opening)
{
    const String row = u" " + decimalText(Long{opening.action}) + u" " + decimalText(opening.row);
    for (const ModuleNode& node : moduleNodes())
        if (node.opens && node.dialog == dialog)
            return u"abrir " + decimalText(Long{node.number}) + row;
    return u"mostrar " + dialog + row;
}

/// The draft as a guion: who, what is opened, and each act; letters typed one after another in one command.
std::string guionOf(const Draft& draft)
{
    const journal::Opening& opening = draft.opening;
    std::vector<String> lines = {u"# Lo que se hizo en «" + Replace(opening.title, u"\n", u" ") + u"»",
                                 u"sesion IDUsuario=" + decimalText(Long{opening.person}) +
                                     u" NombreUsuario=" + zv::quoted(opening.personName)};
    lines.push_back(openingOf(opening.opener.empty() ? opening.dialog : opening.opener, opening));
    for (const journal::Choice& each : opening.choices)
        lines.push_back(commandOf(
            {.verb = ActVerb::choose, .control = each.control, .index = each.index, .entry = each.entry}));
    if (!opening.opener.empty())
        lines.push_back(
            commandOf({.verb = ActVerb::click, .control = opening.button, .index = opening.buttonIndex}));
    Act typing;
    const auto flush = [&] {
        if (!typing.text.empty())
            lines.push_back(commandOf(typing));
        typing = {};
    };
    for (const Act& act : draft.acts) {
        if (act.verb == ActVerb::type && typing.control == act.control && typing.index == act.index) {
            typing.text += act.text;
            continue;
        }
        flush();
        if (act.verb == ActVerb::type)
            typing = act;
        else
            lines.push_back(commandOf(act));
    }
    flush();
    std::string text;
    for (const String& each : lines)
        text += toUtf8(each) + "\n";
    return text;
}

int asGuion(Arguments arguments)
{
    const Options options(arguments, {{u"--carpeta", 1}}, 2);
    const journal::Reading reading = readable(named(options));
    const String& name = options.operand(1, u"el fichero que se escribe");
    const fs::path target(name);
    if (!createPrivateFile(fs::absolute(target), guionOf(reading.draft)))
        throw std::runtime_error(toUtf8(u"«" + name + u"» ya existe: dé otro nombre."));
    printLine(u"El guion está en " + target.u16string() +
              u". Lleva datos de personas: bórrelo cuando no haga falta.");
    return done;
}

int erase(Arguments arguments)
{
    const Options options(arguments, {{u"--carpeta", 1}, {u"--si"}}, 1);
    const fs::path file = named(options);
    if (journal::inUse(file))
        throw std::runtime_error("Ese diario se está escribiendo: cierre antes su ventana.");
    printLine(line(file, journal::readFile(file, journal::ownKey(file.parent_path()))));
    if (options.has(u"--si") && !journal::discard(file))
        throw std::runtime_error("No se ha podido borrar: mire si su carpeta se deja escribir.");
    printLine(options.has(u"--si") ? u"Borrado." : u"Con --si se borra, para siempre.");
    return done;
}

constexpr Command subcommands[] = {
    {u"lista", list}, {u"ver", see}, {u"exportar", asGuion}, {u"borrar", erase}};

} // namespace

int diario(Arguments arguments)
{
    const auto* const known =
        arguments.empty() ? std::end(subcommands)
                          : std::ranges::find(subcommands, StringView(arguments.front()), &Command::name);
    if (known == std::end(subcommands))
        throw UsageError(u"diario quiere una de estas palabras detrás: lista, ver, exportar, borrar.");
    return known->run(arguments.subspan(1));
}

} // namespace zv::zvconf
