/* Un anfitrión que llama por la tabla: sin buscar nombres, con los tipos del lenguaje. Hace lo mismo que anfitrion.c; de un
 * fallo le llega el número, sin texto. En Windows los objetos los crea el sistema (CoCreateInstance), y <oleauto.h> está
 * en el mismo fichero.
 *   tabla URL   con las bibliotecas ya registradas, y la base de datos de esa URL */
#ifdef _WIN32
#include <windows.h>

#include <oleauto.h>
#endif
#include <zvconfiguracion/library.h>
#include <zvconfiguracion/servers.h>
#include <zvconfiguracion/session.h>
#include <zvconfiguracion/zvconfiguracion.h>
#include <zvconfiguracion/zvdatos.h>

enum { ESTADO_CIVIL = 65 };

static void stop(const char *what, const char *why)
{
    fprintf(stderr, "tabla: %s: %s\n", what, why);
    exit(2);
}

/* Un objeto de una clase, y la biblioteca de la que es, donde hay que cargarla. */
static void *create(ZvLibrary *library, const char *progId, const ZvGuid *class, const ZvGuid *interfaceId)
{
    void *object = NULL;
#ifdef _WIN32
    memset(library, 0, sizeof *library);
    if (FAILED(CoCreateInstance((const GUID *)class, NULL, CLSCTX_INPROC_SERVER, (const GUID *)interfaceId,
                                &object)))
        stop(progId, "no se puede crear; registre su biblioteca con regsvr32");
#else
    ZvServer server;
    ZvFailure failure;
    if (!zv_find_server(progId, &server))
        stop(progId, "no está registrado");
    if (zv_library_open(library, server.library, &failure) < 0)
        stop(progId, failure.text);
    if (zv_library_create(library, class, interfaceId, &object) < 0)
        stop(progId, "no se puede crear");
#endif
    return object;
}

/* Suelta las bibliotecas, que deben poder irse. */
static void leave(ZvLibrary *library)
{
#ifdef _WIN32
    (void)library;
    CoFreeUnusedLibrariesEx(0, 0);
#else
    if (zv_library_close(library) != ZV_OK)
        stop("biblioteca", "queda algún objeto sin soltar");
#endif
}

static ZvVariant must(void *object, const char *member, ZvVariant argument)
{
    ZvVariant result;
    ZvFailure failure;
    if (zv_call(object, member, argument, &result, &failure) < 0)
        stop(member, failure.text);
    return result;
}

static void expect(const char *what, ZvResult result)
{
    char why[32];
    snprintf(why, sizeof why, "fallo %d", (int)zv_failure_number(result));
    if (result < 0)
        stop(what, why);
}

static void ask(Zv_cAsignarDatos *facade, ZvSession *session)
{
    ZvDispatch *object = (ZvDispatch *)(void *)session;
    ZvBool free = 0;
    expect("ObtenerDatos", facade->vtbl->ObtenerDatos(facade, &object));
    expect("Eliminar", facade->vtbl->Eliminar(facade, ESTADO_CIVIL, &free));
    printf("Eliminar: %s\n", free ? "se puede" : "no se puede");
}

static void run(Zv_cAsignarDatos *facade, void *connection, ZvSession *session)
{
    ZvDispatch *object = (ZvDispatch *)(void *)session;
    ZvVariant rows;
    ZvResult failed;
    expect("ObtenerDatos", facade->vtbl->ObtenerDatos(facade, &object));
    expect("ActivarFormulario", facade->vtbl->ActivarFormulario(facade, ESTADO_CIVIL));

    zv_session_set(session, "lngRowData", zv_long(1));
    ask(facade, session);
    rows = must(connection, "Execute",
                zv_text("Insert Into Personal (IDPersonal,CodEstadoCivil) Values (1,1)"));
    zv_variant_clear(&rows);
    ask(facade, session);

    zv_session_remove(session, "IDPerfil");
    failed = facade->vtbl->ObtenerDatos(facade, &object);
    printf("Fallo %d\n", (int)zv_failure_number(failed));
    zv_session_set(session, "IDPerfil", zv_long(0));
    ask(facade, session);
}

int main(int argc, char **argv)
{
    ZvLibrary data, module;
    void *connection;
    Zv_cAsignarDatos *facade;
    ZvSession *session;
    uint32_t references;
    if (argc != 2)
        stop("argumentos", "lleva la URL de una base de datos");
#ifdef _WIN32
    CoInitialize(NULL);
#endif
    connection = create(&data, "ZVDatos.Conexion", &ZV_CLSID_Conexion, &ZV_IID_IDispatch);
    facade = (Zv_cAsignarDatos *)create(&module, "ZVConfiguracion.cAsignarDatos", &ZV_CLSID_cAsignarDatos,
                                        &ZV_IID__cAsignarDatos);
    must(connection, "Open", zv_text(argv[1]));
    session = zv_session_new(connection);
    if (session == NULL)
        stop("sesión", "no hay memoria");
    run(facade, connection, session);
    zv_release(facade);
    leave(&module);
    references = session->references;
    zv_release(session);
    zv_release(connection);
    leave(&data);
#ifdef _WIN32
    CoUninitialize();
#endif
    printf("Referencias a la sesión: %u\n", (unsigned)references);
    return references != 1;
}
