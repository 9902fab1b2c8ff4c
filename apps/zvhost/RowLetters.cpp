#include "zvhost/RowLetters.h"

#include <algorithm>

namespace zv::host {

void RowLetters::add(std::span<const Row> rows)
{
    if (rows.empty())
        return;
    auto part = std::make_shared<Part>();
    part->keys.reserve(rows.size());
    part->ends.reserve(rows.size() * columns_.size());
    for (const Row& row : rows) {
        part->keys.push_back(row.key);
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            const String text = shown(row.values[column], columns_[column]);
            part->letters.append(QStringView(text.data(), static_cast<qsizetype>(text.size())));
            part->ends.push_back(part->letters.size());
        }
    }
    part->letters.squeeze();
    parts_.push_back(std::move(part));
    begins_.push_back(begins_.back() + static_cast<int>(rows.size()));
}

std::pair<const RowLetters::Part&, std::size_t> RowLetters::placeOf(int row) const
{
    const auto after = std::ranges::upper_bound(begins_, row);
    const auto part = static_cast<std::size_t>(after - begins_.begin() - 1);
    return {*parts_[part], static_cast<std::size_t>(row - begins_[part])};
}

Long RowLetters::keyAt(int row) const
{
    const auto [part, place] = placeOf(row);
    return part.keys[place];
}

QStringView RowLetters::cell(int row, int column) const
{
    if (static_cast<std::size_t>(column) >= columns_.size())
        return {};
    const auto [part, place] = placeOf(row);
    const std::size_t cell = place * columns_.size() + static_cast<std::size_t>(column);
    const qsizetype begin = cell == 0 ? 0 : part.ends[cell - 1];
    return QStringView(part.letters).sliced(begin, part.ends[cell] - begin);
}

int RowLetters::rowOf(Long key) const
{
    for (std::size_t part = 0; part < parts_.size(); ++part)
        if (const auto found = std::ranges::find(parts_[part]->keys, key); found != parts_[part]->keys.end())
            return begins_[part] + static_cast<int>(found - parts_[part]->keys.begin());
    return -1;
}

std::vector<Long> RowLetters::sortedKeys() const
{
    std::vector<Long> all;
    all.reserve(static_cast<std::size_t>(size()));
    for (const auto& part : parts_)
        all.insert(all.end(), part->keys.begin(), part->keys.end());
    if (!std::ranges::is_sorted(all))
        std::ranges::sort(all);
    return all;
}

} // namespace zv::host
