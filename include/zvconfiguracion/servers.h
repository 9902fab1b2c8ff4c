/* Servidores por su nombre (ProgID), como los deja DllRegisterServer: en Windows en el registro, y en los
 * demás sistemas en la carpeta de datos de la persona. */
#ifndef ZVCONFIGURACION_SERVERS_H
#define ZVCONFIGURACION_SERVERS_H

#include <zvconfiguracion/automation.h>
#include <zvconfiguracion/system.h>

#include <stdio.h>

typedef struct ZvServer {
    ZvGuid classId;
    char library[4096]; /* Ruta de la biblioteca, en UTF-8, para zv_library_open. */
} ZvServer;

/* Lee un identificador escrito entre llaves; 0 si no lo es. */
static inline int zv_guid_read(const char* text, ZvGuid* id)
{
    unsigned a, b, c, d[8];
    int i;
    if (sscanf(text, "{%8x-%4x-%4x-%2x%2x-%2x%2x%2x%2x%2x%2x}", &a, &b, &c, &d[0], &d[1], &d[2], &d[3], &d[4],
               &d[5], &d[6], &d[7]) != 11)
        return 0;
    id->data1 = a;
    id->data2 = (uint16_t)b;
    id->data3 = (uint16_t)c;
    for (i = 0; i < 8; ++i)
        id->data4[i] = (uint8_t)d[i];
    return 1;
}

#ifdef _WIN32
/* El texto de una clave del registro, debajo de HKEY_CLASSES_ROOT; 0 si no está o no cabe. */
static inline int zv_registered(const char* key, const char* below, char* place, size_t size)
{
    wchar_t name[256], value[4096];
    DWORD bytes = sizeof value;
    char whole[256];
    const int length = snprintf(whole, sizeof whole, "%s\\%s", key, below);
    return length > 0 && (size_t)length < sizeof whole &&
           MultiByteToWideChar(CP_UTF8, 0, whole, -1, name, sizeof name / sizeof *name) != 0 &&
           RegGetValueW(HKEY_CLASSES_ROOT, name, NULL, RRF_RT_REG_SZ, NULL, value, &bytes) == ERROR_SUCCESS &&
           WideCharToMultiByte(CP_UTF8, 0, value, -1, place, (int)size, NULL, NULL) != 0;
}

/* Busca un servidor; 0 si no está registrado. */
static inline int zv_find_server(const char* progId, ZvServer* server)
{
    char id[64], key[128];
    if (!zv_registered(progId, "CLSID", id, sizeof id) || !zv_guid_read(id, &server->classId))
        return 0;
    snprintf(key, sizeof key, "CLSID\\%s", id);
    return zv_registered(key, "InprocServer32", server->library, sizeof server->library);
}
#else
/* Busca un servidor; 0 si no está registrado. */
static inline int zv_find_server(const char* progId, ZvServer* server)
{
    const char* data = getenv("XDG_DATA_HOME");
    const char* home = getenv("HOME");
    char path[4096], id[64];
    FILE* file;
    int length, found;
    if (data != NULL && data[0] == '/')
        length = snprintf(path, sizeof path, "%s/zvconfiguracion/servidores/%s", data, progId);
    else
        length = snprintf(path, sizeof path, "%s/.local/share/zvconfiguracion/servidores/%s",
                          home != NULL ? home : "", progId);
    file = length > 0 && (size_t)length < sizeof path ? fopen(path, "r") : NULL;
    if (file == NULL)
        return 0;
    found = fgets(id, (int)sizeof id, file) != NULL && zv_guid_read(id, &server->classId) &&
            fgets(server->library, (int)sizeof server->library, file) != NULL;
    fclose(file);
    server->library[found ? strcspn(server->library, "\n") : 0] = '\0';
    return found;
}
#endif

#endif
