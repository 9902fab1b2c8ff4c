// Every member of the five classes by its name, let and got with values of all kinds. Members of one kind do the same:
// the kind's first shows it, and one that differs is told.
var values = [12, "7", " 8 ", 2.5, 300, 70000, 3000000000, "tres", true, undefined, null];
var shown = {};

// A fraction in a text has the region's mark.
function nameOf(value) {
    return value === null ? "null" : (typeof value + " " + value).replace(",", ".");
}

// Not every engine has turned what the surface refuses into its own numbers.
function numberOf(failure) {
    var number = failure.number & 0xFFFF;
    return {10: 6, 5: 13}[number] || number;
}

function tried(object, member) {
    var result = "antes " + nameOf(object[member]);
    for (var i = 0; i < values.length; ++i) {
        result += "\n  " + nameOf(values[i]) + " -> ";
        try {
            object[member] = values[i];
            result += nameOf(object[member]);
        } catch (failure) {
            result += "fallo " + numberOf(failure);
        }
    }
    return result;
}

function members(className, kinds) {
    var object = new ActiveXObject("ZVConfiguracion." + className);
    var each = kinds.split(" ");
    for (var i = 0; i < each.length; ++i) {
        var parts = each[i].split(":");
        var result = tried(object, parts[0].toUpperCase());
        if (!shown[parts[1]]) {
            shown[parts[1]] = result;
            WScript.Echo(parts[1] + ": " + result);
        } else if (shown[parts[1]] !== result) {
            WScript.Echo("OTRO: " + each[i] + " " + result);
        }
    }
    WScript.Echo(className + " " + each.length);
}

members("cDatosSesion", "IDPerfil:i2 IDCentro:i2 NombreCentro:texto IDUsuario:i2 NombreUsuario:texto " +
    "IDCursoEscolar:i2 ValorCursoEscolar:texto Activa:logico Pesetas:logico CadenaUdlActiva:texto MTP:logico " +
    "RutaAplicacion:texto");
members("cConsejoOrientador", "IDCORNota:i4 CodAlumno:i2 codSeccion:i2 codCOResp:i2 codConsejoOrientador:i2 Estado:byte");
members("cInformeInd", "CodAlumno:i4 Dificultad:texto Valoracion:texto Apreciacion:texto PropAlumno1:texto " +
    "PropAlumno2:texto PropAlumno3:texto PropAlumno4:texto PropAlumno5:texto Procedimiento1:texto Procedimiento2:texto " +
    "Procedimiento3:texto Procedimiento4:texto Procedimiento5:texto Actitud1:texto Actitud2:texto Estado:byte");
members("cInfPrimaria", "codMateria:i4 codTipo:i4 codResp:i4 Nombre:texto Respuesta:texto Estado:byte");

WScript.Echo("Fin");
