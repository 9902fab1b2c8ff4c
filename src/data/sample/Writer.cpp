#include "data/sample/Writer.h"

#include "data/Statement.h"

namespace zv::sample {

void Writer::row(StringView table, const std::vector<Value>& values)
{
    tables_.emplace(table);
    String list;
    for (const Value& value : values)
        list += (list.empty() ? u"" : u",") + literal(value);
    connection_.executeNative(statement(u"INSERT INTO {} VALUES ({})", {table, list}));
}

void Writer::write(StringView table, StringView text, bool withNumber)
{
    Long number = 0;
    for (const StringView each : split(text, u'|')) {
        std::vector<Value> values;
        if (withNumber)
            values.emplace_back(++number);
        for (const StringView field : split(each, u';'))
            field.empty() ? values.emplace_back(Null())
                          : values.emplace_back(field == u"''" ? StringView() : field);
        row(table, values);
    }
}

std::vector<StringView> split(StringView text, char16_t sign)
{
    std::vector<StringView> result;
    for (;;) {
        const std::size_t end = text.find(sign);
        result.push_back(text.substr(0, end));
        if (end == StringView::npos)
            return result;
        text.remove_prefix(end + 1);
    }
}

int Dice::below(int limit)
{
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return static_cast<int>(state_ % static_cast<std::uint32_t>(limit));
}

} // namespace zv::sample
