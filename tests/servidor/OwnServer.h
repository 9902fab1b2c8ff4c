#pragma once

#include "runtime/Convert.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace zv {

/// A server that one test alone uses, since it cuts it off.
class OwnServer {
public:
    /// `kind`: "postgres" or "mariadb".
    explicit OwnServer(std::filesystem::path folder, std::string kind = "postgres")
        : folder_(std::move(folder)), kind_(std::move(kind))
    {
        to("arrancar");
    }
    OwnServer(const OwnServer&) = delete;
    OwnServer& operator=(const OwnServer&) = delete;
    ~OwnServer() { to("parar"); }

    void to(const std::string& action) const
    {
        ASSERT_EQ(std::system((ZV_SERVERS + kind_ + " " + action + " " + folder_.string()).c_str()), 0);
    }
    std::string place() const
    {
        std::string line;
        std::getline(std::ifstream(folder_ / "place"), line);
        return line;
    }
    String location() const
    {
        const String folder = fromUtf8(place());
        return kind_ == "mariadb"
                   ? u"Driver=MariaDB Unicode;SOCKET=" + folder + u"/maria.sock;UID=zv"
                   : u"Driver=PostgreSQL Unicode;Server=" + folder + u";Port=5432;Database=postgres;UID=zv";
    }
    pid_t process() const
    {
        pid_t result = 0;
        std::ifstream(place() + (kind_ == "mariadb" ? "/pid" : "/data/postmaster.pid")) >> result;
        return result;
    }

private:
    std::filesystem::path folder_;
    std::string kind_;
};

} // namespace zv
