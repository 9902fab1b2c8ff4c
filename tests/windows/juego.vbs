' Calls the module as a plan says: a line for each call, its words between tabulators.
'   cscript //nologo juego.vbs PLAN URL
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

    Private Sub Class_Initialize()
        RutaAplicacion = ""
        RutaBD = ""
        Activa = True
        IDPerfil = 0
        IDUsuario = 1
        IDCentro = 1
        IDCursoEscolar = 1
        NombreUsuario = "usuario"
        NombreCentro = "Centro"
        Pesetas = False
        MTP = False
        RutaIcono = ""
        sqlserver = False
    End Sub

    Public Sub Poner(ByVal member, ByVal value)
        Select Case member
            Case "Activa"
                Activa = CBool(value)
            Case "MTP"
                MTP = CBool(value)
            Case "Pesetas"
                Pesetas = CBool(value)
            Case "sqlserver"
                sqlserver = CBool(value)
            Case "IDPerfil"
                IDPerfil = CInt(value)
            Case "IDUsuario"
                IDUsuario = CInt(value)
            Case "IDCursoEscolar"
                IDCursoEscolar = CInt(value)
            Case Else
                WScript.Echo "sesion " & member & "?"
        End Select
    End Sub
End Class

Function Opened(ByVal which)
    Set Opened = CreateObject("ZVDatos.Conexion")
    Opened.Open WScript.Arguments.Item(1), which
End Function

Dim facade, data, plan, words, answer
Set data = New Sesion
Set data.conexionlocalCENTRO = Opened("centro")
Set data.conexionBORRADOlocalCENTRO = Opened("borrado")
Set data.conexionAppEntrada = Opened("entrada")
Set facade = CreateObject("ZVConfiguracion.cAsignarDatos")
Set plan = CreateObject("Scripting.FileSystemObject").OpenTextFile(WScript.Arguments.Item(0))

Sub HandOver(ByVal action, ByVal row)
    data.Accion = CInt(action)
    data.lngRowData = CLng(row)
    facade.ObtenerDatos data
End Sub

Do Until plan.AtEndOfStream
    words = Split(plan.ReadLine, vbTab)
    On Error Resume Next
    Err.Clear
    Select Case words(0)
        Case "sesion"
            data.Poner words(1), words(2)
        Case "abrir"
            HandOver words(2), words(3)
            If UBound(words) = 4 Then facade.BloquearBanco
            facade.ActivarFormulario CInt(words(1))
        Case "eliminar"
            HandOver data.Accion, words(2)
            answer = facade.Eliminar(CInt(words(1)))
            WScript.Echo "> eliminar " & CStr(answer)
    End Select
    If Err.Number <> 0 Then WScript.Echo words(0) & " " & words(1) & ": " & Err.Number & " " & Err.Description
    On Error GoTo 0
Loop
WScript.Echo "Fin"
