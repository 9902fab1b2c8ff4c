#pragma once

#include "zvhost/Host.h"
#include "zvhost/Remembered.h"

#include <QDate>

namespace zv::host {

/// Whether a person is to be reminded of the school's backups, by what this desk knows: those that were made
/// at it, and any that stand beside the last of them, as a timer leaves them.
class Reminder {
public:
    Reminder(Remembered& memory, const Host& host, QDate today = QDate::currentDate());

    void copied(const QString& file);
    /// The sentence that is due, or "". Due is a school whose last backup is more than a week old, or that
    /// has been opened here for as long without one; said once a day.
    QString due();

private:
    void keep();

    Remembered& memory_;
    QString key_;
    QDate today_;
    QString folder_; ///< Of the last backup made here.
    QDate last_;
    QDate since_; ///< When the school was first opened here.
    QDate said_;
};

} // namespace zv::host
