#pragma once

#include <QString>

class QWidget;

namespace zv::host {

/// Keeps a text in a new file of the person's state folder (XDG_STATE_HOME, or .local/state at home;
/// %LOCALAPPDATA%), which nobody else can read, and gives its path; it is on disk then. Fails with an
/// exception that says why.
QString keepText(const QString& text);
/// Interactive: tells of each file that keepText() made and nobody has deleted, and opens or deletes it.
void offerKeptTexts(QWidget* parent);

} // namespace zv::host
