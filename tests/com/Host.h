#pragma once

#include "com/Bridge.h"
#include "com/System.h"
#include "com/Text.h"
#include "com/Variant.h"
#include "data/Schools.h"
#include "data/sqlite/SqliteEngine.h"
#include "session/HostSession.h"

#include <zvconfiguracion/zv.hpp>

#include <gtest/gtest.h>

#include <filesystem>

namespace zv::com {

/// A library as a host has it, from which nothing may be left at its end.
class Library : public client::Library {
public:
    using client::Library::Library;
    ~Library() { EXPECT_TRUE(unload()) << "objects are left"; }
    void* symbol(const char* name) const
    {
        void* found = nullptr;
        zv_system_symbol(raw().handle, name, &found);
        return found;
    }
    Held<ZvClassFactory> factory(const ZvGuid& classId) const
    {
        Held<ZvClassFactory> result;
        EXPECT_EQ(
            raw().getClassObject(&classId, &ZV_IID_IClassFactory, reinterpret_cast<void**>(result.place())),
            ZV_OK);
        return result;
    }
    template <class Interface>
    Held<Interface> make(const ZvGuid& classId, const ZvGuid& interface) const
    {
        Held<Interface> result;
        EXPECT_EQ(zv_library_create(&raw(), &classId, &interface, reinterpret_cast<void**>(result.place())),
                  ZV_OK);
        return result;
    }
};

/// "number text (source)" of what a call throws.
template <class Call>
std::string failureOf(Call&& call)
{
    try {
        call();
    } catch (const client::Failure& failure) {
        return std::to_string(failure.number()) + " " + failure.what() + " (" + failure.source() + ")";
    }
    return "none";
}

/// What a call by name came to.
struct Answer {
    ZvResult result = 0;
    Value value;
    ZvResult told = 0; ///< In the exception.
    std::string text;
    std::uint32_t blamed = 99;
};

inline std::int32_t idOf(ZvDispatch* object, String name)
{
    auto* units = reinterpret_cast<std::uint16_t*>(name.data());
    std::int32_t id = 0;
    const ZvResult found = object->vtbl->GetIDsOfNames(object, &ZV_IID_NULL, &units, 1, 0, &id);
    EXPECT_EQ(found, id == ZV_DISPID_UNKNOWN ? ZV_DISP_UNKNOWNNAME : ZV_OK);
    return id;
}

inline Answer invoke(ZvDispatch* object, std::int32_t id, int modes, std::vector<ZvVariant> backwards = {})
{
    std::int32_t put = ZV_DISPID_PROPERTYPUT;
    const bool assigns = modes >= ZV_PROPERTYPUT;
    ZvParams params{backwards.data(), assigns ? &put : nullptr, static_cast<std::uint32_t>(backwards.size()),
                    assigns ? 1U : 0U};
    Variant result;
    ZvException exception{};
    Answer answer;
    answer.result = object->vtbl->Invoke(object, id, &ZV_IID_NULL, 0, static_cast<std::uint16_t>(modes),
                                         &params, &result.raw(), &exception, &answer.blamed);
    answer.value = valueOf(result.raw());
    answer.told = exception.result;
    answer.text = toUtf8(textOf(exception.description));
    zv_bstr_free(exception.source);
    zv_bstr_free(exception.description);
    return answer;
}
inline Answer invoke(ZvDispatch* object, const String& name, int modes,
                     const std::vector<Value>& backwards = {})
{
    std::vector<Variant> owned(backwards.begin(), backwards.end());
    std::vector<ZvVariant> plain;
    for (Variant& each : owned)
        plain.push_back(each.raw());
    return invoke(object, idOf(object, name), modes, plain);
}

namespace fs = std::filesystem;

/// A folder of the test's own, and the environment that points into it.
struct Folder {
    fs::path path = fs::temp_directory_path() / ("zvcom" + std::to_string(::getpid()));
    Folder()
    {
        fs::create_directories(path);
        setenv("XDG_DATA_HOME", path.string().c_str(), 1);
    }
    ~Folder() { fs::remove_all(path); }
    std::string url() const { return "sqlite:" + (path / "colegio.db").string(); }
    /// Makes the school of that URL.
    void create(const std::function<void(School&)>& filled = [](School&) {}) const
    {
        registerEngine(sqliteEngine());
        createSchool(fromUtf8(url()), filled);
    }
};

/// The host's session: a member fails if the host says so, and the host may act when it is next asked and
/// when it is let go of.
struct Session final : Object {
    std::shared_ptr<PropertyBag> members = newHostSession({});
    String failing;
    std::function<void()> asked, leaving;
    explicit Session(const Value& connection)
    {
        for (const StringView name :
             {u"conexionBORRADOlocalCENTRO", u"conexionlocalCENTRO", u"conexionAppEntrada"})
            members->add(name, connection);
        members->add(u"Accion", Long{1});
        members->add(u"lngRowData", u" 7 ");
    }
    ~Session() override
    {
        if (leaving)
            leaving();
    }
    StringView TypeName() const override { return u"Session"; }
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        if (asked)
            std::exchange(asked, nullptr)();
        if (sameName(member, failing))
            throw RuntimeError(-2147217900, u"La sesión se ha caído");
        return members->invoke(member, access, arguments);
    }
};

inline Held<Zv_cAsignarDatos> facadeOf(const Library& library)
{
    return library.make<Zv_cAsignarDatos>(ZV_CLSID_cAsignarDatos, ZV_IID__cAsignarDatos);
}
inline ZvResult handOver(const Held<Zv_cAsignarDatos>& facade, const Held<ZvDispatch>& session)
{
    ZvDispatch* face = session.get();
    return facade.get()->vtbl->ObtenerDatos(facade.get(), &face);
}
/// An object of the tests, or the facade, as what hosts in C++ call by name.
inline client::Object shared(const ObjectPtr& object)
{
    return client::Object::owning(dispatchOf(object).detach());
}
inline client::Object byName(const Held<Zv_cAsignarDatos>& facade)
{
    return client::Object::sharing(reinterpret_cast<ZvDispatch*>(facade.get()));
}
inline ObjectPtr objectOf(const client::Object& object)
{
    return objectOf(Held<ZvDispatch>::sharing(object.dispatch()));
}

} // namespace zv::com
