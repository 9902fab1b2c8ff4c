#pragma once

#include "runtime/String.h"

#include <vector>

namespace zv::progress {

/// Word of a text, with what tells how it is used.
struct Word {
    std::size_t begin = 0; ///< In the text.
    std::size_t end = 0;
    String plain = {};    ///< Small letters without accents.
    bool capital = false; ///< Begins with a capital letter, and small ones follow.
    bool first = false;   ///< Begins a sentence.
    bool joined = false;  ///< Only blanks, an apostrophe or a hyphen stand between it and the word before.
};

/// Base letter in small: 0 for what ends a word; `skipped` for an accent of its own, which belongs to it.
char16_t plainLetter(char16_t unit);
inline constexpr char16_t skipped = 1;

/// The words of a text, in order. "Mª" reads as "María".
std::vector<Word> wordsIn(StringView text);

/// How a word is used that is a first name too.
enum class Use {
    name, ///< As nothing else.
    noun,
    adjective, ///< Begins sentences without an article: "Clara mejoría".
    time,      ///< Month or day.
    place
};
Use useOf(StringView plain);

enum class Role {
    none,
    article,     ///< What stands before a noun and not before a name.
    verb,        ///< What goes on after a name: "ha", "muestra".
    title,       ///< Before the name of somebody or something else: "San", "profesor", "calle".
    preposition, ///< Before a place or a time.
    date         ///< "mes", "principios": the time goes on with "de".
};
Role roleOf(StringView plain);

} // namespace zv::progress
