/* Cargar una biblioteca de servidores, por su ruta, y terminar con ella en su orden. */
#ifndef ZVCONFIGURACION_LIBRARY_H
#define ZVCONFIGURACION_LIBRARY_H

#include <zvconfiguracion/calls.h>
#include <zvconfiguracion/system.h>

/* Lo único que cambia de un sistema a otro: cargar, buscar un nombre, descargar y decir por
 * qué no se pudo. */
#ifdef _WIN32
static inline void* zv_system_load(const char* file)
{
    ZvBstr path = zv_bstr_utf8(file, strlen(file));
    void* handle = path == NULL ? NULL : (void*)LoadLibraryW((const wchar_t*)(const void*)path);
    zv_bstr_free(path);
    return handle;
}
static inline void zv_system_symbol(void* handle, const char* name, void* function)
{
    const FARPROC found = GetProcAddress((HMODULE)handle, name);
    memcpy(function, &found, sizeof found);
}
static inline void zv_system_unload(void* handle) { FreeLibrary((HMODULE)handle); }
static inline void zv_system_reason(char* place, size_t size)
{
    snprintf(place, size, "No se puede cargar la biblioteca (%lu).", (unsigned long)GetLastError());
}
#else
#include <dlfcn.h>
static inline void* zv_system_load(const char* file) { return dlopen(file, RTLD_NOW | RTLD_LOCAL); }
static inline void zv_system_symbol(void* handle, const char* name, void* function)
{
    void* found = dlsym(handle, name);
    memcpy(function, &found, sizeof found);
}
static inline void zv_system_unload(void* handle) { dlclose(handle); }
static inline void zv_system_reason(char* place, size_t size)
{
    const char* reason = dlerror();
    snprintf(place, size, "%s", reason != NULL ? reason : "");
}
#endif

typedef struct ZvLibrary {
    void* handle; /* Nulo si no está cargada. */
    ZvGetClassObject getClassObject;
    ZvEntryPoint canUnloadNow, registerServer, unregisterServer;
} ZvLibrary;

/* Carga la biblioteca de esa ruta (en UTF-8). Si no puede, o no es un servidor, da ZV_E_FAIL y deja en el
 * fallo por qué, con el número 429, si se da dónde. */
static inline ZvResult zv_library_open(ZvLibrary* library, const char* file, ZvFailure* failure)
{
    memset(library, 0, sizeof *library);
    library->handle = zv_system_load(file);
    if (library->handle != NULL) {
        zv_system_symbol(library->handle, "DllGetClassObject", &library->getClassObject);
        zv_system_symbol(library->handle, "DllCanUnloadNow", &library->canUnloadNow);
        zv_system_symbol(library->handle, "DllRegisterServer", &library->registerServer);
        zv_system_symbol(library->handle, "DllUnregisterServer", &library->unregisterServer);
        if (library->getClassObject != NULL && library->canUnloadNow != NULL &&
            library->registerServer != NULL && library->unregisterServer != NULL)
            return ZV_OK;
    }
    if (failure != NULL) {
        memset(failure, 0, sizeof *failure);
        failure->number = 429;
        if (library->handle == NULL)
            zv_system_reason(failure->text, sizeof failure->text);
        else
            snprintf(failure->text, sizeof failure->text, "%.900s no es una biblioteca de servidores.", file);
    }
    if (library->handle != NULL)
        zv_system_unload(library->handle);
    memset(library, 0, sizeof *library);
    return ZV_E_FAIL;
}

/* Un objeto de una clase de la biblioteca, con esa interfaz; lo suelta quien llama. */
static inline ZvResult zv_library_create(const ZvLibrary* library, const ZvGuid* classId,
                                         const ZvGuid* interfaceId, void** place)
{
    void* made = NULL;
    ZvClassFactory* factory;
    ZvResult done = library->getClassObject(classId, &ZV_IID_IClassFactory, &made);
    *place = NULL;
    if (done < 0)
        return done;
    factory = (ZvClassFactory*)made;
    done = factory->vtbl->CreateInstance(factory, NULL, interfaceId, place);
    zv_release(factory);
    return done;
}

/* Descarga la biblioteca, si responde que puede irse (y entonces ha soltado la sesión y las conexiones). Si
 * no, da ZV_FALSE y la deja cargada: queda un objeto sin soltar, u otro hilo está dentro. */
static inline ZvResult zv_library_close(ZvLibrary* library)
{
    ZvResult done = ZV_OK;
    if (library->handle != NULL) {
        done = library->canUnloadNow();
        if (done != ZV_OK)
            return done;
        zv_system_unload(library->handle);
    }
    memset(library, 0, sizeof *library);
    return done;
}

#endif
