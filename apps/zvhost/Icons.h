#pragma once

#include <QIcon>

namespace zv::host {

/// Icon of the command with that object name: the desktop theme's, or else our own line drawing, in the
/// palette's text colour. Null for a name without one.
QIcon commandIcon(const QString& command);
/// The padlock of a row that somebody has open; always our own drawing.
QIcon heldIcon();

} // namespace zv::host
