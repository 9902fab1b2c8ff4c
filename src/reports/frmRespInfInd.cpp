#include "reports/frmRespInfInd.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From Alumno_InfIndPrim where codResp={fila}"};
constexpr ResponseCatalogue words{
    .caption = u"Respuestas al Informe Individualizado",
    .parents = u"SELECT IDTipo, Descripcion FROM TipoInfInd",
    .parentKey = u"IDTipo",
    .table = u"TipoRespInfInd",
    .key = u"IDResp",
    .parentColumn = u"CodTipo",
    .load = u"Select IDResp, CodTipo, Descripcion from TipoRespInfInd  Where IDResp={fila}",
    .insert = u"INSERT INTO TipoRespInfInd VALUES ({},{},'{}')",
    .update = u"UPDATE TipoRespInfInd SET CodTipo={}, Descripcion='{}' WHERE IDResp={}",
    .guards = guards,
};
} // namespace

frmRespInfInd::frmRespInfInd() : ResponseDialog(u"frmRespInfInd", words) {}

} // namespace zv
