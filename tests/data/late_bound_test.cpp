#include "data/LateBound.h"
#include "data/NumberOf.h"
#include "data/sqlite/SqliteEngine.h"

namespace zv {
namespace {

using Answers = std::map<String, std::function<Value(const Arguments&)>>;

/// An object of a host that answers some names.
class HostObject final : public Object {
public:
    explicit HostObject(Answers answers) : answers_(std::move(answers)) {}
    StringView TypeName() const override { return u"DelAnfitrion"; }
    Value invoke(StringView member, Access, Arguments& arguments) override
    {
        const auto found = answers_.find(String(member));
        return found != answers_.end() ? found->second(arguments)
                                       : (fail(failure::memberMissing, member), Value());
    }

private:
    Answers answers_;
};

ObjectPtr host(Answers answers) { return std::make_shared<HostObject>(std::move(answers)); }
auto always(Value value)
{
    return [value](const Arguments&) { return value; };
}
RecordsetPtr rowsOf(const Value& given)
{
    return connectionOf(host({{u"Execute", always(given)}}))->Execute(u"x");
}
/// The number with which the first field of such rows fails.
std::int32_t fieldNumber(Answers rows)
{
    return numberOf([&] { rowsOf(host(rows))->Fields(u"A"); });
}

TEST(LateBound, a_host_object_is_asked_for_nothing_but_what_a_statement_needs)
{
    const ConnectionPtr own = sqliteEngine()->temporary(u"", Database::centro);
    EXPECT_EQ(connectionOf(own), own);
    EXPECT_EQ(connectionOf(nullptr), nullptr);
    Long left = 2;
    const ObjectPtr count = host({{u"Count", always(Long{1})}});
    const auto rows = host({{u"EOF", [&](const Arguments&) { return Value(left == 0); }},
                            {u"MoveNext", [&](const Arguments&) { return Value(--left); }},
                            {u"Fields", [&](const Arguments& a) { return a.empty() ? Value(count) : a[0]; }},
                            {u"Close", always({})}});
    const ObjectPtr object = host({{u"Execute", [&](const Arguments& a) {
                                        EXPECT_EQ(String() + a.at(0) + a.at(1) + a.at(2), u"Select-1");
                                        EXPECT_TRUE(a[1].isEmpty());
                                        return Value(rows);
                                    }}});
    EXPECT_EQ(hostObjectOf(connectionOf(object)), object);
    const RecordsetPtr read = connectionOf(object)->Execute(u"Select");
    EXPECT_EQ(read->State(), 1) << "rows that do not tell are open";
    EXPECT_EQ(CStr(read->Fields(u"Nombre")), u"Nombre");
    EXPECT_EQ(CLng(read->row().at(0)), 0);
    EXPECT_EQ(numberOf([&] { read->MoveFirst(); }), 0) << "they stand there";
    read->MoveNext();
    EXPECT_FALSE(read->Eof());
    EXPECT_EQ(numberOf([&] { read->MoveFirst(); }), failure::memberMissing);
    read->Close();
    EXPECT_EQ(numberOf([&] { read->Close(); }), failure::closedRecordset);
}

TEST(LateBound, nonsense_is_a_failure_with_a_number_and_a_failure_stays_what_it_was)
{
    for (const Value& nothing : {Value(), Value(Null{}), Value(Long{3}), Value(u"x"), Value(ObjectPtr())}) {
        EXPECT_EQ(rowsOf(nothing)->State(), 0);
        EXPECT_EQ(numberOf([&] { rowsOf(nothing)->Eof(); }), failure::closedRecordset);
    }
    EXPECT_EQ(numberOf([&] { rowsOf(host({{u"EOF", always(u"quizá")}}))->Eof(); }), failure::typeMismatch);
    EXPECT_EQ(fieldNumber({}), failure::memberMissing);
    EXPECT_EQ(fieldNumber({{u"Fields", always(host({}))}}), failure::memberMissing);
    EXPECT_EQ(fieldNumber({{u"Fields", always(ObjectPtr())}}), failure::noObject);
    EXPECT_EQ(numberOf([] { connectionOf(host({}))->Execute(u"x"); }), failure::memberMissing);
    const auto taken = [](const Arguments&) -> Value { throw RuntimeError(failure::keyExists, u"repetida"); };
    EXPECT_EQ(numberOf(
                  [&] {
                      connectionOf(host({{u"Execute", taken}}))->Execute(u"x");
                  },
                  u"repetida"),
              failure::keyExists);
}

} // namespace
} // namespace zv
