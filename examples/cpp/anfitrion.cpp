// Un anfitrión pequeño: abre la ventana de estados civiles, pregunta si una fila se puede eliminar y ve cómo
// se cuenta un fallo.
//   anfitrion --registrar BIBLIOTECA...   las da a conocer por su nombre
//   anfitrion URL                         lo demás, con la base de datos de esa URL
#include <zvconfiguracion/zv.hpp>

#include <iostream>

namespace {

using zv::client::Failure;
using zv::client::Library;
using zv::client::Object;
using zv::client::Session;

constexpr int estadoCivil = 65;

void ask(const Object& facade, const Session& session)
{
    facade.call("ObtenerDatos", session);
    const bool free = facade.call("Eliminar", estadoCivil).truth();
    std::cout << "Eliminar: " << (free ? "se puede" : "no se puede") << '\n';
}

void run(const Object& facade, Session& session)
{
    const Object connection = session.get("conexionlocalCENTRO").object();
    facade.call("ObtenerDatos", session);
    facade.call("ActivarFormulario", estadoCivil);
    const Object rows =
        connection.call("Execute", "Select IDEstadoCivil,Descripcion From EstadoCivil").object();
    for (; !rows.get("EOF").truth(); rows.call("MoveNext"))
        std::cout << "Nuevo: " << rows.get("Fields", "Descripcion").object().get("Value").text() << '\n';

    session.set("lngRowData", 1);
    ask(facade, session);
    connection.call("Execute", "Insert Into Personal (IDPersonal,CodEstadoCivil) Values (1,1)");
    ask(facade, session);

    // Una sesión a la que le falta un miembro, y otra vez una buena.
    session.remove("IDPerfil");
    try {
        facade.call("ObtenerDatos", session);
    } catch (const Failure& failure) {
        std::cout << "Fallo " << failure.number() << ": " << failure.what() << '\n';
    }
    session.add("IDPerfil", 0);
    ask(facade, session);
}

void show(const std::string& url)
{
    const Library data = Library::registered("ZVDatos.Conexion");
    Library module = Library::registered("ZVConfiguracion.cAsignarDatos");
    Session session = zv::client::openSession(data, url);
    run(module.create(ZV_CLSID_cAsignarDatos), session);
    if (!module.unload())
        throw std::runtime_error("queda algún objeto sin soltar");
    std::cout << "Referencias a la sesión: " << session.references() << '\n';
}

} // namespace

int main(int argc, char** argv)
try {
    if (argc > 2 && argv[1] == std::string("--registrar"))
        for (int i = 2; i < argc; ++i)
            Library(argv[i]).enroll();
    else if (argc == 2)
        show(argv[1]);
    else
        throw std::runtime_error("lleva la URL de una base de datos, o --registrar y las bibliotecas");
    return 0;
} catch (const std::exception& error) {
    std::cerr << "anfitrion: " << error.what() << '\n';
    return 2;
}
