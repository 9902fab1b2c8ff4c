#include "data/sample/Parts.h"

namespace zv::sample {
namespace {

constexpr StringView givenNames[] = {
    u"Aitana",  u"Alba",   u"Álvaro", u"Amaia",  u"Ana María", u"Andrés", u"Ángela", u"Begoña", u"Bruno",
    u"Carla",   u"Carmen", u"César",  u"Clara",  u"Daniel",    u"David",  u"Diego",  u"Elena",  u"Íñigo",
    u"Irene",   u"Iván",   u"Jesús",  u"Joan",   u"Jorge",     u"José",   u"Júlia",  u"Laia",   u"Laura",
    u"Leire",   u"Lucía",  u"Manuel", u"Marc",   u"María",     u"Mario",  u"Martín", u"Míriam", u"Nerea",
    u"Nicolás", u"Noelia", u"Óscar",  u"Pablo",  u"Paula",     u"Pilar",  u"Raúl",   u"Rocío",  u"Samuel",
    u"Sara",    u"Sofía",  u"Unai",   u"Víctor", u"Yasmín"};

constexpr StringView surnames[] = {
    u"Abad",    u"Aguirre",   u"Álvarez",  u"Arias", u"Ballester", u"Benítez",    u"Blanco",    u"Bosch",
    u"Castro",  u"Cortés",    u"D'Angelo", u"Díaz",  u"Domènech",  u"Etxeberria", u"Fernández", u"Ferrer",
    u"Fuentes", u"García",    u"Gil",      u"Gómez", u"Herrero",   u"Ibáñez",     u"Iglesias",  u"Jiménez",
    u"León",    u"López",     u"Martínez", u"Mas",   u"Méndez",    u"Montaña",    u"Muñoz",     u"Navarro",
    u"Núñez",   u"O'Donnell", u"Ortiz",    u"Otero", u"Peña",      u"Pérez",      u"Prats",     u"Quiroga",
    u"Ramos",   u"Rey",       u"Rubio",    u"Sanz",  u"Serra",     u"Soler",      u"Torres",    u"Vázquez",
    u"Vidal",   u"Zubiri"};

constexpr Long director = 1;
constexpr Long firstTutor = 2; ///< The tutor of section n is this person's successor n - 1 places on.
constexpr Long sectionCount = 24;
constexpr Long firstSpecialist = firstTutor + sectionCount;
constexpr Long firstOther = 37; ///< Those who do not teach.
constexpr Long staffCount = 45;

String date(Dice& dice, int year)
{
    const auto twoDigits = [](int number) {
        return String{static_cast<char16_t>(u'0' + number / 10), static_cast<char16_t>(u'0' + number % 10)};
    };
    return twoDigits(1 + dice.below(28)) + u"/" + twoDigits(1 + dice.below(12)) + u"/20" +
           twoDigits(year - 2000);
}

/// Null for the director's colleagues without a user; tutors of every other section have one.
Value userOf(Long person)
{
    if (person == director)
        return Long{1};
    if (person < firstSpecialist && person % 2 == 0)
        return 1 + person / 2;
    return Null();
}

/// Of a catalogue mostly the first row, else one of the others up to the last.
Long mostlyFirst(Dice& dice, int last) { return dice.below(12) > 0 ? 1 : 2 + dice.below(last - 1); }

void addStaff(Writer& centro, Dice& dice)
{
    for (Long person = 1; person <= staffCount; ++person) {
        const bool teaches = person < firstOther;
        centro.row(u"Personal",
                   {person, Long{1 + dice.below(6)}, mostlyFirst(dice, 12), Long{1 + dice.below(5)},
                    Long{teaches ? 6 + dice.below(3) : 3 + dice.below(3)},
                    teaches ? Value(Null()) : Value(1 + (person - firstOther) % 7), userOf(person),
                    dice.of(surnames), dice.of(surnames), dice.of(givenNames)});
        if (teaches && dice.once(3))
            centro.row(u"CEspecializacion_Personal", {Long{1 + dice.below(6)}, person});
        if (!teaches)
            centro.row(u"Tarea",
                       {Null(), 1 + (person - firstOther) % 6, person, u"Según el calendario del curso"});
        if (dice.once(5))
            centro.row(u"IncidenciaPersonal",
                       {Null(), Long{6}, Long{1 + dice.below(3)}, person, date(dice, 2024)});
    }
}

/// The subjects of a course: first and last key.
std::pair<Long, Long> subjectsOf(Long course)
{
    if (course <= 6)
        return {1, 7};
    return course <= 10 ? std::pair<Long, Long>{8, 15} : std::pair<Long, Long>{16, 22};
}

Long teacherOf(const Section& section, Long subject)
{
    if (section.course > 6)
        return firstTutor + 12 + (subject * 5 + section.id * 3) % 18;
    return subject >= 5 ? firstSpecialist + subject - 5 : firstTutor + section.id - 1;
}

void addSubjects(Writer& centro, Dice& dice, Section& section, Long& nextSubject)
{
    const auto [first, last] = subjectsOf(section.course);
    for (Long subject = first; subject <= last; ++subject) {
        const Long id = nextSubject++;
        section.subjects.push_back({id, subject});
        centro.row(u"MateriaDetalles",
                   {id, section.id, teacherOf(section, subject),
                    dice.once(5) ? Value(firstSpecialist + 3 + dice.below(8)) : Value(Null()), subject});
        if (dice.once(6))
            centro.row(u"MateriaDetalles_Observacion", {Long{1 + dice.below(5)}, id});
    }
}

void addFamily(Writer& centro, Dice& dice, Long pupil)
{
    const Long members = dice.once(2) ? 2 : 1;
    for (Long kinship = 1; kinship <= members; ++kinship)
        centro.row(u"MiembroFamilia", {Null(), Long{1 + dice.below(20)}, Long{1 + dice.below(8)},
                                       dice.once(20) ? Long{3} : kinship, pupil, dice.of(givenNames)});
}

void addPupil(Writer& centro, Dice& dice, Section& section, Long pupil)
{
    const bool left = dice.once(30);
    const Value leaving = left ? Value(date(dice, 2024)) : dice.once(2) ? Value(String()) : Value(Null());
    const Long country = mostlyFirst(dice, 12);
    // Children start at six; the school year began in 2024.
    const int birth = 2024 - 5 - static_cast<int>(section.course);
    centro.row(u"Alumno",
               {pupil, dice.of(surnames), dice.of(surnames), dice.of(givenNames), section.id, leaving,
                country, mostlyFirst(dice, 6), left ? Value(Long{1 + dice.below(4)}) : Value(Null()), country,
                date(dice, birth)});
    centro.row(u"Seccion_Alumno", {pupil, section.id});
    for (const TaughtSubject& subject : section.subjects)
        centro.row(u"Alumno_MateriaDetalles", {pupil, subject.id});
    addFamily(centro, dice, pupil);
    if (dice.once(6))
        centro.row(u"IncidenciaAlumno",
                   {Null(), Long{1 + dice.below(5)}, Long{1 + dice.below(5)}, pupil, date(dice, 2024)});
    if (!left)
        section.pupils.push_back(pupil);
}

} // namespace

std::vector<Section> addPeople(Writer& centro, Dice& dice)
{
    addStaff(centro, dice);
    std::vector<Section> sections;
    Long pupil = 0;
    Long nextSubject = 1;
    for (Long id = 1; id <= sectionCount; ++id) {
        Section section{id, (id + 1) / 2, {}, {}};
        const Long model = section.course <= 6 ? 1 : section.course <= 10 ? 2 : 3;
        const Long year = section.course - (model == 1 ? 0 : model == 2 ? 6 : 10);
        const bool second = id % 2 == 0;
        centro.row(u"Seccion",
                   {id, String{static_cast<char16_t>(u'0' + year)} + (second ? u"º B" : u"º A"),
                    section.course, firstTutor + id - 1, Long{model == 3 && second ? 2 : 1}, model});
        addSubjects(centro, dice, section, nextSubject);
        for (int size = 24 + dice.below(4); size > 0; --size)
            addPupil(centro, dice, section, ++pupil);
        sections.push_back(std::move(section));
    }
    return sections;
}

} // namespace zv::sample
