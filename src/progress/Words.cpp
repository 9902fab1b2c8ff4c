#include "progress/Words.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace zv::progress {
namespace {

/// Base letters of U+00C0 to U+017F; a blank for what is no letter.
constexpr StringView bases = u"aaaaaaaceeeeiiiidnooooo ouuuuytsaaaaaaaceeeeiiiidnooooo ouuuuyty"
                             u"aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiiiijjkkklllllll"
                             u"lllnnnnnnnnnoooooooorrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
static_assert(bases.size() == 0x180 - 0xC0);

constexpr std::array<char16_t, 0x180> letters = [] {
    std::array<char16_t, 0x180> result{};
    for (char16_t unit = 0; unit < 0x180; ++unit) {
        if (unit >= u'a' && unit <= u'z')
            result[unit] = unit;
        else if (unit >= u'A' && unit <= u'Z')
            result[unit] = static_cast<char16_t>(unit + 32);
        else if (unit >= u'0' && unit <= u'9')
            result[unit] = unit;
        else if (unit >= 0xC0 && bases[unit - 0xC0] != u' ')
            result[unit] = bases[unit - 0xC0];
    }
    result[0xAA] = u'a';    // ª of Mª
    result[0xB7] = skipped; // · of l·l
    return result;
}();

bool isCapital(char16_t unit)
{
    if (unit < 0xC0)
        return unit >= u'A' && unit <= u'Z';
    if (unit < 0x100)
        return unit <= 0xDE && unit != 0xD7;
    return unit < 0x180 && (unit % 2 == 0) == (unit < 0x139 || (unit >= 0x14A && unit < 0x179));
}

bool endsSentence(char16_t unit)
{
    return StringView(u".!?:;¡¿«»\"“”(–—•*\n\r").find(unit) != StringView::npos;
}

struct Entry {
    StringView words;
    int meaning;
};

std::unordered_map<StringView, int> tableOf(std::initializer_list<Entry> entries)
{
    std::unordered_map<StringView, int> result;
    for (const auto& [words, meaning] : entries)
        for (std::size_t from = 0; from < words.size();) {
            const std::size_t to = std::min(words.find(u' ', from), words.size());
            result.emplace(words.substr(from, to - from), meaning);
            from = to + 1;
        }
    return result;
}

} // namespace

char16_t plainLetter(char16_t unit)
{
    if (unit < letters.size())
        return letters[unit];
    if (unit >= 0x300 && unit < 0x370)
        return skipped;
    return unit < 0x2000 || (unit > 0x206F && unit != 0x3000) ? unit : u'\0';
}

std::vector<Word> wordsIn(StringView text)
{
    std::vector<Word> result;
    bool first = true;
    bool joined = false;
    for (std::size_t at = 0; at < text.size();) {
        if (plainLetter(text[at]) <= skipped) {
            first = first || endsSentence(text[at]);
            joined = joined && StringView(u" \u00A0'’-").find(text[at]) != StringView::npos;
            ++at;
            continue;
        }
        Word word{.begin = at, .first = first, .joined = joined};
        bool small = false;
        for (; at < text.size() && plainLetter(text[at]) != 0; ++at) {
            small = small || !isCapital(text[at]);
            if (const char16_t letter = plainLetter(text[at]); letter != skipped)
                word.plain += letter;
        }
        word.end = at;
        word.capital = small && isCapital(text[word.begin]);
        if (word.plain == u"ma" && text.substr(word.begin, word.end - word.begin).back() == 0xAA)
            word.plain = u"maria";
        result.push_back(std::move(word));
        first = false;
        joined = true;
    }
    return result;
}

Use useOf(StringView plain)
{
    static const auto uses = tableOf(
        {{u"ada aguila alba alma amparo angel angeles ascension asuncion aura aurora azucena begonia belen "
          u"brisa camino candela caridad cielo concepcion consolacion consuelo coral cruz dalia delfin "
          u"desamparados dolores encarnacion esmeralda esperanza estela estrella fe felicidad flor flora "
          u"gala gema gloria gracia guadalupe hortensia iris isla jara jazmin "
          u"leo leon lidia lila lino lirio lluvia lucero luna luz malva mar maravillas marco marcos "
          u"margarita "
          u"marina mercedes mia milagro milagros montana montserrat natividad nieves nube olivia olmo "
          u"olvido paloma patria paz perla piedad pilar prado presentacion puerto purificacion "
          u"ramos rayo reina remedios rey reyes rocio rosa rosal rosario rubi sagrario salud salvador "
          u"santos selva socorro sol soledad trinidad valle vega vera victoria vida violeta virtudes "
          u"visitacion",
          static_cast<int>(Use::noun)},
         {u"amable amado bella benigno bienvenido blanca blanco bruno candida candido casta casto celeste "
          u"clara "
          u"claro clemente constante deseada dulce fidel fortunato generoso inmaculada inocencia inocente "
          u"justa "
          u"justo leal libre linda lindo marcial maximo modesta modesto noble pacifico perfecto placida "
          u"placido primitivo prudencia prudente prospero pura puro rustico segundo serena sereno severo "
          u"silvestre tranquilo unica urbano valiente vital vivo grande",
          static_cast<int>(Use::adjective)},
         {u"abril agosto domingo julio mayo ventura", static_cast<int>(Use::time)},
         {u"africa america asia asturias china cordoba europa florencia francia galicia india "
          u"israel lourdes paris roma valencia venecia virginia",
          static_cast<int>(Use::place)}});
    const auto found = uses.find(plain);
    return found == uses.end() ? Use::name : static_cast<Use>(found->second);
}

Role roleOf(StringView plain)
{
    static const auto roles = tableOf(
        {{u"el la los las lo un una unos unas al del su sus mi mis tu tus este esta estos estas ese esa esos "
          u"esas aquel aquella cada nuestro nuestra nuestros nuestras mucho mucha muchos muchas poco poca "
          u"todo "
          u"toda todos todas otro otra otros otras algun alguna ningun ninguna muy mas tan color",
          static_cast<int>(Role::article)},
         {u"ha han es esta tiene debe puede se no muestra participa trabaja necesita sabe suele lee escribe "
          u"presenta progresa avanza atiende colabora le lo la ya siempre sigue continua demuestra "
          u"promociona "
          u"repite consigue alcanza logra realiza hace asiste evoluciona destaca aprende comprende resuelve "
          u"respeta acepta ayuda quiere va era fue podria deberia tambien aun todavia nunca apenas domina "
          u"termina acaba empieza expresa cuida comparte juega escucha recibe requiere manifiesta posee "
          u"mantiene utiliza usa relaciona supera aprueba cumple",
          static_cast<int>(Role::verb)},
         {u"san santa santo sant sto sta don dona profesor profesora profe maestro maestra tutor tutora "
          u"senor "
          u"senora sor padre madre hermano hermana abuelo abuela primo prima tio tia rey reina emperador "
          u"papa "
          u"orientador orientadora director directora logopeda monitor monitora calle colegio instituto ceip "
          u"ies plaza avenida parque hospital ciudad provincia isla rio virgen monte sierra escuela doctor "
          u"doctora escritor escritora poeta pintor pintora autor autora",
          static_cast<int>(Role::title)},
         {u"en desde hasta hacia por sobre", static_cast<int>(Role::preposition)},
         {u"mes meses principios finales mediados dia dias fin comienzos inicios pasado proximo",
          static_cast<int>(Role::date)}});
    const auto found = roles.find(plain);
    return found == roles.end() ? Role::none : static_cast<Role>(found->second);
}

} // namespace zv::progress
