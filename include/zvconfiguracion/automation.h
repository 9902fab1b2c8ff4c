/* Tipos binarios de la automatización, con su disposición publicada en memoria. Sólo hace falta la biblioteca
 * estándar de C y, en Windows, oleaut32; vale también en C++, y en el mismo fichero que <oleauto.h>, cuyos
 * tipos son éstos con otro nombre.
 *
 * Memoria: los textos, las matrices y lo que cuelga de un ZvVariant son, en Windows, de oleaut32; en los
 * demás sistemas se reservan con malloc y se liberan con free. Quien recibe un valor de salida lo libera
 * (zv_bstr_free, zv_variant_clear, zv_release); los argumentos siguen siendo de quien llama. */
#ifndef ZVCONFIGURACION_AUTOMATION_H
#define ZVCONFIGURACION_AUTOMATION_H

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

/* Cómo se llama a una función de una tabla. Sólo en los 32 bits de Windows es otra que la del lenguaje. */
#ifdef _WIN32
#define ZV_CALL __stdcall
#else
#define ZV_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Resultado de una llamada: negativo si ha fallado. */
typedef int32_t ZvResult;

enum {
    ZV_OK = 0,
    ZV_FALSE = 1,
    ZV_E_NOTIMPL = -2147467263,
    ZV_E_NOINTERFACE = -2147467262,
    ZV_E_POINTER = -2147467261,
    ZV_E_FAIL = -2147467259,
    ZV_E_UNEXPECTED = -2147418113,
    ZV_E_WRONG_THREAD = -2147417842,
    ZV_E_OUTOFMEMORY = -2147024882,
    ZV_E_INVALIDARG = -2147024809,
    ZV_DISP_UNKNOWNINTERFACE = -2147352575,
    ZV_DISP_MEMBERNOTFOUND = -2147352573,
    ZV_DISP_PARAMNOTFOUND = -2147352572,
    ZV_DISP_TYPEMISMATCH = -2147352571,
    ZV_DISP_UNKNOWNNAME = -2147352570,
    ZV_DISP_BADVARTYPE = -2147352568,
    ZV_DISP_EXCEPTION = -2147352567,
    ZV_DISP_OVERFLOW = -2147352566,
    ZV_DISP_BADINDEX = -2147352565,
    ZV_DISP_BADPARAMCOUNT = -2147352562,
    ZV_DISP_PARAMNOTOPTIONAL = -2147352561,
    ZV_CLASS_NOAGGREGATION = -2147221232,
    ZV_CLASS_NOTAVAILABLE = -2147221231,
    ZV_E_REGISTRATION = -2147220991,
    /* Un fallo con número propio de 1 a 65535 llega como esta base más el número; uno de la base de datos,
     * que ya es negativo, tal cual. */
    ZV_FAILURE_BASE = -2146828288
};

typedef struct ZvGuid {
    uint32_t data1;
    uint16_t data2;
    uint16_t data3;
    uint8_t data4[8];
} ZvGuid;

static const ZvGuid ZV_IID_NULL = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};
static const ZvGuid ZV_IID_IUnknown = {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
static const ZvGuid ZV_IID_IClassFactory = {1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
static const ZvGuid ZV_IID_IDispatch = {0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/* Texto: unidades de UTF-16 con un cero detrás y, delante, su longitud en bytes (32 bits). Nulo es "". */
typedef uint16_t* ZvBstr;
/* Valor lógico: -1 es verdadero y 0 falso. */
typedef int16_t ZvBool;

/* Tipos de un ZvVariant. */
enum {
    ZV_VT_EMPTY = 0,
    ZV_VT_NULL = 1,
    ZV_VT_I2 = 2,
    ZV_VT_I4 = 3,
    ZV_VT_R4 = 4,
    ZV_VT_R8 = 5,
    ZV_VT_CY = 6,
    ZV_VT_DATE = 7,
    ZV_VT_BSTR = 8,
    ZV_VT_DISPATCH = 9,
    ZV_VT_ERROR = 10,
    ZV_VT_BOOL = 11,
    ZV_VT_VARIANT = 12,
    ZV_VT_UNKNOWN = 13,
    ZV_VT_DECIMAL = 14,
    ZV_VT_I1 = 16,
    ZV_VT_UI1 = 17,
    ZV_VT_UI2 = 18,
    ZV_VT_UI4 = 19,
    ZV_VT_I8 = 20,
    ZV_VT_UI8 = 21,
    ZV_VT_INT = 22,
    ZV_VT_UINT = 23,
    ZV_VT_ARRAY = 0x2000,
    ZV_VT_BYREF = 0x4000
};

typedef struct ZvArrayBound {
    uint32_t count;
    int32_t first;
} ZvArrayBound;

typedef struct ZvArray {
    uint16_t dimensions;
    uint16_t features;
    uint32_t elementSize;
    uint32_t locks;
    void* data;
    ZvArrayBound bounds[1];
} ZvArray;

typedef struct ZvUnknown ZvUnknown;
typedef struct ZvDispatch ZvDispatch;
typedef struct ZvClassFactory ZvClassFactory;
typedef struct ZvVariant ZvVariant;

typedef struct ZvRecordValue {
    void* record;
    void* info;
} ZvRecordValue;

struct ZvVariant {
    uint16_t vt;
    uint16_t reserved1; /* En un decimal: cifras detrás de la coma, y 0x8000 si es negativo. */
    uint16_t reserved2; /* En un decimal: 32 bits altos, con el que sigue. */
    uint16_t reserved3;
    union {
        int8_t i1;
        uint8_t ui1;
        int16_t i2;
        uint16_t ui2;
        int32_t i4;
        uint32_t ui4;
        int64_t i8;
        uint64_t ui8;
        float r4;
        double r8;
        int64_t cy; /* Diezmilésimas. */
        ZvBool boolean;
        ZvResult error;
        ZvBstr text;
        ZvUnknown* unknown;
        ZvDispatch* dispatch;
        ZvArray* array;
        ZvVariant* variant;
        void* reference;
        ZvRecordValue record;
    } value;
};

/* Argumentos de una llamada por nombre, el último primero. */
typedef struct ZvParams {
    ZvVariant* arguments;
    int32_t* names;
    uint32_t count;
    uint32_t nameCount;
} ZvParams;

/* Lo que cuenta una llamada fallida; sus textos los libera quien llama. */
typedef struct ZvException {
    uint16_t code;
    uint16_t reserved;
    ZvBstr source;
    ZvBstr description;
    ZvBstr helpFile;
    uint32_t helpContext;
    void* reserved2;
    ZvResult(ZV_CALL* fill)(struct ZvException*);
    ZvResult result;
} ZvException;

/* Modos de Invoke, y el nombre que lleva el valor nuevo de una propiedad. */
enum {
    ZV_METHOD = 1,
    ZV_PROPERTYGET = 2,
    ZV_PROPERTYPUT = 4,
    ZV_PROPERTYPUTREF = 8,
    ZV_DISPID_VALUE = 0,
    ZV_DISPID_UNKNOWN = -1,
    ZV_DISPID_PROPERTYPUT = -3
};

typedef struct ZvUnknownVtbl {
    ZvResult(ZV_CALL* QueryInterface)(ZvUnknown*, const ZvGuid*, void**);
    uint32_t(ZV_CALL* AddRef)(ZvUnknown*);
    uint32_t(ZV_CALL* Release)(ZvUnknown*);
} ZvUnknownVtbl;
struct ZvUnknown {
    const ZvUnknownVtbl* vtbl;
};

typedef struct ZvDispatchVtbl {
    ZvUnknownVtbl unknown;
    ZvResult(ZV_CALL* GetTypeInfoCount)(ZvDispatch*, uint32_t*);
    ZvResult(ZV_CALL* GetTypeInfo)(ZvDispatch*, uint32_t, uint32_t, void**);
    ZvResult(ZV_CALL* GetIDsOfNames)(ZvDispatch*, const ZvGuid*, uint16_t**, uint32_t, uint32_t, int32_t*);
    ZvResult(ZV_CALL* Invoke)(ZvDispatch*, int32_t, const ZvGuid*, uint32_t, uint16_t, ZvParams*, ZvVariant*,
                              ZvException*, uint32_t*);
} ZvDispatchVtbl;
struct ZvDispatch {
    const ZvDispatchVtbl* vtbl;
};

typedef struct ZvClassFactoryVtbl {
    ZvUnknownVtbl unknown;
    ZvResult(ZV_CALL* CreateInstance)(ZvClassFactory*, ZvUnknown*, const ZvGuid*, void**);
    ZvResult(ZV_CALL* LockServer)(ZvClassFactory*, int32_t);
} ZvClassFactoryVtbl;
struct ZvClassFactory {
    const ZvClassFactoryVtbl* vtbl;
};

/* Los cuatro puntos de entrada de un servidor. */
typedef ZvResult(ZV_CALL* ZvGetClassObject)(const ZvGuid*, const ZvGuid*, void**);
typedef ZvResult(ZV_CALL* ZvEntryPoint)(void); /* DllCanUnloadNow, DllRegisterServer, DllUnregisterServer */

/* Suelta una referencia a un objeto de cualquier interfaz; nulo vale. */
static inline void zv_release(void* object)
{
    if (object != NULL)
        ((ZvUnknown*)object)->vtbl->Release((ZvUnknown*)object);
}

static inline size_t zv_array_count(const ZvArray* array)
{
    size_t count = array->dimensions != 0 && array->data != NULL ? 1 : 0;
    uint16_t i;
    for (i = 0; i < array->dimensions; ++i)
        count *= array->bounds[i].count;
    return count;
}

/* Lo que ocupa un elemento de ese tipo, en octetos; 0 si una matriz no puede ser de él. */
static inline uint32_t zv_element_size(int type)
{
    switch (type) {
    case ZV_VT_I1:
    case ZV_VT_UI1:
        return 1;
    case ZV_VT_I2:
    case ZV_VT_UI2:
    case ZV_VT_BOOL:
        return 2;
    case ZV_VT_I4:
    case ZV_VT_UI4:
    case ZV_VT_INT:
    case ZV_VT_UINT:
    case ZV_VT_R4:
    case ZV_VT_ERROR:
        return 4;
    case ZV_VT_R8:
    case ZV_VT_CY:
    case ZV_VT_DATE:
    case ZV_VT_I8:
    case ZV_VT_UI8:
        return 8;
    case ZV_VT_BSTR:
    case ZV_VT_DISPATCH:
    case ZV_VT_UNKNOWN:
        return (uint32_t)sizeof(void*);
    case ZV_VT_VARIANT:
        return (uint32_t)sizeof(ZvVariant);
    default:
        return 0;
    }
}

/* Un texto con esas unidades, o con ceros si no se dan; nulo si no hay memoria. */
static inline ZvBstr zv_bstr_new(const uint16_t* units, size_t count);
static inline size_t zv_bstr_length(const uint16_t* text);
static inline void zv_bstr_free(ZvBstr text);
/* Una matriz de una dimensión, con ceros, cuyos elementos son de ese tipo; nulo si no hay memoria o si no los
 * hay de ese tipo. */
static inline ZvArray* zv_array_new(uint16_t elementType, uint32_t count);
/* Libera una matriz cuyos elementos son de ese tipo, y lo que haya en ellos, si caben en su tamaño. */
static inline void zv_array_free(ZvArray* array, uint16_t elementType);
/* Libera lo que cuelga del valor y lo deja vacío. */
static inline void zv_variant_clear(ZvVariant* variant);

/* Cómo lo hacen, en cada sistema. */
#ifdef _WIN32

/* Las de oleaut32, con los tipos que les da <oleauto.h>. */
struct tagSAFEARRAY;
struct tagVARIANT;
__declspec(dllimport) wchar_t* __stdcall SysAllocStringLen(const wchar_t*, unsigned int);
__declspec(dllimport) unsigned int __stdcall SysStringLen(wchar_t*);
__declspec(dllimport) void __stdcall SysFreeString(wchar_t*);
__declspec(dllimport) struct tagSAFEARRAY* __stdcall SafeArrayCreateVector(unsigned short, long,
                                                                           unsigned long);
__declspec(dllimport) long __stdcall SafeArrayDestroy(struct tagSAFEARRAY*);
__declspec(dllimport) long __stdcall VariantClear(struct tagVARIANT*);

static inline ZvBstr zv_bstr_new(const uint16_t* units, size_t count)
{
    wchar_t* text;
    if (count > (UINT32_MAX - 16) / 2)
        return NULL;
    text = SysAllocStringLen((const wchar_t*)units, (unsigned int)count);
    if (text != NULL && units == NULL)
        memset(text, 0, count * sizeof *text);
    return (ZvBstr)text;
}

static inline size_t zv_bstr_length(const uint16_t* text) { return SysStringLen((wchar_t*)(uintptr_t)text); }

static inline void zv_bstr_free(ZvBstr text) { SysFreeString((wchar_t*)text); }

static inline ZvArray* zv_array_new(uint16_t elementType, uint32_t count)
{
    return zv_element_size(elementType) == 0 ? NULL
                                             : (ZvArray*)(void*)SafeArrayCreateVector(elementType, 0, count);
}

static inline void zv_array_free(ZvArray* array, uint16_t elementType)
{
    (void)elementType; /* La matriz lo lleva escrito. */
    if (array != NULL)
        SafeArrayDestroy((struct tagSAFEARRAY*)(void*)array);
}

static inline void zv_variant_clear(ZvVariant* variant)
{
    ZvVariant old = *variant;
    /* Vacío ya antes de soltar: un Release puede volver a mirarlo. */
    memset(variant, 0, sizeof *variant);
    VariantClear((struct tagVARIANT*)(void*)&old);
}

#else

static inline ZvBstr zv_bstr_new(const uint16_t* units, size_t count)
{
    uint32_t bytes;
    char* block;
    if (count > (UINT32_MAX - 16) / 2)
        return NULL;
    bytes = (uint32_t)(count * 2);
    block = (char*)calloc(1, (size_t)bytes + 10);
    if (block == NULL)
        return NULL;
    memcpy(block + 4, &bytes, sizeof bytes);
    if (units != NULL && bytes != 0)
        memcpy(block + 8, units, bytes);
    return (ZvBstr)(void*)(block + 8);
}

static inline size_t zv_bstr_length(const uint16_t* text)
{
    uint32_t bytes = 0;
    if (text != NULL)
        memcpy(&bytes, (const char*)text - 4, sizeof bytes);
    return bytes / 2;
}

static inline void zv_bstr_free(ZvBstr text)
{
    if (text != NULL)
        free((char*)text - 8);
}

static inline ZvArray* zv_array_new(uint16_t elementType, uint32_t count)
{
    const uint32_t elementSize = zv_element_size(elementType);
    ZvArray* array = elementSize == 0 ? NULL : (ZvArray*)calloc(1, sizeof(ZvArray));
    if (array == NULL)
        return NULL;
    array->dimensions = 1;
    array->elementSize = elementSize;
    array->bounds[0].count = count;
    array->data = calloc((size_t)count + 1, elementSize);
    if (array->data == NULL) {
        free(array);
        return NULL;
    }
    return array;
}

static inline void zv_array_free(ZvArray* array, uint16_t elementType)
{
    size_t i, count;
    if (array == NULL)
        return;
    count = array->elementSize < (elementType == ZV_VT_VARIANT ? sizeof(ZvVariant) : sizeof(void*))
                ? 0
                : zv_array_count(array);
    for (i = 0; i < count; ++i) {
        void* element = (char*)array->data + i * array->elementSize;
        if (elementType == ZV_VT_BSTR)
            zv_bstr_free(*(ZvBstr*)element);
        else if (elementType == ZV_VT_DISPATCH || elementType == ZV_VT_UNKNOWN)
            zv_release(*(void**)element);
        else if (elementType == ZV_VT_VARIANT)
            zv_variant_clear((ZvVariant*)element);
    }
    free(array->data);
    free(array);
}

static inline void zv_variant_clear(ZvVariant* variant)
{
    ZvVariant old = *variant;
    /* Vacío ya antes de soltar: un Release puede volver a mirarlo. */
    memset(variant, 0, sizeof *variant);
    if ((old.vt & ZV_VT_BYREF) != 0)
        return;
    if ((old.vt & ZV_VT_ARRAY) != 0)
        zv_array_free(old.value.array, (uint16_t)(old.vt & 0xFFF));
    else if (old.vt == ZV_VT_BSTR)
        zv_bstr_free(old.value.text);
    else if (old.vt == ZV_VT_DISPATCH || old.vt == ZV_VT_UNKNOWN)
        zv_release(old.value.unknown);
}

#endif

#ifdef __cplusplus
}
#endif

#endif
