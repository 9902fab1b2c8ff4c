#pragma once

#include "care/copies/Contents.h"
#include "data/Schools.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sqlite/SqliteEngine.h"
#include "runtime/Convert.h"
#include "suite/sodium/EncryptoApi.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace zv {

inline std::vector<care::TableContents> contentsAt(const String& url)
{
    return care::contentsOf(inspectSchool(url), engineOf(url));
}

struct Moving : testing::Test {
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("zv-mudar-" + std::to_string(getpid()));
    Moving()
    {
        registerEngine(sqliteEngine(Durability::off));
        registerEngine(odbcEngine());
        registerCipher([key = CipherKey::random()](bool) { return key; });
        std::filesystem::create_directories(folder);
    }
    ~Moving() override { std::filesystem::remove_all(folder); }
    static void remove(const String& url)
    {
        for (const Database which : everyDatabase)
            engineOf(url).remove(locationOf(url), which);
    }
    String file(StringView name) const { return u"sqlite:" + (folder / name).u16string(); }
};

/// With a place on a server for this process alone: tests run beside each other.
struct MovingToServer : Moving, testing::WithParamInterface<const char*> {
    ~MovingToServer() override { remove(server()); }
    static bool isMaria() { return GetParam() == std::string("mariadb"); }
    /// That server's, and a file beside the first of them.
    std::vector<String> places() const
    {
        return isMaria() ? std::vector{server()} : std::vector{file(u"uno.db"), server()};
    }
    static String server()
    {
        return (isMaria() ? u"odbc:DSN=zv_maria;ESQUEMA=mudanza" : u"odbc:DSN=zv_prueba;ESQUEMA=mudanza") +
               decimalText(static_cast<Long>(getpid()));
    }
};

inline Long rowsOf(const ConnectionPtr& base)
{
    return CLng(base->Execute(u"SELECT COUNT(*) AS n FROM profesion WHERE nombre='x'")->Fields(u"n"));
}

} // namespace zv
