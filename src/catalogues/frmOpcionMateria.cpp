#include "catalogues/frmOpcionMateria.h"

#include "forms/Desktop.h"

namespace zv {

namespace {
constexpr TextCatalogue words{
    .captions = {.nuevo = 3001, .modificado = 3002},
    .table = u"OpcionMateria",
    .key = u"IDOM",
    .load = u"SELECT * FROM OpcionMateria WHERE IDOM={}",
    .insert =
        u"INSERT INTO OpcionMateria (IDOM,Descripcion,DescripcionCorta,DescripcionLarga,DescripcionActa) "
        u"VALUES ({},'{}','{}','{}','{}')",
    .update = u"UPDATE OpcionMateria "
              u"SET Descripcion='{}',DescripcionCorta='{}',DescripcionLarga='{}',DescripcionActa='{}' "
              u"WHERE IDOM={}",
    .begins = Begins::iconAndObjectBefore,
    .test = EmptyTest::everyBox,
    .clearsErr = false,
    .locksRow = false,
    .keepsRows = false,
};
} // namespace

frmOpcionMateria::frmOpcionMateria() : TextCatalogueDialog(u"frmOpcionMateria", words)
{
    assemble({{txtNombre, lblNombre, u"Nombre de opción:", 3020, u"Descripcion"},
              {txtAbreviatura, lblAbreviatura, u"Abreviatura:", 3021, u"DescripcionCorta", 7},
              {txtDescripcion, lblDescripcion, u"Descripción:", 3022, u"DescripcionLarga"},
              {txtDescripcionActa, lblDescripcionActa, u"Descripcion para Acta:", 3023, u"DescripcionActa"}},
             cmdAceptar, cmdCancelar);
}

/// No row was registered, so none is released.
void frmOpcionMateria::Form_Unload()
{
    Hide();
    DoEvents();
}

} // namespace zv
