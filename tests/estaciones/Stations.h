#pragma once

#include "Times.h"
#include "data/Schools.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Log.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sample/SampleSchool.h"
#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "robot/ScriptedStage.h"
#include "runtime/Convert.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <sstream>

namespace zv {

using std::to_string;

/// Servers that stand together, where the tool for them has started some (tools/region): "galera" or
/// "reserva"; or "reparto", a pooler before one.
inline std::vector<std::string> regions()
{
    const char* kind = std::getenv("ZV_REGION");
    return kind ? std::vector<std::string>{kind} : std::vector<std::string>{};
}

/// Whether a process was killed, by its status; it may have been done before that, and nothing else.
inline bool wasKilled(int status)
{
    EXPECT_TRUE(status == 0 || status == SIGKILL) << status;
    return status == SIGKILL;
}

/// A connection whose statements are seen before ("va") and, unless they fail, after they ran ("hecho").
class Watched final : public ConnectionDecorator {
public:
    using Look = std::function<void(const std::string& what, StringView statement)>;
    Watched(ConnectionPtr inner, Look look) : ConnectionDecorator(std::move(inner)), look_(std::move(look)) {}
    RecordsetPtr Execute(StringView statement) override
    {
        look_("va", statement);
        RecordsetPtr rows = inner()->Execute(statement);
        look_("hecho", statement);
        return rows;
    }

private:
    Look look_;
};

/// A school on the disk or on the server. Who forks has no connection open: no two processes may share one.
class Stations : public testing::TestWithParam<std::string> {
protected:
    Stations()
    {
        std::filesystem::create_directory(folder);
        const std::string schema = ";ESQUEMA=puestos" + to_string(getpid());
        const std::string source = isMaria() ? "zv_maria" : "zv_prueba";
        if (const char* list = isRegion() ? std::getenv("ZV_REGION_SERVIDORES") : nullptr) {
            std::istringstream names(list);
            for (std::string each; std::getline(names, each, ',');)
                servers.push_back(each);
        }
        url = fromUtf8(isRegion()               ? "odbc:DSN=zv_region" + schema
                       : GetParam() == "sqlite" ? "sqlite:" + (folder / "colegio.db").string()
                                                : "odbc:DSN=" + source + schema);
        url = urlOf(0);
        registerEngine(sqliteEngine());
        registerEngine(odbcEngine());
        installModule();
    }
    ~Stations() override
    {
        for (const Database which : everyDatabase)
            engineOf(url).remove(locationOf(url), which);
        std::filesystem::remove_all(folder);
    }
    static bool isRegion() { return regions() == std::vector{GetParam()}; }
    /// The school as a station finds it: those of a region begin at servers of their own.
    String urlOf(int station) const
    {
        std::string list;
        for (std::size_t each = 0; each < servers.size(); ++each)
            list += (each == 0 ? ";SERVIDORES=" : ",") +
                    servers[(static_cast<std::size_t>(station) + each) % servers.size()];
        return url.substr(0, url.find(u";SERVIDORES")) + fromUtf8(list);
    }
    static bool isMaria() { return GetParam() == "mariadb"; }
    /// Ends all links to the server but that one.
    static void endLinks(Connection& but)
    {
        if (!isMaria()) {
            but.Execute(u"SELECT pg_terminate_backend(pid,5000) FROM pg_stat_activity WHERE "
                        u"backend_type='client backend' AND pid<>pg_backend_pid()");
            return;
        }
        const auto others = [&] {
            return but.Execute(u"SELECT ID FROM information_schema.PROCESSLIST WHERE ID<>CONNECTION_ID() AND "
                               u"USER='zv'");
        };
        for (const RecordsetPtr rows = others(); !rows->Eof(); rows->MoveNext())
            but.Execute(u"KILL " + decimalText(CLng(rows->row().front())));
        // They end on their own time, and one that gets a statement meanwhile fails in the midst of it.
        for (int looked = 0; looked < 500 && !others()->Eof(); ++looked)
            usleep(10'000);
    }
    void create() { createSchool(url, fillSampleSchool); }
    void createWithHistory()
    {
        registerEngine(historyEngine());
        createSchool(url, [](School& school) {
            fillSampleSchool(school);
            history::activate(*school.centro);
        });
    }
    int one(StringView statement)
    {
        return CLng(openSchool(url).centro->executeNative(statement)->row().at(0));
    }
    std::string played(const std::string& text, Watched::Look look)
    {
        return playedOn(openSchool(url), text, std::move(look));
    }
    static std::string playedOn(School school, const std::string& text, Watched::Look look)
    {
        school.centro = std::make_shared<Watched>(school.centro, std::move(look));
        const Guion guion = readGuion(text);
        Play play(guion, school, scriptedStage);
        play.run();
        return toUtf8(play.transcript().text());
    }

    /// Another process, and what it writes.
    using Process = std::pair<pid_t, FILE*>;
    static Process start(const std::function<int(int out)>& life)
    {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        const pid_t process = fork();
        if (process == 0)
            try {
                _exit(life(ends[1]));
            } catch (const std::exception& error) {
                std::cerr << error.what() << std::endl;
                _exit(EXIT_FAILURE);
            }
        close(ends[1]);
        return {process, fdopen(ends[0], "r")};
    }
    static int statusOf(const Process& station)
    {
        int status = 0;
        fclose(station.second);
        waitpid(station.first, &status, 0);
        return status;
    }

    /// Runs `zvconf`; gives its exit code, and `said` what it wrote.
    int zvconf(const std::string& arguments, const std::string& behind = {})
    {
        return shell(ZVCONF " " + arguments + " --bd '" + toUtf8(url) + "' 2>&1" + behind);
    }
    int shell(const std::string& command)
    {
        FILE* const seen = popen(command.c_str(), "r");
        said.clear();
        for (int c = 0; (c = fgetc(seen)) != EOF;)
            said += static_cast<char>(c);
        return WEXITSTATUS(pclose(seen));
    }
    int historial(const std::string& arguments, const std::string& behind = {})
    {
        return zvconf("historial " + arguments, behind);
    }

    std::string said;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("zv-puestos-" + to_string(getpid()));
    std::vector<std::string> servers; ///< Of a region.
    String url;
};

} // namespace zv
