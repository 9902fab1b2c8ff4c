' The collection of a report, and what is refused to a host, with its number and its words.
Option Explicit
' It is there from its first use, and can be replaced.
Dim report, pupil, other
Set report = CreateObject("ZVConfiguracion.cInformeInd")
Set pupil = CreateObject("ZVConfiguracion.cInfPrimaria")
pupil.Nombre = "Lengua"
report.colMaterias.Add pupil, "L"
report.colMaterias.Add "suelto"
WScript.Echo "Count " & report.colMaterias.Count & ", " & report.colMaterias.Item("L").Nombre & ", " & _
    report.colMaterias.Item(2)
report.colMaterias.Remove "L"
WScript.Echo "Count " & report.colMaterias.Count
Set other = CreateObject("ZVConfiguracion.cInformeInd")
Set other.colMaterias = report.colMaterias
WScript.Echo "Count " & other.colMaterias.Count

' What is refused, with its number and its words.
Dim facade
Set facade = CreateObject("ZVConfiguracion.cAsignarDatos")
WScript.Echo "cAsignarDatos " & TypeName(facade)
On Error Resume Next
Sub Told(ByVal what)
    WScript.Echo what & ": " & Err.Number & " " & Err.Description
    Err.Clear
End Sub
report.NoEsta = 1
Told "no member"
report.colMaterias.Item("L").Nombre = ""
Told "no such key"
report.colMaterias = 3
Told "a number for an object"
facade.ObtenerDatos
Told "without its argument"
facade.ObtenerDatos 3
Told "a number for the session"
facade.ObtenerDatos Nothing
Told "no session"
facade.ObtenerDatos pupil
Told "another's session"
facade.Eliminar 300
Told "no such node"
facade.Eliminar "tres"
Told "a text for a node"
facade.Eliminar 65, 1
Told "two arguments"
facade.Eliminar
Told "none"
WScript.Echo "Eliminar(11) " & facade.Eliminar(11) & ", " & TypeName(facade.Eliminar(11))
facade.BloquearBanco 1
Told "one too many"
WScript.Echo "Fin"
