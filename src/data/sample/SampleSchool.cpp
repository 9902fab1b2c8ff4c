#include "data/sample/SampleSchool.h"

#include "data/Transaction.h"
#include "data/sample/Parts.h"

namespace zv {
namespace {

/// One transaction: each row by itself would wait for the disk.
void inOneStep(Connection& connection, const std::function<void()>& write)
{
    Transaction transaction(connection);
    write();
    transaction.commit();
}

} // namespace

void fillSampleSchool(School& school)
{
    sample::Writer centro(*school.centro);
    sample::Writer borrado(*school.borrado);
    sample::Writer entrada(*school.entrada);
    inOneStep(*school.centro, [&] {
        sample::Dice dice;
        sample::addFixedRows(centro);
        sample::addReports(centro, dice, sample::addPeople(centro, dice));
        sample::addOtherRows(centro);
    });
    // Two rows in the recycle bin, with keys above the largest live one: IDMax must not give those again.
    inOneStep(*school.borrado, [&] {
        borrado.rows(u"EstadoCivil", u"9;Prometido/a");
        borrado.rows(u"Turno", u"5;Refuerzo de tarde;2");
    });
    inOneStep(*school.entrada, [&] { sample::addUsers(entrada); });
}

void fillSampleIllnesses(School& school, const std::function<String(StringView)>& encipher)
{
    sample::Writer centro(*school.centro);
    inOneStep(*school.centro, [&] {
        Long id = 0;
        for (const auto& [name, description] : sample::illnesses) {
            const Value written = description.empty() ? Value(Null()) : Value(encipher(description));
            centro.row(u"Enfermedad", {++id, encipher(name), written});
        }
    });
}

} // namespace zv
