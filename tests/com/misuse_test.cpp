#include "com/Host.h"

#include "runtime/Collection.h"

#include <atomic>
#include <thread>

using namespace zv;
using namespace zv::com;

namespace {

/// Answers that many statements with no rows, and fails from then on.
struct Failing final : Object {
    int good = 0;
    StringView TypeName() const override { return u"Connection"; }
    Value invoke(StringView /*member*/, Access /*access*/, Arguments& /*arguments*/) override
    {
        if (good-- <= 0)
            throw RuntimeError(-2147217865, u"Falta la tabla Centro.");
        const auto rows = std::make_shared<PropertyBag>(u"Recordset");
        rows->add(u"EOF", true);
        return rows;
    }
};

constexpr Byte idiomas = 52;
constexpr Byte bancos = 30;

} // namespace

TEST(Unattended, a_failed_guard_gives_its_number_its_text_and_what_would_have_been_shown)
{
    const auto connection = std::make_shared<Failing>();
    const auto host = std::make_shared<Session>(connection);
    host->members->add(u"Accion", Long{2});
    const auto session = dispatchOf(host);
    setenv("QT_QPA_PLATFORM", "offscreen", 1); // There is a screen, and nobody looks at it.
    setenv("ZV_ESCRITORIO", "ninguno", 1);
    {
        const Library library(ZV_SERVIDOR);
        const auto facade = facadeOf(library);
        EXPECT_EQ(handOver(facade, session), ZV_OK);
        for (const int good : {0, 1}) { // The second query too, though the first says that the row may go.
            connection->good = good;
            EXPECT_EQ(
                failureOf([&] { byName(facade).call("Eliminar", idiomas); }),
                "-2147217865 Falta la tabla Centro. Sin pantalla no se ha mostrado: «ERROR al consultar "
                "la base de datos». (ZVConfiguracion)");
        }
        ZvBool free = -1;
        EXPECT_EQ(facade.get()->vtbl->Eliminar(facade.get(), idiomas, &free), -2147217865);
        EXPECT_EQ(free, 0);
        // It loads the dialog.
        EXPECT_EQ(facade.get()->vtbl->BloquearBanco(facade.get()), -2147217865);
        EXPECT_NE(failureOf([&] { byName(facade).call("ActivarFormulario", bancos); }).find("frmBanco"),
                  std::string::npos);
        EXPECT_EQ(facade.get()->vtbl->ActivarFormulario(facade.get(), bancos), ZV_FAILURE_BASE + 5);
    }
    unsetenv("ZV_ESCRITORIO");
    unsetenv("QT_QPA_PLATFORM");
}

TEST(Threads, come_in_one_at_a_time_and_leave_nothing_behind)
{
    const Folder folder;
    std::ofstream(folder.path / "vacio.guion") << "fondo\n";
    for (const std::string& choice : {std::string(), "guion:" + (folder.path / "vacio.guion").string()}) {
        choice.empty() ? unsetenv("ZV_ESCRITORIO") : setenv("ZV_ESCRITORIO", choice.c_str(), 1);
        const auto host = std::make_shared<Session>(ObjectPtr());
        const auto session = dispatchOf(host);
        const Library library(ZV_SERVIDOR);
        const auto facade = facadeOf(library);
        // One that has ended holds nothing up; one that comes while another is inside is turned away.
        std::thread([&] { EXPECT_EQ(handOver(facade, session), ZV_OK); }).join();
        std::vector<ZvResult> inside;
        host->asked = [&] {
            inside.push_back(facade.get()->vtbl->BloquearBanco(facade.get()));
            std::thread([&] { inside.push_back(facade.get()->vtbl->BloquearBanco(facade.get())); }).join();
            std::thread([&] { inside.push_back(library.raw().canUnloadNow()); }).join();
        };
        EXPECT_EQ(handOver(facade, session), ZV_OK);
        EXPECT_EQ(inside, (std::vector<ZvResult>{ZV_OK, ZV_E_WRONG_THREAD, ZV_FALSE}));
        std::atomic<int> odd = 0;
        std::vector<std::thread> crowd;
        for (int i = 0; i < 4; ++i)
            crowd.emplace_back([&] {
                for (int turn = 0; turn < 1000; ++turn) {
                    const ZvResult result = handOver(facade, session);
                    odd += result != ZV_OK && result != ZV_E_WRONG_THREAD;
                }
            });
        for (std::thread& each : crowd)
            each.join();
        EXPECT_EQ(odd, 0);
    }
    unsetenv("ZV_ESCRITORIO");
}

TEST(References, of_a_session_that_calls_back_when_it_is_let_go_of_are_all_given_back)
{
    std::weak_ptr<Object> last;
    {
        const Library library(ZV_SERVIDOR);
        const auto facade = facadeOf(library);
        const auto third = std::make_shared<Session>(ObjectPtr());
        last = third;
        auto first = std::make_shared<Session>(ObjectPtr());
        first->leaving = [&, session = dispatchOf(third)] { EXPECT_EQ(handOver(facade, session), ZV_OK); };
        EXPECT_EQ(handOver(facade, dispatchOf(std::exchange(first, nullptr))), ZV_OK);
        EXPECT_EQ(handOver(facade, dispatchOf(std::make_shared<Session>(ObjectPtr()))), ZV_OK);
    }
    EXPECT_TRUE(last.expired());
    // A list whose element, let go of, removes it by its key again.
    struct Element final : Object {
        std::function<void()> leaving;
        ~Element() override { leaving(); }
        StringView TypeName() const override { return u"Element"; }
        Value invoke(StringView, Access, Arguments&) override { return {}; }
    };
    Collection<ObjectPtr> items;
    auto element = std::make_shared<Element>();
    element->leaving = [&] { EXPECT_THROW(items.Remove(u"a"), RuntimeError); };
    items.Add(std::exchange(element, nullptr), u"a");
    items.Remove(u"a");
    EXPECT_EQ(items.Count(), 0U);
}

TEST(Locks, do_not_go_below_none)
{
    const Library library(ZV_SERVIDOR);
    const auto factory = library.factory(ZV_CLSID_cAsignarDatos);
    const auto lock = [&](int way) { return factory.get()->vtbl->LockServer(factory.get(), way); };
    EXPECT_EQ(lock(1), ZV_OK);
    EXPECT_EQ(lock(0), ZV_OK);
    EXPECT_EQ(lock(0), ZV_E_UNEXPECTED);
    EXPECT_EQ(library.raw().canUnloadNow(), ZV_FALSE) << "the factory is held";
}

TEST(Variants, that_say_less_than_they_need_are_refused)
{
    const auto room = std::make_unique<std::int32_t[]>(3); // No byte more: sanitizers look on.
    const struct {
        int type;
        std::uint32_t elementSize;
        void* data;
        bool taken;
    } lists[] = {{ZV_VT_I4, 4, room.get(), true},
                 {ZV_VT_I8, 4, room.get(), false},
                 {ZV_VT_VARIANT, 4, room.get(), false},
                 {ZV_VT_I4, 4, nullptr, false}};
    for (const auto& each : lists) {
        ZvArray array{1, 0, each.elementSize, 0, each.data, {{3, 0}}};
        ZvArray* place = &array;
        ZvVariant list{};
        list.vt = static_cast<std::uint16_t>(ZV_VT_ARRAY | ZV_VT_BYREF | each.type);
        list.value.reference = static_cast<void*>(&place);
        writeBack(list, std::make_shared<std::vector<Long>>(3, Long{7}));
        if (each.taken)
            EXPECT_EQ(*valueOf(list).as<LongArray>()->get(), std::vector<Long>(3, 7));
        else
            EXPECT_THROW(valueOf(list), RuntimeError);
    }
    // A list that holds itself.
    ZvVariant element{};
    ZvArray array{1, 0, sizeof element, 0, &element, {{1, 0}}};
    element.vt = ZV_VT_ARRAY | ZV_VT_VARIANT;
    element.value.array = &array;
    EXPECT_THROW(valueOf(element), RuntimeError);
#ifndef _WIN32
    // Freed by their own width, and only what is there.
    const auto kept = std::make_shared<Session>(ObjectPtr());
    constexpr std::uint32_t wide = 32;
    ZvArray* freed = zv_array_new(ZV_VT_VARIANT, 4);
    freed->elementSize = wide;
    freed->bounds[0].count = 2;
    std::memset(freed->data, 'x', wide);
    std::memset(freed->data, 0, sizeof(ZvVariant));
    ZvVariant second{};
    second.vt = ZV_VT_DISPATCH;
    second.value.dispatch = dispatchOf(kept).detach();
    std::memcpy(static_cast<char*>(freed->data) + wide, &second, sizeof second);
    zv_array_free(freed, ZV_VT_VARIANT);
    EXPECT_EQ(kept.use_count(), 1);
    freed = zv_array_new(ZV_VT_BSTR, 1);
    std::free(std::exchange(freed->data, nullptr));
    zv_array_free(freed, ZV_VT_BSTR);
#endif
    EXPECT_EQ(zv_array_new(ZV_VT_EMPTY, 1), nullptr) << "of nothing there is no list";
    // A number of 96 bits by reference is sixteen bytes.
    const auto decimal = std::make_unique<std::uint64_t[]>(2);
    decimal[1] = 12;
    ZvVariant reference{};
    reference.vt = ZV_VT_DECIMAL | ZV_VT_BYREF;
    reference.value.reference = decimal.get();
    EXPECT_EQ(CLng(valueOf(reference)), 12);
}
