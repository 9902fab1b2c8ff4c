#include "data/Dialect.h"

#include "data/DataError.h"

#include <algorithm>
#include <vector>

namespace zv {
namespace {

enum class Kind { name, number, text, symbol, end };

struct Token {
    Kind kind = Kind::end;
    std::size_t start = 0;
    std::size_t length = 0;
};

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool isNameUnit(char16_t unit)
{
    return unit >= 0x80 || isDigit(unit) || (unit >= u'a' && unit <= u'z') ||
           (unit >= u'A' && unit <= u'Z') || StringView(u"_$@#").find(unit) != StringView::npos;
}
bool isBlank(char16_t unit) { return StringView(u" \t\r\n\f").find(unit) != StringView::npos; }

/// Parts a statement; blanks and comments are passed over.
class Tokens {
public:
    explicit Tokens(StringView text) : text_(text) {}

    Token next()
    {
        skip();
        const std::size_t start = place_;
        const Kind kind = start < text_.size() ? take(text_[start]) : Kind::end;
        return {kind, start, place_ - start};
    }

private:
    char16_t at(std::size_t place) const { return place < text_.size() ? text_[place] : u'\0'; }

    void passTo(StringView end, std::size_t from)
    {
        const std::size_t found = text_.find(end, from);
        place_ = found == StringView::npos ? text_.size() : found + end.size();
    }

    void skip()
    {
        for (;;) {
            if (place_ < text_.size() && isBlank(text_[place_]))
                ++place_;
            else if (at(place_) == u'-' && at(place_ + 1) == u'-')
                passTo(u"\n", place_);
            else if (at(place_) == u'/' && at(place_ + 1) == u'*')
                passTo(u"*/", place_ + 2);
            else
                return;
        }
    }

    Kind take(char16_t first)
    {
        if (first == u'\'' || first == u'"' || first == u'`') {
            quoted(first);
            return first == u'\'' ? Kind::text : Kind::name;
        }
        if (first == u'[') {
            passTo(u"]", place_);
            return Kind::name;
        }
        if (isDigit(first) || (first == u'.' && isDigit(at(place_ + 1)))) {
            number();
            return Kind::number;
        }
        if (!isNameUnit(first)) {
            ++place_;
            return Kind::symbol;
        }
        while (isNameUnit(at(place_)))
            ++place_;
        return Kind::name;
    }

    /// A doubled quote stands for itself.
    void quoted(char16_t quote)
    {
        do {
            passTo(StringView(&quote, 1), place_ + 1);
        } while (at(place_) == quote);
    }

    void number()
    {
        while (isNameUnit(at(place_)) || at(place_) == u'.') {
            const bool exponent = (at(place_) | 0x20) == u'e';
            ++place_;
            if (exponent && (at(place_) == u'+' || at(place_) == u'-'))
                ++place_;
        }
    }

    StringView text_;
    std::size_t place_ = 0;
};

/// Finds the places where a dialect differs: single units that give way to something else.
class Rewriter {
public:
    Rewriter(StringView statement, const Dialect& dialect) : statement_(statement), dialect_(dialect) {}

    void read()
    {
        Tokens tokens(statement_);
        Token token = tokens.next();
        if (!dialect_.deleteWithStar && token.kind == Kind::name && sameName(text(token), u"delete")) {
            token = tokens.next();
            if (text(token) == u"*") {
                edits_.push_back({token.start, u""});
                token = tokens.next();
            }
        }
        for (; token.kind != Kind::end; token = tokens.next()) {
            if (text(token) == u";") {
                refuseSecond(statement_.substr(token.start), statement_);
                break;
            }
            accept(token);
        }
        endSum();
    }

    StringView result(String& room)
    {
        if (edits_.empty())
            return statement_;
        std::ranges::sort(edits_, {}, &Edit::place);
        room.clear();
        std::size_t done = 0;
        for (const Edit& edit : edits_) {
            room += statement_.substr(done, edit.place - done);
            room += edit.by;
            done = edit.place + 1;
        }
        return room += statement_.substr(done);
    }

private:
    struct Edit {
        std::size_t place;
        StringView by;
    };
    /// Terms joined by `+` at one depth of parentheses.
    struct Sum {
        bool holdsText = false;
        bool isGroup = false; ///< Stands in parentheses as a term, not as the arguments of a function.
        std::vector<std::size_t> signs;
    };
    enum class Before { nothing, term, sign, point };

    StringView text(const Token& token) const { return statement_.substr(token.start, token.length); }

    void accept(const Token& token)
    {
        // A function's parenthesis touches its name; behind a word such as SELECT it opens a group.
        const bool touches = token.start == end_;
        end_ = token.start + token.length;
        if (token.kind != Kind::symbol) {
            startTerm();
            sums_.back().holdsText |= token.kind == Kind::text;
            before_ = Before::term;
            return;
        }
        switch (text(token).front()) {
        case u'+':
            if (before_ == Before::term) {
                sums_.back().signs.push_back(token.start);
                before_ = Before::sign;
            }
            return;
        case u'.':
            before_ = Before::point;
            return;
        case u'(':
            return open(before_ != Before::term || !touches);
        case u')':
            return close();
        default:
            endSum();
            before_ = Before::nothing;
        }
    }

    /// A term that stands behind no sign begins a sum of its own: words such as FROM part sums so.
    void startTerm()
    {
        if (before_ != Before::sign && before_ != Before::point)
            endSum();
    }

    void open(bool isGroup)
    {
        if (isGroup)
            startTerm();
        sums_.emplace_back();
        sums_.back().isGroup = isGroup;
        before_ = Before::nothing;
    }

    void close()
    {
        if (sums_.size() > 1) {
            const bool text = sums_.back().isGroup && sums_.back().holdsText;
            endSum();
            sums_.pop_back();
            sums_.back().holdsText |= text;
        }
        before_ = Before::term;
    }

    void endSum()
    {
        Sum& sum = sums_.back();
        if (sum.holdsText && dialect_.joinTexts != u"+") {
            for (const std::size_t sign : sum.signs)
                edits_.push_back({sign, dialect_.joinTexts});
        }
        sum.signs.clear();
        sum.holdsText = false;
    }

    StringView statement_;
    const Dialect& dialect_;
    std::vector<Edit> edits_;
    std::vector<Sum> sums_ = std::vector<Sum>(1);
    Before before_ = Before::nothing;
    std::size_t end_ = 0; ///< Of the token before.
};

} // namespace

void refuseSecond(StringView rest, StringView statement)
{
    Tokens tokens(rest);
    for (Token token = tokens.next(); token.kind != Kind::end; token = tokens.next()) {
        if (rest[token.start] != u';')
            throw DataError(failure::badStatement, "", u"solo se admite una instrucción cada vez", statement);
    }
}

bool isQuery(StringView statement)
{
    const Token first = Tokens(statement).next();
    return sameName(statement.substr(first.start, first.length), u"select");
}

StringView inDialect(StringView statement, const Dialect& dialect, String& room)
{
    Rewriter rewriter(statement, dialect);
    rewriter.read();
    return rewriter.result(room);
}

} // namespace zv
