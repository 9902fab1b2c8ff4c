#pragma once

#include "zvhost/Deletion.h"
#include "zvhost/Host.h"

#include <QString>

#include <optional>

class QWidget;

namespace zv::host {

/// Who refers to a row, a line for each table, as a person reads it.
QString reasons(const std::vector<Referrer>& who);
/// Lists what was deleted and restores it.
void showRecycleBin(QWidget* parent, School& school, bool readOnly);
/// Lists the rows that stations have open, and frees them with a warning.
void showRowsInUse(QWidget* parent, Connection& centro, bool readOnly);
/// Asks what a person works as; nothing if it was cancelled.
std::optional<Choices> askChoices(QWidget* parent, Host& host);

} // namespace zv::host
