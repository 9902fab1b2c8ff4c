#pragma once

#include "zvhost/Deletion.h"
#include "zvhost/Host.h"

#include <QString>

#include <optional>

class QWidget;

namespace zv::host {

/// Lists what was deleted, with who deleted it and when, and restores it. Returns what was restored.
std::vector<DeletedRow> showRecycleBin(QWidget* parent, Host& host);
/// Lists the registrations, and releases them after a warning.
void showRowsInUse(QWidget* parent, Host& host);
/// Asks for user, profile and mode; empty if it was cancelled.
std::optional<Choices> askChoices(QWidget* parent, Host& host);

} // namespace zv::host
