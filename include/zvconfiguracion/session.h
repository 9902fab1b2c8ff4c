/* El objeto de sesión que pide ObtenerDatos, para un anfitrión en C: miembros con su valor, que el módulo lee
 * y escribe por su nombre, sin distinguir mayúsculas.
 *
 * Nace con una referencia, que se suelta con zv_release; con la última se libera, y suelta sus conexiones.
 * Contar referencias vale desde cualquier hilo; lo demás, de uno a la vez. */
#ifndef ZVCONFIGURACION_SESSION_H
#define ZVCONFIGURACION_SESSION_H

#include <zvconfiguracion/calls.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZvSessionMember {
    ZvBstr name;
    int present; /* Los quitados guardan su sitio, que es su número. */
    ZvVariant value;
} ZvSessionMember;

typedef struct ZvSession {
    const ZvDispatchVtbl* vtbl;
    uint32_t references; /* 1 cuando nadie más la tiene. */
    uint32_t count;
    ZvSessionMember* members;
} ZvSession;

static inline uint16_t zv_session_lower(uint16_t unit)
{
    return (uint16_t)(unit >= 'A' && unit <= 'Z' ? unit + 32 : unit);
}

/* El miembro de ese nombre, presente o quitado; nulo si nunca lo hubo. */
static inline ZvSessionMember* zv_session_find(const ZvSession* session, const uint16_t* name)
{
    uint32_t i;
    for (i = 0; i < session->count; ++i) {
        const uint16_t* own = session->members[i].name;
        size_t k = 0;
        while (own[k] != 0 && zv_session_lower(own[k]) == zv_session_lower(name[k]))
            ++k;
        if (own[k] == 0 && name[k] == 0)
            return &session->members[i];
    }
    return NULL;
}

static inline ZvResult ZV_CALL zv_session_query(ZvUnknown* self, const ZvGuid* id, void** place)
{
    if (place == NULL)
        return ZV_E_POINTER;
    *place = NULL;
    if (memcmp(id, &ZV_IID_IUnknown, sizeof *id) != 0 && memcmp(id, &ZV_IID_IDispatch, sizeof *id) != 0)
        return ZV_E_NOINTERFACE;
    self->vtbl->AddRef(self);
    *place = self;
    return ZV_OK;
}

static inline uint32_t ZV_CALL zv_session_add_ref(ZvUnknown* self)
{
    return __atomic_add_fetch(&((ZvSession*)(void*)self)->references, 1, __ATOMIC_RELAXED);
}

static inline uint32_t ZV_CALL zv_session_release(ZvUnknown* self)
{
    ZvSession* session = (ZvSession*)(void*)self;
    const uint32_t left = __atomic_sub_fetch(&session->references, 1, __ATOMIC_ACQ_REL);
    uint32_t i;
    if (left != 0)
        return left;
    for (i = 0; i < session->count; ++i) {
        zv_bstr_free(session->members[i].name);
        zv_variant_clear(&session->members[i].value);
    }
    free(session->members);
    free(session);
    return 0;
}

static inline ZvResult ZV_CALL zv_session_type_count(ZvDispatch* self, uint32_t* count)
{
    (void)self;
    if (count == NULL)
        return ZV_E_POINTER;
    *count = 0;
    return ZV_OK;
}

static inline ZvResult ZV_CALL zv_session_type(ZvDispatch* self, uint32_t index, uint32_t language,
                                               void** info)
{
    (void)self, (void)index, (void)language;
    if (info != NULL)
        *info = NULL;
    return info == NULL ? ZV_E_POINTER : ZV_DISP_BADINDEX;
}

static inline ZvResult ZV_CALL zv_session_names(ZvDispatch* self, const ZvGuid* reserved, uint16_t** names,
                                                uint32_t count, uint32_t language, int32_t* ids)
{
    const ZvSession* session = (const ZvSession*)(void*)self;
    const ZvSessionMember* member;
    uint32_t i;
    (void)reserved, (void)language;
    if (count == 0 || names == NULL || names[0] == NULL || ids == NULL)
        return ZV_E_INVALIDARG;
    for (i = 0; i < count; ++i)
        ids[i] = ZV_DISPID_UNKNOWN;
    member = zv_session_find(session, names[0]);
    if (member != NULL && member->present)
        ids[0] = (int32_t)(member - session->members) + 1;
    return ids[0] == ZV_DISPID_UNKNOWN || count > 1 ? ZV_DISP_UNKNOWNNAME : ZV_OK;
}

/* Cambia un valor por otro, del que es dueño; lo que se suelta puede volver a entrar, y encuentra ya el
 * nuevo. */
static inline void zv_session_store(ZvSessionMember* member, ZvVariant value)
{
    ZvVariant old = member->value;
    member->value = value;
    zv_variant_clear(&old);
}

static inline ZvResult ZV_CALL zv_session_invoke(ZvDispatch* self, int32_t id, const ZvGuid* reserved,
                                                 uint32_t language, uint16_t modes, ZvParams* params,
                                                 ZvVariant* result, ZvException* exception,
                                                 uint32_t* argument)
{
    ZvSession* session = (ZvSession*)(void*)self;
    const uint32_t given = params != NULL ? params->count : 0;
    const int writes = (modes & (ZV_PROPERTYPUT | ZV_PROPERTYPUTREF)) != 0;
    ZvVariant value;
    ZvResult done;
    (void)reserved, (void)language, (void)exception, (void)argument;
    if (id < 1 || (uint32_t)id > session->count || !session->members[id - 1].present)
        return ZV_DISP_MEMBERNOTFOUND;
    if (given != (writes ? 1U : 0U))
        return ZV_DISP_BADPARAMCOUNT;
    done = zv_variant_copy(&value, writes ? params->arguments : &session->members[id - 1].value);
    if (done < 0)
        return done;
    if (writes)
        zv_session_store(&session->members[id - 1], value);
    else if (result != NULL)
        *result = value;
    else
        zv_variant_clear(&value);
    return ZV_OK;
}

/* Da valor a un miembro, que si no estaba se añade. El valor queda dado, también si falta memoria
 * (ZV_E_OUTOFMEMORY). */
static inline ZvResult zv_session_set(ZvSession* session, const char* name, ZvVariant value)
{
    ZvBstr own = zv_bstr_utf8(name, strlen(name));
    ZvSessionMember* member = own == NULL ? NULL : zv_session_find(session, own);
    if (own != NULL && member == NULL) {
        member = (ZvSessionMember*)realloc(session->members, (session->count + 1) * sizeof *member);
        if (member != NULL) {
            session->members = member;
            member += session->count++;
            member->name = own;
            member->value = zv_empty();
            own = NULL;
        }
    }
    zv_bstr_free(own);
    if (member == NULL || (value.vt == ZV_VT_ERROR && value.value.error == ZV_E_OUTOFMEMORY)) {
        zv_variant_clear(&value);
        return ZV_E_OUTOFMEMORY;
    }
    member->present = 1;
    zv_session_store(member, value);
    return ZV_OK;
}

/* Lo que vale un miembro, para mirarlo hasta el próximo cambio; nulo si no está. */
static inline const ZvVariant* zv_session_get(const ZvSession* session, const char* name)
{
    ZvBstr units = zv_bstr_utf8(name, strlen(name));
    const ZvSessionMember* member = units == NULL ? NULL : zv_session_find(session, units);
    zv_bstr_free(units);
    return member != NULL && member->present ? &member->value : NULL;
}

/* Quita un miembro: al módulo le falla con 438 y su nombre. */
static inline void zv_session_remove(ZvSession* session, const char* name)
{
    ZvBstr units = zv_bstr_utf8(name, strlen(name));
    ZvSessionMember* member = units == NULL ? NULL : zv_session_find(session, units);
    zv_bstr_free(units);
    if (member == NULL)
        return;
    member->present = 0;
    zv_session_store(member, zv_empty());
}

/* Una sesión con los dieciocho miembros que lee ObtenerDatos: las tres conexiones son ésa (o ninguna; las de
 * las otras dos bases se dan con zv_session_set), está activa y va a crear una fila (Accion 1), los textos
 * están vacíos y los números son 0. Nulo si no hay memoria. */
static inline ZvSession* zv_session_new(void* connection)
{
    static const ZvDispatchVtbl table = {{zv_session_query, zv_session_add_ref, zv_session_release},
                                         zv_session_type_count,
                                         zv_session_type,
                                         zv_session_names,
                                         zv_session_invoke};
    static const char* const connections[] = {"conexionlocalCENTRO", "conexionBORRADOlocalCENTRO",
                                              "conexionAppEntrada"};
    static const char* const texts[] = {"RutaAplicacion", "RutaBD", "NombreUsuario", "NombreCentro",
                                        "RutaIcono"};
    static const char* const numbers[] = {"lngRowData", "IDPerfil", "IDUsuario", "IDCentro",
                                          "IDCursoEscolar"};
    static const char* const truths[] = {"Activa", "Pesetas", "MTP", "sqlserver"};
    ZvSession* session = (ZvSession*)calloc(1, sizeof *session);
    ZvResult done;
    size_t i;
    if (session == NULL)
        return NULL;
    session->vtbl = &table;
    session->references = 1;
    done = zv_session_set(session, "Accion", zv_long(1));
    for (i = 0; done >= 0 && i < sizeof connections / sizeof *connections; ++i)
        done = zv_session_set(session, connections[i], zv_object(connection));
    for (i = 0; done >= 0 && i < sizeof texts / sizeof *texts; ++i)
        done = zv_session_set(session, texts[i], zv_text(""));
    for (i = 0; done >= 0 && i < sizeof numbers / sizeof *numbers; ++i)
        done = zv_session_set(session, numbers[i], zv_long(0));
    for (i = 0; done >= 0 && i < sizeof truths / sizeof *truths; ++i)
        done = zv_session_set(session, truths[i], zv_bool(i == 0));
    if (done >= 0)
        return session;
    zv_release(session);
    return NULL;
}

#ifdef __cplusplus
}
#endif

#endif
