#include "com/Host.h"

#include <array>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

using namespace zv;
using namespace zv::com;

namespace {

std::string contents(const std::string& file)
{
    std::ifstream stream(std::string(ZV_TREE) + "/" + file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

struct Slot {
    std::int32_t id;
    std::string name; ///< As the header calls it: "get_IDPerfil".
    std::string type;
};
struct Described {
    std::string classId, interfaceId;
    std::vector<Slot> slots;
};

/// The classes as the interface definition has them, by name.
std::map<std::string, Described> definition()
{
    static const std::regex word(
        R"re(uuid\(([-0-9A-F]+)\)|interface _(\w+) : |coclass (\w+)|\[id\((0x\w+)\)(?:, prop(\w+))?\] HRESULT (\w+)\((?:\[[^\]]*\] ([^)]*?) ?(\*?)\w+)?(?:, [^)]*)?\))re");
    const std::string text = contents("idl/ZVConfiguracion.idl");
    std::map<std::string, Described> result;
    std::string id;
    std::string current;
    for (std::sregex_iterator at(text.begin(), text.end(), word), end; at != end; ++at) {
        const std::smatch& m = *at;
        if (m[1].matched)
            id = std::regex_replace(m[1].str(), std::regex("-"), "");
        else if (m[2].matched)
            result[current = m[2]].interfaceId = id;
        else if (m[3].matched)
            result[m[3]].classId = id;
        else
            result[current].slots.push_back({static_cast<std::int32_t>(std::stoul(m[4], nullptr, 16)),
                                             (m[5].matched ? m[5].str() + "_" : "") + m[6].str(), m[7]});
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

/// Lets and gets a member by its two slots and by name, each seen by the other.
template <class Native>
void roundTrip(ZvDispatch* object, std::size_t slot, std::int32_t id, Native first, const Value& second,
               int let, const std::function<Value(Native)>& read)
{
    const auto put = reinterpret_cast<ZvResult (*)(ZvDispatch*, Native)>(slotAt(object, slot + 1));
    const auto get = reinterpret_cast<ZvResult (*)(ZvDispatch*, Native*)>(slotAt(object, slot));
    Native seen{};
    EXPECT_EQ(put(object, first), ZV_OK);
    EXPECT_EQ(invoke(object, id, ZV_PROPERTYGET).value.data(), read(first).data());
    Variant other(second);
    EXPECT_EQ(invoke(object, id, let, {other.raw()}).result, ZV_OK);
    EXPECT_EQ(get(object, &seen), ZV_OK);
    const Value value = read(seen);
    EXPECT_EQ(CStr(value), CStr(second));
    if constexpr (std::is_same_v<Native, ZvBstr>) {
        zv_bstr_free(seen);
        zv_bstr_free(first);
    }
    EXPECT_EQ(get(object, nullptr), ZV_E_POINTER);
}

void roundTrip(ZvDispatch* object, std::size_t slot, const Slot& what)
{
    const int let = ZV_PROPERTYPUT;
    if (what.type == "short")
        roundTrip<std::int16_t>(object, slot, what.id, -12, Integer{32767}, let,
                                [](auto v) { return Integer{v}; });
    else if (what.type == "long")
        roundTrip<std::int32_t>(object, slot, what.id, -70000, Long{2147483647}, let,
                                [](auto v) { return Long{v}; });
    else if (what.type == "unsigned char")
        roundTrip<std::uint8_t>(object, slot, what.id, 255, Byte{3}, let, [](auto v) { return Byte{v}; });
    else if (what.type == "VARIANT_BOOL")
        roundTrip<ZvBool>(object, slot, what.id, -1, false, let, [](auto v) { return v != 0; });
    else if (what.type == "BSTR")
        roundTrip<ZvBstr>(object, slot, what.id, newText(String(u"año\0'", 5)), Value(u"ñ\U0001F600"), let,
                          [](ZvBstr v) { return Value(textOf(v)); });
    else
        ADD_FAILURE() << what.type;
}

} // namespace

TEST(Definition, the_header_and_the_interface_definition_say_the_same)
{
    const std::string header = contents("include/zvconfiguracion/zvconfiguracion.h");
    const std::map<std::string, std::string> native{{"short", "int16_t"},
                                                    {"long", "int32_t"},
                                                    {"BSTR", "ZvBstr"},
                                                    {"VARIANT_BOOL", "ZvBool"},
                                                    {"unsigned char", "uint8_t"},
                                                    {"IDispatch", "ZvDispatch"},
                                                    {"IDispatch *", "ZvDispatch"},
                                                    {"", ""}};
    const auto id = [&](const std::string& name) {
        const auto from = header.find(" ZV_" + name + " = ") + name.size() + 7;
        const std::string digits = header.substr(from, header.find(';', from) - from);
        return std::regex_replace(digits, std::regex("0x|[^0-9A-F]"), "");
    };
    auto defined = definition();
    EXPECT_EQ(defined.size(), std::size(classes));
    for (const auto& each : classes) {
        const Described& described = defined[each.name];
        EXPECT_EQ(described.classId, id("CLSID_" + std::string(each.name)));
        EXPECT_EQ(described.interfaceId, id("IID__" + std::string(each.name)));
        std::string wanted;
        for (const Slot& slot : described.slots)
            wanted += slot.name + " " + native.at(slot.type) + "\n";
        const auto from = header.find("Zv_" + std::string(each.name) + "Vtbl {");
        const std::string table = header.substr(from, header.find('}', from) - from);
        static const std::regex function(R"(\(\*(\w+)\)\(\s*Zv_\w+\s?\*(?:,\s*(\w+))?)");
        std::string found;
        for (std::sregex_iterator at(table.begin(), table.end(), function), end; at != end; ++at)
            found += (*at)[1].str() + " " + (*at)[2].str() + "\n";
        EXPECT_EQ(found, wanted) << each.name;
    }
}

TEST(Exports, are_the_entry_points_and_the_blocks_alone)
{
    const auto exported = [](const std::string& library) {
        std::string names;
        FILE* pipe =
            popen(("nm -D --defined-only --extern-only " + library + " | cut -d' ' -f3").c_str(), "r");
        for (int c = 0; (c = std::fgetc(pipe)) != EOF;)
            names += static_cast<char>(c);
        pclose(pipe);
        return names;
    };
    const std::string entries =
        "DllCanUnloadNow\nDllGetClassObject\nDllRegisterServer\nDllUnregisterServer\n";
    EXPECT_EQ(exported(ZV_DATOS), entries);
    EXPECT_EQ(exported(ZV_SERVIDOR), entries +
                                         "_IID_CASIGNARDATOS\n_IID_CCONSEJOORIENTADOR\n_IID_CDATOSSESION\n"
                                         "_IID_CINFORMEIND\n_IID_CINFPRIMARIA\n");
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
        const auto& slots = defined[each.name].slots;
        for (std::size_t i = 0; i < slots.size(); ++i) {
            SCOPED_TRACE(slots[i].name);
            const std::string plain = slots[i].name.substr(slots[i].name.find('_') + 1);
            String shouted;
            for (const char c : plain)
                shouted += static_cast<char16_t>(std::toupper(c));
            EXPECT_EQ(idOf(object.get(), shouted), slots[i].id);
            if (slots[i].name.starts_with("get_") && slots[i].type != "IDispatch *")
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
