#pragma once

#include "zvhost/Deletion.h"
#include "zvhost/Host.h"

#include <QString>

#include <optional>

class QWidget;

namespace zv::host {

/// Formats references for a person, a line for each table.
QString reasons(const std::vector<Referrer>& who);
/// Lists what was deleted and restores it.
void showRecycleBin(QWidget* parent, School& school, bool readOnly);
/// Lists the registrations, and releases them after a warning.
void showRowsInUse(QWidget* parent, Connection& centro, bool readOnly);
/// Asks for user, profile and mode; empty if it was cancelled.
std::optional<Choices> askChoices(QWidget* parent, Host& host);

} // namespace zv::host
