#include "reports/frmInfIndESO.h"

#include "dialogs/MaintenanceDialog.h"
#include "session/cConstCol.h"

namespace zv {

frmInfIndESO::frmInfIndESO() : ReportDialog(u"frmInfIndESO", u"Informe Individualizado ESO")
{
    for (const StringView tab :
         {u"Respecto al Propio Alumno", u"Utilización de Procedimientos", u"Nuevas Actitudes", u"Otros"})
        TabInfInd.addTab(tab);
    designText(Label1, u"Cognitivas-Intelectuales:", txtCognitiva);
    designText(Label2, u"Equilibrio Personal:", txtEquilibrio);
    designText(Label3, u"Inserción Social:", txtInsercion);
    designText(Label4, u"Motrices:", txtMotrices);
    designText(Label5, u"Relación Interpersonal:", txtRelacion);
    for (TextBox& box : txtProc1)
        designText(box);
    for (TextBox& box : txtActitud)
        designText(box);
    using R = cInformeInd;
    assemble({{&txtCognitiva, &R::PropAlumno1, u"Alumno1"},
              {&txtEquilibrio, &R::PropAlumno2, u"Alumno2"},
              {&txtInsercion, &R::PropAlumno3, u"Alumno3"},
              {&txtMotrices, &R::PropAlumno4, u"Alumno4"},
              {&txtRelacion, &R::PropAlumno5, u"Alumno5"},
              {&txtProc1(0), &R::Procedimiento1, u"Procedimiento1"},
              {&txtProc1(1), &R::Procedimiento2, u"Procedimiento2"},
              {&txtProc1(2), &R::Procedimiento3, u"Procedimiento3"},
              {&txtProc1(3), &R::Procedimiento4, u"Procedimiento4"},
              {&txtProc1(4), &R::Procedimiento5, u"Procedimiento5"},
              {&txtActitud(0), &R::Actitud1, u"Actitud1"},
              {&txtActitud(1), &R::Actitud2, u"Actitud2"}},
             otros, cmdNotaManual1);
    Layout capacities(fraInfInd(0));
    capacities.above(Label1, txtCognitiva).above(Label2, txtEquilibrio).above(Label3, txtInsercion);
    capacities.above(Label4, txtMotrices).above(Label5, txtRelacion);
    Layout procedures(fraInfInd(1));
    for (TextBox& box : txtProc1)
        procedures.block(box, 4);
    Layout attitudes(fraInfInd(2));
    for (TextBox& box : txtActitud)
        attitudes.block(box, 8);
    Layout(*this)
        .row(Label9, cboAlumno, {&cmdAnterior, &cmdSiguiente})
        .tabs(TabInfInd, {capacities, procedures, attitudes, otros.layout})
        .buttons(cmdNotaManual1(0), cmdNotaManual1(1), ButtonKeys::none);
}

StringView frmInfIndESO::pupils() const
{
    return u"SELECT DISTINCT IDAlumno, Apellido_1, Apellido_2, Nombre, Dificultad, Valoracion, Apreciacion, "
           u"Alumno1, Alumno2, "
           u"Alumno3, Alumno4, Alumno5, Procedimiento1, Procedimiento2, Procedimiento3, Procedimiento4, "
           u"Procedimiento5, "
           u"Actitud1, Actitud2 FROM Alumno INNER JOIN ((Seccion_Alumno LEFT JOIN Alumno_InfIndESO ON "
           u"Seccion_Alumno.codAlumno=Alumno_InfIndESO.codAlumno) LEFT JOIN Alumno_InfInd ON "
           u"Seccion_Alumno.codAlumno=Alumno_InfInd.codAlumno) ON "
           u"Seccion_Alumno.codSeccion=Alumno.codSeccion WHERE "
           u"alumno.codseccion={} and alumno.idAlumno=Seccion_Alumno.codalumno ORDER BY Apellido_1, "
           u"Apellido_2, Nombre";
}

void frmInfIndESO::readPupil(cInformeInd&, Recordset&) {}

void frmInfIndESO::TabInfInd_Click() { showFrame(fraInfInd); }

void frmInfIndESO::writePupil(const cInformeInd& r)
{
    writeCommon(r);
    std::vector<Value> texts;
    for (const String* text : {&r.PropAlumno1, &r.PropAlumno2, &r.PropAlumno3, &r.PropAlumno4, &r.PropAlumno5,
                               &r.Procedimiento1, &r.Procedimiento2, &r.Procedimiento3, &r.Procedimiento4,
                               &r.Procedimiento5, &r.Actitud1, &r.Actitud2})
        texts.emplace_back(doubled(*text));
    if (r.Estado != cConstCol::NUEVO) {
        texts.emplace_back(r.CodAlumno);
        execute(statement(
            u"UPDATE Alumno_InfIndESO SET Alumno1='{}',Alumno2='{}',Alumno3='{}',Alumno4='{}',Alumno5='{}',"
            u"Procedimiento1='{}',Procedimiento2='{}',Procedimiento3='{}',Procedimiento4='{}',"
            u"Procedimiento5='{}',Actitud1='{}',Actitud2='{}' WHERE Codalumno={}",
            texts));
        return;
    }
    texts.insert(texts.begin(), Value(r.CodAlumno));
    execute(statement(u"INSERT INTO Alumno_InfIndESO "
                      u"VALUES ({},'{}','{}','{}','{}','{}','{}','{}','{}','{}','{}','{}','{}')",
                      texts));
}

} // namespace zv
