/* Un anfitrión pequeño: abre la ventana de estados civiles, pregunta si una fila se puede eliminar y ve cómo se
 * cuenta un fallo.
 *   anfitrion --registrar BIBLIOTECA...   las da a conocer por su nombre
 *   anfitrion URL                         lo demás, con la base de datos de esa URL */
#include <zvconfiguracion/servers.h>
#include <zvconfiguracion/zvconfiguracion.h>
#include <zvconfiguracion/zvdatos.h>

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { ESTADO_CIVIL = 65, NUEVO = 1 };

static void stop(const char *what)
{
    fprintf(stderr, "anfitrion: %s\n", what);
    exit(2);
}

/* Los textos de este programa no llevan más que ASCII; los que llegan, sí. */
static ZvBstr bstr(const char *text)
{
    uint16_t units[256];
    size_t i, length = strlen(text);
    for (i = 0; i < length && i < 256; ++i)
        units[i] = (unsigned char)text[i];
    return zv_bstr_new(units, i);
}

static void print(const uint16_t *text)
{
    size_t i;
    for (i = 0; i < zv_bstr_length(text); ++i)
        if (text[i] < 0x80)
            putchar(text[i]);
        else if (text[i] < 0x800)
            printf("%c%c", 0xC0 | text[i] >> 6, 0x80 | (text[i] & 0x3F));
        else
            printf("%c%c%c", 0xE0 | text[i] >> 12, 0x80 | (text[i] >> 6 & 0x3F), 0x80 | (text[i] & 0x3F));
}

static ZvVariant number(int32_t value)
{
    ZvVariant v = {0};
    v.vt = ZV_VT_I4;
    v.value.i4 = value;
    return v;
}

static ZvVariant text(const char *value)
{
    ZvVariant v = {0};
    v.vt = ZV_VT_BSTR;
    v.value.text = bstr(value);
    return v;
}

static ZvVariant object(void *value)
{
    ZvVariant v = {0};
    v.vt = ZV_VT_DISPATCH;
    v.value.dispatch = value;
    return v;
}

/* La sesión: un objeto con miembros, que el módulo llama por su nombre. Vive en el programa, así que sólo cuenta
 * sus referencias para poder decir al final si alguien la retiene. */
struct Session {
    const ZvDispatchVtbl *vtbl;
    uint32_t references;
    size_t count;
    const char *names[20];
    ZvVariant values[20];
};

static ZvResult sessionQuery(ZvUnknown *self, const ZvGuid *id, void **place)
{
    *place = NULL;
    if (memcmp(id, &ZV_IID_IUnknown, sizeof *id) != 0 && memcmp(id, &ZV_IID_IDispatch, sizeof *id) != 0)
        return ZV_E_NOINTERFACE;
    ++((struct Session *)self)->references;
    *place = self;
    return ZV_OK;
}
static uint32_t sessionAddRef(ZvUnknown *self) { return ++((struct Session *)self)->references; }
static uint32_t sessionRelease(ZvUnknown *self) { return --((struct Session *)self)->references; }

static int sameName(const uint16_t *asked, const char *name)
{
    while (*asked != 0 && (*asked | 0x20) == ((unsigned char)*name | 0x20)) {
        ++asked;
        ++name;
    }
    return *asked == 0 && *name == '\0';
}

static ZvResult sessionNames(ZvDispatch *self, const ZvGuid *reserved, uint16_t **names, uint32_t count,
                             uint32_t language, int32_t *ids)
{
    struct Session *session = (struct Session *)self;
    size_t i;
    (void)reserved, (void)language, (void)count;
    for (i = 0; i < session->count; ++i)
        if (session->names[i] != NULL && sameName(names[0], session->names[i])) {
            ids[0] = (int32_t)i + 1;
            return ZV_OK;
        }
    ids[0] = ZV_DISPID_UNKNOWN;
    return ZV_DISP_UNKNOWNNAME;
}

static ZvResult sessionInvoke(ZvDispatch *self, int32_t id, const ZvGuid *reserved, uint32_t language,
                              uint16_t modes, ZvParams *params, ZvVariant *result, ZvException *exception,
                              uint32_t *argument)
{
    struct Session *session = (struct Session *)self;
    ZvVariant *member = &session->values[id - 1];
    (void)reserved, (void)language, (void)exception, (void)argument;
    if (modes & ZV_PROPERTYPUT) {
        *member = params->arguments[0]; /* El módulo sólo escribe números: Accion y lngRowData. */
        return ZV_OK;
    }
    *result = *member;
    if (member->vt == ZV_VT_BSTR)
        result->value.text = zv_bstr_new(member->value.text, zv_bstr_length(member->value.text));
    if (member->vt == ZV_VT_DISPATCH && member->value.dispatch != NULL)
        member->value.unknown->vtbl->AddRef(member->value.unknown);
    return ZV_OK;
}

static const ZvDispatchVtbl sessionTable = {
    {sessionQuery, sessionAddRef, sessionRelease}, NULL, NULL, sessionNames, sessionInvoke};

static ZvVariant *member(struct Session *session, const char *name)
{
    size_t i;
    for (i = 0; i < session->count; ++i)
        if (session->names[i] != NULL && strcmp(session->names[i], name) == 0)
            return &session->values[i];
    session->names[i] = name;
    ++session->count;
    return &session->values[i];
}

static void fill(struct Session *session, void *connection)
{
    static const char *texts[] = {"RutaAplicacion", "RutaBD", "NombreUsuario", "NombreCentro", "RutaIcono"};
    static const char *numbers[] = {"IDPerfil", "IDUsuario", "IDCentro", "IDCursoEscolar",
                                    "Pesetas",  "MTP",       "sqlserver", "lngRowData"};
    static const char *connections[] = {"conexionlocalCENTRO", "conexionBORRADOlocalCENTRO",
                                        "conexionAppEntrada"};
    size_t i;
    for (i = 0; i < sizeof texts / sizeof *texts; ++i)
        *member(session, texts[i]) = text("");
    for (i = 0; i < sizeof numbers / sizeof *numbers; ++i)
        *member(session, numbers[i]) = number(0);
    for (i = 0; i < sizeof connections / sizeof *connections; ++i)
        *member(session, connections[i]) = object(connection);
    *member(session, "Activa") = number(-1);
    *member(session, "Accion") = number(NUEVO);
}

/* Llama a un miembro por su nombre, con un argumento a lo más, que queda liberado. */
static ZvResult call(void *object, const char *name, uint16_t modes, ZvVariant argument, ZvVariant *result,
                     ZvException *exception)
{
    ZvDispatch *self = object;
    ZvParams params = {&argument, NULL, argument.vt != ZV_VT_EMPTY, 0};
    ZvBstr units = bstr(name);
    int32_t id = 0;
    ZvResult done;
    memset(result, 0, sizeof *result);
    memset(exception, 0, sizeof *exception);
    done = self->vtbl->GetIDsOfNames(self, &ZV_IID_NULL, &units, 1, 0, &id);
    if (done >= 0)
        done = self->vtbl->Invoke(self, id, &ZV_IID_NULL, 0, modes, &params, result, exception, NULL);
    zv_bstr_free(units);
    if (argument.vt == ZV_VT_BSTR)
        zv_variant_clear(&argument);
    return done;
}

static ZvVariant must(void *object, const char *name, uint16_t modes, ZvVariant argument)
{
    ZvVariant result;
    ZvException exception;
    if (call(object, name, modes, argument, &result, &exception) < 0) {
        print(exception.description);
        fflush(stdout);
        stop(name);
    }
    return result;
}

struct Server {
    void *library;
    void *object;
};

static struct Server create(const char *progId, const ZvGuid *interface)
{
    struct Server result = {NULL, NULL};
    ZvServer server;
    ZvClassFactory *factory = NULL;
    ZvGetClassObject entry;
    void *symbol;
    if (!zv_find_server(progId, &server))
        stop("no está registrado; use --registrar");
    result.library = dlopen(server.library, RTLD_NOW | RTLD_LOCAL);
    if (result.library == NULL)
        stop(dlerror());
    symbol = dlsym(result.library, "DllGetClassObject");
    memcpy(&entry, &symbol, sizeof entry);
    if (entry(&server.classId, &ZV_IID_IClassFactory, (void **)&factory) < 0 ||
        factory->vtbl->CreateInstance(factory, NULL, interface, &result.object) < 0)
        stop("no se puede crear el objeto");
    zv_release(factory);
    return result;
}

/* Suelta el objeto y la biblioteca, que debe poder irse. */
static void leave(struct Server server)
{
    ZvEntryPoint canUnload;
    void *symbol = dlsym(server.library, "DllCanUnloadNow");
    memcpy(&canUnload, &symbol, sizeof canUnload);
    zv_release(server.object);
    if (canUnload() != ZV_OK)
        stop("queda algún objeto sin soltar");
    dlclose(server.library);
}

static void askEliminar(Zv_cAsignarDatos *facade, ZvDispatch *session)
{
    if (facade->vtbl->ObtenerDatos(facade, &session) < 0)
        stop("ObtenerDatos");
    /* Por su nombre, y no por la tabla: un fallo trae así su texto. */
    printf("Eliminar: %s\n",
           must(facade, "Eliminar", ZV_METHOD, number(ESTADO_CIVIL)).value.boolean ? "se puede" : "no se puede");
}

static void run(Zv_cAsignarDatos *facade, void *connection, struct Session *session)
{
    ZvDispatch *host = (ZvDispatch *)session;
    ZvVariant rows, field, value, nothing = {0};
    ZvException exception;
    if (facade->vtbl->ObtenerDatos(facade, &host) < 0)
        stop("ObtenerDatos");
    must(facade, "ActivarFormulario", ZV_METHOD, number(ESTADO_CIVIL));
    rows = must(connection, "Execute", ZV_METHOD, text("Select IDEstadoCivil,Descripcion From EstadoCivil"));
    while (value = must(rows.value.dispatch, "EOF", ZV_PROPERTYGET, nothing), value.value.boolean == 0) {
        field = must(rows.value.dispatch, "Fields", ZV_PROPERTYGET, text("Descripcion"));
        value = must(field.value.dispatch, "Value", ZV_PROPERTYGET, nothing);
        printf("Nuevo: ");
        print(value.value.text);
        printf("\n");
        zv_variant_clear(&value);
        zv_variant_clear(&field);
        must(rows.value.dispatch, "MoveNext", ZV_METHOD, nothing);
    }
    zv_variant_clear(&rows);

    *member(session, "lngRowData") = number(1);
    askEliminar(facade, host);
    rows = must(connection, "Execute", ZV_METHOD,
                text("Insert Into Personal (IDPersonal,CodEstadoCivil) Values (1,1)"));
    zv_variant_clear(&rows);
    askEliminar(facade, host);

    /* Una sesión a la que le falta un miembro, y otra vez una buena. */
    session->names[member(session, "IDPerfil") - session->values] = NULL;
    if (call(facade, "ObtenerDatos", ZV_METHOD, object(session), &value, &exception) != ZV_DISP_EXCEPTION)
        stop("un fallo no se ha contado");
    printf("Fallo %d: ", (int)(exception.result - ZV_FAILURE_BASE));
    print(exception.description);
    printf("\n");
    zv_bstr_free(exception.source);
    zv_bstr_free(exception.description);
    *member(session, "IDPerfil") = number(0);
    askEliminar(facade, host);
}

static int registerAll(char **libraries)
{
    for (; *libraries != NULL; ++libraries) {
        ZvEntryPoint entry;
        void *symbol, *library = dlopen(*libraries, RTLD_NOW | RTLD_LOCAL);
        if (library == NULL)
            stop(dlerror());
        symbol = dlsym(library, "DllRegisterServer");
        memcpy(&entry, &symbol, sizeof entry);
        if (entry() != ZV_OK)
            stop("no se puede registrar");
        dlclose(library);
    }
    return 0;
}

int main(int argc, char **argv)
{
    static struct Session session;
    struct Server data, module;
    size_t i;
    if (argc > 2 && strcmp(argv[1], "--registrar") == 0)
        return registerAll(argv + 2);
    if (argc != 2)
        stop("lleva la URL de una base de datos, o --registrar y las bibliotecas");
    data = create("ZVDatos.Conexion", &ZV_IID_IDispatch);
    module = create("ZVConfiguracion.cAsignarDatos", &ZV_IID__cAsignarDatos);
    must(data.object, "Open", ZV_METHOD, text(argv[1]));
    session.vtbl = &sessionTable;
    session.references = 1;
    fill(&session, data.object);
    run(module.object, data.object, &session);
    must(data.object, "Close", ZV_METHOD, (ZvVariant){0});
    leave(module);
    leave(data);
    for (i = 0; i < session.count; ++i)
        if (session.values[i].vt == ZV_VT_BSTR)
            zv_variant_clear(&session.values[i]);
    printf("Referencias a la sesión: %u\n", (unsigned)session.references);
    return session.references != 1;
}
