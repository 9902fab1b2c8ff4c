#include "com/Host.h"

#include <windows.h>

#include <oleauto.h>

using namespace zv;
using namespace zv::com;

namespace {

/// The apartment of a host's thread.
struct Apartment {
    Apartment() { EXPECT_TRUE(SUCCEEDED(CoInitialize(nullptr))); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() { CoUninitialize(); }
};

String nameOf(ITypeInfo& info, MEMBERID member)
{
    BSTR name = nullptr;
    EXPECT_EQ(info.GetDocumentation(member, &name, nullptr, nullptr, nullptr), S_OK);
    String result = textOf(reinterpret_cast<std::uint16_t*>(name));
    SysFreeString(name);
    return result;
}

/// The description that the object gives of itself.
Held<ITypeInfo> typeOf(ZvDispatch* object)
{
    Held<ITypeInfo> info;
    std::uint32_t count = 0;
    EXPECT_EQ(object->vtbl->GetTypeInfoCount(object, &count), ZV_OK);
    EXPECT_EQ(count, 1U);
    void* place = nullptr;
    EXPECT_EQ(object->vtbl->GetTypeInfo(object, 0, 0, &place), ZV_OK);
    return Held(static_cast<ITypeInfo*>(place));
}

} // namespace

TEST(Types, are_told_by_the_objects_and_lead_to_the_same_members)
{
    const Library library(ZV_SERVIDOR);
    const Library data(ZV_DATOS);
    const struct {
        const Library& library;
        ZvGuid classId;
        StringView name;
        StringView member;
        int functions;
    } all[] = {{library, ZV_CLSID_cDatosSesion, u"_cDatosSesion", u"RutaAplicacion", 24},
               {library, ZV_CLSID_cConsejoOrientador, u"_cConsejoOrientador", u"Estado", 12},
               {library, ZV_CLSID_cAsignarDatos, u"_cAsignarDatos", u"Eliminar", 4},
               {library, ZV_CLSID_cInformeInd, u"_cInformeInd", u"colMaterias", 36},
               {library, ZV_CLSID_cInfPrimaria, u"_cInfPrimaria", u"Respuesta", 12},
               {data, ZV_CLSID_Conexion, u"_Conexion", u"State", 4}};
    for (const auto& each : all) {
        const auto object = each.library.make<ZvDispatch>(each.classId, ZV_IID_IDispatch);
        const Held<ITypeInfo> info = typeOf(object.get());
        ASSERT_TRUE(info);
        EXPECT_EQ(nameOf(*info.get(), MEMBERID_NIL), each.name);
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(info.get()->GetTypeAttr(&attributes), S_OK);
        constexpr int inherited = 7; // Those of every object that is called by name.
        EXPECT_EQ(attributes->cFuncs - (attributes->cFuncs > each.functions ? inherited : 0), each.functions);
        info.get()->ReleaseTypeAttr(attributes);
        // Bound early or late it is one member.
        const std::int32_t id = idOf(object.get(), String(each.member));
        EXPECT_EQ(nameOf(*info.get(), id), each.member);
        void* none = nullptr;
        EXPECT_EQ(object.get()->vtbl->GetTypeInfo(object.get(), 1, 0, &none), ZV_DISP_BADINDEX);
    }
}

TEST(Types, bind_a_host_early)
{
    const Library library(ZV_SERVIDOR);
    const auto object = library.make<ZvDispatch>(ZV_CLSID_cInfPrimaria, ZV_IID__cInfPrimaria);
    const Held<ITypeInfo> info = typeOf(object.get());
    ASSERT_TRUE(info);
    VARIANT text{};
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(L"Lengua");
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{&text, &put, 1, 1};
    const std::int32_t id = idOf(object.get(), u"Nombre");
    // By the description alone, which calls through the table.
    EXPECT_EQ(info.get()->Invoke(object.get(), id, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr),
              S_OK);
    SysFreeString(text.bstrVal);
    EXPECT_EQ(CStr(invoke(object.get(), id, ZV_PROPERTYGET).value), u"Lengua");
}

TEST(Resources, are_the_blocks_of_the_five_classes)
{
    const Library library(ZV_SERVIDOR);
    const auto module = static_cast<HMODULE>(library.raw().handle);
    for (const char* name : {"_IID_CASIGNARDATOS", "_IID_CCONSEJOORIENTADOR", "_IID_CDATOSSESION",
                             "_IID_CINFORMEIND", "_IID_CINFPRIMARIA"}) {
        HRSRC found = FindResourceA(module, name, RT_RCDATA);
        ASSERT_NE(found, nullptr) << name;
        EXPECT_EQ(SizeofResource(module, found), sizeof(ZvIdBlock));
        EXPECT_EQ(
            std::memcmp(LockResource(LoadResource(module, found)), library.symbol(name), sizeof(ZvIdBlock)),
            0)
            << name;
    }
}

TEST(Manifest, brings_the_classes_without_a_registry)
{
    const Apartment apartment;
    for (const auto& [file, progId] : {std::pair{ZV_SERVIDOR, L"ZVConfiguracion.cAsignarDatos"},
                                       std::pair{ZV_DATOS, L"ZVDatos.Conexion"}}) {
        CLSID classId{};
        EXPECT_TRUE(FAILED(CLSIDFromProgID(progId, &classId))) << "it is registered";
        const std::string manifest = fs::path(file).replace_extension(".Clases.manifest").string();
        ACTCTXA what{};
        what.cbSize = sizeof what;
        what.lpSource = manifest.c_str();
        const HANDLE context = CreateActCtxA(&what);
        ASSERT_NE(context, INVALID_HANDLE_VALUE) << GetLastError();
        ULONG_PTR cookie = 0;
        ASSERT_TRUE(ActivateActCtx(context, &cookie));
        EXPECT_EQ(CLSIDFromProgID(progId, &classId), S_OK);
        {
            Held<IDispatch> object;
            EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                       reinterpret_cast<void**>(object.place())),
                      S_OK);
        }
        EXPECT_TRUE(DeactivateActCtx(0, cookie));
        ReleaseActCtx(context);
        CoFreeUnusedLibrariesEx(0, 0);
        EXPECT_FALSE(isLoaded(file)) << "nothing is held, and it is still there";
    }
}
