#pragma once

#include "runtime/String.h"

namespace zv {

/// Token of a statement. A name may stand in quotes of its own, a text stands in single ones.
struct Token {
    enum class Kind { name, number, text, symbol, end };

    Kind kind = Kind::end;
    std::size_t start = 0;
    std::size_t length = 0;
};

/// Tokenizer of a statement; blanks and comments are skipped.
class Tokens {
public:
    explicit Tokens(StringView text) : text_(text) {}
    /// The next token; one of kind `end` behind the last.
    Token next();

private:
    char16_t at(std::size_t place) const { return place < text_.size() ? text_[place] : u'\0'; }
    void passTo(StringView end, std::size_t from);
    void skip();
    Token::Kind take(char16_t first);
    void passQuoted(char16_t quote);
    void number();

    StringView text_;
    std::size_t place_ = 0;
};

/// A name without the quotes of its own: "x", [x] or `x`.
String unquotedName(StringView name);
/// A name as SQL has one of any letters: "x".
String quotedName(StringView name);

} // namespace zv
