#include "catalogues/frmProfesion.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"SELECT codprofesion FROM miembrofamilia WHERE codprofesion={}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 6001, .modificado = 6002},
    .table = u"profesion",
    .key = u"idprofesion",
    .load = u"SELECT * FROM profesion WHERE idprofesion={}",
    .insert = u"INSERT INTO profesion (IDProfesion,nombre) VALUES ({},'{}')",
    .update = u"UPDATE profesion SET nombre='{}' WHERE IDProfesion={}",
    .guards = guards,
    .longKey = true,
    .begins = Begins::objectBefore,
    .test = EmptyTest::everyBox,
    .clearsErr = false,
    .keepsRows = false,
};
} // namespace

frmProfesion::frmProfesion() : TextCatalogueDialog(u"frmProfesion", words)
{
    assemble({{txtProfesion, lblProfesion, u"Profesión:", 6020, u"nombre"}}, cmdAceptar, cmdCancelar);
}

} // namespace zv
