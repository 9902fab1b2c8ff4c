/* Las cinco clases de ZVConfiguracion 1.0 para un programa en C o C++: identificadores y tablas de llamada.
 * Los miembros de los registros tienen los números 0x40030000 en adelante, en este orden, y las operaciones
 * de cAsignarDatos del 0x60030000 al 0x60030003. Un fallo llega como resultado negativo; su texto lo da
 * Invoke. */
#ifndef ZVCONFIGURACION_ZVCONFIGURACION_H
#define ZVCONFIGURACION_ZVCONFIGURACION_H

#include <zvconfiguracion/automation.h>

/* Los nombres de las interfaces empiezan por un guion bajo. */
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreserved-identifier"
#endif

#ifdef __cplusplus
extern "C" {
#endif

static const ZvGuid ZV_LIBID_ZVConfiguracion = {
    0x70714B44, 0x8A7D, 0x4BFC, {0x82, 0xD3, 0x68, 0x8C, 0xFA, 0x3D, 0xBC, 0x7B}};
static const ZvGuid ZV_CLSID_cDatosSesion = {
    0xA259D0F1, 0x60FB, 0x4D12, {0xAC, 0x73, 0x1A, 0x69, 0xBB, 0x85, 0x4D, 0xBE}};
static const ZvGuid ZV_IID__cDatosSesion = {
    0x0F937314, 0xBF9C, 0x44AA, {0xAE, 0x00, 0xC2, 0xD5, 0xB3, 0xEC, 0x19, 0x91}};
static const ZvGuid ZV_CLSID_cConsejoOrientador = {
    0x6B46AF6F, 0x033B, 0x46CB, {0x98, 0xE7, 0x08, 0x67, 0x69, 0x27, 0x4A, 0x78}};
static const ZvGuid ZV_IID__cConsejoOrientador = {
    0x1107F26A, 0x3FB3, 0x4BE1, {0xBF, 0xA7, 0x1E, 0xC4, 0xF8, 0x5B, 0x10, 0x42}};
static const ZvGuid ZV_CLSID_cAsignarDatos = {
    0x601308DE, 0x5EB9, 0x41BD, {0x95, 0xDD, 0xB7, 0xE8, 0x10, 0x71, 0x0C, 0x6F}};
static const ZvGuid ZV_IID__cAsignarDatos = {
    0x17D8FEB6, 0xA41B, 0x464B, {0xB4, 0xE1, 0x15, 0xD9, 0x53, 0xAF, 0x79, 0x13}};
static const ZvGuid ZV_CLSID_cInformeInd = {
    0xBB7DAD5F, 0xD68B, 0x4D67, {0x99, 0xEB, 0x49, 0x5A, 0x11, 0x08, 0xA5, 0x69}};
static const ZvGuid ZV_IID__cInformeInd = {
    0xDB02D4B4, 0x2FE7, 0x41E8, {0x9C, 0x5A, 0x64, 0x80, 0xA2, 0xFF, 0x9F, 0x00}};
static const ZvGuid ZV_CLSID_cInfPrimaria = {
    0x68ADEE8D, 0xBCCA, 0x4205, {0x8B, 0xFA, 0xA0, 0x96, 0xAE, 0x29, 0x94, 0xAA}};
static const ZvGuid ZV_IID__cInfPrimaria = {
    0xDDECA39F, 0x2587, 0x47D2, {0xAA, 0xDE, 0x50, 0x11, 0x5A, 0x78, 0xBF, 0xDB}};

typedef struct Zv_cDatosSesion Zv_cDatosSesion;
typedef struct Zv_cDatosSesionVtbl {
    ZvDispatchVtbl dispatch;
    ZvResult(ZV_CALL* get_IDPerfil)(Zv_cDatosSesion*, int16_t*);
    ZvResult(ZV_CALL* put_IDPerfil)(Zv_cDatosSesion*, int16_t);
    ZvResult(ZV_CALL* get_IDCentro)(Zv_cDatosSesion*, int16_t*);
    ZvResult(ZV_CALL* put_IDCentro)(Zv_cDatosSesion*, int16_t);
    ZvResult(ZV_CALL* get_NombreCentro)(Zv_cDatosSesion*, ZvBstr*);
    ZvResult(ZV_CALL* put_NombreCentro)(Zv_cDatosSesion*, ZvBstr);
    ZvResult(ZV_CALL* get_IDUsuario)(Zv_cDatosSesion*, int16_t*);
    ZvResult(ZV_CALL* put_IDUsuario)(Zv_cDatosSesion*, int16_t);
    ZvResult(ZV_CALL* get_NombreUsuario)(Zv_cDatosSesion*, ZvBstr*);
    ZvResult(ZV_CALL* put_NombreUsuario)(Zv_cDatosSesion*, ZvBstr);
    ZvResult(ZV_CALL* get_IDCursoEscolar)(Zv_cDatosSesion*, int16_t*);
    ZvResult(ZV_CALL* put_IDCursoEscolar)(Zv_cDatosSesion*, int16_t);
    ZvResult(ZV_CALL* get_ValorCursoEscolar)(Zv_cDatosSesion*, ZvBstr*);
    ZvResult(ZV_CALL* put_ValorCursoEscolar)(Zv_cDatosSesion*, ZvBstr);
    ZvResult(ZV_CALL* get_Activa)(Zv_cDatosSesion*, ZvBool*);
    ZvResult(ZV_CALL* put_Activa)(Zv_cDatosSesion*, ZvBool);
    ZvResult(ZV_CALL* get_Pesetas)(Zv_cDatosSesion*, ZvBool*);
    ZvResult(ZV_CALL* put_Pesetas)(Zv_cDatosSesion*, ZvBool);
    ZvResult(ZV_CALL* get_CadenaUdlActiva)(Zv_cDatosSesion*, ZvBstr*);
    ZvResult(ZV_CALL* put_CadenaUdlActiva)(Zv_cDatosSesion*, ZvBstr);
    ZvResult(ZV_CALL* get_MTP)(Zv_cDatosSesion*, ZvBool*);
    ZvResult(ZV_CALL* put_MTP)(Zv_cDatosSesion*, ZvBool);
    ZvResult(ZV_CALL* get_RutaAplicacion)(Zv_cDatosSesion*, ZvBstr*);
    ZvResult(ZV_CALL* put_RutaAplicacion)(Zv_cDatosSesion*, ZvBstr);
} Zv_cDatosSesionVtbl;
struct Zv_cDatosSesion {
    const Zv_cDatosSesionVtbl* vtbl;
};

typedef struct Zv_cConsejoOrientador Zv_cConsejoOrientador;
typedef struct Zv_cConsejoOrientadorVtbl {
    ZvDispatchVtbl dispatch;
    ZvResult(ZV_CALL* get_IDCORNota)(Zv_cConsejoOrientador*, int32_t*);
    ZvResult(ZV_CALL* put_IDCORNota)(Zv_cConsejoOrientador*, int32_t);
    ZvResult(ZV_CALL* get_CodAlumno)(Zv_cConsejoOrientador*, int16_t*);
    ZvResult(ZV_CALL* put_CodAlumno)(Zv_cConsejoOrientador*, int16_t);
    ZvResult(ZV_CALL* get_codSeccion)(Zv_cConsejoOrientador*, int16_t*);
    ZvResult(ZV_CALL* put_codSeccion)(Zv_cConsejoOrientador*, int16_t);
    ZvResult(ZV_CALL* get_codCOResp)(Zv_cConsejoOrientador*, int16_t*);
    ZvResult(ZV_CALL* put_codCOResp)(Zv_cConsejoOrientador*, int16_t);
    ZvResult(ZV_CALL* get_codConsejoOrientador)(Zv_cConsejoOrientador*, int16_t*);
    ZvResult(ZV_CALL* put_codConsejoOrientador)(Zv_cConsejoOrientador*, int16_t);
    ZvResult(ZV_CALL* get_Estado)(Zv_cConsejoOrientador*, uint8_t*);
    ZvResult(ZV_CALL* put_Estado)(Zv_cConsejoOrientador*, uint8_t);
} Zv_cConsejoOrientadorVtbl;
struct Zv_cConsejoOrientador {
    const Zv_cConsejoOrientadorVtbl* vtbl;
};

/* La fachada: lo que un anfitrión pide al módulo. Todos los objetos de esta clase comparten los diálogos y la
 * sesión.
 *
 * Orden: primero ObtenerDatos, y después las otras tres, que trabajan con lo que entonces se leyó. Cuando
 * cambie algo de la sesión, otra vez ObtenerDatos.
 *
 * Hilos: uno dentro a la vez; al segundo se le responde ZV_E_WRONG_THREAD sin hacer nada, y puede repetir.
 * Con pantalla, todas en el hilo de las ventanas: el de la QApplication del anfitrión o, si no la tiene, el
 * que llamó primero. El mismo hilo puede volver a entrar desde la sesión o desde su conexión.
 *
 * Resultado: ZV_OK, o negativo. ZV_FAILURE_BASE más un número de 1 a 65535 es un fallo del módulo o del
 * anfitrión (438: a un objeto le falta un miembro; 91: falta el objeto); los de la base de datos son
 * negativos y van como son. Por la tabla no viene el texto: si lo quiere, llame por el nombre (Invoke, o call
 * y zv_call de las otras cabeceras). */
typedef struct Zv_cAsignarDatos Zv_cAsignarDatos;
typedef struct Zv_cAsignarDatosVtbl {
    ZvDispatchVtbl dispatch;

    /* Carga el banco de la sesión con sus propios datos bloqueados, para que ActivarFormulario(30) lo abra
     * por sus sucursales. Llámela justo delante: lo bloqueado queda hasta que se abre y se cierra el nodo 30,
     * y la fila queda registrada. Un mensaje, si no se puede leer el banco, espera a que alguien lo cierre.
     */
    ZvResult(ZV_CALL* BloquearBanco)(Zv_cAsignarDatos*);

    /* Copia en el módulo los dieciocho miembros de la sesión, que se piden por su nombre y en un orden fijo.
     * El objeto sigue siendo de quien llama; el módulo retiene sus conexiones, y a él, hasta la llamada
     * siguiente o hasta que DllCanUnloadNow responde 0. No abre ventanas y no habla con la base de datos.
     * ZV_E_POINTER si el puntero es nulo, 91 si lo es el objeto, 438 si falta un miembro, 13 o 6 si su valor
     * es de otro tipo o no cabe: los anteriores quedan ya copiados. */
    ZvResult(ZV_CALL* ObtenerDatos)(Zv_cAsignarDatos*, ZvDispatch** ObjDatosSesion);

    /* Muestra el diálogo del nodo (0 a 255; los que hay están en la guía) y no vuelve hasta que se cierra. No
     * dice qué hizo la persona: refresque después su lista. Un nodo sin diálogo no hace nada y da ZV_OK. 5 si
     * no hay pantalla, 400 si ese diálogo está abierto ya. Lo que falla con la ventana abierta se lo dice el
     * diálogo a la persona. */
    ZvResult(ZV_CALL* ActivarFormulario)(Zv_cAsignarDatos*, uint8_t bytNodoSeleccionado);

    /* Pone en `resultado` -1 si el módulo ve que la fila lngRowData del nodo (0 a 255) se puede borrar, y 0
     * si algo la nombra o si el nodo no tiene guarda. No borra y no pregunta: borrar es del anfitrión, y hay
     * nodos que dicen que sí sin haber mirado («Antes de borrar», en la guía). ZV_E_POINTER si `resultado` es
     * nulo. Si falla la consulta se muestra un mensaje y, leído, la llamada da ZV_OK y 0 (el nodo 65, -1 y
     * sin mensaje); sin pantalla da el número de la base de datos. */
    ZvResult(ZV_CALL* Eliminar)(Zv_cAsignarDatos*, uint8_t bytNodoSeleccionado, ZvBool* resultado);
} Zv_cAsignarDatosVtbl;
struct Zv_cAsignarDatos {
    const Zv_cAsignarDatosVtbl* vtbl;
};

typedef struct Zv_cInformeInd Zv_cInformeInd;
typedef struct Zv_cInformeIndVtbl {
    ZvDispatchVtbl dispatch;
    ZvResult(ZV_CALL* get_CodAlumno)(Zv_cInformeInd*, int32_t*);
    ZvResult(ZV_CALL* put_CodAlumno)(Zv_cInformeInd*, int32_t);
    ZvResult(ZV_CALL* get_Dificultad)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Dificultad)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Valoracion)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Valoracion)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Apreciacion)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Apreciacion)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_colMaterias)(Zv_cInformeInd*, ZvDispatch**);
    ZvResult(ZV_CALL* putref_colMaterias)(Zv_cInformeInd*, ZvDispatch*);
    ZvResult(ZV_CALL* get_PropAlumno1)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_PropAlumno1)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_PropAlumno2)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_PropAlumno2)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_PropAlumno3)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_PropAlumno3)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_PropAlumno4)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_PropAlumno4)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_PropAlumno5)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_PropAlumno5)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Procedimiento1)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Procedimiento1)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Procedimiento2)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Procedimiento2)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Procedimiento3)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Procedimiento3)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Procedimiento4)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Procedimiento4)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Procedimiento5)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Procedimiento5)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Actitud1)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Actitud1)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Actitud2)(Zv_cInformeInd*, ZvBstr*);
    ZvResult(ZV_CALL* put_Actitud2)(Zv_cInformeInd*, ZvBstr);
    ZvResult(ZV_CALL* get_Estado)(Zv_cInformeInd*, uint8_t*);
    ZvResult(ZV_CALL* put_Estado)(Zv_cInformeInd*, uint8_t);
} Zv_cInformeIndVtbl;
struct Zv_cInformeInd {
    const Zv_cInformeIndVtbl* vtbl;
};

typedef struct Zv_cInfPrimaria Zv_cInfPrimaria;
typedef struct Zv_cInfPrimariaVtbl {
    ZvDispatchVtbl dispatch;
    ZvResult(ZV_CALL* get_codMateria)(Zv_cInfPrimaria*, int32_t*);
    ZvResult(ZV_CALL* put_codMateria)(Zv_cInfPrimaria*, int32_t);
    ZvResult(ZV_CALL* get_codTipo)(Zv_cInfPrimaria*, int32_t*);
    ZvResult(ZV_CALL* put_codTipo)(Zv_cInfPrimaria*, int32_t);
    ZvResult(ZV_CALL* get_codResp)(Zv_cInfPrimaria*, int32_t*);
    ZvResult(ZV_CALL* put_codResp)(Zv_cInfPrimaria*, int32_t);
    ZvResult(ZV_CALL* get_Nombre)(Zv_cInfPrimaria*, ZvBstr*);
    ZvResult(ZV_CALL* put_Nombre)(Zv_cInfPrimaria*, ZvBstr);
    ZvResult(ZV_CALL* get_Respuesta)(Zv_cInfPrimaria*, ZvBstr*);
    ZvResult(ZV_CALL* put_Respuesta)(Zv_cInfPrimaria*, ZvBstr);
    ZvResult(ZV_CALL* get_Estado)(Zv_cInfPrimaria*, uint8_t*);
    ZvResult(ZV_CALL* put_Estado)(Zv_cInfPrimaria*, uint8_t);
} Zv_cInfPrimariaVtbl;
struct Zv_cInfPrimaria {
    const Zv_cInfPrimariaVtbl* vtbl;
};

/* Los cinco bloques que exporta la biblioteca: una longitud de 32 bits, 16, y el identificador de la
 * interfaz. */
typedef struct ZvIdBlock {
    uint32_t length;
    ZvGuid id;
} ZvIdBlock;
extern const ZvIdBlock _IID_CASIGNARDATOS;
extern const ZvIdBlock _IID_CCONSEJOORIENTADOR;
extern const ZvIdBlock _IID_CDATOSSESION;
extern const ZvIdBlock _IID_CINFORMEIND;
extern const ZvIdBlock _IID_CINFPRIMARIA;

#ifdef __cplusplus
}
#endif

#ifdef __clang__
#pragma clang diagnostic pop
#endif

#endif
