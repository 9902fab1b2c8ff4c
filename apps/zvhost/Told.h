#pragma once

#include "data/history/Losses.h"
#include "zvhost/Host.h"
#include "zvhost/People.h"

namespace zv::host {

/// Words for what the history knows: names of persons, pupils, rows and fields, looked up in the school.
class Told {
public:
    explicit Told(Host& host) : host_(host), people_(host.school()) {}

    /// What a dialog lost, in one sentence; "" for nothing.
    QString sentence(const std::vector<history::Loss>& losses, const history::SavedShare& share);
    /// Name of the person behind an opening.
    QString person(const Opening& opening);
    /// "las 10:42", "ayer a las 10:42".
    static QString time(const String& moment);
    /// Name of a row: its pupil's, else its own; `known` are columns of a row that may be gone.
    QString row(StringView table, StringView condition, const history::Fields& known);
    /// Name of a column in that row: "Lengua · Nuevas actitudes" of a rating.
    QString field(StringView table, StringView condition, StringView column, const history::Fields& known);
    /// A value as a person reads it: the name of what it refers to; of an enciphered text only that it is
    /// one.
    QString value(StringView table, StringView column, const Value& value);

private:
    using Losses = std::vector<const history::Loss*>;
    QString names(const Losses& losses);
    QString writtenOver(const Losses& losses);
    QString replaced(const history::Loss& loss);
    QString nowhere(const Losses& losses);
    QString removed(const Losses& losses);
    QString failed(const Losses& losses, const history::SavedShare& share);
    QString nameOf(StringView table, Long key);

    Host& host_;
    People people_;
    std::map<std::pair<String, Long>, QString> names_; ///< Cache of rows' names.
};

/// "1 texto", "3 valoraciones": the fields, by what they are.
QString counted(const std::vector<const history::Loss*>& losses);

} // namespace zv::host
