#include "runtime/CreateObject.h"
#include "runtime/PropertyBag.h"
#include "runtime/Single.h"

#include "data/NumberOf.h"

using namespace zv;

TEST(Failures, say_in_spanish_what_happened)
{
    const auto said = [](std::int32_t number, StringView detail) {
        try {
            fail(number, detail);
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), number);
            EXPECT_EQ(error.what(), toUtf8(error.description()));
            return error.description();
        }
    };
    EXPECT_EQ(said(failure::typeMismatch, {}), u"No coinciden los tipos");
    EXPECT_EQ(said(failure::overflow, {}), u"Desbordamiento");
    EXPECT_EQ(said(failure::memberMissing, u"Tabz"), u"El objeto no admite esta propiedad o método: Tabz");
    for (const auto number : {5, 9, 11, 53, 91, 94, 326, 340, 380, 381, 383, 429, 450, 457, 481})
        EXPECT_NE(said(number, {}), said(-1, {})) << number;
}

TEST(ResumeNextMode, leaves_a_failure_until_it_is_cleared)
{
    ResumeNext next;
    Long held = 7;
    EXPECT_FALSE(next([&] { held = CLng(u"siete"); }));
    EXPECT_EQ(held, 7);
    EXPECT_EQ(Err().Number, 13);
    EXPECT_EQ(Err().Description, u"No coinciden los tipos");
    EXPECT_TRUE(next([&] { held = 8; }));
    EXPECT_EQ(Err().Number, 13) << "a success must not clear it";
    EXPECT_FALSE(next([] { CInt(Long{40000}); }));
    EXPECT_EQ(Err().Number, 6) << "the last failure stands";
    Err().Clear();
    EXPECT_EQ(Err().Number, 0);
    EXPECT_EQ(Err().Description, u"");
    next([] { fail(5); });
    ResumeNext::leave();
    EXPECT_EQ(Err().Number, 0);
}

TEST(ResumeNextMode, nests)
{
    bool wentOn = false;
    const auto bare = [&] {
        fail(91);
        wentOn = true;
    };
    const auto guarded = [] {
        EXPECT_EQ(Err().Number, 91);
        ResumeNext inner;
        EXPECT_EQ(Err().Number, 0) << "entering clears it";
        inner([] { fail(94); });
    };
    ResumeNext next;
    EXPECT_FALSE(next(bare));
    EXPECT_FALSE(wentOn) << "a routine without a mode is abandoned at its failing statement";
    EXPECT_TRUE(next(guarded));
    EXPECT_EQ(Err().Number, 94) << "returning does not clear it";
}

TEST(ResumeNextMode, a_condition_that_fails_runs_the_branch)
{
    ResumeNext next;
    EXPECT_TRUE(next.condition([] { return CBool(Null{}); }));
    EXPECT_EQ(Err().Number, 94);
    EXPECT_TRUE(next.condition([] { return true; }));
    EXPECT_FALSE(next.condition([] { return false; }));
    EXPECT_EQ(Err().Number, 94);
    EXPECT_THROW(next([] { throw std::bad_alloc(); }), std::bad_alloc) << "only failures of the language";
}

TEST(Classes, the_host_wins_and_names_regard_no_case)
{
    const auto made = [](StringView name) {
        return [name] { return std::make_shared<PropertyBag>(String(name)); };
    };
    EXPECT_EQ(numberOf([] { CreateObject(u"Prueba.cUno"); }, u"Prueba.cUno"), 429);
    registerClass(u"prueba.cuno", made(u"del host"));
    registerBuiltInClass(u"Prueba.cUno", made(u"propio"));
    resetSingles();
    EXPECT_EQ(CreateObject(u"PRUEBA.CUNO")->TypeName(), u"del host");
    EXPECT_NE(CreateObject(u"Prueba.cUno"), CreateObject(u"Prueba.cUno"));
    registerClass(u"Prueba.cUno", {});
    EXPECT_EQ(CreateObject(u"Prueba.cUno")->TypeName(), u"propio");
    registerClass(u"Prueba.cUno", [] { return ObjectPtr{}; });
    EXPECT_EQ(numberOf([] { CreateObject(u"Prueba.cUno"); }), 429);
    registerClass(u"Prueba.cUno", {});
    registerBuiltInClass(u"Prueba.cUno", {});
    EXPECT_FALSE(registeredClass(u"Prueba.cUno"));
}

namespace {

std::string ended;

struct Older {
    ~Older() { ended += "older "; }
};
struct Younger {
    ~Younger()
    {
        ended += "younger ";
        single<Older>();
    }
};

} // namespace

TEST(Singles, live_from_first_use_until_the_reset)
{
    resetSingles();
    EXPECT_FALSE(hasSingle<Older>());
    Older& older = single<Older>();
    EXPECT_EQ(&single<Older>(), &older);
    single<Younger>();
    resetSingles();
    EXPECT_EQ(ended, "younger older ") << "the youngest ends first";
    EXPECT_FALSE(hasSingle<Older>());

    ended.clear();
    onReset([] { single<Younger>(); });
    onReset([] { singleSlot<Older>().reset(); });
    single<Older>();
    resetSingles();
    EXPECT_EQ(ended, "older younger older ") << "what an undoing creates ends too";
    EXPECT_FALSE(hasSingle<Younger>());
}
