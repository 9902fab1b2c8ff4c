"""Un anfitrión pequeño en Python, sin más que ctypes: abre la ventana de estados civiles, pregunta si una fila se
puede eliminar y ve cómo se cuenta un fallo.   python3 anfitrion.py URL
Las bibliotecas tienen que estar registradas (véase el anfitrión en C). Otro programa puede importarlo: Server, Session."""
import ctypes as c
import os
import pathlib
import sys
import uuid

ESTADO_CIVIL, NUEVO = 65, 1
OK, NO_NAME, EXCEPTION, FAILURE_BASE = 0, -2147352570, -2147352567, -2146828288
METHOD, GET, PUT = 1, 2, 4
EMPTY, I2, I4, BSTR, DISPATCH, BOOL, UI1, BYREF = 0, 2, 3, 8, 9, 11, 17, 0x4000
GUID = c.c_ubyte * 16


def guid(text):
    return GUID(*uuid.UUID(text).bytes_le)


NULL_ID = GUID()
FACTORY_ID = guid("00000001-0000-0000-C000-000000000046")
DISPATCH_ID = guid("00020400-0000-0000-C000-000000000046")
UNKNOWN_ID = guid("00000000-0000-0000-C000-000000000046")


class Variant(c.Structure):
    class Value(c.Union):
        _fields_ = [("i2", c.c_int16), ("i4", c.c_int32), ("ui1", c.c_uint8), ("pointer", c.c_void_p),
                    ("record", c.c_void_p * 2)]
    _fields_ = [("vt", c.c_uint16), ("reserved", c.c_uint16 * 3), ("value", Value)]


class Params(c.Structure):
    _fields_ = [("arguments", c.POINTER(Variant)), ("names", c.POINTER(c.c_int32)), ("count", c.c_uint32),
                ("name_count", c.c_uint32)]


class Exception_(c.Structure):
    _fields_ = [("code", c.c_uint16), ("reserved", c.c_uint16), ("source", c.c_void_p), ("description", c.c_void_p),
                ("help", c.c_void_p), ("context", c.c_uint32), ("reserved2", c.c_void_p), ("fill", c.c_void_p),
                ("result", c.c_int32)]


# Las funciones de una tabla, en su orden.
TABLE = [c.CFUNCTYPE(c.c_int32, c.c_void_p, c.POINTER(GUID), c.POINTER(c.c_void_p)),
         c.CFUNCTYPE(c.c_uint32, c.c_void_p), c.CFUNCTYPE(c.c_uint32, c.c_void_p),
         c.CFUNCTYPE(c.c_int32, c.c_void_p, c.POINTER(c.c_uint32)),
         c.CFUNCTYPE(c.c_int32, c.c_void_p, c.c_uint32, c.c_uint32, c.POINTER(c.c_void_p)),
         c.CFUNCTYPE(c.c_int32, c.c_void_p, c.POINTER(GUID), c.POINTER(c.c_void_p), c.c_uint32, c.c_uint32,
                     c.POINTER(c.c_int32)),
         c.CFUNCTYPE(c.c_int32, c.c_void_p, c.c_int32, c.POINTER(GUID), c.c_uint32, c.c_uint16, c.POINTER(Params),
                     c.POINTER(Variant), c.POINTER(Exception_), c.POINTER(c.c_uint32))]
CREATE = c.CFUNCTYPE(c.c_int32, c.c_void_p, c.c_void_p, c.POINTER(GUID), c.POINTER(c.c_void_p))

libc = c.CDLL(None)
libc.calloc.restype = c.c_void_p
libc.calloc.argtypes = [c.c_size_t, c.c_size_t]
libc.free.argtypes = [c.c_void_p]


def new_text(text):
    units = text.encode("utf-16-le")
    block = libc.calloc(1, len(units) + 10)
    c.memmove(block + 4, c.byref(c.c_uint32(len(units))), 4)
    c.memmove(block + 8, units, len(units))
    return block + 8


def take_text(pointer):
    if not pointer:
        return ""
    text = c.string_at(pointer, c.c_uint32.from_address(pointer - 4).value).decode("utf-16-le")
    libc.free(pointer - 8)
    return text


def function(pointer, slot, kind):
    table = c.c_void_p.from_address(pointer).value
    return kind(c.c_void_p.from_address(table + slot * c.sizeof(c.c_void_p)).value)


class Failure(Exception):
    def __init__(self, number, text):
        super().__init__(f"{number}: {text}")


class Remote:
    """Un objeto de una biblioteca, o nuestro: sus miembros se llaman por su nombre."""
    def __init__(self, pointer):
        self.pointer = pointer

    def __del__(self):
        self.release()

    def release(self):
        if self.pointer:
            function(self.pointer, 2, TABLE[2])(self.pointer)
            self.pointer = None

    def call(self, name, modes, *arguments):
        units = c.create_string_buffer(name.encode("utf-16-le") + b"\0\0")
        id_ = c.c_int32()
        function(self.pointer, 5, TABLE[5])(self.pointer, NULL_ID, c.pointer(c.c_void_p(c.addressof(units))), 1, 0, id_)
        given = (Variant * len(arguments))(*map(variant, reversed(arguments)))
        result, failed = Variant(), Exception_()
        done = function(self.pointer, 6, TABLE[6])(self.pointer, id_, NULL_ID, 0, modes,
                                                   Params(given, None, len(arguments), 0), result, failed, None)
        for each in given:
            if each.vt == BSTR:
                libc.free(each.value.pointer - 8)
        if done < 0:
            take_text(failed.source)
            number = failed.result if done == EXCEPTION else done
            # Los números propios van sumados a una base; los de la base de datos, como son.
            own = number - FAILURE_BASE
            raise Failure(own if 0 < own <= 65535 else number, take_text(failed.description))
        return value(result)


def variant(what):
    result = Variant()
    if isinstance(what, str):
        result.vt, result.value.pointer = BSTR, new_text(what)
    elif isinstance(what, bool):
        result.vt, result.value.i2 = BOOL, -what
    elif isinstance(what, int):
        result.vt, result.value.i4 = I4, what
    elif what is not None:
        result.vt, result.value.pointer = DISPATCH, what.pointer
    return result


def value(v):
    if v.vt & BYREF:
        sys.exit("aquí no se espera nada por referencia")
    return {EMPTY: lambda: None, I2: lambda: v.value.i2, I4: lambda: v.value.i4, UI1: lambda: v.value.ui1,
            BOOL: lambda: v.value.i2 != 0, BSTR: lambda: take_text(v.value.pointer),
            DISPATCH: lambda: Remote(v.value.pointer)}[v.vt]()


class Session:
    """La sesión: lo que el módulo lee y escribe por su nombre."""
    held = set()  # Las que tiene el módulo: no se pueden ir, aunque aquí ya no las nombre nadie.

    def __init__(self, **members):
        self.members = members
        self.references = 1
        self.functions = [TABLE[0](self.query), TABLE[1](lambda _: self.count(1)), TABLE[2](lambda _: self.count(-1)),
                          TABLE[3](lambda *_: OK), TABLE[4](lambda *_: OK), TABLE[5](self.find), TABLE[6](self.invoke)]
        self.table = (c.c_void_p * 7)(*(c.cast(f, c.c_void_p) for f in self.functions))
        self.face = c.c_void_p(c.addressof(self.table))
        self.pointer = c.addressof(self.face)
        self.asked = []

    def count(self, change):
        self.references += change
        (self.held.add if self.references > 1 else self.held.discard)(self)
        return self.references

    def query(self, _, interface, place):
        if bytes(interface[0]) not in (bytes(UNKNOWN_ID), bytes(DISPATCH_ID)):
            return -2147467262
        self.count(1)
        place[0] = self.pointer
        return OK

    def find(self, _, __, names, ___, ____, ids):
        name = c.string_at(names[0], 128).decode("utf-16-le", "replace").split("\0")[0].lower()
        known = {each.lower(): each for each in self.members}
        if name not in known:
            return NO_NAME
        self.asked.append(known[name])
        ids[0] = len(self.asked)
        return OK

    def invoke(self, _, id_, __, ___, modes, params, result, *____):
        name = self.asked[id_ - 1]
        if modes & PUT:
            self.members[name] = value(params[0].arguments[0])
            return OK
        result[0] = variant(self.members[name])
        if isinstance(self.members[name], Remote):
            function(self.members[name].pointer, 1, TABLE[1])(self.members[name].pointer)
        return OK


class Server:
    """Una biblioteca, por el nombre con que se registró."""
    def __init__(self, prog_id):
        data = os.environ.get("XDG_DATA_HOME") or pathlib.Path.home() / ".local/share"
        class_id, library = (pathlib.Path(data) / "zvconfiguracion/servidores" / prog_id).read_text().splitlines()
        self.library = c.CDLL(library)
        self.class_id = guid(class_id)

    def create(self):
        factory, made = c.c_void_p(), c.c_void_p()
        self.library.DllGetClassObject(self.class_id, FACTORY_ID, c.byref(factory))
        function(factory.value, 3, CREATE)(factory, None, DISPATCH_ID, made)
        Remote(factory.value)
        return Remote(made.value)

    def can_unload(self):
        return self.library.DllCanUnloadNow() == OK


def main(url):
    data, module = Server("ZVDatos.Conexion"), Server("ZVConfiguracion.cAsignarDatos")
    connection, facade = data.create(), module.create()
    connection.call("Open", METHOD, url)
    session = Session(RutaAplicacion="", RutaBD="", Activa=True, Accion=NUEVO, lngRowData=0, IDPerfil=0, IDUsuario=1,
                      IDCentro=1, IDCursoEscolar=1, NombreUsuario="ana", NombreCentro="Centro", Pesetas=False,
                      MTP=False, RutaIcono="", sqlserver=False, conexionlocalCENTRO=connection,
                      conexionBORRADOlocalCENTRO=connection, conexionAppEntrada=connection)

    def ask():
        facade.call("ObtenerDatos", METHOD, session)
        print("Eliminar:", "se puede" if facade.call("Eliminar", METHOD, ESTADO_CIVIL) else "no se puede")

    facade.call("ObtenerDatos", METHOD, session)
    facade.call("ActivarFormulario", METHOD, ESTADO_CIVIL)
    rows = connection.call("Execute", METHOD, "Select IDEstadoCivil,Descripcion From EstadoCivil")
    while not rows.call("EOF", GET):
        print("Nuevo:", rows.call("Fields", GET, "Descripcion").call("Value", GET))
        rows.call("MoveNext", METHOD)
    session.members["lngRowData"] = 1
    ask()
    connection.call("Execute", METHOD, "Insert Into Personal (IDPersonal,CodEstadoCivil) Values (1,1)")
    ask()
    profile = session.members.pop("IDPerfil")
    try:
        facade.call("ObtenerDatos", METHOD, session)
    except Failure as failure:
        print("Fallo", failure)
    session.members["IDPerfil"] = profile
    ask()
    for each in (rows, facade):
        each.release()
    unloaded = module.can_unload()
    connection.call("Close", METHOD)
    session.members.clear()
    connection.release()
    if not (unloaded and data.can_unload()):
        sys.exit("queda algún objeto sin soltar")
    print("Referencias a la sesión:", session.references)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
