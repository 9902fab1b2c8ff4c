#pragma once

#include "data/history/Losses.h"
#include "zvhost/Host.h"

#include <QString>

#include <functional>

class QWidget;

namespace zv::host {

/// Shows what was lost, field beside field: what was, whose it was, what is. `gives` puts the chosen ones
/// back; without it nothing can be chosen.
void showLosses(QWidget* parent, Host& host, const std::vector<history::Loss>& losses,
                const std::function<void(const std::vector<history::Loss>&)>& gives);

/// What a history is asked about: entries of a table that meet the condition, or of several.
struct Asked {
    QString title;
    String condition; ///< On the entries' own columns.
};
/// The history of a row (with its parts), of a whole list, and of a section's pupils.
Asked historyOfRow(Host& host, const Node& node, Long key, const QString& name);
Asked historyOfList(const Node& node);
Asked historyOfSection(Host& host, const Node& node, Long section, const QString& name);
/// Shows it, the newest first: who did what to which field.
void showHistory(QWidget* parent, Host& host, const Asked& asked);

} // namespace zv::host
