/* <windows.h> sin los nombres que estorban; en los demás sistemas, nada. Quien ya lo ha incluido, o incluye
 * antes <oleauto.h>, no nota diferencia. */
#ifndef ZVCONFIGURACION_SYSTEM_H
#define ZVCONFIGURACION_SYSTEM_H

#include <stddef.h> /* Algo tiene que haber en todos. */

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#endif

#endif
