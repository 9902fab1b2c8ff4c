#include "journal/Records.h"

#include <algorithm>

namespace zv::journal {
namespace {

constexpr std::size_t mostPlaces = 1U << 20U;
constexpr std::size_t mostChoices = 100;

/// Output: numbers of seven bits a byte (the sign in the lowest one), texts in units of 16 bits behind their
/// length.
class Out {
public:
    Out& operator<<(std::int64_t number)
    {
        auto rest = static_cast<std::uint64_t>(number) << 1U;
        if (number < 0)
            rest = ~rest;
        for (; rest >= more; rest >>= 7U)
            bytes.push_back(static_cast<char>((rest & (more - 1)) | more));
        bytes.push_back(static_cast<char>(rest));
        return *this;
    }
    Out& operator<<(StringView text)
    {
        *this << static_cast<std::int64_t>(text.size());
        for (const char16_t unit : text) {
            bytes.push_back(static_cast<char>(unit & 0xFFU));
            bytes.push_back(static_cast<char>(unit >> 8U));
        }
        return *this;
    }
    Out& operator<<(const Entry& entry) { return *this << entry.number << StringView(entry.text); }

    std::string bytes;

private:
    static constexpr std::uint64_t more = 0x80;
};

/// Input: what is not there, or out of range, reads as 0 and makes the whole bad.
class In {
public:
    explicit In(std::string_view bytes) : bytes_(bytes) {}
    bool whole() const { return good_ && bytes_.empty(); }

    std::int64_t number()
    {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            if (bytes_.empty())
                break;
            const auto byte = static_cast<unsigned char>(bytes_.front());
            bytes_.remove_prefix(1);
            value |= static_cast<std::uint64_t>(byte & 0x7FU) << shift;
            if (byte < 0x80) {
                const auto half = static_cast<std::int64_t>(value >> 1U);
                return (value & 1U) != 0 ? ~half : half;
            }
        }
        good_ = false;
        return 0;
    }
    template <class N>
    void into(N& target, std::int64_t most)
    {
        const std::int64_t value = number();
        if (value > most || value < -most - 1)
            good_ = false;
        else
            target = static_cast<N>(value);
    }
    void into(Long& target) { into(target, std::int64_t{0x7FFFFFFF}); }
    void into(bool& target) { target = number() != 0; }
    void into(String& target)
    {
        const std::int64_t length = number();
        if (length < 0 || static_cast<std::uint64_t>(length) > bytes_.size() / 2) {
            good_ = false;
            return;
        }
        target.resize(static_cast<std::size_t>(length));
        for (char16_t& unit : target) {
            unit = static_cast<char16_t>(static_cast<unsigned char>(bytes_[0]) |
                                         static_cast<unsigned char>(bytes_[1]) << 8U);
            bytes_.remove_prefix(2);
        }
    }
    void into(Entry& target)
    {
        into(target.number);
        into(target.text);
    }
    template <class E>
    void choice(E& target, E last)
    {
        target = static_cast<E>(size(static_cast<std::size_t>(last)));
    }
    /// A number that is not negative and at most that.
    std::size_t size(std::size_t most)
    {
        const std::int64_t value = number();
        if (value >= 0 && static_cast<std::uint64_t>(value) <= most)
            return static_cast<std::size_t>(value);
        good_ = false;
        return 0;
    }

private:
    std::string_view bytes_;
    bool good_ = true;
};

enum class Kind : unsigned char { opening, place, act, begun, inner };

void write(Out& out, const Opening& o)
{
    out << o.school << o.schoolName << o.person << o.personName << o.dialog << o.row << o.action << o.section
        << o.opener << o.button << o.buttonIndex << static_cast<std::int64_t>(o.choices.size());
    for (const Choice& each : o.choices)
        out << each.control << each.index << each.entry;
    out << o.title << o.moment;
}

void read(In& in, Opening& o)
{
    in.into(o.school);
    in.into(o.schoolName);
    in.into(o.person, 0x7FFF);
    in.into(o.personName);
    in.into(o.dialog);
    in.into(o.row);
    o.action = static_cast<Byte>(in.size(0xFF));
    in.into(o.section);
    in.into(o.opener);
    in.into(o.button);
    in.into(o.buttonIndex);
    for (std::size_t left = in.size(mostChoices); left > 0; --left) {
        Choice& each = o.choices.emplace_back();
        in.into(each.control);
        in.into(each.index);
        in.into(each.entry);
    }
    in.into(o.title);
    o.moment = in.number();
}

void write(Out& out, const Place& p)
{
    out << static_cast<Long>(p.input) << p.control << p.index << p.within << p.pupil << p.page << p.question
        << p.column << p.label;
}

void read(In& in, Place& p)
{
    in.choice(p.input, Input::rating);
    in.into(p.control);
    in.into(p.index);
    in.into(p.within);
    in.into(p.pupil);
    in.into(p.page);
    in.into(p.question);
    in.into(p.column);
    in.into(p.label);
}

void write(Out& out, const Act& a)
{
    const Long flags = a.inner | a.ordered << 1 | a.closes << 2 | a.leaves << 3 | a.view.has_value() << 4;
    out << static_cast<Long>(a.verb) << a.control << a.index << a.text << a.first << a.second
        << (a.key ? static_cast<Long>(*a.key) : -1) << a.entry << flags << a.moment;
    if (a.view)
        out << a.view->pupil << a.view->page;
}

void read(In& in, Act& a)
{
    in.choice(a.verb, ActVerb::close);
    in.into(a.control);
    in.into(a.index);
    in.into(a.text);
    in.into(a.first);
    in.into(a.second);
    if (const std::int64_t key = in.number(); key >= 0 && key <= static_cast<std::int64_t>(Key::End))
        a.key = static_cast<Key>(key);
    in.into(a.entry);
    const std::size_t flags = in.size(31);
    a.inner = (flags & 1U) != 0;
    a.ordered = (flags & 2U) != 0;
    a.closes = (flags & 4U) != 0;
    a.leaves = (flags & 8U) != 0;
    a.moment = in.number();
    if ((flags & 16U) != 0) {
        a.view.emplace();
        in.into(a.view->pupil);
        in.into(a.view->page);
    }
}

std::size_t commonStart(StringView a, StringView b)
{
    return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

std::size_t commonEnd(StringView a, StringView b)
{
    std::size_t length = 0;
    while (length < a.size() && length < b.size() && a[a.size() - 1 - length] == b[b.size() - 1 - length])
        ++length;
    return length;
}

void write(Out& out, const Content& content) { out << content.none << content.value; }

void read(In& in, Content& content)
{
    in.into(content.none);
    in.into(content.value);
}

/// The number, and of the text what lies between the parts that it has in common with the text before.
void writeEdit(Out& out, const Content& from, const Content& to)
{
    const StringView before = from.value.text;
    const StringView after = to.value.text;
    const std::size_t start = commonStart(before, after);
    const std::size_t end = commonEnd(before.substr(start), after.substr(start));
    out << to.none << to.value.number << static_cast<std::int64_t>(start) << static_cast<std::int64_t>(end)
        << after.substr(start, after.size() - start - end);
}

void readEdit(In& in, const Content& from, Content& to)
{
    const StringView before = from.value.text;
    in.into(to.none);
    in.into(to.value.number);
    const std::size_t start = in.size(before.size());
    const std::size_t end = in.size(before.size() - start);
    String between;
    in.into(between);
    to.value.text = String(before.substr(0, start)) + between + String(before.substr(before.size() - end));
}

using Known = std::vector<std::optional<Content>>;

bool readChanges(In& in, Act& act, Known& known)
{
    for (std::size_t left = in.size(known.size()); left > 0; --left) {
        Change change;
        change.place = in.size(known.empty() ? 0 : known.size() - 1);
        if (change.place >= known.size())
            return false;
        std::optional<Content>& content = known[change.place];
        if (!content)
            read(in, content.emplace());
        change.before = *content;
        readEdit(in, *content, change.after);
        content = change.after;
        act.changes.push_back(std::move(change));
    }
    return true;
}

} // namespace

std::string Records::pack(const Record& record)
{
    Out out;
    out << static_cast<Long>(record.index());
    if (const auto* opening = std::get_if<Opening>(&record)) {
        write(out, *opening);
    } else if (const auto* place = std::get_if<Place>(&record)) {
        write(out, *place);
        contents_.emplace_back();
    } else if (const auto* begun = std::get_if<Begun>(&record)) {
        write(out, begun->act);
    } else if (const auto* inner = std::get_if<Inner>(&record)) {
        out << inner->dialog;
    } else {
        const Act& act = std::get<Act>(record);
        write(out, act);
        out << static_cast<std::int64_t>(act.changes.size());
        for (const Change& change : act.changes) {
            std::optional<Content>& content = contents_[change.place];
            out << static_cast<std::int64_t>(change.place);
            if (!content)
                write(out, *(content = change.before));
            writeEdit(out, *content, change.after);
            content = change.after;
        }
    }
    return std::move(out.bytes);
}

std::optional<Record> Records::unpack(std::string_view bytes)
{
    In in(bytes);
    Kind kind{};
    in.choice(kind, Kind::inner);
    Record record;
    switch (kind) {
    case Kind::opening:
        read(in, record.emplace<Opening>());
        break;
    case Kind::place:
        read(in, record.emplace<Place>());
        if (contents_.size() >= mostPlaces)
            return std::nullopt;
        contents_.emplace_back();
        break;
    case Kind::begun:
        read(in, record.emplace<Begun>().act);
        break;
    case Kind::inner:
        in.into(record.emplace<Inner>().dialog);
        break;
    case Kind::act:
        read(in, record.emplace<Act>());
        if (!readChanges(in, std::get<Act>(record), contents_))
            return std::nullopt;
        break;
    }
    return in.whole() ? std::optional(std::move(record)) : std::nullopt;
}

} // namespace zv::journal
