#pragma once

#include "data/Connection.h"
#include "data/Schools.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Log.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/Desktop.h"
#include "module/Module.h"
#include "runtime/Single.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "session/cConstCol.h"

#include "Measure.h"

#include <filesystem>
#include <optional>
#include <span>
#include <sqlite3.h>
#include <stdexcept>
#include <utility>

namespace zv::bench {

/// Decorator of a connection that keeps the statements while `recording`.
class RecordingConnection final : public ConnectionDecorator {
public:
    using ConnectionDecorator::ConnectionDecorator;
    RecordsetPtr Execute(StringView sql) override
    {
        keep(sql);
        return inner()->Execute(sql);
    }
    RecordsetPtr executeNative(StringView sql) override
    {
        keep(sql);
        return inner()->executeNative(sql);
    }

    bool recording = false;
    std::vector<String> statements;

private:
    void keep(StringView sql)
    {
        if (recording)
            statements.emplace_back(sql);
    }
};

/// Headless desktop with a person who needs no time to think.
class BusyPerson : public Desktop {
public:
    void opened(Form&) override {}
    void closed(Form&) override {}
    void messageBox(StringView prompt, Integer, StringView) override { fail(failure::invalidCall, prompt); }
    void beep() override {}
    void doEvents() override {}
    void handlerFailed(const RuntimeError& error) override { throw error; }
};

/// Fixture: a new school at a URL, and the person at its dialogs. Statements are recorded.
struct SchoolStage {
    std::shared_ptr<RecordingConnection> centro;
    std::shared_ptr<PropertyBag> session;

    SchoolStage(StringView url, BusyPerson& person, bool history = false)
    {
        installModule();
        School school = createSchool(url);
        if (history) {
            history::activate(*school.centro);
            school = history::withHistory(school, url);
        }
        centro = std::make_shared<RecordingConnection>(school.centro);
        school.centro = centro;
        session = newHostSession(school);
        useDesktop(&person);
    }
    SchoolStage(const SchoolStage&) = delete;
    SchoolStage& operator=(const SchoolStage&) = delete;
    ~SchoolStage()
    {
        useDesktop(nullptr);
        resetSingles();
    }
    cAsignarDatos facade(Long row) const
    {
        let(*session, u"Accion", Long{cConstCol::Modificado});
        let(*session, u"lngRowData", row);
        cAsignarDatos facade;
        facade.ObtenerDatos(session);
        return facade;
    }
    /// Records the statements that the module runs in that call.
    template <class Call>
    const std::vector<String>& recorded(Call&& call) const
    {
        centro->statements.clear();
        centro->recording = true;
        call();
        centro->recording = false;
        return centro->statements;
    }
};

/// Empty folder for a school's files, gone with it.
struct Folder {
    std::filesystem::path folder;
    std::string file;
    /// Pragmas for every connection to the file, so that all give the same durability.
    std::string settings;

    Folder(const char* name, Durability durability)
        : folder(std::filesystem::temp_directory_path() / name), file((folder / "colegio.db").string()),
          settings(durability == Durability::off ? "PRAGMA journal_mode=WAL;PRAGMA synchronous=OFF"
                                                 : "PRAGMA journal_mode=WAL;PRAGMA synchronous=FULL")
    {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        // A connection with a history goes on asking the engine that opened it.
        static std::optional<Durability> registered;
        if (std::exchange(registered, durability) != durability)
            registerEngine(sqliteEngine(durability));
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(folder); }
};

/// A school of files. By default with synchronous OFF: waiting for the disk would hide our overhead.
struct Stage : Folder, SchoolStage {
    Stage(const char* name, BusyPerson& person, Durability durability = Durability::off, bool history = false)
        : Folder(name, durability), SchoolStage(u"sqlite:" + fromUtf8(file), person, history)
    {}
};

/// Baseline: runs the recorded statements repeatedly on the bare SQLite interface, one of `parts` equal parts
/// of them in each iteration.
inline void runBare(benchmark::State& state, const Stage& stage, const std::vector<String>& statements,
                    std::size_t parts = 1)
{
    sqlite3* database = nullptr;
    sqlite3_open(stage.file.c_str(), &database);
    sqlite3_exec(database, stage.settings.c_str(), nullptr, nullptr, nullptr);
    const std::size_t length = statements.size() / parts;
    std::size_t turn = 0;
    for (auto _ : state) {
        for (const String& sql : std::span(statements).subspan(turn++ % parts * length, length)) {
            sqlite3_stmt* statement = nullptr;
            sqlite3_prepare16_v2(database, sql.data(), static_cast<int>(sql.size() * 2), &statement, nullptr);
            while (sqlite3_step(statement) == SQLITE_ROW)
                for (int column = 0; column < sqlite3_column_count(statement); ++column)
                    benchmark::DoNotOptimize(sqlite3_column_text16(statement, column));
            if (sqlite3_finalize(statement) != SQLITE_OK)
                state.SkipWithError("a statement failed");
        }
    }
    state.counters["statements"] = static_cast<double>(length);
    sqlite3_close(database);
}

/// Runs statements on a database; the length of all their columns, taken as text.
inline long stepped(sqlite3* base, const std::vector<String>& statements)
{
    long letters = 0;
    for (const String& each : statements) {
        sqlite3_stmt* rows = nullptr;
        const std::string text = toUtf8(each);
        if (sqlite3_prepare_v2(base, text.c_str(), -1, &rows, nullptr) != SQLITE_OK)
            throw std::runtime_error(text);
        while (sqlite3_step(rows) == SQLITE_ROW)
            for (int column = 0; column < sqlite3_column_count(rows); ++column)
                letters += sqlite3_column_bytes(rows, column);
        sqlite3_finalize(rows);
    }
    return letters;
}

} // namespace zv::bench
