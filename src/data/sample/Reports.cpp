#include "data/sample/Parts.h"

namespace zv::sample {
namespace {

constexpr Long questions = 8;
/// Key of the first answer of each question of the guidance advice, and one behind the last.
constexpr Long firstAnswer[questions + 1] = {1, 5, 8, 11, 16, 19, 22, 26, 31};
constexpr Long ratingTypes = 5;

constexpr StringView difficulties[] = {u"Ninguna de importancia.", u"Comprensión lectora.",
                                       u"Cálculo mental y problemas.",
                                       u"Expresión escrita; le cuesta ordenar las ideas.", u""};
constexpr StringView assessments[] = {
    u"Promociona con todas las áreas superadas.", u"Promociona con refuerzo en matemáticas.",
    u"Evolución positiva a lo largo del curso.", u"Debe consolidar lo aprendido."};
constexpr StringView measures[] = {u"Ninguna.", u"Apoyo en pequeño grupo.",
                                   u"Adaptación curricular no significativa.",
                                   u"Seguimiento con la familia y l'equip psicopedagògic."};
constexpr StringView remarks[] = {u"Adecuado a su edad.", u"Bien desarrollado.", u"En progreso.",
                                  u"Necesita estímulo.", u""};

void addGuidance(Writer& centro, Dice& dice, const Section& section)
{
    Long id = 0;
    for (const Long pupil : section.pupils)
        for (Long question = 1; question <= questions; ++question) {
            const Long first = firstAnswer[question - 1];
            // The last answer of each question stays unreferenced, for a person to delete.
            const Long answer = dice.once(10) ? 0 : first + dice.below(firstAnswer[question] - first - 1);
            centro.row(u"ConsejoOrientador_Nota", {++id, pupil, section.id, answer, question});
        }
}

void addCommonReport(Writer& centro, Dice& dice, Long pupil)
{
    centro.row(u"Alumno_InfInd", {pupil, dice.of(difficulties), dice.of(assessments), dice.of(measures)});
}

void addPrimaryReport(Writer& centro, Dice& dice, const Section& section, Long pupil)
{
    addCommonReport(centro, dice, pupil);
    for (const TaughtSubject& taught : section.subjects)
        for (Long type = 1; type <= ratingTypes; ++type) {
            const Long answer = dice.once(8) ? 0 : 3 * (type - 1) + 1 + dice.below(3);
            centro.row(u"Alumno_InfIndPrim", {pupil, taught.subject, type, answer});
        }
}

void addSecondaryReport(Writer& centro, Dice& dice, Long pupil)
{
    addCommonReport(centro, dice, pupil);
    std::vector<Value> texts{pupil};
    for (int text = 0; text < 12; ++text)
        texts.emplace_back(dice.of(remarks));
    centro.row(u"Alumno_InfIndESO", texts);
}

} // namespace

void addReports(Writer& centro, Dice& dice, const std::vector<Section>& sections)
{
    const Section& primary = sections[2];    // 2º A of primary education, which ends a cycle
    const Section& secondary = sections[12]; // 1º A of ESO
    const Section& advised = sections[14];   // 2º A
    for (const Long pupil : primary.pupils)
        addPrimaryReport(centro, dice, primary, pupil);
    for (const Long pupil : secondary.pupils)
        addSecondaryReport(centro, dice, pupil);
    addGuidance(centro, dice, advised);
}

} // namespace zv::sample
