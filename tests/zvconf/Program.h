#pragma once

#include "data/Engine.h"
#include "data/sqlite/SqliteEngine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>

namespace zv {

namespace fs = std::filesystem;

inline std::string contents(const fs::path& file)
{
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

/// Runs the program in a folder of its own.
class Zvconf : public testing::Test {
protected:
    Zvconf()
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
        registerEngine(sqliteEngine());
        setenv("ZV_CLAVE", "clave", 1); // In the folder of its own, never the person's.
    }
    ~Zvconf() override { fs::remove_all(folder); }
    /// The exit code; `out` and `err` have what it wrote.
    int run(const std::string& arguments, const std::string& target = "out")
    {
        const std::string line =
            "cd '" + folder.string() + "' && '" ZVCONF "' " + arguments + " >" + target + " 2>err";
        const int status = std::system(line.c_str());
        out = contents(folder / "out");
        err = contents(folder / "err");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    fs::path folder =
        fs::temp_directory_path() /
        ("zv-zvconf-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
    std::string out, err;
};

} // namespace zv
