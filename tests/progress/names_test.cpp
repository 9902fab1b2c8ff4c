// Classmates' names in texts: those that are planted are all found, and few where none is.
#include "progress/Classmates.h"
#include "progress/Words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

using namespace zv;
using namespace zv::progress;

namespace {

struct Name {
    StringView given, surname1, surname2;
};
/// Pupil 0 is the one whose texts they are.
constexpr Name section[] = {{u"Ana Belén", u"García", u"Gil"},    {u"Lucía", u"Pérez", u"Gómez"},
                            {u"Rosa", u"Blanco", u"Rey"},         {u"Pilar", u"León", u"Soler"},
                            {u"Mar", u"D'Angelo", u"Ortiz"},      {u"Luz", u"Ramos", u"Vidal"},
                            {u"Clara", u"Serra", u"Prats"},       {u"Sol", u"Núñez", u"Peña"},
                            {u"Íñigo", u"Etxeberria", u""},       {u"María del Carmen", u"Otero", u"Sanz"},
                            {u"Consuelo", u"Díaz", u"Abad"},      {u"Ángel", u"Mas", u"Ferrer"},
                            {u"Ana", u"López", u"Rubio"},         {u"Julio", u"Torres", u"Cortés"},
                            {u"Martín", u"de la Fuente", u"Gil"}, {u"José María", u"García", u"Gil"},
                            {u"África", u"Muñoz", u"Castro"},     {u"Óscar", u"O'Donnell", u"Bosch"},
                            {u"Gal·la", u"Domènech", u"Quiroga"}, {u"Nieves", u"Herrero", u"Álvarez"}};

Classmates classmates()
{
    std::vector<PupilName> all;
    for (const Name& each : section)
        all.push_back({static_cast<Long>(all.size()), each.given, each.surname1, each.surname2});
    return Classmates(all);
}

/// "pupil:said" of each, for one comparison.
String found(const Classmates& names, StringView text, Long pupil = 0)
{
    String all;
    for (const Mention& each : names.in(text, pupil))
        all += (all.empty() ? u"" : u"; ") + String(section[each.pupil].given) + u":" + each.said;
    return all;
}

String allSmall(StringView text)
{
    String result(text);
    for (char16_t& unit : result)
        if ((unit >= u'A' && unit <= u'Z') || (unit >= u'À' && unit <= u'Þ' && unit != u'×'))
            unit = static_cast<char16_t>(unit + 32);
    return result;
}

String allLarge(StringView text)
{
    String result(text);
    for (char16_t& unit : result)
        if ((unit >= u'a' && unit <= u'z') || (unit >= u'à' && unit <= u'þ' && unit != u'÷'))
            unit = static_cast<char16_t>(unit - 32);
    return result;
}

String withoutAccents(StringView text)
{
    String result(text);
    for (char16_t& unit : result)
        if (const auto place = StringView(u"áéíóúñÁÉÍÓÚÑ").find(unit); place != StringView::npos)
            unit = u"aeiounAEIOUN"[place];
    return result;
}

} // namespace

TEST(Classmates, are_told_from_words_saints_teachers_and_the_pupil_himself)
{
    struct Case {
        StringView text, expected;
        Long pupil = 0;
    };
    const Case cases[] = {
        {u"Lucía ha progresado.", u"Lucía:Lucía"},
        {u"LUCIA HA PROGRESADO; ayuda a lucía pérez.", u"Lucía:LUCIA"},
        {u"Lucía ha progresado.", u"", 1},
        {u"Santa Lucía; la profesora Lucía; su hermana Lucía; Lucía Etxebarria; calle Lucía", u""},
        {u"En rosa y azul. Rosa trabaja bien. La Rosa de los vientos.", u"Rosa:Rosa"},
        {u"El pilar de su trabajo es la constancia; la Virgen del Pilar. Con Pilar rinde más.",
         u"Pilar:Pilar"},
        {u"Sabe situar el mar y el Mar Menor. Dibuja la luz y el Sol.", u""},
        {u"Clara mejoría. Clara y ordenada en sus trabajos.", u""},
        {u"Clara ha mejorado.", u"Clara:Clara"},
        {u"Progresa desde julio, en Julio y el 3 de Julio. El cuaderno de Julio.", u"Julio:Julio"},
        {u"Estudia el clima en África.", u""},
        {u"Sin consuelo. Es un ángel. Le gustan las nieves.", u""},
        {u"Ana Belén y Ana trabajan bien.", u""},
        {u"Ana López trabaja bien.", u"Ana:Ana López"},
        {u"Ana Belén trabaja con Ana.", u"Ana Belén:Ana Belén", 12},
        {u"Mª Carmen atiende, y Carmen también.", u"María del Carmen:Mª"},
        {u"García Gil, Ana Belén", u""},
        {u"Otero Sanz, Mª del Carmen", u"María del Carmen:Otero Sanz"},
        {u"Martín de la Fuente lee; Martín de Porres no.", u"Martín:Martín de la Fuente"},
        {u"El I\u0301n\u0303igo de siempre", u"Íñigo:I\u0301n\u0303igo"},
    };
    const Classmates names = classmates();
    for (const Case& each : cases)
        EXPECT_EQ(toUtf8(found(names, each.text, each.pupil)), toUtf8(each.expected)) << toUtf8(each.text);
}

TEST(Classmates, are_found_wherever_they_are_planted_and_seldom_where_none_is)
{
    // {} is the name.
    constexpr std::array<StringView, 12> sentences{u"{} ha progresado en todas las áreas.",
                                                   u"Debe seguir trabajando como {} en clase.",
                                                   u"Se relaciona bien con {} y con los demás.",
                                                   u"Evolución positiva. {} participa mucho.",
                                                   u"Conviene que {} repase en verano.",
                                                   u"Promociona; {} debe leer más",
                                                   u"A {} le cuesta el cálculo.",
                                                   u"Ayuda a sus compañeros (a {}, sobre todo).",
                                                   u"Con {}, a veces habla en clase.",
                                                   u"Este curso {} se ha esforzado.",
                                                   u"{}: muestra interés.",
                                                   u"Según {} y su familia, va mejor."};
    constexpr std::array<StringView, 40> plain{u"Ninguna de importancia.",
                                               u"Comprensión lectora.",
                                               u"Promociona con refuerzo en matemáticas.",
                                               u"Expresión escrita; le cuesta ordenar las ideas.",
                                               u"Clara mejoría en la lectura.",
                                               u"Colorea en rosa y morado.",
                                               u"Rosa, azul y verde: nombra los colores.",
                                               u"Conoce el mar y la costa.",
                                               u"Situó el Mar Mediterráneo en el mapa.",
                                               u"La luz y la sombra en Plástica.",
                                               u"Dibuja el Sol y la Luna.",
                                               u"Encuentra consuelo en el grupo.",
                                               u"Tiene ángel para contar historias.",
                                               u"Es el pilar del equipo.",
                                               u"Celebró las fiestas del Pilar con alegría.",
                                               u"Entregó el trabajo en julio.",
                                               u"Repetirá la prueba el 5 de julio.",
                                               u"Expuso un mural sobre África.",
                                               u"Estudió las nieves perpetuas.",
                                               u"Lee a Rosa Montero con gusto.",
                                               u"Admira a Ana Frank.",
                                               u"Le gusta San Martín de Porres.",
                                               u"Su hermano Ángel le ayuda en casa.",
                                               u"La tutora Pilar hablará con la familia.",
                                               u"Trabaja con constancia y orden.",
                                               u"Debe consolidar lo aprendido.",
                                               u"Necesita estímulo.",
                                               u"Seguimiento con la familia y l'equip psicopedagògic.",
                                               u"Ana Belén progresa adecuadamente.",
                                               u"ANA HA MEJORADO MUCHO.",
                                               u"Belén debe leer en voz alta.",
                                               u"Muestra interés por la música.",
                                               u"García Gil, Ana Belén: buen curso.",
                                               u"Cuida el material y respeta los turnos.",
                                               u"El rey León le entusiasma.",
                                               u"Resuelve problemas de dos operaciones.",
                                               u"Distingue blanco y negro, claro y oscuro.",
                                               u"Visitó Santa Lucía con el colegio.",
                                               u"Participa en el coro de Nuestra Señora del Mar.",
                                               u"Una letra clara y un cuaderno limpio."};
    const Classmates names = classmates();
    std::mt19937 dice(7);
    int lost = 0;
    for (int planted = 0; planted < 500; ++planted) {
        const auto pupil = static_cast<Long>(1 + dice() % (std::size(section) - 1));
        const bool shared = section[pupil].given == u"Ana";
        const Name& name = section[pupil];
        String said(name.given);
        if (shared || dice() % 3 == 0)
            said += u' ' + String(name.surname1);
        String text(sentences[dice() % sentences.size()]);
        text.replace(text.find(u"{}"), 2, said);
        // In small letters, or in large ones alone, a name that is a word too may stand for the word.
        const auto spelling = dice() % 4;
        const bool isWord = said == name.given && useOf(wordsIn(said).front().plain) != Use::name;
        if (spelling < 2 && !isWord)
            text = spelling == 0 ? allSmall(text) : allLarge(text);
        else if (spelling == 2)
            text = withoutAccents(text);
        const auto all = names.in(String(plain[dice() % 10]) + u" " + text, 0);
        if (std::ranges::find(all, pupil, &Mention::pupil) == all.end()) {
            ++lost;
            ADD_FAILURE() << toUtf8(text);
        }
    }
    EXPECT_EQ(lost, 0);
    std::size_t wrong = 0;
    for (const StringView each : plain)
        if (const String all = found(names, each); !all.empty()) {
            ++wrong;
            std::cout << toUtf8(each) << " -> " << toUtf8(all) << '\n';
        }
    EXPECT_LE(wrong * 100, plain.size() * 5);
}
