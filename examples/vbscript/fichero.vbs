' Un anfitrión en VBScript con la conexión de ZVDatos: abre la ventana de estados civiles de un colegio, pregunta si una
' fila se puede eliminar y ve cómo se cuenta un fallo.
'   cscript //nologo fichero.vbs sqlite:C:\colegio\centro.db
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

' A ésta le faltan casi todos.
Class SesionCorta
    Public RutaAplicacion
    Public RutaBD
    Public Activa
    Public Accion
    Public lngRowData
    Public conexionBORRADOlocalCENTRO
    Public conexionlocalCENTRO
    Public conexionAppEntrada
End Class

Function Abierta(ByVal cual)
    Set Abierta = CreateObject("ZVDatos.Conexion")
    Abierta.Open WScript.Arguments.Item(0), cual
End Function

Dim modulo, datos, corta, filas
Set datos = New Sesion
Set datos.conexionlocalCENTRO = Abierta("centro")
Set datos.conexionBORRADOlocalCENTRO = Abierta("borrado")
Set datos.conexionAppEntrada = Abierta("entrada")
datos.Activa = True
datos.Accion = 1
datos.IDUsuario = 7
Set modulo = CreateObject("ZVConfiguracion.cAsignarDatos")
modulo.ObtenerDatos datos
modulo.ActivarFormulario 65

Set filas = datos.conexionlocalCENTRO.Execute("Select IDEstadoCivil,Descripcion From EstadoCivil")
Do Until filas.EOF
    WScript.Echo "Nuevo: " & filas.Fields("Descripcion").Value
    filas.MoveNext
Loop
filas.Close

Sub Preguntar()
    modulo.ObtenerDatos datos
    If modulo.Eliminar(65) Then
        WScript.Echo "Eliminar: se puede"
    Else
        WScript.Echo "Eliminar: no se puede"
    End If
End Sub

datos.lngRowData = 1
Preguntar
datos.conexionlocalCENTRO.Execute "Insert Into Personal (IDPersonal,CodEstadoCivil) Values (1,1)"
Preguntar

Set corta = New SesionCorta
Set corta.conexionlocalCENTRO = datos.conexionlocalCENTRO
Set corta.conexionBORRADOlocalCENTRO = datos.conexionBORRADOlocalCENTRO
Set corta.conexionAppEntrada = datos.conexionAppEntrada
corta.Activa = True
On Error Resume Next
modulo.ObtenerDatos corta
WScript.Echo "Fallo " & Err.Number & ": " & Err.Description
On Error GoTo 0
Preguntar

Set modulo = Nothing
datos.conexionlocalCENTRO.Close
WScript.Echo "Hecho."
