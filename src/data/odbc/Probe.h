#pragma once

#include "data/odbc/Link.h"
#include "data/odbc/Server.h"

#include <functional>
#include <memory>

namespace zv::odbc {

/// What is asked once of a server that was found, before it is trusted with a school.
struct Probe {
    bool takesAllTexts =
        false; ///< An old driver converts to one code page, and would corrupt all letters outside it.
    bool isDirect = true; ///< Nothing stands between, as far as the ports of both sides tell.
    Long session = 0;     ///< The server's process; 0: not known.
};

/// In one round trip.
Probe probe(const std::shared_ptr<Link>& link, const Server& kind);

/// Whether a pooler between gives each transaction to a session of the server that is free (transaction
/// pooling), so that what a link sets is lost, its schema included. `another` opens a second link. Two links
/// that meet at one session prove it, and one that moves: the session that became free last is given out
/// first, or they take turns; what other stations do in between is asked for in `rounds`.
bool sharesSessions(const std::shared_ptr<Link>& link, const Probe& found, const Server& kind, int rounds,
                    const std::function<std::shared_ptr<Link>()>& another);
/// What such a pooler does, and what to do.
inline constexpr StringView sharingPooler =
    u"pasa por un repartidor de conexiones que da cada transacción a una sesión distinta del servidor, y en "
    u"ella "
    u"se pierde el esquema del centro: repártalas por sesión (pool_mode=session), o conecte sin él";

} // namespace zv::odbc
