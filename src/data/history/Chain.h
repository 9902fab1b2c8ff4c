#pragma once

#include "data/history/Entry.h"

namespace zv::history {

/// Hash chain of the entries: BLAKE2b of 256 bits, as base64 of 43 characters. A change, deletion, insertion
/// or exchange of entries breaks it from there on; only the newest can be cut off unseen, which their number
/// and link, noted elsewhere, show.

/// 128 random bits as base64.
String freshSalt();
/// Commitment to an entry's contents.
String digestOf(const Entry& entry);
/// Link of an entry behind the one with the link `previous` ("" before the first).
String linkOf(StringView previous, const Entry& entry);

} // namespace zv::history
