/* ZVDatos.Conexion: una conexión a la base de datos de un colegio para programas que no tienen otra. Sus
 * miembros se llaman por nombre: Open(url, cuál), Execute(instrucción), State, Close. «cuál» es "centro" (si
 * falta), "borrado" o "entrada". Execute da filas con EOF, MoveNext, MoveFirst, Fields(nombre).Value, State y
 * Close. */
#ifndef ZVCONFIGURACION_ZVDATOS_H
#define ZVCONFIGURACION_ZVDATOS_H

#include <zvconfiguracion/automation.h>

static const ZvGuid ZV_CLSID_Conexion = {
    0xA89745AC, 0xCA66, 0x4E2C, {0xA4, 0x89, 0xF9, 0xC5, 0xBD, 0xB7, 0x36, 0x1A}};
/* De llamadas por nombre sólo. Open, Execute, State y Close tienen los números 1 a 4. */
static const ZvGuid ZV_IID_Conexion = {
    0x6E0D3C71, 0x94B8, 0x4F0E, {0x8E, 0x57, 0x2C, 0x5F, 0x1A, 0x9D, 0x7B, 0x34}};

#endif
