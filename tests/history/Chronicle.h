#pragma once

#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/HistoryConnection.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Verify.h"
#include "data/sqlite/SqliteEngine.h"
#include "runtime/Convert.h"

#include "data/NumberOf.h"

#include <chrono>
#include <filesystem>

namespace zv {

/// A school with a history, in files of its own, and people who write.
class Chronicle : public testing::Test {
protected:
    Chronicle()
    {
        registerEngine(sqliteEngine(Durability::off));
        registerEngine(historyEngine());
        std::filesystem::create_directories(folder);
        createSchool(url);
        school = openSchool(url);
    }
    ~Chronicle() override
    {
        school = {};
        std::filesystem::remove_all(folder);
    }
    /// What a dialog of that person runs; a statement may fail.
    void dialog(StringView form, StringView person, std::initializer_list<StringView> statements) const
    {
        Connection& centro = *school.centro;
        centro.dialogOpened({.dialog = String(form),
                             .row = 1,
                             .creates = false,
                             .user = 3,
                             .userName = String(person),
                             .station = u"puesto-" + String(person)});
        for (const StringView each : statements)
            numberOf([&] { centro.Execute(each); });
        centro.dialogClosed();
    }
    /// As somebody does who has the file.
    RecordsetPtr raw(StringView statement) const
    {
        return history::historyOf(school.centro)->inner()->executeNative(statement);
    }
    history::Verification verified() const { return history::verify(*school.centro); }
    std::string findings() const
    {
        std::string result;
        for (const history::Finding& each : verified().findings)
            result += std::to_string(each.number) + " " + toUtf8(each.words) + "\n";
        return result;
    }

    std::filesystem::path folder =
        std::filesystem::temp_directory_path() /
        ("zv-historial-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
    String url = u"historial:sqlite:" + (folder / "colegio.db").u16string();
    School school;
};

} // namespace zv
