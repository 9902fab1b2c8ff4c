// The module's own cost: a change of one row through the facade, without a screen, against the bare SQLite
// interface running the very same statements (recorded from the first); and a deletion guard against the
// number of rows that refer. Both in one run, with synchronous OFF so that the disk does not hide what we
// add. Prints the ratios at the end.

#include "data/Schools.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/Acts.h"
#include "forms/Desktop.h"
#include "module/Module.h"
#include "runtime/Single.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "session/cConstCol.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <iostream>
#include <sqlite3.h>

namespace {

using namespace zv;

constexpr Byte maritalStates = 65;

/// Passes every statement on and, while `recording`, keeps its text.
class RecordingConnection final : public Connection {
public:
    explicit RecordingConnection(ConnectionPtr inner) : inner_(std::move(inner)) {}
    RecordsetPtr Execute(StringView sql) override
    {
        keep(sql);
        return inner_->Execute(sql);
    }
    RecordsetPtr executeNative(StringView sql) override
    {
        keep(sql);
        return inner_->executeNative(sql);
    }
    EngineInfo engine() override { return inner_->engine(); }

    bool recording = false;
    std::vector<String> statements;

private:
    void keep(StringView sql)
    {
        if (recording)
            statements.emplace_back(sql);
    }
    ConnectionPtr inner_;
};

/// A person who types a new text and presses "Aceptar", at once.
class BusyPerson final : public Desktop {
public:
    void opened(Form&) override {}
    void runModal(Form& form) override
    {
        Acts acts(form);
        Control& box = form.reach(u"txtIdioma");
        acts.type(box, (++changes_ & 1) != 0 ? u"Casada" : u"Soltera");
        acts.click(form.reach(u"cmdIdioma", 0));
    }
    void closed(Form&) override {}
    void messageBox(StringView prompt, Integer, StringView) override { fail(failure::invalidCall, prompt); }
    void beep() override {}
    void doEvents() override {}
    void handlerFailed(const RuntimeError& error) override { throw error; }

private:
    unsigned changes_ = 0;
};

struct Stage {
    std::filesystem::path folder = std::filesystem::temp_directory_path() / "zv_bench_fila";
    std::string file = (folder / "colegio.db").string();
    std::shared_ptr<RecordingConnection> centro;
    std::shared_ptr<PropertyBag> session;
    BusyPerson person;

    Stage()
    {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        registerEngine(sqliteEngine(Durability::off));
        installModule();
        School school = createSchool(u"sqlite:" + fromUtf8(file));
        centro = std::make_shared<RecordingConnection>(school.centro);
        school.centro = centro;
        session = newHostSession(school);
        useDesktop(&person);
        centro->executeNative(u"INSERT INTO EstadoCivil VALUES (1,'Soltera')");
    }
    ~Stage()
    {
        useDesktop(nullptr);
        resetSingles();
        session.reset();
        centro.reset();
        std::filesystem::remove_all(folder);
    }
    cAsignarDatos facade(Long row)
    {
        let(*session, u"Accion", Long{cConstCol::Modificado});
        let(*session, u"lngRowData", row);
        cAsignarDatos facade;
        facade.ObtenerDatos(session);
        return facade;
    }
};

/// Set while main has one: it must end before the single instances do.
Stage* current = nullptr;
Stage& stage() { return *current; }

void throughTheFacade(benchmark::State& state)
{
    for (auto _ : state)
        stage().facade(1).ActivarFormulario(maritalStates);
}

void bareInterface(benchmark::State& state)
{
    RecordingConnection& centro = *stage().centro;
    centro.statements.clear();
    centro.recording = true;
    stage().facade(1).ActivarFormulario(maritalStates);
    centro.recording = false;

    sqlite3* database = nullptr;
    sqlite3_open(stage().file.c_str(), &database);
    sqlite3_exec(database, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
    for (auto _ : state) {
        for (const String& sql : centro.statements) {
            sqlite3_stmt* statement = nullptr;
            sqlite3_prepare16_v2(database, sql.data(), static_cast<int>(sql.size() * 2), &statement, nullptr);
            while (sqlite3_step(statement) == SQLITE_ROW)
                for (int column = 0; column < sqlite3_column_count(statement); ++column)
                    benchmark::DoNotOptimize(sqlite3_column_text16(statement, column));
            if (sqlite3_finalize(statement) != SQLITE_OK)
                state.SkipWithError("a statement failed");
        }
    }
    state.counters["statements"] = static_cast<double>(centro.statements.size());
    sqlite3_close(database);
}

void guard(benchmark::State& state)
{
    const auto referring = static_cast<Long>(state.range(0));
    stage().centro->executeNative(u"DELETE FROM Personal");
    stage().centro->executeNative(
        statement(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<{}) "
                  u"INSERT INTO Personal (IDPersonal,CodEstadoCivil) SELECT i,1 FROM n",
                  {referring}));
    for (auto _ : state)
        benchmark::DoNotOptimize(stage().facade(1).Eliminar(maritalStates));
}

/// Keeps the times, so that ratios can be told at the end.
class Ratios final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                times_[run.run_name.function_name + run.run_name.args] = run.GetAdjustedRealTime();
    }
    void print() const
    {
        const auto ratio = [this](const char* what, const std::string& ours, const std::string& peer,
                                  double most) {
            std::cout << what << ": " << times_.at(ours) / times_.at(peer) << " (at most " << most << ")\n";
        };
        ratio("change of a row / bare interface", "fachada", "desnuda", 1.5);
        ratio("guard with 10000 / 10 referring rows", "guarda10000", "guarda10", 1.3);
        ratio("guard with 1000000 / 10 referring rows", "guarda1000000", "guarda10", 1.3);
    }

private:
    std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const auto steady = [](benchmark::internal::Benchmark* run) {
        run->Repetitions(7)->ReportAggregatesOnly()->MinTime(0.2)->Unit(benchmark::kMicrosecond);
    };
    steady(benchmark::RegisterBenchmark("fachada", throughTheFacade));
    steady(benchmark::RegisterBenchmark("desnuda", bareInterface));
    for (const int referring : {10, 10000, 1000000})
        steady(benchmark::RegisterBenchmark("guarda", guard)->Arg(referring));
    Stage set;
    current = &set;
    Ratios ratios;
    benchmark::RunSpecifiedBenchmarks(&ratios);
    ratios.print();
    return 0;
}
