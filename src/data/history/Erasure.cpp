#include "data/history/Erasure.h"

#include "data/DataError.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "data/Transaction.h"
#include "data/history/Fields.h"
#include "data/history/Write.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <map>
#include <optional>

namespace zv::history {
namespace {

constexpr StringView pupils = u"Alumno";
/// Fields of an erasing entry.
constexpr StringView erasedNumbers = u"Asientos";
constexpr StringView erasedBefore = u"Anteriores";
/// What can be erased: erasing entries keep theirs, since they prove.
constexpr StringView withTexts = u"Clase<>10 AND (Antes IS NOT NULL OR Despues IS NOT NULL)";

/// Fields of a text; none where it is a statement or an engine's words.
std::optional<Fields> fieldsOf(StringView text)
{
    try {
        return fieldsIn(text);
    } catch (const DataError&) {
        return std::nullopt;
    }
}

std::optional<Long> numberOf(const std::optional<Fields>& fields, StringView column)
{
    const Value* value = fields ? valueOf(*fields, column) : nullptr;
    const auto* number = value ? value->as<Long>() : nullptr;
    return number ? std::optional(*number) : std::nullopt;
}

/// Matcher of the entries about one row, which are shown to it from the newest to the oldest.
class About {
public:
    About(Connection& centro, const schema::Table& table, Long key) : key_(key)
    {
        tables_.push_back({&table, table.columns().front().name});
        if (sameName(table.name, pupils))
            for (const schema::Table& each : schema::tables(Database::centro))
                for (const schema::Column& column : each.columns())
                    if (each.use == schema::Use::positional && sameName(column.refersTo, pupils))
                        tables_.push_back({&each, column.name});
        for (Naming& each : tables_)
            if (each.byOwner())
                findOwners(centro, each);
    }

    String condition() const
    {
        String result(withTexts);
        result += u" AND Clase<>1 AND Tabla IN (''";
        for (const Naming& each : tables_)
            result += u"," + textLiteral(String(each.table->name));
        return result + u")";
    }

    bool operator()(const Entry& entry)
    {
        const auto naming = std::ranges::find_if(
            tables_, [&](const Naming& each) { return sameName(each.table->name, entry.table); });
        if (naming == tables_.end())
            return mentions(entry.after);
        const auto before = fieldsOf(entry.before);
        const auto after = fieldsOf(entry.after);
        const auto was = numberOf(before, naming->column);
        const auto is = numberOf(after, naming->column);
        bool result = was == key_ || is == key_ || numberAskedFor(entry.row, naming->column) == key_;
        if (!before || !after)
            result |= mentions(entry.before) || mentions(entry.after);
        if (naming->byOwner())
            result |= isOwned(*naming, entry, was, is);
        return result;
    }

private:
    /// A table, and the column in which its rows name the row that is sought.
    struct Naming {
        const schema::Table* table = nullptr;
        StringView column;
        std::map<String, Long> owners = {}; ///< By the row's condition, at the time of the entry in hand.
        bool byOwner() const { return !sameName(column, table->columns().front().name); }
    };

    static void findOwners(Connection& centro, Naming& naming)
    {
        const String key(naming.table->columns().front().name);
        const RecordsetPtr rows = centro.Execute(u"SELECT " + key + u", " + String(naming.column) +
                                                 u" FROM " + String(naming.table->name));
        for (; !rows->Eof(); rows->MoveNext()) {
            const std::vector<Value> row = rows->row();
            if (const auto* owner = row[1].as<Long>())
                naming.owners[conditionOf({{key, row[0]}})] = *owner;
        }
    }

    /// Whose a row was whose entry does not say it; going back, what an entry replaced is what the row was.
    bool isOwned(Naming& naming, const Entry& entry, std::optional<Long> was, std::optional<Long> is) const
    {
        const auto owner = naming.owners.find(entry.row);
        const bool result = owner != naming.owners.end() && owner->second == key_;
        if (entry.kind == Kind::added)
            naming.owners.erase(entry.row);
        else if (was && (entry.kind == Kind::removed || (entry.kind == Kind::changed && is)))
            naming.owners[entry.row] = *was;
        // A row that an entry gives to somebody is its own witness.
        return result && !was && !is;
    }

    /// Whether a text names the table or column, and the number.
    bool mentions(StringView text) const
    {
        bool named = false;
        bool numbered = false;
        const String digits = literal(key_);
        Tokens tokens(text);
        for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
            const StringView word = text.substr(token.start, token.length);
            numbered |= token.kind == Token::Kind::number && word == digits;
            named |= token.kind == Token::Kind::name && std::ranges::any_of(tables_, [&](const Naming& each) {
                         const String name = unquotedName(word);
                         return sameName(name, each.table->name) || sameName(name, each.column);
                     });
        }
        return named && numbered;
    }

    Long key_;
    std::vector<Naming> tables_;
};

/// "1-3,7" of ascending numbers.
String rangesText(const std::vector<Long>& numbers)
{
    String result;
    for (auto at = numbers.begin(); at != numbers.end();) {
        const Long first = *at;
        Long last = first;
        while (++at != numbers.end() && *at == last + 1)
            ++last;
        result += (result.empty() ? u"" : u",") + literal(first);
        if (last != first)
            result += u"-" + literal(last);
    }
    return result;
}

void appendErased(Appending& log, StringView table, StringView row, const Fields& after)
{
    log.add({.kind = Kind::erased, .table = String(table), .row = String(row), .after = textOf(after)});
    log.finish();
}

/// Empties the texts of the entries that meet the condition.
void empty(Connection& centro, StringView condition)
{
    centro.executeNative(u"UPDATE HistorialAsiento SET Antes=NULL, Despues=NULL, Sal=NULL WHERE " +
                         String(condition));
}

String olderThan(Seconds limit) { return statement(u"{} AND Momento<'{}'", {withTexts, momentText(limit)}); }

} // namespace

std::vector<Long> entriesAbout(Connection& centro, const schema::Table& table, Long key)
{
    About about(centro, table, key);
    std::vector<Long> result;
    forEach(
        centro, about.condition(),
        [&](const Entry& each) {
            if (about(each))
                result.push_back(each.number);
            return true;
        },
        true);
    return result;
}

Long eraseAbout(Connection& centro, const schema::Table& table, Long key)
{
    Transaction transaction(centro);
    Appending log(centro);
    std::vector<Long> numbers = entriesAbout(centro, table, key);
    if (numbers.empty())
        return 0;
    std::ranges::reverse(numbers);
    for (const Long number : numbers)
        empty(centro, statement(u"Numero={}", {number}));
    appendErased(log, table.name, conditionOf({{String(table.columns().front().name), key}}),
                 {{String(erasedNumbers), rangesText(numbers)}});
    transaction.commit();
    return static_cast<Long>(numbers.size());
}

Long monthsKept(Connection& centro)
{
    const RecordsetPtr rows = centro.executeNative(u"SELECT PlazoMeses FROM HistorialCabeza");
    return CLng(rows->Fields(u"PlazoMeses"));
}

void keepMonths(Connection& centro, Long months)
{
    centro.executeNative(statement(u"UPDATE HistorialCabeza SET PlazoMeses={}", {months}));
}

Seconds monthsBefore(Seconds moment, Long months)
{
    using namespace std::chrono;
    const auto day = floor<days>(moment);
    year_month_day date = year_month_day(day) - std::chrono::months(months);
    // The last of a month stays the last of one that is shorter.
    if (!date.ok())
        date = date.year() / date.month() / last;
    return sys_days(date) + (moment - day);
}

Long countOlder(Connection& centro, Seconds limit)
{
    const RecordsetPtr rows =
        centro.executeNative(u"SELECT COUNT(*) FROM HistorialAsiento WHERE " + olderThan(limit));
    return CLng(rows->row().front());
}

Long eraseOlder(Connection& centro, Seconds limit)
{
    Transaction transaction(centro);
    Appending log(centro);
    const Long count = countOlder(centro, limit);
    if (count == 0)
        return 0;
    empty(centro, olderThan(limit));
    appendErased(log, u"", u"", {{String(erasedBefore), momentText(limit)}});
    transaction.commit();
    return count;
}

Erasures::Erasures(Connection& centro)
{
    forEach(centro, u"Clase=10", [&](const Entry& each) {
        const auto fields = fieldsOf(each.after);
        const auto textIn = [&](StringView column) {
            const Value* value = fields ? valueOf(*fields, column) : nullptr;
            const auto* text = value ? value->as<String>() : nullptr;
            return text ? *text : String();
        };
        if (const String limit = textIn(erasedBefore); !limit.empty()) {
            // A later one that reaches further says all that the earlier one said.
            std::erase_if(aged_, [&](const Aged& earlier) { return earlier.limit <= limit; });
            aged_.push_back({limit, each.number});
        }
        const String ranges = textIn(erasedNumbers);
        for (std::size_t at = 0; at < ranges.size();) {
            const std::size_t end = std::min(ranges.find(u',', at), ranges.size());
            const StringView range = StringView(ranges).substr(at, end - at);
            const auto first = numberIn(range.substr(0, range.find(u'-')));
            const auto last = numberIn(range.substr(range.find(u'-') + 1));
            if (first && last && *last < each.number)
                listed_.push_back({*first, *last});
            at = end + 1;
        }
        return true;
    });
    std::ranges::sort(listed_, {}, &Listed::first);
}

bool Erasures::cover(const Entry& entry) const
{
    // No two erasures list an entry: what is empty already is not erased again.
    const auto behind = std::ranges::upper_bound(listed_, entry.number, {}, &Listed::first);
    if (behind != listed_.begin() && std::prev(behind)->last >= entry.number)
        return true;
    return std::ranges::any_of(
        aged_, [&](const Aged& each) { return entry.number < each.by && entry.moment < each.limit; });
}

} // namespace zv::history
