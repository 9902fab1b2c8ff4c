#pragma once

#include "com/Bridge.h"
#include "com/Text.h"
#include "com/Variant.h"
#include "session/HostSession.h"

#include <zvconfiguracion/zvconfiguracion.h>
#include <zvconfiguracion/zvdatos.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <filesystem>

namespace zv::com {

/// A library as a host without any of our code uses it.
class Library {
public:
    explicit Library(const char* file)
    {
        handle_ = dlopen(file, RTLD_NOW | RTLD_LOCAL);
        if (handle_ == nullptr)
            throw std::runtime_error(dlerror());
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library()
    {
        EXPECT_EQ(call("DllCanUnloadNow"), ZV_OK) << "objects are left";
        dlclose(handle_);
    }
    void* symbol(const char* name) const { return dlsym(handle_, name); }
    ZvResult call(const char* entry) const { return reinterpret_cast<ZvEntryPoint>(symbol(entry))(); }
    Held<ZvClassFactory> factory(const ZvGuid& classId) const
    {
        Held<ZvClassFactory> result;
        EXPECT_EQ(reinterpret_cast<ZvGetClassObject>(symbol("DllGetClassObject"))(
                      &classId, &ZV_IID_IClassFactory, reinterpret_cast<void**>(result.place())),
                  ZV_OK);
        return result;
    }
    template <class Interface>
    Held<Interface> make(const ZvGuid& classId, const ZvGuid& interface) const
    {
        const auto factory = this->factory(classId);
        Held<Interface> result;
        EXPECT_EQ(factory.get()->vtbl->CreateInstance(factory.get(), nullptr, &interface,
                                                      reinterpret_cast<void**>(result.place())),
                  ZV_OK);
        return result;
    }

private:
    void* handle_ = nullptr;
};

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
        setenv("XDG_DATA_HOME", path.c_str(), 1);
    }
    ~Folder() { fs::remove_all(path); }
    String url() const { return u"sqlite:" + fromUtf8((path / "colegio.db").string()); }
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
inline ZvDispatch* byName(const Held<Zv_cAsignarDatos>& facade)
{
    return reinterpret_cast<ZvDispatch*>(facade.get());
}

} // namespace zv::com
