/// El módulo desde C++17: bibliotecas, objetos que se sueltan solos, valores, la sesión, llamadas por nombre
/// y los fallos como excepciones. Sólo hacen falta la biblioteca estándar y las cabeceras de C que están al
/// lado.
///
///     namespace client = zv::client;
///     auto data = client::Library::registered("ZVDatos.Conexion");
///     auto module = client::Library::registered("ZVConfiguracion.cAsignarDatos");
///     client::Session session = client::openSession(data, "sqlite:colegio.db", {{"lngRowData", 3}});
///     client::Object facade = module.create(ZV_CLSID_cAsignarDatos);
///     facade.call("ObtenerDatos", session);
///     bool free = facade.call("Eliminar", 65).truth();
///
/// Declare las bibliotecas antes que los objetos: se destruyen al revés, y una biblioteca de la que queda un
/// objeto no se descarga. Los textos son UTF-8 (std::string) o UTF-16 (std::u16string). Los hilos son los del
/// módulo: sólo uno dentro a la vez.
#ifndef ZVCONFIGURACION_ZV_HPP
#define ZVCONFIGURACION_ZV_HPP

#include <zvconfiguracion/library.h>
#include <zvconfiguracion/servers.h>
#include <zvconfiguracion/session.h>
#include <zvconfiguracion/zvconfiguracion.h>
#include <zvconfiguracion/zvdatos.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace zv::client {

/// Un fallo: what() es el texto, en español y en UTF-8.
class Failure : public std::runtime_error {
public:
    Failure(std::int32_t number, const std::string& text, std::string source = {})
        : std::runtime_error(text), number_(number), source_(std::move(source))
    {}
    /// El de la guía de anfitriones: de 1 a 65535 si es propio, y negativo si es de la base de datos o un
    /// resultado sin más (ZV_E_WRONG_THREAD).
    std::int32_t number() const noexcept { return number_; }
    /// Quién lo cuenta; vacío si lo hace la llamada misma.
    const std::string& source() const noexcept { return source_; }

private:
    std::int32_t number_;
    std::string source_;
};

/// El texto en UTF-8; lo que no es un carácter queda en U+FFFD. Nulo es "".
inline std::string utf8(const std::uint16_t* text)
{
    std::string result(zv_utf8(text, nullptr, 0), '\0');
    zv_utf8(text, result.data(), result.size() + 1);
    return result;
}

class Value;

/// Una referencia contada a un objeto con llamadas por nombre, del módulo o del anfitrión, o a ninguno.
/// Copiarla añade una referencia, moverla no, y el destructor la suelta.
class Object {
public:
    Object() = default;
    /// Se queda con una referencia que tiene quien llama.
    static Object owning(ZvDispatch* dispatch) noexcept
    {
        Object result;
        result.dispatch_ = dispatch;
        return result;
    }
    /// Comparte un objeto que tiene otro.
    static Object sharing(ZvDispatch* dispatch) noexcept
    {
        zv_object(dispatch);
        return owning(dispatch);
    }
    Object(const Object& other) noexcept : dispatch_(sharing(other.dispatch_).release()) {}
    Object(Object&& other) noexcept : dispatch_(other.release()) {}
    Object& operator=(Object other) noexcept
    {
        std::swap(dispatch_, other.dispatch_);
        return *this;
    }
    ~Object() { zv_release(dispatch_); }

    /// Llama a un método, o lee una propiedad, con esos argumentos en su orden. Si falla lanza Failure con su
    /// número, texto y origen; sin objeto, con 91.
    template <class... Arguments>
    Value call(const char* member, Arguments&&... arguments) const;
    /// Lee una propiedad, que puede llevar argumentos: rows.get("Fields", "Descripcion").
    template <class... Arguments>
    Value get(const char* member, Arguments&&... arguments) const;
    /// Escribe una propiedad.
    void set(const char* member, Value value) const;

    explicit operator bool() const noexcept { return dispatch_ != nullptr; }
    /// El puntero, que sigue siendo de este objeto.
    ZvDispatch* dispatch() const noexcept { return dispatch_; }
    /// El puntero con su referencia, que pasa a quien llama.
    ZvDispatch* release() noexcept { return std::exchange(dispatch_, nullptr); }

private:
    ZvVariant invoke(const char* member, int modes, std::vector<Value> arguments) const;

    ZvDispatch* dispatch_ = nullptr;
};

/// Lo que va y viene en las llamadas: vacío, Null, lógico, entero, real, texto u objeto. Quien lee lo que no
/// hay recibe Failure: 94 si es Null, 6 si no cabe, 13 si es de otro tipo.
class Value {
public:
    /// Vacío.
    Value() = default;
    static Value null()
    {
        Value result;
        result.variant_.vt = ZV_VT_NULL;
        return result;
    }
    /// Un argumento que se omite, con otros detrás.
    static Value omitted()
    {
        Value result;
        result.variant_.vt = ZV_VT_ERROR;
        result.variant_.value.error = ZV_DISP_PARAMNOTFOUND;
        return result;
    }
    /// Se queda con un valor que tiene quien llama.
    static Value owning(const ZvVariant& variant) noexcept
    {
        Value result;
        result.variant_ = variant;
        return result;
    }

    /// Un lógico, o un entero de la anchura que sea.
    template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
    Value(Number number)
    {
        static_assert(!std::is_same_v<Number, char> && !std::is_same_v<Number, char16_t> &&
                          !std::is_same_v<Number, char32_t> && !std::is_same_v<Number, wchar_t>,
                      "un carácter no es un número: dé un texto");
        if constexpr (std::is_same_v<Number, bool>)
            variant_ = zv_bool(number);
        else if constexpr (sizeof(Number) < sizeof(std::int32_t))
            variant_ = zv_long(static_cast<std::int32_t>(number));
        else
            setWide(number);
    }
    Value(double number) noexcept
    {
        variant_.vt = ZV_VT_R8;
        variant_.value.r8 = number;
    }
    Value(std::string_view text) { setText(zv_bstr_utf8(text.data(), text.size())); }
    Value(const std::string& text) : Value(std::string_view(text)) {}
    Value(const char* text) : Value(std::string_view(text)) {}
    Value(std::u16string_view text)
    {
        setText(zv_bstr_new(nullptr, text.size()));
        if (!text.empty())
            std::memcpy(variant_.value.text, text.data(), text.size() * sizeof(char16_t));
    }
    Value(const std::u16string& text) : Value(std::u16string_view(text)) {}
    Value(const char16_t* text) : Value(std::u16string_view(text)) {}
    Value(const Object& object) noexcept : variant_(zv_object(object.dispatch())) {}
    Value(std::nullptr_t) = delete; // Null es Value::null(), y ningún objeto Object().

    Value(const Value& other)
    {
        const ZvResult copied = zv_variant_copy(&variant_, &other.variant_);
        if (copied == ZV_E_OUTOFMEMORY)
            throw std::bad_alloc();
        if (copied < 0)
            throwOtherKind();
    }
    Value(Value&& other) noexcept : variant_(other.release()) {}
    Value& operator=(Value other) noexcept
    {
        std::swap(variant_, other.variant_);
        return *this;
    }
    ~Value() { zv_variant_clear(&variant_); }

    bool isEmpty() const noexcept { return variant_.vt == ZV_VT_EMPTY; }
    bool isNull() const noexcept { return variant_.vt == ZV_VT_NULL; }
    /// Un lógico, o un entero que no es 0.
    bool truth() const { return variant_.vt == ZV_VT_BOOL ? variant_.value.boolean != 0 : wide() != 0; }
    /// Un entero de 32 bits.
    std::int32_t integer() const
    {
        const std::int64_t number = wide();
        if (number < std::numeric_limits<std::int32_t>::min() ||
            number > std::numeric_limits<std::int32_t>::max())
            throw Failure(6, "El número no cabe en 32 bits.");
        return static_cast<std::int32_t>(number);
    }
    /// Un número, también de moneda (en sus unidades) o entero.
    double real() const
    {
        switch (variant_.vt) {
        case ZV_VT_R4:
            return static_cast<double>(variant_.value.r4);
        case ZV_VT_R8:
        case ZV_VT_DATE:
            return variant_.value.r8;
        case ZV_VT_CY:
            return static_cast<double>(variant_.value.cy) / 10000;
        default:
            return static_cast<double>(wide());
        }
    }
    /// Un texto, en UTF-8.
    std::string text() const { return utf8(bstr()); }
    /// Un texto, como llegó.
    std::u16string utf16() const
    {
        std::u16string result(zv_bstr_length(bstr()), u'\0');
        if (!result.empty())
            std::memcpy(result.data(), variant_.value.text, result.size() * sizeof(char16_t));
        return result;
    }
    /// Un objeto, o ninguno.
    Object object() const
    {
        if (variant_.vt == ZV_VT_DISPATCH)
            return Object::sharing(variant_.value.dispatch);
        throwOtherKind();
    }
    /// Para lo demás: el valor, que sigue siendo de éste.
    const ZvVariant& raw() const noexcept { return variant_; }
    /// El valor, que pasa a quien llama.
    ZvVariant release() noexcept { return std::exchange(variant_, zv_empty()); }

private:
    template <class Number>
    void setWide(Number number)
    {
        constexpr auto most = std::numeric_limits<std::int32_t>::max();
        bool fits = false;
        if constexpr (std::is_signed_v<Number>)
            fits = number >= std::numeric_limits<std::int32_t>::min() && number <= most;
        else
            fits = number <= static_cast<std::uint32_t>(most);
        if (fits) {
            variant_ = zv_long(static_cast<std::int32_t>(number));
        } else if constexpr (std::is_signed_v<Number>) {
            variant_.vt = ZV_VT_I8;
            variant_.value.i8 = number;
        } else {
            variant_.vt = ZV_VT_UI8;
            variant_.value.ui8 = number;
        }
    }
    void setText(ZvBstr text)
    {
        if (text == nullptr)
            throw std::bad_alloc();
        variant_.vt = ZV_VT_BSTR;
        variant_.value.text = text;
    }
    const std::uint16_t* bstr() const
    {
        if (variant_.vt == ZV_VT_BSTR)
            return variant_.value.text;
        throwOtherKind();
    }
    std::int64_t wide() const
    {
        switch (variant_.vt) {
        case ZV_VT_I1:
            return variant_.value.i1;
        case ZV_VT_UI1:
            return variant_.value.ui1;
        case ZV_VT_I2:
            return variant_.value.i2;
        case ZV_VT_UI2:
            return variant_.value.ui2;
        case ZV_VT_I4:
        case ZV_VT_INT:
            return variant_.value.i4;
        case ZV_VT_UI4:
        case ZV_VT_UINT:
            return variant_.value.ui4;
        case ZV_VT_I8:
            return variant_.value.i8;
        case ZV_VT_UI8:
            if (variant_.value.i8 < 0)
                throw Failure(6, "El número no cabe en 64 bits con signo.");
            return variant_.value.i8;
        default:
            throwOtherKind();
        }
    }
    [[noreturn]] void throwOtherKind() const
    {
        if (isNull())
            throw Failure(94, "Se esperaba un valor y es Null.");
        throw Failure(13, "El valor es de otro tipo (" + std::to_string(variant_.vt) + ").");
    }

    ZvVariant variant_ = zv_empty();
};

template <class... Arguments>
Value Object::call(const char* member, Arguments&&... arguments) const
{
    std::vector<Value> given;
    given.reserve(sizeof...(arguments));
    (given.emplace_back(std::forward<Arguments>(arguments)), ...);
    return Value::owning(invoke(member, ZV_METHOD | ZV_PROPERTYGET, std::move(given)));
}

template <class... Arguments>
Value Object::get(const char* member, Arguments&&... arguments) const
{
    return call(member, std::forward<Arguments>(arguments)...);
}

inline void Object::set(const char* member, Value value) const
{
    const bool object = value.raw().vt == ZV_VT_DISPATCH;
    std::vector<Value> given;
    given.push_back(std::move(value));
    invoke(member, object ? ZV_PROPERTYPUT | ZV_PROPERTYPUTREF : ZV_PROPERTYPUT, std::move(given));
}

inline ZvVariant Object::invoke(const char* member, int modes, std::vector<Value> arguments) const
{
    if (dispatch_ == nullptr)
        throw Failure(91, std::string("Falta el objeto al que se pide ") + member + ".");
    std::vector<ZvVariant> given;
    given.reserve(arguments.size());
    for (Value& each : arguments)
        given.push_back(each.release());
    ZvVariant result;
    ZvException exception;
    const ZvResult done = zv_invoke(dispatch_, member, static_cast<std::uint16_t>(modes), given.data(),
                                    static_cast<std::uint32_t>(given.size()), &result, &exception);
    if (done >= 0)
        return result;
    zv_variant_clear(&result);
    std::string whole;
    ZvFailure failure;
    if (exception.description != nullptr)
        whole = utf8(exception.description);
    zv_failure_take(&failure, done, &exception, member);
    throw Failure(failure.number, whole.empty() ? failure.text : whole, failure.source);
}

/// La sesión que pide ObtenerDatos: un objeto del anfitrión que responde por nombre a sus miembros. El módulo
/// los lee, y escribe Accion y lngRowData; lo que haya escrito se lee con get, y set cambia uno que está.
class Session : public Object {
public:
    /// Con los dieciocho miembros de la guía: las tres conexiones son ésa, está activa, Accion es 1 (crear
    /// una fila), los textos están vacíos y los números son 0. Los que se dan los cambian, o se añaden.
    explicit Session(const Object& connection,
                     std::initializer_list<std::pair<const char*, Value>> members = {})
        : Object(owning(made(connection)))
    {
        for (const auto& [name, value] : members)
            add(name, value);
    }
    /// Da valor a un miembro; si no estaba, se añade.
    void add(const char* name, Value value)
    {
        if (zv_session_set(bag(), name, value.release()) < 0)
            throw std::bad_alloc();
    }
    /// Quita un miembro: al módulo le falla con 438 y su nombre.
    void remove(const char* name) { zv_session_remove(bag(), name); }
    /// Cuántas referencias hay: 1 si nadie más la tiene.
    std::uint32_t references() const { return __atomic_load_n(&bag()->references, __ATOMIC_ACQUIRE); }

private:
    static ZvDispatch* made(const Object& connection)
    {
        ZvSession* session = zv_session_new(connection.dispatch());
        if (session == nullptr)
            throw std::bad_alloc();
        return reinterpret_cast<ZvDispatch*>(session);
    }
    ZvSession* bag() const { return reinterpret_cast<ZvSession*>(dispatch()); }
};

/// Una biblioteca cargada. El destructor le pregunta si puede irse (DllCanUnloadNow), con lo que el módulo
/// suelta la sesión y las conexiones, y la descarga; si queda un objeto suyo la deja en memoria, que
/// descargarla sería perderlo.
class Library {
public:
    /// La de esa ruta (UTF-8). Si no se puede cargar lanza Failure con la razón del sistema.
    explicit Library(const std::string& file)
    {
        ZvFailure failure;
        if (zv_library_open(&library_, file.c_str(), &failure) < 0)
            throw Failure(failure.number, failure.text);
    }
    /// La que esta persona tiene registrada con ese nombre; si no hay ninguna lanza Failure con 429.
    static Library registered(const std::string& progId)
    {
        ZvServer server;
        if (zv_find_server(progId.c_str(), &server) == 0)
            throw Failure(429, progId + " no está registrado: llame a DllRegisterServer de su biblioteca.");
        return Library(server.library);
    }
    Library(Library&& other) noexcept : library_(std::exchange(other.library_, ZvLibrary{})) {}
    Library& operator=(Library other) noexcept
    {
        std::swap(library_, other.library_);
        return *this;
    }
    ~Library() { static_cast<void>(zv_library_close(&library_)); }

    /// Un objeto de una de sus clases (ZV_CLSID_cAsignarDatos...). Si no la tiene, o falla, lanza Failure.
    Object create(const ZvGuid& classId) const
    {
        void* made = nullptr;
        const ZvResult done = zv_library_create(&library_, &classId, &ZV_IID_IDispatch, &made);
        if (done < 0)
            throw Failure(zv_failure_number(done), "No se puede crear el objeto.");
        return Object::owning(static_cast<ZvDispatch*>(made));
    }
    /// Deja sus clases registradas para esta persona.
    void enroll() const
    {
        if (const ZvResult done = library_.registerServer(); done < 0)
            throw Failure(zv_failure_number(done), "No se puede registrar la biblioteca.");
    }
    /// Lo que hace el destructor, y si la ha descargado. Falso: queda un objeto suyo, u otro hilo está
    /// dentro.
    bool unload() noexcept { return zv_library_close(&library_) == ZV_OK; }
    /// Para lo demás: la biblioteca, que sigue siendo de éste.
    const ZvLibrary& raw() const noexcept { return library_; }

private:
    ZvLibrary library_{};
};

/// Una conexión abierta a una base de datos que existe («sqlite:FICHERO», u «odbc:» y el texto de conexión),
/// de la biblioteca ZVDatos. `which` es "centro", "borrado" o "entrada". Si no se puede abrir lanza Failure.
inline Object openConnection(const Library& data, std::string_view url, std::string_view which = "centro")
{
    Object connection = data.create(ZV_CLSID_Conexion);
    connection.call("Open", url, which);
    return connection;
}

/// Una sesión con las tres conexiones de un colegio abiertas, y los miembros que se dan.
inline Session openSession(const Library& data, std::string_view url,
                           std::initializer_list<std::pair<const char*, Value>> members = {})
{
    Session session(openConnection(data, url), members);
    session.add("conexionBORRADOlocalCENTRO", openConnection(data, url, "borrado"));
    session.add("conexionAppEntrada", openConnection(data, url, "entrada"));
    return session;
}

} // namespace zv::client

#endif
