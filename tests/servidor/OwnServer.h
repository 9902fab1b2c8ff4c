#pragma once

#include "runtime/Convert.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace zv {

/// A PostgreSQL that one test alone uses, since it cuts it off.
class OwnServer {
public:
    explicit OwnServer(std::filesystem::path folder) : folder_(std::move(folder)) { to("arrancar"); }
    OwnServer(const OwnServer&) = delete;
    OwnServer& operator=(const OwnServer&) = delete;
    ~OwnServer() { to("parar"); }

    void to(const std::string& action) const
    {
        ASSERT_EQ(std::system((ZV_SERVER " " + action + " " + folder_.string()).c_str()), 0);
    }
    std::string place() const
    {
        std::string line;
        std::getline(std::ifstream(folder_ / "place"), line);
        return line;
    }
    String location() const
    {
        return u"Driver=PostgreSQL Unicode;Server=" + fromUtf8(place()) +
               u";Port=5432;Database=postgres;UID=zv";
    }

private:
    std::filesystem::path folder_;
};

} // namespace zv
