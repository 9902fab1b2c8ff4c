// The command «informe»: a section's reports as files, without a screen.
#include "data/Schools.h"
#include "qt/QtText.h"
#include "qt/paper/Files.h"
#include "zvhost/Command.h"
#include "zvhost/Remembered.h"
#include "zvhost/Words.h"

#include <QDir>

#include <algorithm>
#include <csignal>
#include <iostream>

namespace zv::host {
namespace {

volatile std::sig_atomic_t stopped = 0;

std::string utf8(const QString& text) { return text.toStdString(); }

paper::Kind kindIn(const QString& word)
{
    const auto found = std::ranges::find(progress::kinds, fromQt(word), progress::wordOf);
    if (found == std::end(progress::kinds))
        throw std::invalid_argument("«" + utf8(word) + "» no vale para --tipo: es primaria, eso o consejo.");
    return *found;
}

paper::Day dayIn(const Words& given)
{
    const QString text = given.text(QStringLiteral("fecha"));
    const QDate day = text.isEmpty() ? QDate::currentDate() : QDate::fromString(text, Qt::ISODate);
    if (!day.isValid())
        throw std::invalid_argument("«" + utf8(text) + "» no vale para --fecha: se escribe AAAA-MM-DD.");
    return paper::dayOf(day);
}

/// Places of the pupils who were asked for; all who have not left if none was.
std::vector<std::size_t> placesIn(const Words& given, const paper::SectionSheets& section)
{
    std::vector<std::size_t> places;
    const QStringList asked = given.texts(QStringLiteral("alumno"));
    for (std::size_t place = 0; place < section.sheets.size(); ++place)
        if (asked.isEmpty() ? !section.sheets[place].left
                            : asked.contains(QString::number(section.sheets[place].pupil)))
            places.push_back(place);
    for (const QString& each : asked)
        if (std::ranges::none_of(places, [&](std::size_t place) {
                return QString::number(section.sheets[place].pupil) == each;
            }))
            throw std::invalid_argument("no hay ningún alumno «" + utf8(each) + "» en esa sección.");
    return places;
}

void tellOdd(const paper::Reports& reports, const std::vector<std::size_t>& places)
{
    for (const std::size_t place : places) {
        const paper::Sheet& sheet = reports.section().sheets[place];
        const std::string name = utf8(toQt(sheet.fullName));
        if (sheet.hidden)
            std::cerr << "Aviso: la ventana del consejo no muestra a " << name
                      << ", porque su número acaba el de otro; sale lo que otro programa haya escrito.\n";
        if (const QString lacking = reports.lacking(place); !lacking.isEmpty())
            std::cerr << "Aviso: en el de " << name
                      << " hay caracteres que ninguna letra de este equipo puede mostrar: " << utf8(lacking)
                      << '\n';
    }
}

} // namespace

int informe(const QStringList& words)
{
    const Words given(words,
                      {valued("bd"), valued("seccion"), valued("tipo"), valued("alumno"), valued("papel"),
                       valued("fecha"), valued("plantillas"), plain("todos-en-uno"), plain("odt")});
    if (given.has(QStringLiteral("plantillas"))) {
        const QString folder = given.text(QStringLiteral("plantillas"));
        std::cout << paper::Letterhead::writeTemplates(folder) << " plantillas escritas en " << utf8(folder)
                  << ".\n";
        return done;
    }
    if (given.rest().size() != 1 || !given.has(QStringLiteral("bd")) ||
        !given.has(QStringLiteral("seccion")) || !given.has(QStringLiteral("tipo")))
        throw std::invalid_argument("informe lleva --bd URL, --seccion N, --tipo y una CARPETA.");
    const paper::Kind kind = kindIn(given.text(QStringLiteral("tipo")));
    const String url = fromQt(given.text(QStringLiteral("bd")));
    const QString own = given.has(QStringLiteral("papel"))
                            ? given.text(QStringLiteral("papel"))
                            : paperOf(Remembered(Remembered::Where::settings), url);
    const School school = inspectSchool(url);
    const paper::Reports reports(*school.centro, kind, given.number<Long>(QStringLiteral("seccion"), 0),
                                 own.isEmpty() ? paper::Letterhead() : paper::Letterhead(own), dayIn(given));
    const std::vector<std::size_t> places = placesIn(given, reports.section());
    tellOdd(reports, places);
    std::signal(SIGINT, [](int) { stopped = 1; });
    const QString folder = given.rest().front();
    const paper::Made made = paper::makeFiles(
        reports, places, folder, given.has(QStringLiteral("odt")) ? paper::Format::odt : paper::Format::pdf,
        given.has(QStringLiteral("todos-en-uno")) ? paper::Into::one : paper::Into::each,
        [](int count, int all, const QString& name) {
            std::cerr << count + 1 << " de " << all << ": " << utf8(name) << '\n';
            return stopped == 0;
        });
    const auto drafts =
        std::ranges::count_if(places, [&](std::size_t place) { return reports.isDraft(place); });
    std::cout << made.files.size() << (made.files.size() == 1 ? " fichero en " : " ficheros en ")
              << utf8(folder);
    if (drafts > 0)
        std::cout << "; " << drafts << " de " << places.size()
                  << " informes son borradores, porque les falta algo";
    std::cout << ".\n";
    if (made.stopped)
        std::cerr << "zvhost: se ha detenido; lo que estaba hecho queda entero.\n";
    return made.stopped ? failed : done;
}

} // namespace zv::host
