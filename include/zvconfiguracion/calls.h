/* Textos en UTF-8, valores y llamadas por nombre, para un anfitrión en C.
 *
 * Un valor que se da (a zv_call, zv_put, zv_session_set) queda dado: lo libera quien lo recibe, también si
 * falla. Uno que se recibe lo libera quien llamó, con zv_variant_clear. */
#ifndef ZVCONFIGURACION_CALLS_H
#define ZVCONFIGURACION_CALLS_H

#include <zvconfiguracion/automation.h>

#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif

/* El idioma en que están los nombres de los miembros: español. */
enum { ZV_SPANISH = 0x0C0A };

/* El carácter de UTF-8 que hay en *at, que queda detrás de él; lo mal escrito da U+FFFD. */
static inline uint32_t zv_utf8_next(const char** at, const char* end)
{
    static const uint32_t least[] = {0, 0x80, 0x800, 0x10000};
    const uint32_t first = (unsigned char)*(*at)++;
    const int more = first < 0x80                    ? 0
                     : first >= 0xF0 && first < 0xF8 ? 3
                     : first >= 0xE0 && first < 0xF0 ? 2
                     : first >= 0xC0 && first < 0xE0 ? 1
                                                     : -1;
    uint32_t code = more <= 0 ? first : first & (0x3FU >> more);
    int i;
    for (i = 0; i < more; ++i) {
        if (*at == end || ((unsigned char)**at & 0xC0) != 0x80)
            return 0xFFFD;
        code = code << 6 | ((unsigned char)*(*at)++ & 0x3FU);
    }
    if (more < 0 || code < least[more] || code > 0x10FFFF || (code & 0xFFFFF800) == 0xD800)
        return 0xFFFD;
    return code;
}

/* Un texto nuevo, de esos octetos de UTF-8; nulo si no hay memoria. */
static inline ZvBstr zv_bstr_utf8(const char* text, size_t bytes)
{
    const char* at;
    const char* end = text + bytes;
    size_t count = 0;
    ZvBstr result;
    for (at = text; at != end;)
        count += zv_utf8_next(&at, end) > 0xFFFF ? 2 : 1;
    result = zv_bstr_new(NULL, count);
    for (at = text, count = 0; result != NULL && at != end;) {
        const uint32_t code = zv_utf8_next(&at, end);
        if (code > 0xFFFF)
            result[count++] = (uint16_t)(0xD7C0 + (code >> 10));
        result[count++] = (uint16_t)(code > 0xFFFF ? 0xDC00 | (code & 0x3FF) : code);
    }
    return result;
}

/* Escribe el texto en UTF-8 y un cero detrás, cortado entre dos caracteres si no cabe, y devuelve los octetos
 * que ocupa entero, sin el cero: como snprintf. Con tamaño 0 sólo los cuenta. */
static inline size_t zv_utf8(const uint16_t* text, char* place, size_t size)
{
    const size_t length = zv_bstr_length(text);
    size_t i, needed = 0, written = 0;
    for (i = 0; i < length; ++i) {
        uint32_t code = text[i];
        char bytes[4];
        size_t count = 0;
        if ((code & 0xFC00) == 0xD800 && i + 1 < length && (text[i + 1] & 0xFC00) == 0xDC00)
            code = 0x10000 + ((code & 0x3FF) << 10 | (text[++i] & 0x3FFU));
        else if ((code & 0xF800) == 0xD800)
            code = 0xFFFD;
        if (code < 0x80) {
            bytes[count++] = (char)code;
        } else {
            const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
            int k;
            bytes[count++] = (char)((0xFF00U >> (more + 1) & 0xFF) | code >> 6 * more);
            for (k = more - 1; k >= 0; --k)
                bytes[count++] = (char)(0x80 | (code >> 6 * k & 0x3F));
        }
        needed += count;
        if (needed < size) {
            memcpy(place + written, bytes, count);
            written = needed;
        }
    }
    if (size != 0)
        place[written] = '\0';
    return needed;
}

/* Los valores. Vacío es, en una llamada, «sin argumento». */
static inline ZvVariant zv_empty(void)
{
    ZvVariant value;
    memset(&value, 0, sizeof value);
    return value;
}
static inline ZvVariant zv_long(int32_t number)
{
    ZvVariant value = zv_empty();
    value.vt = ZV_VT_I4;
    value.value.i4 = number;
    return value;
}
static inline ZvVariant zv_bool(int truth)
{
    ZvVariant value = zv_empty();
    value.vt = ZV_VT_BOOL;
    value.value.boolean = (ZvBool)(truth ? -1 : 0);
    return value;
}
/* De un texto en UTF-8 con su cero. Si no hay memoria es un valor de error, que ninguna llamada admite. */
static inline ZvVariant zv_text(const char* text)
{
    ZvVariant value = zv_empty();
    value.vt = ZV_VT_BSTR;
    value.value.text = zv_bstr_utf8(text, strlen(text));
    if (value.value.text == NULL) {
        value.vt = ZV_VT_ERROR;
        value.value.error = ZV_E_OUTOFMEMORY;
    }
    return value;
}
/* De un objeto con llamadas por nombre, o de ninguno; el valor tiene su propia referencia. */
static inline ZvVariant zv_object(void* object)
{
    ZvVariant value = zv_empty();
    value.vt = ZV_VT_DISPATCH;
    value.value.dispatch = (ZvDispatch*)object;
    if (object != NULL)
        value.value.unknown->vtbl->AddRef(value.value.unknown);
    return value;
}

/* Otro valor igual: el texto se copia y el objeto se comparte. Las matrices y las referencias no se copian
 * (ZV_DISP_BADVARTYPE). */
static inline ZvResult zv_variant_copy(ZvVariant* to, const ZvVariant* from)
{
    *to = zv_empty();
    if ((from->vt & (ZV_VT_ARRAY | ZV_VT_BYREF)) != 0)
        return ZV_DISP_BADVARTYPE;
    if (from->vt == ZV_VT_BSTR) {
        const ZvBstr text = zv_bstr_new(from->value.text, zv_bstr_length(from->value.text));
        if (text == NULL)
            return ZV_E_OUTOFMEMORY;
        to->value.text = text;
        to->vt = ZV_VT_BSTR;
        return ZV_OK;
    }
    *to = *from;
    if ((from->vt == ZV_VT_DISPATCH || from->vt == ZV_VT_UNKNOWN) && from->value.unknown != NULL)
        from->value.unknown->vtbl->AddRef(from->value.unknown);
    return ZV_OK;
}

/* La llamada por nombre, entera. Los argumentos van en su orden y quedan liberados; resultado y excepción se
 * vacían antes, y los libera quien llama. */
static inline ZvResult zv_invoke(void* object, const char* member, uint16_t modes, ZvVariant* arguments,
                                 uint32_t count, ZvVariant* result, ZvException* exception)
{
    ZvDispatch* self = (ZvDispatch*)object;
    ZvBstr name = zv_bstr_utf8(member, strlen(member));
    int32_t put = ZV_DISPID_PROPERTYPUT, id = ZV_DISPID_UNKNOWN;
    const int assigns = (modes & (ZV_PROPERTYPUT | ZV_PROPERTYPUTREF)) != 0;
    ZvParams params;
    ZvResult done = name == NULL ? ZV_E_OUTOFMEMORY : ZV_OK;
    uint32_t i;
    *result = zv_empty();
    memset(exception, 0, sizeof *exception);
    for (i = 0; i < count / 2; ++i) {
        const ZvVariant other = arguments[i];
        arguments[i] = arguments[count - 1 - i];
        arguments[count - 1 - i] = other;
    }
    params.arguments = arguments;
    params.names = assigns ? &put : NULL;
    params.count = count;
    params.nameCount = assigns ? 1 : 0;
    if (done >= 0)
        done = self->vtbl->GetIDsOfNames(self, &ZV_IID_NULL, &name, 1, ZV_SPANISH, &id);
    if (done >= 0)
        done = self->vtbl->Invoke(self, id, &ZV_IID_NULL, ZV_SPANISH, modes, &params, assigns ? NULL : result,
                                  exception, NULL);
    if (done == ZV_DISP_EXCEPTION && exception->fill != NULL)
        exception->fill(exception);
    zv_bstr_free(name);
    for (i = 0; i < count; ++i)
        zv_variant_clear(&arguments[i]);
    return done;
}

/* Lo que se sabe de un fallo, con los textos en UTF-8. El número es el de la guía: de 1 a 65535 si es propio,
 * y negativo si es de la base de datos o un resultado sin más. */
typedef struct ZvFailure {
    int32_t number;
    char text[1024]; /* Cortado si no cabe. */
    char source[64]; /* Quién lo cuenta; vacío si es la llamada misma. */
} ZvFailure;

/* El número de un resultado negativo: lo que rechaza la superficie misma tiene los de la guía. */
static inline int32_t zv_failure_number(ZvResult result)
{
    switch (result) {
    case ZV_DISP_UNKNOWNNAME:
    case ZV_DISP_MEMBERNOTFOUND:
        return 438;
    case ZV_DISP_TYPEMISMATCH:
    case ZV_DISP_BADVARTYPE:
        return 13;
    case ZV_DISP_OVERFLOW:
        return 6;
    case ZV_DISP_BADPARAMCOUNT:
    case ZV_DISP_PARAMNOTOPTIONAL:
        return 450;
    default:
        return result > ZV_FAILURE_BASE && result <= ZV_FAILURE_BASE + 0xFFFF ? result - ZV_FAILURE_BASE
                                                                              : result;
    }
}

/* Lo que se dice de un fallo que viene sin texto. */
static inline const char* zv_failure_words(int32_t number)
{
    return number == 438   ? "El objeto no admite esta propiedad o método"
           : number == 13  ? "Un valor es de otro tipo"
           : number == 6   ? "Un número no cabe"
           : number == 450 ? "El número de argumentos no es ése"
                           : "La llamada ha fallado";
}

/* Cuenta lo que falló en la llamada a un miembro, y libera los textos de la excepción. */
static inline void zv_failure_take(ZvFailure* failure, ZvResult result, ZvException* exception,
                                   const char* member)
{
    failure->number = zv_failure_number(result == ZV_DISP_EXCEPTION ? exception->result : result);
    if (result == ZV_DISP_EXCEPTION && exception->code != 0)
        failure->number = exception->code;
    zv_utf8(exception->source, failure->source, sizeof failure->source);
    if (zv_utf8(exception->description, failure->text, sizeof failure->text) == 0)
        snprintf(failure->text, sizeof failure->text, "%s: %.256s", zv_failure_words(failure->number),
                 member);
    zv_bstr_free(exception->source);
    zv_bstr_free(exception->description);
    zv_bstr_free(exception->helpFile);
    memset(exception, 0, sizeof *exception);
}

/* Llama a un método, o lee una propiedad, con esos argumentos (en su orden; quedan liberados). El resultado y
 * el fallo pueden ser nulos si no interesan. */
static inline ZvResult zv_call_with(void* object, const char* member, ZvVariant* arguments, uint32_t count,
                                    ZvVariant* result, ZvFailure* failure)
{
    ZvVariant answer;
    ZvException exception;
    ZvFailure ignored;
    const ZvResult done =
        zv_invoke(object, member, ZV_METHOD | ZV_PROPERTYGET, arguments, count, &answer, &exception);
    if (done < 0)
        zv_failure_take(failure != NULL ? failure : &ignored, done, &exception, member);
    if (result != NULL)
        *result = answer;
    else
        zv_variant_clear(&answer);
    return done;
}

/* Lo mismo con un argumento, o con zv_empty() sin ninguno. */
static inline ZvResult zv_call(void* object, const char* member, ZvVariant argument, ZvVariant* result,
                               ZvFailure* failure)
{
    return zv_call_with(object, member, &argument, argument.vt == ZV_VT_EMPTY ? 0 : 1, result, failure);
}

/* Escribe una propiedad. */
static inline ZvResult zv_put(void* object, const char* member, ZvVariant value, ZvFailure* failure)
{
    ZvVariant none;
    ZvException exception;
    ZvFailure ignored;
    const int modes = value.vt == ZV_VT_DISPATCH ? ZV_PROPERTYPUT | ZV_PROPERTYPUTREF : ZV_PROPERTYPUT;
    const ZvResult done = zv_invoke(object, member, (uint16_t)modes, &value, 1, &none, &exception);
    if (done < 0)
        zv_failure_take(failure != NULL ? failure : &ignored, done, &exception, member);
    return done;
}

#ifdef __cplusplus
}
#endif

#endif
