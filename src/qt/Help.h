#pragma once

#include <QString>

class QWidget;

namespace zv {

/// Shows the manual's page of that name (its index, if there is none), from the heading on that follows a
/// "#", in a modeless window owned by the one that asks, so that it can be read beside a modal dialog; `text`
/// is searched for in it. Where the suite has a help file of its own, that is opened instead.
void showHelp(QWidget& owner, const QString& page, const QString& text = {});

} // namespace zv
