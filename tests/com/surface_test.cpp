#include "com/Host.h"

#include <map>
#include <regex>

using namespace zv;
using namespace zv::com;

namespace {

struct Slot {
    std::int32_t id;
    std::string mode; ///< "get", "put", "putref"; "" for a method.
    std::string name, type;
};

/// The slots of each class, as the interface definition has them. (tools/surface looks at the rest of it.)
std::map<std::string, std::vector<Slot>> definition()
{
    static const std::regex word(
        R"re(interface _(\w+) : |\[id\((0x\w+)\)(?:, prop(\w+))?\] HRESULT (\w+)\()re"
        R"re((?:\[[^\]]*\] ([^)]*?) ?(\*?)\w+)?(?:, [^)]*)?\))re");
    std::ifstream stream(ZV_TREE "/idl/ZVConfiguracion.idl");
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    std::map<std::string, std::vector<Slot>> result;
    std::string current;
    for (std::sregex_iterator at(text.begin(), text.end(), word), end; at != end; ++at) {
        const std::smatch& m = *at;
        if (m[1].matched)
            current = m[1];
        else
            result[current].push_back(
                {static_cast<std::int32_t>(std::stoul(m[2], nullptr, 16)), m[3], m[4], m[5]});
    }
    return result;
}

const struct {
    const char* name;
    ZvGuid classId, interfaceId;
    const char* block;
} classes[] = {
    {"cDatosSesion", ZV_CLSID_cDatosSesion, ZV_IID__cDatosSesion, "_IID_CDATOSSESION"},
    {"cConsejoOrientador", ZV_CLSID_cConsejoOrientador, ZV_IID__cConsejoOrientador,
     "_IID_CCONSEJOORIENTADOR"},
    {"cAsignarDatos", ZV_CLSID_cAsignarDatos, ZV_IID__cAsignarDatos, "_IID_CASIGNARDATOS"},
    {"cInformeInd", ZV_CLSID_cInformeInd, ZV_IID__cInformeInd, "_IID_CINFORMEIND"},
    {"cInfPrimaria", ZV_CLSID_cInfPrimaria, ZV_IID__cInfPrimaria, "_IID_CINFPRIMARIA"},
};

using Function = void (*)();
Function slotAt(ZvDispatch* object, std::size_t slot)
{
    return reinterpret_cast<const Function*>(object->vtbl)[7 + slot];
}

template <class Stored, class Native>
Value stored(Native value)
{
    if constexpr (std::is_same_v<Native, ZvBstr>)
        return textOf(value);
    else
        return static_cast<Stored>(value);
}

/// Lets and gets a member by its two slots and by name, each seen by the other.
template <class Native, class Stored>
void roundTrip(ZvDispatch* object, std::size_t slot, std::int32_t id, Native first, Stored second)
{
    const auto put = reinterpret_cast<ZvResult (*)(ZvDispatch*, Native)>(slotAt(object, slot + 1));
    const auto get = reinterpret_cast<ZvResult (*)(ZvDispatch*, Native*)>(slotAt(object, slot));
    Native seen{};
    EXPECT_EQ(put(object, first), ZV_OK);
    EXPECT_EQ(invoke(object, id, ZV_PROPERTYGET).value.data(), stored<Stored>(first).data());
    Variant other{Value(second)};
    EXPECT_EQ(invoke(object, id, ZV_PROPERTYPUT, {other.raw()}).result, ZV_OK);
    EXPECT_EQ(get(object, &seen), ZV_OK);
    EXPECT_EQ(stored<Stored>(seen).data(), Value(second).data());
    EXPECT_EQ(get(object, nullptr), ZV_E_POINTER);
    if constexpr (std::is_same_v<Native, ZvBstr>)
        zv_bstr_free(seen), zv_bstr_free(first);
}

void roundTrip(ZvDispatch* object, std::size_t slot, const Slot& what)
{
    if (what.type == "short")
        roundTrip(object, slot, what.id, std::int16_t{-12}, Integer{32767});
    else if (what.type == "long")
        roundTrip(object, slot, what.id, std::int32_t{-70000}, Long{2147483647});
    else if (what.type == "unsigned char")
        roundTrip(object, slot, what.id, std::uint8_t{255}, Byte{3});
    else if (what.type == "VARIANT_BOOL")
        roundTrip(object, slot, what.id, ZvBool{-1}, false);
    else if (what.type == "BSTR")
        roundTrip(object, slot, what.id, newText(String(u"año\0'", 5)), String(u"ñ\U0001F600"));
    else
        ADD_FAILURE() << what.type;
}

} // namespace

TEST(Blocks, are_a_length_and_the_identifier_of_the_interface)
{
    const Library library(ZV_SERVIDOR);
    for (const auto& each : classes) {
        const auto* block = static_cast<const ZvIdBlock*>(library.symbol(each.block));
        EXPECT_EQ(block->length, 16U);
        EXPECT_TRUE(block->id == each.interfaceId) << each.name;
    }
}

TEST(Members, are_let_and_got_through_their_slots_and_by_name)
{
    const Library library(ZV_SERVIDOR);
    auto defined = definition();
    for (const auto& each : classes) {
        const auto object = library.make<ZvDispatch>(each.classId, each.interfaceId);
        const std::vector<Slot>& slots = defined[each.name];
        EXPECT_FALSE(slots.empty());
        for (std::size_t i = 0; i < slots.size(); ++i) {
            SCOPED_TRACE(slots[i].name);
            String shouted;
            for (const char c : slots[i].name)
                shouted += static_cast<char16_t>(std::toupper(c));
            EXPECT_EQ(idOf(object.get(), shouted), slots[i].id);
            if (slots[i].mode == "get" && slots[i].type != "IDispatch *")
                roundTrip(object.get(), i, slots[i]);
        }
    }
}

TEST(Members, a_collection_is_there_from_its_first_use_and_can_be_replaced)
{
    const Library library(ZV_SERVIDOR);
    const auto report = library.make<Zv_cInformeInd>(ZV_CLSID_cInformeInd, ZV_IID__cInformeInd);
    Held<ZvDispatch> first;
    Held<ZvDispatch> again;
    EXPECT_EQ(report.get()->vtbl->get_colMaterias(report.get(), first.place()), ZV_OK);
    EXPECT_EQ(report.get()->vtbl->get_colMaterias(report.get(), again.place()), ZV_OK);
    EXPECT_EQ(first.get(), again.get());
    ZvDispatch* items = first.get();
    EXPECT_EQ(invoke(items, u"Add", ZV_METHOD, {Value(u"7 1"), Value(u"uno")}).result, ZV_OK);
    EXPECT_EQ(invoke(items, u"Add", ZV_METHOD, {Value(Long{2})}).result, ZV_OK);
    EXPECT_EQ(CStr(invoke(items, u"item", ZV_METHOD | ZV_PROPERTYGET, {Value(u"7 1")}).value), u"uno");
    EXPECT_EQ(CLng(invoke(items, ZV_DISPID_VALUE, ZV_PROPERTYGET, {Variant(Value(Long{2})).raw()}).value), 2);
    EXPECT_EQ(invoke(items, u"Add", ZV_METHOD, {Value(u"7 1"), Value(u"dos")}).told, ZV_FAILURE_BASE + 457);
    EXPECT_EQ(invoke(items, u"Remove", ZV_METHOD, {Value(Long{1})}).result, ZV_OK);
    EXPECT_EQ(invoke(items, u"Item", ZV_METHOD, {Value(u"7 1")}).told, ZV_FAILURE_BASE + 5);
    EXPECT_EQ(CLng(invoke(items, u"Count", ZV_PROPERTYGET).value), 1);
    const auto mine = dispatchOf(std::make_shared<PropertyBag>(u"Mine"));
    EXPECT_EQ(report.get()->vtbl->putref_colMaterias(report.get(), mine.get()), ZV_OK);
    again = {};
    EXPECT_EQ(report.get()->vtbl->get_colMaterias(report.get(), again.place()), ZV_OK);
    EXPECT_EQ(again.get(), mine.get());
}
