' Opens the first illness of a school, whose name is stored enciphered, and says how the call ended.
'   cscript //nologo cifrado.vbs URL
Option Explicit

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
End Class

Dim facade, data, connection
Set connection = CreateObject("ZVDatos.Conexion")
connection.Open WScript.Arguments.Item(0)
Set data = New Sesion
Set data.conexionlocalCENTRO = connection
Set data.conexionBORRADOlocalCENTRO = connection
Set data.conexionAppEntrada = connection
data.Activa = True
data.Accion = 2
data.lngRowData = 1
Set facade = CreateObject("ZVConfiguracion.cAsignarDatos")
facade.ObtenerDatos data
On Error Resume Next
facade.ActivarFormulario 57
WScript.Echo Trim(Err.Number & " " & Err.Description)
WScript.Echo "Fin"
