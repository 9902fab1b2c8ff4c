#pragma once

#include "zvhost/Host.h"

#include <QVariant>

#include <optional>

class QMainWindow;
class QSplitter;

namespace zv::host {

/// What the window keeps from one day to the next: in the person's settings, or, for pictures and tests, only
/// as long as it lives.
class Remembered {
public:
    enum class Where { nowhere, settings };
    explicit Remembered(Where where) : where_(where) {}

    QVariant value(const QString& key) const;
    void set(const QString& key, const QVariant& value);

    /// Place and size of the window and its parts. False if there were none to restore.
    bool restoreWindow(QMainWindow& window, QSplitter& parts) const;
    void keepWindow(const QMainWindow& window, const QSplitter& parts);

private:
    Where where_;
    QVariantMap values_; ///< Where::nowhere.
};

/// How a person left a list: order, search, and widths where he dragged columns.
struct ListLook {
    int column = 0;
    bool descending = false;
    QString search;
    QList<int> widths;

    bool operator==(const ListLook&) const = default;
};
ListLook lookOf(const Remembered& memory, int node);
void keepLook(Remembered& memory, int node, const ListLook& look);

/// The session that a person chose last for the school of that host, if its user is still there; a session of
/// consultation stays one. Of a school whose URL has a password nothing is kept.
std::optional<Choices> choicesOf(const Remembered& memory, Host& host);
void keepChoices(Remembered& memory, const Host& host);

/// Folder of the paper of the school at that URL; "" for the program's own. Of a school whose URL has a
/// password nothing is kept.
QString paperOf(const Remembered& memory, const String& url);
void keepPaper(Remembered& memory, const String& url, const QString& folder);

} // namespace zv::host
