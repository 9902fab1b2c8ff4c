' Un anfitrión en VBScript que lo pone todo: la sesión, la conexión y las filas son clases suyas. Abre la ventana de
' estados civiles y enseña las instrucciones que le llegan; con ZV_ESCRITORIO=guion:estado_civil.guion, sin pantalla.
'   cscript //nologo clases.vbs
Option Explicit

' Los dieciocho miembros que lee ObtenerDatos.
Class Sesion
    Public RutaAplicacion
    Public RutaBD
    Public Activa
    Public Accion
    Public lngRowData
    Public conexionBORRADOlocalCENTRO
    Public conexionlocalCENTRO
    Public conexionAppEntrada
    Public IDPerfil
    Public IDUsuario
    Public IDCentro
    Public IDCursoEscolar
    Public NombreUsuario
    Public NombreCentro
    Public Pesetas
    Public MTP
    Public RutaIcono
    Public sqlserver

    Private Sub Class_Initialize()
        RutaAplicacion = "C:\colegio"
        RutaBD = ""
        Activa = True
        Accion = 1
        lngRowData = 0
        IDPerfil = 0
        IDUsuario = 7
        IDCentro = 1
        IDCursoEscolar = 1
        NombreUsuario = "secretaria"
        NombreCentro = "Colegio"
        Pesetas = False
        MTP = False
        RutaIcono = ""
        sqlserver = False
    End Sub

    Public Sub Conectar(ByVal conexion)
        Set conexionBORRADOlocalCENTRO = conexion
        Set conexionlocalCENTRO = conexion
        Set conexionAppEntrada = conexion
    End Sub
End Class

Class Campo
    Public Value
End Class

' Las filas de una consulta: de éstas, ninguna o una, con el mismo valor en cada campo.
Class Filas
    Public EOF
    Public State
    Private valor_

    Private Sub Class_Initialize()
        EOF = True
        State = 1
    End Sub

    Public Sub Poner(ByVal valor)
        valor_ = valor
        EOF = False
    End Sub

    Public Function Fields(ByVal nombre)
        Set Fields = New Campo
        Fields.Value = valor_
    End Function

    Public Sub MoveNext()
        EOF = True
    End Sub

    Public Sub MoveFirst()
    End Sub

    Public Sub Close()
        State = 0
    End Sub
End Class

' La conexión: enseña la instrucción y contesta que la clave más alta es la 4.
Class Conexion
    Public Function Execute(ByVal instruccion, ByVal filas, ByVal opciones)
        WScript.Echo instruccion
        Set Execute = New Filas
        If InStr(1, instruccion, "Max(", 1) > 0 Then Execute.Poner 4
    End Function
End Class

Dim modulo, datos
Set datos = New Sesion
datos.Conectar New Conexion
Set modulo = CreateObject("ZVConfiguracion.cAsignarDatos")
modulo.ObtenerDatos datos
modulo.ActivarFormulario 65
WScript.Echo "Accion " & datos.Accion & ", fila " & datos.lngRowData

datos.lngRowData = 1
modulo.ObtenerDatos datos
WScript.Echo "Eliminar: " & modulo.Eliminar(65)

' Sin conexiones: el fallo llega con su número y su texto.
Set datos = New Sesion
On Error Resume Next
modulo.ObtenerDatos datos
WScript.Echo "Fallo " & Err.Number & ": " & Err.Description
On Error GoTo 0
Set modulo = Nothing
WScript.Echo "Hecho."
