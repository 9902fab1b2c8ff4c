#include "data/odbc/Server.h"

#include <algorithm>
#include <array>

namespace zv::odbc {
namespace {

constexpr Dialect standardSql{.joinTexts = u"||", .deleteWithStar = false};

constexpr std::array servers{
    // Rows are fetched in batches, truth values as numbers. Timeouts: 5 s for a lock, 10 s for an unreachable
    // server (keepalive). UTC, so that timestamps of all stations compare, also across a change of clocks.
    Server{.name = u"PostgreSQL",
           .dialect = standardSql,
           .keepsAllTexts = true,
           .placing = Placing::schemas,
           .settings = u"SET lock_timeout='5s'; SET standard_conforming_strings=on; SET timezone='UTC'",
           .patience = u"SET statement_timeout='{}s'",
           .readOnlySettings = u"SET default_transaction_read_only=on",
           .session = u"pg_backend_pid(), COALESCE(inet_client_port(),0)",
           .serving =
               u"SELECT CASE current_setting('transaction_read_only') WHEN 'off' THEN 1 ELSE 0 END, 0, 1",
           .lineage = u"SELECT CAST(system_identifier AS TEXT), CAST(CAST('x'||"
                      u"left(pg_walfile_name(pg_current_wal_lsn()),8) AS bit(32)) AS bigint) "
                      u"FROM pg_control_system()",
           .driverOptions = u"UseDeclareFetch=1;Fetch=100;BoolsAsChar=0;pqopt=tcp_user_timeout=10000 "
                            u"keepalives_idle=4 keepalives_interval=2 keepalives_count=3"},
    Server{.name = u"Microsoft SQL Server",
           .dialect = {.deleteWithStar = false},
           .settings = u"SET LOCK_TIMEOUT 5000; SET QUOTED_IDENTIFIER ON"},
    // No translation: the dialogs are written in its dialect.
    Server{.name = u"ACCESS", .placing = Placing::files},
    Server{.name = u"SQLite", .dialect = standardSql, .keepsAllTexts = true, .placing = Placing::files},
    // Names fold, so that nobody has to ask for lower_case_table_names. Each statement sees what was
    // committed before it, as elsewhere. The driver fetches all rows at once. A node of a cluster first takes
    // in what the others have committed, before a statement that reads, changes or inserts (1+2+4).
    Server{.name = u"MariaDB",
           .dialect = {.joinTexts = u"||", .deleteWithStar = false, .namesInAnyCase = false},
           .keepsAllTexts = true,
           .placing = Placing::schemas,
           .ddl = DdlStyle::mariadb,
           .schemasAreCatalogs = true,
           .wantsKeepalive = true,
           .settings = u"SET sql_mode='ANSI,STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES,NO_AUTO_VALUE_ON_ZERO,"
                       u"ERROR_FOR_DIVISION_BY_ZERO,NO_ENGINE_SUBSTITUTION', innodb_lock_wait_timeout=5, "
                       u"lock_wait_timeout=5, time_zone='+00:00', "
                       u"tx_isolation='READ-COMMITTED', NAMES utf8mb4 COLLATE utf8mb4_nopad_bin",
           .patience = u"SET max_statement_time={}",
           .readOnlySettings = u"SET SESSION TRANSACTION READ ONLY",
           .serving =
               u"SELECT @@read_only=0 AND 2*(SELECT COUNT(*) FROM information_schema.GLOBAL_VARIABLES WHERE "
               u"VARIABLE_NAME='WSREP_ON' AND VARIABLE_VALUE='ON')=(SELECT COUNT(*) FROM "
               u"information_schema.GLOBAL_STATUS WHERE (VARIABLE_NAME='WSREP_READY' AND "
               u"VARIABLE_VALUE='ON') OR (VARIABLE_NAME='WSREP_CLUSTER_STATUS' AND "
               u"VARIABLE_VALUE='Primary')), (SELECT COUNT(*) FROM information_schema.GLOBAL_VARIABLES "
               u"WHERE VARIABLE_NAME='WSREP_ON' AND VARIABLE_VALUE='ON'), (SELECT HOST LIKE '%:%' FROM "
               u"information_schema.PROCESSLIST WHERE ID=CONNECTION_ID())",
           .nodeSettings = u"SET SESSION wsrep_sync_wait=7",
           .driverOptions = u"CHARSET=utf8mb4;CONN_TIMEOUT=5"},
    Server{.name = u"MySQL",
           .dialect = standardSql,
           .keepsAllTexts = true,
           .settings = u"SET SESSION sql_mode='ANSI,STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES', "
                       u"innodb_lock_wait_timeout=5, time_zone='+00:00'",
           .readOnlySettings = u"SET SESSION TRANSACTION READ ONLY"},
};

} // namespace

const Server& serverNamed(StringView name)
{
    static constexpr Server unknown;
    const auto found = std::ranges::find_if(
        servers, [&](const Server& each) { return sameName(name.substr(0, each.name.size()), each.name); });
    return found == servers.end() ? unknown : *found;
}

} // namespace zv::odbc
