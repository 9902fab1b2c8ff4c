// A bank and its branches: opened, and opened and accepted with every branch changed, through the facade and
// without a screen, against the bare SQLite interface running the very same statements (recorded from the
// first), in one run. Prints the ratios, and how the time of one branch grows from 200 branches to 2,000.

#include "Stage.h"
#include "data/Statement.h"

#include "banks/frmBanco.h"
#include "forms/Acts.h"
#include "session/cNombreNodo.h"

#include <iostream>

namespace {

using namespace zv;
using namespace zv::bench;

/// Person who leaves the bank unchanged, or changes all its branches and accepts.
class Clerk final : public BusyPerson {
public:
    void runModal(Form& form) override
    {
        if (accepts)
            for (cSucursal& branch : single<frmBanco>().gColSucursal())
                branch.Estado = cConstCol::Modificado;
        Acts().click(form.reach(u"cmdBotonera", accepts ? 0 : 1));
    }
    bool accepts = false;
};

/// Non-owning globals for the benchmark functions. main owns them, so that they are destroyed before the
/// single instances are.
Stage* current = nullptr;
Clerk* clerk = nullptr;

/// The bank's key equals the number of its branches.
void openBank(Long branches, bool accepts)
{
    clerk->accepts = accepts;
    current->facade(branches).ActivarFormulario(cNombreNodo::OC_Bancos);
}

void throughTheFacade(benchmark::State& state, bool accepts)
{
    for (auto _ : state)
        openBank(static_cast<Long>(state.range(0)), accepts);
}

void bareInterface(benchmark::State& state, bool accepts)
{
    const auto branches = static_cast<Long>(state.range(0));
    runBare(state, *current, current->recorded([&] { openBank(branches, accepts); }));
}

void fill(Connection& centro, Long branches)
{
    centro.executeNative(statement(u"INSERT INTO Banco VALUES ({},'Caixa','{}')",
                                   {branches, Right(u"000" + decimalText(branches), 4)}));
    centro.executeNative(statement(
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<{}) INSERT INTO Sucursal "
        u"SELECT {}+i,{},substr('000'||i,-4),'Sucursal '||i,'Calle Mayor','Vitoria','01001',1 FROM n",
        {branches, branches * 2, branches}));
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    for (const bool accepts : {false, true})
        for (const Long branches : {200, 2000})
            for (const bool ours : {true, false})
                steady(benchmark::RegisterBenchmark(std::string(ours ? "fachada_" : "desnuda_")
                                                        .append(accepts ? "aceptar" : "abrir")
                                                        .c_str(),
                                                    ours ? throughTheFacade : bareInterface, accepts))
                    ->Arg(branches)
                    ->Unit(benchmark::kMillisecond);
    Clerk person;
    Stage set("zv_bench_sucursales", person);
    current = &set;
    clerk = &person;
    for (const Long branches : {200, 2000})
        fill(*set.centro, branches);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    for (const std::string what : {"abrir", "aceptar"}) {
        const auto median = [&](const char* who, const char* branches) {
            return medians.of(who + what + branches);
        };
        std::cout << what << ": " << median("fachada_", "2000") << " ms with 2,000 branches, "
                  << median("fachada_", "2000") / median("desnuda_", "2000")
                  << " times the bare interface; a branch costs "
                  << median("fachada_", "2000") / median("fachada_", "200") / 10
                  << " times what it costs with 200 (at most 1.3)\n";
    }
    return 0;
}
