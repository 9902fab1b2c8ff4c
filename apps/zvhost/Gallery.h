#pragma once

#include <QSize>
#include <QString>

#include <optional>

namespace zv::host {

/// Draws every dialog (new, change, read-only, with a message) and the host's own windows as pictures in a
/// folder, on a sample school of its own: whole, or as they fit on a screen of that size (logical pixels).
/// `suffix` tells the pictures of one resolution from another's. Returns how many there are; fails with a
/// RuntimeError if one cannot be written.
int drawGallery(const QString& folder, const QString& suffix, std::optional<QSize> screen);

} // namespace zv::host
