#include "data/history/Losses.h"

#include "data/Schema.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <utility>

namespace zv::history {
namespace {

using Part = HistoryConnection::Part;
using Closed = HistoryConnection::Closed;

constexpr StringView advice = u"ConsejoOrientador_Nota";
/// Tables of a section's dialogs, which tell nobody of what failed, and which hold rows of pupils.
constexpr StringView sectionTables[] = {advice, u"Alumno_InfInd", u"Alumno_InfIndESO", u"Alumno_InfIndPrim"};

bool isOf(std::span<const StringView> tables, StringView table)
{
    return std::ranges::any_of(tables, [&](StringView each) { return sameName(each, table); });
}

/// Whether a field has something that a person wrote: neither blank nor a reference to nothing.
bool holds(const schema::Table& table, const Field& field)
{
    if (field.value.isNull() || field.value.isEmpty())
        return false;
    if (const auto* text = field.value.as<String>())
        return !Trim(*text).empty();
    const auto column = std::ranges::find_if(
        table.columns(), [&](const schema::Column& each) { return sameName(each.name, field.column); });
    return column == table.columns().end() || column->refersTo.empty() || !same(field.value, Value(Long{0}));
}

bool isKey(const schema::Table& table, StringView column)
{
    return std::ranges::any_of(table.columns().first(table.keyColumns),
                               [&](const schema::Column& each) { return sameName(each.name, column); });
}

/// The fields that a person writes: not the key, and in a note of the guidance its answer only.
Fields written(const schema::Table& table, const Fields& fields)
{
    Fields result;
    for (const Field& each : fields)
        if (!isKey(table, each.column) && holds(table, each) &&
            (!sameName(table.name, advice) || sameName(each.column, u"codCOResp")))
            result.push_back(each);
    return result;
}

void set(Fields& fields, const Field& field)
{
    const auto found =
        std::ranges::find_if(fields, [&](const Field& each) { return sameName(each.column, field.column); });
    if (found == fields.end())
        fields.push_back(field);
    else
        found->value = field.value;
}

/// What a row went through since the dialogs were opened.
struct Trace {
    struct Foreign {
        Value value;
        Long entry = 0;
        String moment = {};
        Long opening = 0;
    };
    using ByColumn = std::map<String, Foreign>; ///< By the column's name in small letters.

    ByColumn others; ///< What others wrote last and the dialog has not touched since.
    ByColumn lost;   ///< What others wrote and the dialog then touched.
    // A row that another's save deleted: it may insert it anew, and what is the same then was not written.
    Fields before;
    ByColumn hidden; ///< Former `others`.
    Long by = 0;     ///< That save.
    Fields begin;    ///< As the dialog found it.
    Fields end;      ///< As the dialog left it.
    bool touched = false;
    bool went = false; ///< The dialog left no row.
    bool came = false; ///< There was none before.
    Long first = 0;    ///< Number of the dialog's first entry.
};
using RowName = std::pair<String, String>; ///< Table and condition.

/// Follows the entries of one part, and what others wrote meanwhile.
class Follower {
public:
    Follower(const Closed& closed, const Part& part) : closed_(closed), part_(part) {}

    void take(const Entry& entry)
    {
        const bool writes =
            entry.kind == Kind::added || entry.kind == Kind::changed || entry.kind == Kind::removed;
        if (entry.opening == part_.number) {
            if (writes)
                own(entry);
            else if (entry.kind == Kind::missed)
                missed_.push_back(entry);
        } else if (writes && !isOurs(entry.opening)) {
            foreign(entry);
        }
    }

    const std::map<RowName, Trace>& traces() const { return traces_; }
    const std::vector<Entry>& missed() const { return missed_; }

private:
    /// A dialog that was opened from within is the same person's.
    bool isOurs(Long opening) const
    {
        return opening != 0 &&
               std::ranges::find(closed_.parts, opening, &Part::number) != closed_.parts.end();
    }

    void foreign(const Entry& entry)
    {
        if (entry.number <= part_.headBefore)
            return;
        Trace& trace = traces_[{entry.table, entry.row}];
        if (entry.kind == Kind::removed) {
            trace.before = fieldsIn(entry.before);
            trace.hidden = std::exchange(trace.others, {});
            trace.by = entry.save;
            return;
        }
        const bool anew = entry.kind == Kind::added && entry.save != 0 && trace.by == entry.save;
        for (const Field& each : fieldsIn(entry.after)) {
            const String column = lowerName(each.column);
            const Value* before = anew ? valueOf(trace.before, each.column) : nullptr;
            if (before == nullptr || !same(*before, each.value))
                trace.others[column] = {each.value, entry.number, entry.moment, entry.opening};
            else if (const auto hidden = trace.hidden.find(column); hidden != trace.hidden.end())
                trace.others[column] = hidden->second;
        }
    }

    void own(const Entry& entry)
    {
        Trace& trace = traces_[{entry.table, entry.row}];
        if (!trace.touched) {
            trace.first = entry.number;
            trace.came = entry.kind == Kind::added;
        }
        trace.touched = true;
        trace.went = entry.kind == Kind::removed;
        for (const Field& each : fieldsIn(entry.before)) {
            const auto other = trace.others.find(lowerName(each.column));
            const bool overwrites = other != trace.others.end() && same(other->second.value, each.value);
            if (overwrites)
                trace.lost[lowerName(each.column)] = other->second;
            if (overwrites || valueOf(trace.begin, each.column) == nullptr)
                set(trace.begin, each);
            trace.others.erase(lowerName(each.column));
        }
        for (const Field& each : fieldsIn(entry.after)) {
            set(trace.end, each);
            trace.others.erase(lowerName(each.column));
        }
    }

    const Closed& closed_;
    const Part& part_;
    std::map<RowName, Trace> traces_;
    std::vector<Entry> missed_;
};

/// Who wrote one of the fields of a row last, before that entry. A save that deletes the row and inserts the
/// same wrote nothing.
Author authorBefore(Connection& centro, const Loss& loss, Long number)
{
    std::optional<Entry> found;
    const auto isSame = [&](const Fields& fields) {
        return std::ranges::all_of(loss.was, [&](const Field& each) {
            const Value* value = valueOf(fields, each.column);
            return value != nullptr && same(*value, each.value);
        });
    };
    const auto use = [&](const Entry& each) {
        const Fields after = fieldsIn(each.after);
        if (found && each.kind == Kind::removed && each.save == found->save && isSame(fieldsIn(each.before)))
            found.reset();
        else if (found)
            return false;
        else if (each.kind == Kind::added ||
                 (each.kind == Kind::changed && std::ranges::any_of(loss.was, [&](const Field& field) {
                      return valueOf(after, field.column) != nullptr;
                  })))
            found = each;
        return true;
    };
    forEach(centro,
            u"Tabla=" + textLiteral(loss.table) + u" AND Fila=" + textLiteral(loss.row) +
                statement(u" AND Numero<{}", {number}),
            use, true);
    return found ? Author{found->number, found->moment, openingOf(centro, found->opening)} : Author();
}

/// Finds the losses of one part.
class Finder {
public:
    Finder(Connection& centro, const Closed& closed, const Part& part)
        : centro_(centro), closed_(closed), part_(part)
    {}

    std::vector<Loss> find()
    {
        if (part_.number != 0) {
            Follower follower(closed_, part_);
            const Long from = std::min(part_.headBefore + 1, part_.number);
            forEach(centro_, statement(u"Numero>={}", {from}), [&](const Entry& each) {
                follower.take(each);
                return true;
            });
            for (const auto& [name, trace] : follower.traces())
                if (trace.touched)
                    take(name, trace);
            for (const Entry& each : follower.missed())
                takeMissed(each);
        }
        for (const Entry& each : part_.failed)
            takeFailed(each);
        for (Loss& each : found_)
            addPupil(each);
        return std::move(found_);
    }

private:
    void take(const RowName& name, const Trace& trace)
    {
        const schema::Table* table = schema::table(name.first);
        if (table == nullptr)
            return;
        Loss loss{.table = name.first, .row = name.second};
        if (trace.went && !trace.came && isOf(sectionTables, name.first)) {
            loss.kind = Loss::Kind::removed;
            loss.was = written(*table, trace.begin);
            loss.whole = trace.begin;
        } else if (isReplaced(*table, loss, trace)) {
            loss.kind = Loss::Kind::replaced;
            loss.anew = true;
            for (const Field& each : written(*table, trace.begin))
                addIfDifferent(loss, each, trace);
        } else {
            takeWrittenOver(*table, std::move(loss), trace);
            return;
        }
        if (loss.was.empty())
            return;
        loss.author = authorBefore(centro_, loss, trace.first);
        found_.push_back(std::move(loss));
    }

    bool isReplaced(const schema::Table& table, const Loss& loss, const Trace& trace) const
    {
        return part_.opening.creates && part_.opening.row > 0 && !trace.came && !trace.went &&
               loss.row == conditionOf({{String(table.columns().front().name), part_.opening.row}});
    }

    static void addIfDifferent(Loss& loss, const Field& was, const Trace& trace)
    {
        const Value* is = trace.went ? nullptr : valueOf(trace.end, was.column);
        if (is != nullptr && same(*is, was.value))
            return;
        loss.was.push_back(was);
        if (is != nullptr)
            loss.is.push_back({was.column, *is});
    }

    /// Fields of one row may come from several openings: a loss for each.
    void takeWrittenOver(const schema::Table& table, Loss loss, const Trace& trace)
    {
        std::map<Long, Loss> byOpening;
        for (const Field& each : written(table, trace.begin)) {
            const auto other = trace.lost.find(lowerName(each.column));
            if (other == trace.lost.end())
                continue;
            const auto [place, isNew] = byOpening.try_emplace(other->second.opening, loss);
            if (isNew && trace.went)
                place->second.whole = trace.begin;
            if (isNew)
                place->second.author = {other->second.entry, other->second.moment,
                                        openingOf(centro_, other->second.opening)};
            addIfDifferent(place->second, each, trace);
        }
        for (auto& [opening, each] : byOpening)
            if (!each.was.empty())
                found_.push_back(std::move(each));
    }

    Author self() const { return {.opening = part_.opening}; }

    /// What was typed for a row that is not there; of a row that was there once, its other columns are known.
    void takeMissed(const Entry& entry)
    {
        const schema::Table* table = schema::table(entry.table);
        if (table == nullptr)
            return;
        Loss loss{.kind = Loss::Kind::nowhere, .table = entry.table, .row = entry.row, .author = self()};
        const Fields typed = fieldsIn(entry.after);
        loss.was = written(*table, typed);
        if (std::ranges::none_of(loss.was, [&](const Field& each) {
                return each.value.as<String>() != nullptr || sameName(entry.table, advice);
            }))
            return;
        loss.anew = part_.opening.creates && part_.opening.row > 0;
        const std::optional<Fields> key = fieldsOfCondition(entry.row);
        if (!key || rowNow(centro_, *table, entry.row))
            return;
        if (!loss.anew) {
            for (const Entry& each : entries(centro_,
                                             u"Tabla=" + textLiteral(table->name) + u" AND Fila=" +
                                                 textLiteral(keyOf(*table, *key)) + u" AND Clase=4",
                                             true)) {
                loss.whole = fieldsIn(each.before);
                break;
            }
            for (const Field& each : *key)
                set(loss.whole, each);
        }
        for (const Field& each : typed)
            set(loss.whole, each);
        std::erase_if(found_, [&](const Loss& each) {
            return each.kind == Loss::Kind::nowhere && each.table == loss.table && each.row == loss.row;
        });
        found_.push_back(std::move(loss));
    }

    /// What failed and does not stand there by now: a dialog tries some statements again.
    void takeFailed(const Entry& entry)
    {
        const schema::Table* table = schema::table(entry.table);
        // An answer that is new is tried until it stands.
        if (table == nullptr || !isOf(sectionTables, entry.table) ||
            (entry.row.empty() && sameName(entry.table, advice)))
            return;
        Fields wanted;
        try {
            wanted = fieldsIn(entry.after);
        } catch (const RuntimeError&) {
            // A statement whose columns were not known: there is nothing to compare.
            return;
        }
        Loss loss{.kind = Loss::Kind::failed, .table = entry.table, .row = entry.row, .author = self()};
        if (loss.row.empty())
            loss.row = keyOf(*table, wanted);
        if (loss.row.empty() || wanted.empty())
            return;
        const std::optional<Fields> now = rowNow(centro_, *table, loss.row);
        for (const Field& each : wanted) {
            const Value* is = now ? valueOf(*now, each.column) : nullptr;
            if (is == nullptr
                    ? holds(*table, each) && !isKey(*table, each.column)
                    : !same(*is, each.value) && (holds(*table, each) || holds(*table, {each.column, *is}))) {
                loss.was.push_back(each);
                if (is != nullptr)
                    loss.is.push_back({each.column, *is});
            }
        }
        if (!now)
            loss.whole = wanted;
        std::erase_if(found_, [&](const Loss& each) {
            return each.kind == Loss::Kind::failed && each.table == loss.table && each.row == loss.row;
        });
        if (!loss.was.empty())
            found_.push_back(std::move(loss));
    }

    /// The pupil that a row belongs to, and whether he left the section whose note it was.
    void addPupil(Loss& loss)
    {
        const schema::Table& table = *schema::table(loss.table);
        const auto column = std::ranges::find_if(
            table.columns(), [](const schema::Column& each) { return each.refersTo == u"Alumno"; });
        if (column == table.columns().end())
            return;
        const std::optional<Fields> now =
            loss.whole.empty() ? rowNow(centro_, table, loss.row) : std::nullopt;
        const Value* pupil = valueOf(now ? *now : loss.whole, column->name);
        if (pupil == nullptr)
            return;
        loss.pupil = CLng(*pupil);
        const Value* section = valueOf(loss.whole, u"codSeccion");
        if (section == nullptr)
            return;
        const std::optional<Fields> him =
            rowNow(centro_, *schema::table(u"Alumno"), statement(u"IDAlumno={}", {loss.pupil}));
        const Value* his = him ? valueOf(*him, u"codseccion") : nullptr;
        const Value* since = him ? valueOf(*him, u"fechabaja") : nullptr;
        loss.left =
            his == nullptr || !same(*his, *section) || (since != nullptr && !(String() + *since).empty());
    }

    Connection& centro_;
    const Closed& closed_;
    const Part& part_;
    std::vector<Loss> found_;
};

} // namespace

std::optional<Fields> rowNow(Connection& centro, const schema::Table& table, StringView condition)
{
    std::vector<String> names;
    for (const schema::Column& each : table.columns())
        if (!each.addedByUs)
            names.emplace_back(each.name);
    std::vector<Fields> rows = rowsOf(centro, table.name, names, condition);
    return rows.empty() ? std::nullopt : std::optional(std::move(rows.front()));
}

/// The clause of a SET has commas where a condition has AND, and is read otherwise in the same way.
std::optional<Fields> fieldsOfCondition(StringView condition)
{
    String clause;
    std::size_t copied = 0;
    Tokens tokens(condition);
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next())
        if (sameName(condition.substr(token.start, token.length), u"AND")) {
            clause.append(condition.substr(copied, token.start - copied)).append(u",");
            copied = token.start + token.length;
        }
    try {
        return fieldsIn(clause.append(condition.substr(copied)));
    } catch (const DataError&) {
        return std::nullopt;
    }
}

std::vector<Loss> lossesOf(Connection& centro, const Closed& closed)
{
    std::vector<Loss> all;
    for (const Part& each : closed.parts)
        if (each.number != 0 || !each.failed.empty())
            for (Loss& loss : Finder(centro, closed, each).find())
                all.push_back(std::move(loss));
    return all;
}

SavedShare savedShare(const Closed& closed, const std::vector<Loss>& losses)
{
    SavedShare share;
    for (const Part& part : closed.parts) {
        const Entry* last = nullptr;
        Long again = 0;
        for (const Entry& each : part.failed)
            if (isOf(sectionTables, each.table)) {
                last = &each;
                again += each.row.empty() ? 1 : 0;
            }
        if (last == nullptr)
            continue;
        const Fields why = fieldsIn(last->before);
        share.why = String() + *valueOf(why, u"Motivo");
        if (sameName(last->table, advice))
            share.tried += part.tried - again;
    }
    const auto lost = std::ranges::count_if(losses, [](const Loss& each) {
        return each.kind == Loss::Kind::failed && sameName(each.table, advice);
    });
    share.saved = share.tried - static_cast<Long>(lost);
    return share;
}

} // namespace zv::history
