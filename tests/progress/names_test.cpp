// Classmates' names in texts: those that are planted are all found, and few where none is.
#include "progress/Classmates.h"
#include "progress/Words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace zv;
using namespace zv::progress;

namespace {

std::vector<StringView> parts(StringView text, char16_t mark)
{
    std::vector<StringView> result;
    for (std::size_t from = 0, to = 0; from < text.size(); from = to + 1) {
        to = std::min(text.find(mark, from), text.size());
        if (const StringView part = text.substr(from, to - from); !part.empty())
            result.push_back(part);
    }
    return result;
}

/// The first is the pupil whose texts they are.
const auto section = parts(
    uR"(Ana Belén|García|Gil;Lucía|Pérez|Gómez;Rosa|Blanco|Rey;Pilar|León|Soler;Mar|D'Angelo|Ortiz;Luz|Ramos|Vidal;)"
    uR"(Clara|Serra|Prats;Sol|Núñez|Peña;Íñigo|Etxeberria;María del Carmen|Otero|Sanz;Consuelo|Díaz|Abad;)"
    uR"(Ángel|Mas|Ferrer;Ana|López|Rubio;Julio|Torres|Cortés;Martín|de la Fuente|Gil;José María|García|Gil;)"
    uR"(África|Muñoz|Castro;Óscar|O'Donnell|Bosch;Gal·la|Domènech|Quiroga;Nieves|Herrero|Álvarez)",
    u';');

/// A text, and the names in it; "" for none. The pupil's own line stands first.
constexpr StringView cases = uR"(
Lucía ha progresado.|Lucía
LUCIA HA PROGRESADO; ayuda a lucía pérez.|LUCIA
Santa Lucía; la profesora Lucía; su hermana Lucía; Lucía Etxebarria; calle Lucía|
En rosa y azul. Rosa trabaja bien. La Rosa de los vientos.|Rosa
El pilar de su trabajo es la constancia; la Virgen del Pilar. Con Pilar rinde más.|Pilar
Sabe situar el mar y el Mar Menor. Dibuja la luz y el Sol. Sin consuelo. Es un ángel.|
Clara mejoría. Clara y ordenada en sus trabajos.|
Clara ha mejorado.|Clara
Progresa desde julio, en Julio y el 3 de Julio. El cuaderno de Julio.|Julio
Estudia el clima en África.|
Ana Belén y Ana trabajan bien. García Gil, Ana Belén|
Ana López trabaja bien.|Ana López
Mª Carmen atiende, y Carmen también.|Mª
Otero Sanz, Mª del Carmen|Otero Sanz
Martín de Porres no; Martín de la Fuente lee.|Martín de la Fuente
)";
/// {} is the name.
constexpr StringView planted =
    u"{} ha progresado en todas las áreas.|Debe seguir trabajando como {} en clase.|Se relaciona bien con {} "
    u"y "
    u"con los demás.|Evolución positiva. {} participa mucho.|Conviene que {} repase.|Promociona; {} debe "
    u"leer|A "
    u"{} le cuesta el cálculo.|Ayuda a otros (a {}, sobre todo).|Con {}, a veces habla.|Este curso {} se ha "
    u"esforzado.|{}: muestra interés.|Según {} y su familia, va mejor.";
constexpr StringView plain =
    u"Ninguna de importancia.|Comprensión lectora.|Promociona con refuerzo.|Le cuesta ordenar las "
    u"ideas.|Trabaja con "
    u"orden.|Debe consolidar lo aprendido.|Necesita estímulo.|Ana Belén progresa.|Muestra interés por la "
    u"música.|Cuida "
    u"el material.|Clara mejoría en la lectura.|Colorea en rosa y morado.|Rosa, azul y verde: nombra los "
    u"colores.|Conoce el mar y la costa.|Situó el Mar Mediterráneo en el mapa.|La luz y la sombra en "
    u"Plástica.|Dibuja el "
    u"Sol y la Luna.|Encuentra consuelo en el grupo.|Tiene ángel para contar historias.|Es el pilar del "
    u"equipo.|Celebró las fiestas del Pilar.|Entregó el trabajo en julio.|Repetirá la prueba el 5 de "
    u"julio.|Expuso un "
    u"mural sobre África.|Estudió las nieves perpetuas.|Lee a Rosa Montero con gusto.|Admira a Ana Frank.|Le "
    u"gusta San "
    u"Martín de Porres.|Su hermano Ángel le ayuda.|La tutora Pilar hablará con la familia.|ANA HA MEJORADO "
    u"MUCHO.|Belén "
    u"debe leer en voz alta.|El rey León le entusiasma.|Distingue blanco y negro, claro y oscuro.|Visitó "
    u"Santa Lucía con "
    u"el colegio.|Canta en el coro de Nuestra Señora del Mar.|Una letra clara y un cuaderno limpio.";

Classmates classmates()
{
    std::vector<PupilName> all;
    for (const StringView each : section) {
        auto name = parts(each, u'|');
        name.resize(3);
        all.push_back({static_cast<Long>(all.size()), name[0], name[1], name[2]});
    }
    return Classmates(all);
}

/// Large letters as small ones, or the other way round; or without accents.
String spelt(String text, std::uint32_t how)
{
    for (char16_t& unit : text) {
        const bool small = (unit >= u'a' && unit <= u'z') || (unit >= u'à' && unit <= u'þ');
        const bool large = (unit >= u'A' && unit <= u'Z') || (unit >= u'À' && unit <= u'Þ');
        if (how == 0 ? large : how == 1 && small)
            unit = static_cast<char16_t>(unit ^ 32);
        else if (const auto place = StringView(u"áéíóúñÁÉÍÓÚÑ").find(unit);
                 how == 2 && place != StringView::npos)
            unit = u"aeiounAEIOUN"[place];
    }
    return text;
}

} // namespace

TEST(Classmates, are_told_from_words_saints_teachers_and_the_pupil_himself)
{
    const Classmates names = classmates();
    for (const StringView line : parts(cases, u'\n')) {
        const StringView text = line.substr(0, line.find(u'|'));
        String said;
        for (const Mention& each : names.in(text, 0))
            said += each.said;
        EXPECT_EQ(toUtf8(text) + "|" + toUtf8(said), toUtf8(line));
    }
    EXPECT_TRUE(names.in(u"Lucía ha progresado.", 1).empty());
    EXPECT_EQ(names.in(u"Ana Belén trabaja con Ana.", 12).size(), 1U);
    EXPECT_EQ(names.in(u"El I\u0301n\u0303igo de siempre", 0).size(), 1U);
}

TEST(Classmates, are_found_wherever_they_are_planted_and_seldom_where_none_is)
{
    const Classmates names = classmates();
    const auto sentences = parts(planted, u'|'), others = parts(plain, u'|');
    std::mt19937 dice(7);
    for (int count = 0; count < 500; ++count) {
        const auto pupil = static_cast<Long>(1 + dice() % (section.size() - 1));
        const auto name = parts(section[static_cast<std::size_t>(pupil)], u'|');
        String said(name[0]);
        if (said == u"Ana" || dice() % 3 == 0)
            said += u' ' + String(name[1]);
        String text(sentences[dice() % sentences.size()]);
        text.replace(text.find(u"{}"), 2, said);
        // In small letters, or in large ones alone, a name that is a word too may stand for the word.
        const bool isWord = said == name[0] && useOf(wordsIn(said).front().plain) != Use::name;
        text = String(others[dice() % 10]) + u" " + spelt(text, isWord ? 2 + dice() % 2 : dice() % 4);
        const auto all = names.in(text, 0);
        EXPECT_TRUE(std::ranges::count(all, pupil, &Mention::pupil) == 1) << toUtf8(text);
    }
    const auto wrong =
        std::ranges::count_if(others, [&](StringView each) { return !names.in(each, 0).empty(); });
    EXPECT_LE(static_cast<std::size_t>(wrong) * 100, others.size() * 5);
}
