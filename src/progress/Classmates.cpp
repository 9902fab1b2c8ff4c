#include "progress/Classmates.h"

#include "progress/Words.h"

#include <algorithm>
#include <ranges>
#include <set>

namespace zv::progress {
namespace {

std::vector<String> plainWords(StringView text)
{
    std::vector<String> result;
    for (Word& word : wordsIn(text))
        result.push_back(std::move(word.plain));
    return result;
}

/// Particles of a name, which name nobody alone.
bool isParticle(StringView plain)
{
    static constexpr StringView particles[] = {u"de",  u"del", u"la", u"las", u"los", u"el",
                                               u"san", u"da",  u"do", u"dos", u"i",   u"y"};
    return plain.size() < 2 || std::ranges::find(particles, plain) != std::end(particles);
}

std::size_t withLetter(std::size_t hash, char16_t letter) { return hash * 31 + letter; }

std::size_t placeOf(std::size_t hash) { return (hash ^ hash >> 16) & 0xFFFF; }

std::size_t hashOf(StringView plain)
{
    std::size_t hash = 0;
    for (const char16_t letter : plain)
        hash = withLetter(hash, letter);
    return placeOf(hash);
}

} // namespace

Classmates::Classmates(const std::vector<PupilName>& section)
{
    for (const PupilName& name : section) {
        Person person{name.pupil, plainWords(name.given), plainWords(name.surname1),
                      plainWords(name.surname2)};
        std::set<StringView> starts;
        for (const String& word : person.given)
            if (!isParticle(word))
                starts.insert(word);
        if (!person.given.empty())
            starts.insert(person.given.front());
        if (!person.surname1.empty() && !person.surname2.empty())
            starts.insert(person.surname1.front());
        for (const StringView word : starts) {
            byWord_[String(word)].push_back(people_.size());
            hashes_.set(hashOf(word));
            if (word == u"maria")
                hashes_.set(hashOf(u"ma")); // Mª
        }
        people_.push_back(std::move(person));
    }
}

bool Classmates::mayName(StringView text) const
{
    std::size_t hash = 0;
    for (const char16_t unit : text) {
        const char16_t letter = plainLetter(unit);
        if (letter > skipped) {
            hash = withLetter(hash, letter);
        } else if (letter == 0 && hash != 0) {
            if (hashes_.test(placeOf(hash)))
                return true;
            hash = 0;
        }
    }
    return hash != 0 && hashes_.test(placeOf(hash));
}

/// Search of one text, from its first word to its last.
class Classmates::Search {
public:
    Search(const Classmates& all, StringView text, Long pupil)
        : all_(all), text_(text), words_(wordsIn(text)), pupil_(pupil)
    {}

    std::vector<Mention> run()
    {
        std::vector<Mention> found;
        for (std::size_t at = 0; at < words_.size();) {
            const Match own = ownAt(at);
            const Match other = otherAt(at);
            const bool names = other.length > own.length && isMeant(at, other);
            if (names && std::ranges::find(found, other.person->pupil, &Mention::pupil) == found.end()) {
                const std::size_t begin = words_[at].begin;
                const std::size_t end = words_[at + other.length - 1].end;
                found.push_back({other.person->pupil, String(text_.substr(begin, end - begin))});
            }
            at += std::max<std::size_t>({1, own.length, names ? other.length : 0});
        }
        return found;
    }

private:
    struct Match {
        const Person* person = nullptr;
        std::size_t length = 0;
        bool surnamed = false;
    };

    bool isAt(std::size_t at, const std::vector<String>& sought) const
    {
        if (sought.empty() || at + sought.size() > words_.size())
            return false;
        for (std::size_t place = 0; place < sought.size(); ++place)
            if (words_[at + place].plain != sought[place] || (place > 0 && !words_[at + place].joined))
                return false;
        return true;
    }
    bool follows(std::size_t at) const { return at < words_.size() && words_[at].joined; }

    /// How much of a person's name stands there: the whole first name or one of its words, with surnames
    /// behind; or both surnames.
    Match matchAt(std::size_t at, const Person& person) const
    {
        Match match{&person, 0, false};
        if (isAt(at, person.given))
            match.length = person.given.size();
        else if (!isParticle(words_[at].plain) &&
                 std::ranges::find(person.given, words_[at].plain) != person.given.end())
            match.length = 1;
        const std::size_t behind = at + match.length;
        if ((match.length == 0 || follows(behind)) && isAt(behind, person.surname1)) {
            const std::size_t second = behind + person.surname1.size();
            const bool both = follows(second) && isAt(second, person.surname2);
            if (match.length != 0 || both) {
                match.surnamed = true;
                match.length += person.surname1.size() + (both ? person.surname2.size() : 0);
            }
        }
        return match;
    }
    Match ownAt(std::size_t at) const
    {
        const auto own = std::ranges::find(all_.people_, pupil_, &Person::pupil);
        return own == all_.people_.end() ? Match{} : matchAt(at, *own);
    }
    Match otherAt(std::size_t at) const
    {
        Match best;
        const auto bearers = all_.byWord_.find(words_[at].plain);
        if (bearers != all_.byWord_.end())
            for (const std::size_t each : bearers->second)
                if (const Person& person = all_.people_[each]; person.pupil != pupil_)
                    if (const Match match = matchAt(at, person); match.length > best.length)
                        best = match;
        return best;
    }

    Role roleBefore(std::size_t at) const
    {
        return words_[at].joined ? roleOf(words_[at - 1].plain) : Role::none;
    }

    /// Whether the words are used as the name of that person.
    bool isMeant(std::size_t at, const Match& match) const
    {
        if (match.surnamed)
            return true;
        if (roleBefore(at) == Role::title || isOfOther(at + match.length, *match.person))
            return false;
        const Use use = useOf(words_[at].plain);
        if (use == Use::name || match.length > 1)
            return true;
        return words_[at].first ? beginsAsName(at, use) : standsAsName(at, use);
    }

    /// Whether another surname than that person's goes on there: "Antonio Machado", "Miguel de Cervantes".
    bool isOfOther(std::size_t behind, const Person& person) const
    {
        if (!follows(behind))
            return false;
        const StringView next = words_[behind].plain;
        if (next == u"de" || next == u"del")
            return follows(behind + 1) && words_[behind + 1].capital;
        const auto isPart = [&](const std::vector<String>& part) {
            return std::ranges::find(part, next) != part.end();
        };
        return words_[behind].capital && roleOf(next) == Role::none && !isPart(person.given) &&
               !isPart(person.surname1) && !isPart(person.surname2);
    }

    /// A word at the start of a sentence has its capital letter in any case.
    bool beginsAsName(std::size_t at, Use use) const
    {
        const bool goesOn = follows(at + 1);
        const StringView next = goesOn ? StringView(words_[at + 1].plain) : StringView();
        const bool acts = goesOn && roleOf(next) == Role::verb;
        if (!words_[at].capital || use == Use::adjective)
            return acts;
        if (use == Use::place)
            return acts && next != u"es" && next != u"tiene";
        static constexpr StringView goOnNouns[] = {u"y", u"e", u"de", u"del", u"en", u"para", u"con", u"a"};
        return std::ranges::find(goOnNouns, next) == std::end(goOnNouns);
    }

    bool standsAsName(std::size_t at, Use use) const
    {
        const Role before = roleBefore(at);
        if (!words_[at].capital || before == Role::article)
            return false;
        if (use != Use::time && use != Use::place)
            return true;
        if (before == Role::preposition)
            return false;
        if (at < 2 || words_[at - 1].plain != u"de")
            return true;
        const StringView what = words_[at - 2].plain;
        const bool number = what.find_first_not_of(u"0123456789") == StringView::npos;
        const Role role = roleOf(what);
        return !number && role != Role::date && role != Role::title;
    }

    const Classmates& all_;
    StringView text_;
    std::vector<Word> words_;
    Long pupil_;
};

std::vector<Mention> Classmates::in(StringView text, Long pupil) const
{
    return mayName(text) ? Search(*this, text, pupil).run() : std::vector<Mention>();
}

} // namespace zv::progress
