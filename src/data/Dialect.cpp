#include "data/Dialect.h"

#include "data/DataError.h"
#include "data/Tokens.h"

#include <algorithm>
#include <vector>

namespace zv {
namespace {

using Kind = Token::Kind;

/// One pass over the tokens that collects replacements of single units.
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
    /// Stack entry of the parser: the terms joined by `+` at one depth of parentheses.
    struct Sum {
        bool holdsText = false;
        bool isGroup = false; ///< A parenthesised term, and not the argument list of a function.
        std::vector<std::size_t> signs;
    };
    enum class Before { nothing, term, sign, point };

    StringView text(const Token& token) const { return statement_.substr(token.start, token.length); }

    void accept(const Token& token)
    {
        // Call or group: a function's parenthesis touches its name; behind a word such as SELECT it opens a
        // group.
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

    /// Ends the sum where a term follows a term: words such as FROM separate sums so.
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
    std::size_t end_ = 0; ///< End of the token before.
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

StringView folded(StringView statement, String& room)
{
    room = statement;
    Tokens tokens(statement);
    const Token first = tokens.next();
    const bool defines = sameName(statement.substr(first.start, first.length), u"create");
    std::size_t grown = 0;
    for (Token token = first; token.kind != Token::Kind::end; token = tokens.next()) {
        const StringView name = statement.substr(token.start, token.length);
        if (token.kind != Token::Kind::name || StringView(u"\"[`").find(name.front()) != StringView::npos)
            continue;
        const String to = defines && sameName(name, u"text") ? String(u"longtext") : lowerName(name);
        room.replace(token.start + grown, token.length, to);
        grown += to.size() - token.length;
    }
    return room;
}

StringView inDialect(StringView statement, const Dialect& dialect, String& room)
{
    // A query, or a change of rows, that joins nothing and is followed by nothing: most statements.
    const bool isPlain =
        !statement.empty() && StringView(u"SsIiUu").find(statement.front()) != StringView::npos;
    if (isPlain && statement.find(u'+') == StringView::npos && statement.find(u';') == StringView::npos)
        return statement;
    Rewriter rewriter(statement, dialect);
    rewriter.read();
    return rewriter.result(room);
}

} // namespace zv
