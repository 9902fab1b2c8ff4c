#include "data/Cursor.h"

#include <algorithm>
#include <concepts>
#include <cstring>
#include <utility>

namespace zv {
namespace {

class Rows final : public Recordset {
public:
    using Again = std::function<std::unique_ptr<Cursor>(StringView)>;

    Rows(String statement, std::unique_ptr<Cursor> cursor, Again again)
        : statement_(std::move(statement)), again_(std::move(again)), cursor_(std::move(cursor))
    {}

    bool Eof() override { return opened().row() == nullptr; }
    void MoveNext() override
    {
        present();
        cursor_->advance();
    }
    void MoveFirst() override
    {
        if (opened().row() && cursor_->isOnFirst())
            return;
        if (!cursor_->onlyReads())
            refuse(failure::otherData, u"una instrucción que escribe no se repite");
        cursor_ = again_(statement_);
        asked_.clear();
    }
    Value Fields(StringView name) override
    {
        const std::size_t place = placeOf(name); // First: an unknown name is told where there is no row too.
        return value(present()[place]);
    }
    std::vector<Value> row() override
    {
        std::vector<Value> result;
        for (const Cursor::Field& field : present())
            result.push_back(value(field));
        return result;
    }
    Long State() const override { return cursor_ ? 1 : 0; }
    void Close() override
    {
        opened();
        cursor_.reset();
        again_ = nullptr;
    }

private:
    /// Of equal names the first counts. Dialogs ask the same of each row in much the same order: what came
    /// next in the row before is tried first.
    std::size_t placeOf(StringView name)
    {
        const std::vector<String>& names = opened().names();
        for (std::size_t tried = 0; tried < asked_.size(); ++tried) {
            const auto& [asked, place] = asked_[turn_++ % asked_.size()];
            if (isExactly(asked, name))
                return place;
        }
        const auto found =
            std::ranges::find_if(names, [&](const String& each) { return sameName(each, name); });
        if (found == names.end())
            refuse(failure::unknownField, name);
        const auto place = static_cast<std::size_t>(found - names.begin());
        if (asked_.size() < names.size()) {
            asked_.emplace_back(name, place);
            turn_ = 0;
        }
        return place;
    }
    /// As units, not letter by letter: it is asked for every field.
    static bool isExactly(StringView one, StringView other)
    {
        return one.size() == other.size() &&
               std::memcmp(one.data(), other.data(), one.size() * sizeof(char16_t)) == 0;
    }
    Cursor& opened() const
    {
        if (!cursor_)
            refuse(failure::closedRecordset);
        return *cursor_;
    }
    const Cursor::Row& present() const
    {
        const Cursor::Row* row = opened().row();
        if (!row)
            refuse(failure::noRow);
        return *row;
    }
    Value value(const Cursor::Field& field) const
    {
        if (std::holds_alternative<Cursor::Bytes>(field))
            refuse(failure::otherData, u"el campo contiene bytes y no se puede leer");
        return Cursor::valueOf(field);
    }
    [[noreturn]] void refuse(std::int32_t number, StringView detail = {}) const
    {
        throw DataError(number, "", detail, statement_);
    }

    String statement_;
    Again again_;
    std::unique_ptr<Cursor> cursor_;
    std::vector<std::pair<String, std::size_t>> asked_;
    std::size_t turn_ = 0; ///< Of what was asked, counted on and on.
};

String hexadecimal(char16_t unit)
{
    constexpr StringView digits = u"0123456789ABCDEF";
    String result = u"U+";
    for (int shift = 12; shift >= 0; shift -= 4)
        result += digits[static_cast<std::size_t>(unit >> shift) & 0xF];
    return result;
}

bool isSurrogate(char16_t unit, char16_t first) { return (unit & 0xFC00) == first; }

} // namespace

Value Cursor::valueOf(const Field& field)
{
    return std::visit(
        []<class Data>(const Data& data) -> Value {
            if constexpr (std::same_as<Data, Bytes>)
                return {};
            else
                return data;
        },
        field);
}

void Cursor::begin()
{
    fetch();
    if (!onlyReads())
        takeAll();
    if (failure_)
        throw DataError(*failure_);
    fetch();
}

void Cursor::fetch()
{
    if (over_)
        return;
    try {
        Row row = std::exchange(spare_, {});
        if (read(row)) {
            rows_.push_back(std::move(row));
            return;
        }
    } catch (const DataError& failure) {
        failure_ = failure;
    }
    over_ = true;
    finish();
}

void Cursor::takeAll()
{
    while (!over_)
        fetch();
}

void Cursor::advance()
{
    spare_ = std::move(rows_.front());
    rows_.pop_front();
    ++passed_;
    if (rows_.size() < 2)
        fetch();
    if (rows_.empty() && failure_)
        throw DataError(*failure_);
}

namespace {

/// Place of the first unit from there on that no database takes; the text's length if there is none.
std::size_t unstorable(StringView text, std::size_t place)
{
    for (; place < text.size(); ++place) {
        const char16_t unit = text[place];
        if (isSurrogate(unit, 0xD800) && place + 1 < text.size() && isSurrogate(text[place + 1], 0xDC00))
            ++place;
        else if (unit == 0 || unit >= 0xFFFE || (unit & 0xF800) == 0xD800)
            break;
    }
    return std::min(place, text.size());
}

} // namespace

RecordsetPtr recordsetOf(String statement, std::unique_ptr<Cursor> cursor,
                         std::function<std::unique_ptr<Cursor>(StringView)> again)
{
    return std::make_shared<Rows>(std::move(statement), std::move(cursor), std::move(again));
}

Cursor::Field wholeNumber(std::int64_t number)
{
    if (number >= INT32_MIN && number <= INT32_MAX)
        return static_cast<Long>(number);
    return static_cast<Double>(number);
}

void refuseUnstorable(StringView statement)
{
    if (const std::size_t place = unstorable(statement, 0); place < statement.size())
        throw DataError(failure::otherData, "",
                        u"el carácter " + hexadecimal(statement[place]) +
                            u" no se puede guardar: quítelo del texto",
                        statement);
}

String storable(String text)
{
    for (std::size_t place = 0; (place = unstorable(text, place)) < text.size();)
        text[place] = u'\uFFFD';
    return text;
}

} // namespace zv
