#include "data/sqlite/Parameters.h"

#include "data/Tokens.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::sqlite {
namespace {

/// Statements with more values are lists that hardly ever repeat: not worth the cache.
constexpr std::size_t mostValues = 64;
/// Safe width of a whole number: so many digits mean the same in every context.
constexpr std::size_t mostDigits = 18;

bool isOneOf(StringView word, std::initializer_list<StringView> words)
{
    return std::ranges::any_of(words, [&](StringView each) {
        // Most differ in their length or their first letter, which costs no call to see.
        return word.size() == each.size() && (word.front() | 0x20) == each.front() && sameName(word, each);
    });
}

class Taker {
public:
    explicit Taker(StringView statement) : statement_(statement) {}

    std::optional<Parameters> take()
    {
        Tokens tokens(statement_);
        Token token = tokens.next();
        if (!isOneOf(text(token), {u"select", u"insert", u"update", u"delete"}))
            return std::nullopt;
        for (; token.kind != Token::Kind::end; token = tokens.next()) {
            if (isForeign(token) || result_.values.size() > mostValues)
                return std::nullopt;
            accept(token);
            before_ = text(token);
        }
        result_.text += statement_.substr(done_);
        return std::move(result_);
    }

private:
    StringView text(const Token& token) const { return statement_.substr(token.start, token.length); }

    /// Parameters of the statement's own, which would be counted with ours.
    bool isForeign(const Token& token) const
    {
        return token.kind != Token::Kind::text &&
               StringView(u"?:@$").find(text(token).front()) != StringView::npos;
    }

    void accept(const Token& token)
    {
        switch (token.kind) {
        case Token::Kind::name:
            if (isOneOf(text(token), {u"where", u"values", u"set"}))
                places_.back() = true;
            else if (isOneOf(text(token), {u"select", u"group", u"order", u"having", u"limit", u"union",
                                           u"except", u"intersect", u"returning", u"on"}))
                places_.back() = false;
            break;
        case Token::Kind::symbol:
            if (text(token) == u"(")
                places_.push_back(places_.back());
            else if (text(token) == u")" && places_.size() > 1)
                places_.pop_back();
            break;
        case Token::Kind::number:
        case Token::Kind::text:
            if (places_.back() && standsAlone())
                takeOut(token);
            break;
        case Token::Kind::end:
            break;
        }
    }

    /// Whether the value is a whole operand: not one behind a sign, not x'00', not a pattern of LIKE.
    bool standsAlone() const
    {
        return before_.size() == 1 && StringView(u"=<>,(").find(before_[0]) != StringView::npos;
    }

    void takeOut(const Token& token)
    {
        const StringView word = text(token);
        if (token.kind == Token::Kind::text) {
            if (word.size() < 2 || word.back() != u'\'')
                return;
            result_.values.emplace_back(toUtf8(Replace(word.substr(1, word.size() - 2), u"''", u"'")));
        } else {
            if (word.size() > mostDigits || word.find_first_not_of(u"0123456789") != StringView::npos)
                return;
            std::int64_t number = 0;
            for (const char16_t digit : word)
                number = number * 10 + (digit - u'0');
            result_.values.emplace_back(number);
        }
        result_.text += statement_.substr(done_, token.start - done_);
        result_.text += u'?';
        done_ = token.start + token.length;
    }

    StringView statement_;
    Parameters result_;
    std::size_t done_ = 0;               ///< Copied up to here.
    StringView before_;                  ///< The token before.
    std::vector<bool> places_ = {false}; ///< Stack: whether values are extracted, for each open parenthesis.
};

} // namespace

std::optional<Parameters> parametersOf(StringView statement) { return Taker(statement).take(); }

} // namespace zv::sqlite
