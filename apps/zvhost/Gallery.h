#pragma once

#include <QString>

namespace zv::host {

/// Draws every dialog (new, change, read-only, with a message) and the main window as pictures in a folder,
/// on a sample school of its own. `suffix` tells the pictures of one resolution from another's. Returns how
/// many there are; fails with a RuntimeError if one cannot be written.
int drawGallery(const QString& folder, const QString& suffix);

} // namespace zv::host
