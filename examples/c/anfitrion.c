/* Un anfitrión pequeño: abre la ventana de estados civiles, pregunta si una fila se puede eliminar y ve cómo se
 * cuenta un fallo.
 *   anfitrion --registrar BIBLIOTECA...   las da a conocer por su nombre
 *   anfitrion URL                         lo demás, con la base de datos de esa URL */
#include <zvconfiguracion/library.h>
#include <zvconfiguracion/servers.h>
#include <zvconfiguracion/session.h>
#include <zvconfiguracion/zvconfiguracion.h>
#include <zvconfiguracion/zvdatos.h>

enum { ESTADO_CIVIL = 65 };

static void stop(const char *what, const char *why)
{
    fprintf(stderr, "anfitrion: %s: %s\n", what, why);
    exit(2);
}

/* Una llamada que no debe fallar. */
static ZvVariant must(void *object, const char *member, ZvVariant argument)
{
    ZvVariant result;
    ZvFailure failure;
    if (zv_call(object, member, argument, &result, &failure) < 0)
        stop(member, failure.text);
    return result;
}

static void mustSet(ZvSession *session, const char *member, ZvVariant value)
{
    if (zv_session_set(session, member, value) < 0)
        stop(member, "no hay memoria");
}

static ZvLibrary load(const char *progId)
{
    ZvLibrary library;
    ZvServer server;
    ZvFailure failure;
    if (!zv_find_server(progId, &server))
        stop(progId, "no está registrado; use --registrar");
    if (zv_library_open(&library, server.library, &failure) < 0)
        stop(progId, failure.text);
    return library;
}

static void *create(const ZvLibrary *library, const ZvGuid *class)
{
    void *object;
    if (zv_library_create(library, class, &ZV_IID_IDispatch, &object) < 0)
        stop("biblioteca", "no se puede crear el objeto");
    return object;
}

/* Suelta el objeto y la biblioteca, que debe poder irse. */
static void leave(ZvLibrary *library, void *object)
{
    zv_release(object);
    if (zv_library_close(library) != ZV_OK)
        stop("biblioteca", "queda algún objeto sin soltar");
}

static void ask(void *facade, ZvSession *session)
{
    must(facade, "ObtenerDatos", zv_object(session));
    printf("Eliminar: %s\n",
           must(facade, "Eliminar", zv_long(ESTADO_CIVIL)).value.boolean ? "se puede" : "no se puede");
}

static void list(void *connection)
{
    ZvVariant rows = must(connection, "Execute", zv_text("Select IDEstadoCivil,Descripcion From EstadoCivil"));
    while (!must(rows.value.dispatch, "EOF", zv_empty()).value.boolean) {
        ZvVariant field = must(rows.value.dispatch, "Fields", zv_text("Descripcion"));
        ZvVariant value = must(field.value.dispatch, "Value", zv_empty());
        char text[256];
        zv_utf8(value.value.text, text, sizeof text);
        printf("Nuevo: %s\n", text);
        zv_variant_clear(&value);
        zv_variant_clear(&field);
        must(rows.value.dispatch, "MoveNext", zv_empty());
    }
    zv_variant_clear(&rows);
}

static void run(void *facade, void *connection, ZvSession *session)
{
    ZvFailure failure;
    ZvVariant rows;
    must(facade, "ObtenerDatos", zv_object(session));
    must(facade, "ActivarFormulario", zv_long(ESTADO_CIVIL));
    list(connection);

    mustSet(session, "lngRowData", zv_long(1));
    ask(facade, session);
    rows = must(connection, "Execute",
                zv_text("Insert Into Personal (IDPersonal,CodEstadoCivil) Values (1,1)"));
    zv_variant_clear(&rows);
    ask(facade, session);

    /* Una sesión a la que le falta un miembro, y otra vez una buena. */
    zv_session_remove(session, "IDPerfil");
    if (zv_call(facade, "ObtenerDatos", zv_object(session), NULL, &failure) >= 0)
        stop("ObtenerDatos", "un fallo no se ha contado");
    printf("Fallo %d: %s\n", (int)failure.number, failure.text);
    mustSet(session, "IDPerfil", zv_long(0));
    ask(facade, session);
}

static int registerAll(char **files)
{
    ZvFailure failure;
    for (; *files != NULL; ++files) {
        ZvLibrary library;
        if (zv_library_open(&library, *files, &failure) < 0)
            stop(*files, failure.text);
        if (library.registerServer() != ZV_OK)
            stop(*files, "no se puede registrar");
        zv_library_close(&library);
    }
    return 0;
}

int main(int argc, char **argv)
{
    ZvLibrary data, module;
    void *connection, *facade;
    ZvSession *session;
    uint32_t references;
    if (argc > 2 && strcmp(argv[1], "--registrar") == 0)
        return registerAll(argv + 2);
    if (argc != 2)
        stop("argumentos", "lleva la URL de una base de datos, o --registrar y las bibliotecas");
    data = load("ZVDatos.Conexion");
    module = load("ZVConfiguracion.cAsignarDatos");
    connection = create(&data, &ZV_CLSID_Conexion);
    facade = create(&module, &ZV_CLSID_cAsignarDatos);
    must(connection, "Open", zv_text(argv[1]));
    session = zv_session_new(connection);
    if (session == NULL)
        stop("sesión", "no hay memoria");
    run(facade, connection, session);
    leave(&module, facade);
    references = session->references;
    zv_release(session);
    must(connection, "Close", zv_empty());
    leave(&data, connection);
    printf("Referencias a la sesión: %u\n", (unsigned)references);
    return references != 1;
}
