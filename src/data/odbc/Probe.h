#pragma once

#include "data/odbc/Link.h"
#include "data/odbc/Server.h"

#include <functional>
#include <memory>

namespace zv::odbc {

/// What is asked once of a server that was found, before it is trusted with a school.
struct Probe {
    /// An old driver converts to one code page, and would corrupt all letters outside it.
    bool takesAllTexts = false;
    bool isDirect = true; ///< Nothing stands between, as far as the ports of both sides tell.
    Long session = 0;     ///< The server's process; 0: not known.
};

/// In one round trip.
Probe probe(const std::shared_ptr<Link>& link, const Server& kind);

/// Whether a pooler between gives each transaction to a session of the server that is free (transaction
/// pooling), so that what a link sets is lost, its schema included. `another` opens a second link. Two links
/// that meet at one session prove it, and one that moves. Which of the two asks is left to chance, each time:
/// whatever session is free, for other stations may work in step with this one, it is the asking link's own
/// at most every other time.
bool sharesSessions(const std::shared_ptr<Link>& link, const Probe& found, const Server& kind,
                    const std::function<std::shared_ptr<Link>()>& another);
/// What such a pooler does, and what to do.
inline constexpr StringView sharingPooler =
    u"pasa por un repartidor de conexiones que da cada transacción a una sesión distinta del servidor, y en "
    u"ella se pierde el esquema del centro: repártalas por sesión (pool_mode=session), o conecte sin él";

} // namespace zv::odbc
