#pragma once

#include "runtime/Value.h"

#include <bitset>
#include <unordered_map>
#include <vector>

namespace zv::progress {

/// Name of a classmate that a text says.
struct Mention {
    Long pupil = 0; ///< The classmate.
    String said;    ///< The name as the text has it.
};

/// Name of a pupil, in its parts.
struct PupilName {
    Long pupil = 0;
    StringView given, surname1, surname2;
};

/// Recogniser of classmates' names in a pupil's texts, as they stand in one that was copied from another's.
/// Case and accents make no difference. A first name that is a word too (Rosa, Mar, Clara) counts where the
/// sentence uses it as a name; one that the pupil shares counts only with a surname that is not his; that of
/// a saint, a teacher, a relative, a street or somebody of another surname does not count.
class Classmates {
public:
    /// `section`: all pupils of a section.
    explicit Classmates(const std::vector<PupilName>& section);

    /// Names of others in a text of that pupil, each person once, in the text's order.
    std::vector<Mention> in(StringView text, Long pupil) const;

private:
    struct Person {
        Long pupil = 0;
        std::vector<String> given, surname1, surname2; ///< Plain words.
    };
    class Search;

    bool mayName(StringView text) const;

    std::vector<Person> people_;
    std::unordered_map<String, std::vector<std::size_t>> byWord_; ///< Who bears that word in his name.
    std::bitset<65536> hashes_; ///< Bloom filter of those words: few texts have any.
};

} // namespace zv::progress
