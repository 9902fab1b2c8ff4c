/* ZVDatos.Conexion: una conexión a la base de datos de un colegio para programas que no tienen otra. Sus
 * miembros se llaman por nombre: Open(url, cuál), Execute(instrucción), State, Close. «cuál» es "centro" (si
 * falta), "borrado" o "entrada". Execute da filas con EOF, MoveNext, MoveFirst, Fields(nombre).Value, State y
 * Close. */
#ifndef ZVCONFIGURACION_ZVDATOS_H
#define ZVCONFIGURACION_ZVDATOS_H

#include <zvconfiguracion/automation.h>

static const ZvGuid ZV_CLSID_Conexion = {
    0xA89745AC, 0xCA66, 0x4E2C, {0xA4, 0x89, 0xF9, 0xC5, 0xBD, 0xB7, 0x36, 0x1A}};

#endif
