#include "data/LateBound.h"
#include "data/NumberOf.h"
#include "data/sqlite/SqliteEngine.h"
#include "runtime/PropertyBag.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

/// An object of a host that answers some names, and remembers what it was asked.
class HostObject final : public Object {
public:
    using Answer = std::function<Value(const Arguments&)>;
    explicit HostObject(std::map<String, Answer> answers) : answers_(std::move(answers)) {}
    StringView TypeName() const override { return u"DelAnfitrion"; }
    Value invoke(StringView member, Access, Arguments& arguments) override
    {
        const auto found = answers_.find(String(member));
        if (found == answers_.end())
            fail(failure::memberMissing, member);
        asked.push_back(toUtf8(member) + std::to_string(arguments.size()));
        return found->second(arguments);
    }
    std::vector<std::string> asked;

private:
    std::map<String, Answer> answers_;
};

std::shared_ptr<HostObject> host(std::map<String, HostObject::Answer> answers)
{
    return std::make_shared<HostObject>(std::move(answers));
}

HostObject::Answer always(Value value)
{
    return [value](const Arguments&) { return value; };
}

TEST(LateBound, a_host_object_is_asked_for_nothing_but_what_a_statement_needs)
{
    const ConnectionPtr own = sqliteEngine()->temporary(u"", Database::centro);
    EXPECT_EQ(connectionOf(own), own);
    EXPECT_EQ(connectionOf(nullptr), nullptr);
    const auto field = std::make_shared<PropertyBag>(u"Campo");
    field->add(u"Value", Integer{7});
    const auto both = host({{u"Count", always(Long{2})}});
    Long left = 2;
    const auto rows = host({{u"EOF", [&](const Arguments&) { return Value(left == 0); }},
                            {u"MoveNext", [&](const Arguments&) { return Value(--left); }},
                            {u"Fields",
                             [&](const Arguments& a) {
                                 return a.empty()                                       ? Value(both)
                                        : CStr(a[0]) == u"Codigo" || CStr(a[0]) == u"0" ? Value(field)
                                                                                        : Value(u"Ana");
                             }},
                            {u"Close", always({})}});
    Arguments given;
    const auto object = host({{u"Execute", [&](const Arguments& a) {
                                   given = a;
                                   return Value(rows);
                               }}});
    const ConnectionPtr connection = connectionOf(object);
    EXPECT_TRUE(object->asked.empty());
    EXPECT_EQ(hostObjectOf(connection), object);
    const RecordsetPtr read = connection->Execute(u"Select * from Pais");
    ASSERT_EQ(given.size(), 3U);
    EXPECT_EQ(CStr(given[0]), u"Select * from Pais");
    EXPECT_TRUE(given[1].isEmpty());
    EXPECT_EQ(CLng(given[2]), -1);
    EXPECT_EQ(read->State(), 1) << "rows that do not tell are open";
    EXPECT_EQ(CLng(read->Fields(u"Codigo")), 7);
    EXPECT_EQ(CStr(read->Fields(u"Nombre")), u"Ana");
    EXPECT_EQ(CStr(read->row().at(1)), u"Ana");
    EXPECT_EQ(numberOf([&] { read->MoveFirst(); }), 0) << "they stand there";
    for (; !read->Eof(); read->MoveNext()) {
    }
    EXPECT_EQ(left, 0);
    EXPECT_EQ(numberOf([&] { read->MoveFirst(); }), failure::memberMissing);
    read->Close();
    EXPECT_EQ(rows->asked.back(), "Close0");
    EXPECT_EQ(read->State(), 0);
    EXPECT_EQ(numberOf([&] { read->Eof(); }), failure::closedRecordset);
    EXPECT_EQ(numberOf([&] { read->Close(); }), failure::closedRecordset);
}

TEST(LateBound, nonsense_is_a_failure_with_a_number_and_a_failure_stays_what_it_was)
{
    for (const Value& nothing : {Value(), Value(Null{}), Value(Long{3}), Value(u"x"), Value(ObjectPtr())}) {
        const RecordsetPtr rows =
            connectionOf(host({{u"Execute", always(nothing)}}))->Execute(u"Delete * From Pais");
        EXPECT_EQ(rows->State(), 0);
        EXPECT_EQ(numberOf([&] { rows->Fields(u"A"); }), failure::closedRecordset);
    }
    const auto rowsOf = [](std::map<String, HostObject::Answer> answers) {
        return connectionOf(host({{u"Execute", always(host(std::move(answers)))}}))->Execute(u"Select 1");
    };
    EXPECT_EQ(numberOf([&] { rowsOf({})->Eof(); }), failure::memberMissing);
    EXPECT_EQ(numberOf([&] { rowsOf({{u"EOF", always(u"quizá")}})->Eof(); }), failure::typeMismatch);
    EXPECT_EQ(numberOf([&] {
                  rowsOf({{u"Fields", always(host({}))}})->Fields(u"A");
              }),
              failure::memberMissing);
    EXPECT_EQ(numberOf([&] { rowsOf({{u"Fields", always(ObjectPtr())}})->Fields(u"A"); }), failure::noObject);
    EXPECT_EQ(numberOf([&] { connectionOf(host({}))->Execute(u"Select 1"); }), failure::memberMissing);
    try {
        connectionOf(host({{u"Execute",
                            [](const Arguments&) -> Value {
                                throw RuntimeError(failure::keyExists, u"clave repetida");
                            }}}))
            ->Execute(u"Insert into Pais values (1)");
        ADD_FAILURE() << "the host's failure was lost";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), failure::keyExists);
        EXPECT_EQ(error.description(), u"clave repetida");
    }
}

} // namespace
} // namespace zv
