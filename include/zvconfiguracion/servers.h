/* Servidores por su nombre (ProgID), como los deja DllRegisterServer en la carpeta de datos de la persona. */
#ifndef ZVCONFIGURACION_SERVERS_H
#define ZVCONFIGURACION_SERVERS_H

#include <zvconfiguracion/automation.h>

#include <stdio.h>

typedef struct ZvServer {
    ZvGuid classId;
    char library[4096]; /* Ruta de la biblioteca, para dlopen. */
} ZvServer;

/* Busca un servidor; 0 si no está registrado. */
static inline int zv_find_server(const char* progId, ZvServer* server)
{
    const char* data = getenv("XDG_DATA_HOME");
    const char* home = getenv("HOME");
    char path[4096];
    FILE* file;
    unsigned a, b, c, d[8];
    int i, length, found;
    if (data != NULL && data[0] == '/')
        length = snprintf(path, sizeof path, "%s/zvconfiguracion/servidores/%s", data, progId);
    else
        length = snprintf(path, sizeof path, "%s/.local/share/zvconfiguracion/servidores/%s",
                          home != NULL ? home : "", progId);
    file = length > 0 && (size_t)length < sizeof path ? fopen(path, "r") : NULL;
    if (file == NULL)
        return 0;
    found = fscanf(file, "{%8x-%4x-%4x-%2x%2x-%2x%2x%2x%2x%2x%2x} ", &a, &b, &c, &d[0], &d[1], &d[2], &d[3],
                   &d[4], &d[5], &d[6], &d[7]) == 11 &&
            fgets(server->library, (int)sizeof server->library, file) != NULL;
    fclose(file);
    if (!found)
        return 0;
    server->library[strcspn(server->library, "\n")] = '\0';
    server->classId.data1 = a;
    server->classId.data2 = (uint16_t)b;
    server->classId.data3 = (uint16_t)c;
    for (i = 0; i < 8; ++i)
        server->classId.data4[i] = (uint8_t)d[i];
    return 1;
}

#endif
