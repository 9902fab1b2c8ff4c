#include "zvhost/RowOrder.h"

#include <QCollator>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>

namespace zv::host {
namespace {

/// Rows that are sorted at once: the keys of so many are in memory together.
constexpr std::size_t batch = 1 << 16;
/// Rows between two looks at whether to stop.
constexpr std::size_t stretch = 1 << 12;

struct Stopped {};

QString foldedAnyway(QStringView text)
{
    QString letters;
    for (const QChar each : text.toString().normalized(QString::NormalizationForm_D))
        if (each.category() != QChar::Mark_NonSpacing)
            letters += each.toCaseFolded();
    return letters;
}

/// Letters of the western alphabets without case and accent; a null character where one letter becomes none
/// or several.
std::array<QChar, 0x180> foldedLatin()
{
    std::array<QChar, 0x180> table;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const QChar letter(static_cast<char16_t>(i));
        const QString folded = foldedAnyway(QStringView(&letter, 1));
        table[i] = folded.size() == 1 ? folded.front() : QChar();
    }
    return table;
}

class Sorter {
public:
    Sorter(const RowLetters& rows, int column, const std::atomic<bool>& stop)
        : rows_(rows), column_(column), stop_(stop)
    {
        collator_.setNumericMode(true);
        collator_.setCaseSensitivity(Qt::CaseInsensitive);
    }

    /// The rows from `known.size()` on, sorted into those that are.
    RowNumbers sorted(RowNumbers known) const
    {
        if (column_ < 0) {
            known.resize(static_cast<std::size_t>(rows_.size()));
            std::iota(known.begin(), known.end(), 0);
            return known;
        }
        std::vector<RowNumbers> runs;
        const auto all = static_cast<std::size_t>(rows_.size());
        for (std::size_t begin = known.size(); begin < all; begin += batch)
            runs.push_back(run(begin, std::min(all, begin + batch)));
        while (runs.size() > 1)
            for (std::size_t i = 0; i + 1 < runs.size(); ++i) {
                runs[i] = merged(runs[i], runs[i + 1]);
                runs.erase(runs.begin() + static_cast<std::ptrdiff_t>(i) + 1);
            }
        if (runs.empty())
            return known;
        return known.empty() ? std::move(runs.front()) : merged(known, runs.front());
    }

private:
    enum class Kind { blank, number, words };
    struct Key {
        Kind kind;
        double number;
        QCollatorSortKey words;
        int row;

        bool operator<(const Key& other) const
        {
            if (kind != other.kind)
                return kind < other.kind;
            if (number != other.number)
                return number < other.number;
            const int order = words.compare(other.words);
            return order != 0 ? order < 0 : row < other.row;
        }
    };

    Key keyOf(int row) const
    {
        const QStringView text = rows_.cell(row, column_);
        const bool mayBeNumber =
            std::ranges::any_of(text, [](QChar each) { return each.isDigit(); }) && !text.front().isLetter();
        bool isNumber = false;
        const double number = mayBeNumber ? spanish_.toDouble(text, &isNumber) : 0;
        isNumber = isNumber && std::isfinite(number);
        return {text.isEmpty() ? Kind::blank
                : isNumber     ? Kind::number
                               : Kind::words,
                isNumber ? number : 0, collator_.sortKey(text.toString()), row};
    }
    void look() const
    {
        if (stop_)
            throw Stopped();
    }
    RowNumbers run(std::size_t begin, std::size_t end) const
    {
        std::vector<Key> keys;
        keys.reserve(end - begin);
        for (std::size_t row = begin; row < end; ++row) {
            if (row % stretch == 0)
                look();
            keys.push_back(keyOf(static_cast<int>(row)));
        }
        std::ranges::sort(keys, std::less());
        RowNumbers numbers;
        numbers.reserve(keys.size());
        std::ranges::transform(keys, std::back_inserter(numbers), &Key::row);
        return numbers;
    }
    RowNumbers merged(const RowNumbers& one, const RowNumbers& other) const
    {
        RowNumbers numbers;
        numbers.reserve(one.size() + other.size());
        auto a = one.begin();
        auto b = other.begin();
        std::optional<Key> first;
        std::optional<Key> second;
        while (a != one.end() && b != other.end()) {
            if (numbers.size() % stretch == 0)
                look();
            if (!first)
                first.emplace(keyOf(*a));
            if (!second)
                second.emplace(keyOf(*b));
            if (*second < *first) {
                numbers.push_back(*b++);
                second.reset();
            } else {
                numbers.push_back(*a++);
                first.reset();
            }
        }
        numbers.insert(numbers.end(), a, one.end());
        numbers.insert(numbers.end(), b, other.end());
        return numbers;
    }

    const RowLetters& rows_;
    int column_;
    const std::atomic<bool>& stop_;
    QCollator collator_{QLocale(QLocale::Spanish)};
    QLocale spanish_{QLocale::Spanish};
};

bool isFound(const RowLetters& rows, int row, const QStringList& words)
{
    if (words.isEmpty())
        return true;
    QString text;
    for (int column = 0; column < static_cast<int>(rows.columns().size()); ++column)
        text += plainLetters(rows.cell(row, column)) + u'\n';
    return std::ranges::all_of(words, [&](const QString& word) { return text.contains(word); });
}

/// Of a text like "18 de 23".
bool isWhole(QStringView progress)
{
    const QList<QStringView> parts = progress.split(QStringLiteral(" de "));
    return parts.front() == parts.back();
}

void find(const RowLetters& rows, Arrangement& result, const std::atomic<bool>& stop)
{
    const Wish& wish = result.wish;
    const bool all = wish.words.isEmpty() && wish.progress < 0 && wish.gone.empty();
    result.found = rows.size();
    if (all && !wish.descending) {
        result.shown = result.sorted;
        return;
    }
    auto shown = std::make_shared<RowNumbers>();
    const int last = static_cast<int>(rows.columns().size()) - 1;
    result.found = 0;
    std::size_t seen = 0;
    for (const int row : *result.sorted) {
        if (seen++ % stretch == 0 && stop)
            throw Stopped();
        if (!all && (std::ranges::binary_search(wish.gone, row) || !isFound(rows, row, wish.words)))
            continue;
        ++result.found;
        const bool whole = wish.progress >= 0 && isWhole(rows.cell(row, wish.progress));
        result.lacking += whole ? 0 : 1;
        if (!whole || !wish.hidesWhole || !rows.cell(row, last).isEmpty())
            shown->push_back(row);
    }
    if (wish.descending)
        std::ranges::reverse(*shown);
    shown->shrink_to_fit();
    result.shown = std::move(shown);
}

} // namespace

QString plainLetters(QStringView text)
{
    static const std::array<QChar, 0x180> latin = foldedLatin();
    QString letters(text.size(), Qt::Uninitialized);
    std::size_t place = 0;
    for (QChar& each : letters) {
        const char16_t letter = text[static_cast<qsizetype>(place++)].unicode();
        if (letter >= latin.size() || latin[letter].isNull())
            return foldedAnyway(text);
        each = latin[letter];
    }
    return letters;
}

std::shared_ptr<const Arrangement> arranged(const RowLetters& rows, const Wish& wish,
                                            const Arrangement* before, const std::atomic<bool>& stop)
{
    auto result = std::make_shared<Arrangement>();
    result->wish = wish;
    const bool holds = before != nullptr && before->wish.column == wish.column;
    try {
        if (holds && before->sorted->size() == static_cast<std::size_t>(rows.size()))
            result->sorted = before->sorted;
        else
            result->sorted = std::make_shared<RowNumbers>(
                Sorter(rows, wish.column, stop).sorted(holds ? *before->sorted : RowNumbers()));
        find(rows, *result, stop);
    } catch (const Stopped&) {
        return nullptr;
    }
    return result;
}

} // namespace zv::host
