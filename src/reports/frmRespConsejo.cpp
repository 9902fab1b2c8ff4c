#include "reports/frmRespConsejo.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From ConsejoOrientador_Nota where codCOResp={fila}"};
constexpr ResponseCatalogue words{
    .caption = u"Respuestas del Informe del Consejo Orientador",
    .parents = u"SELECT IDConsejoOrientador, Descripcion FROM ConsejoOrientador",
    .parentKey = u"IDConsejoOrientador",
    .table = u"ConsejoOrientador_Respuesta",
    .key = u"IDCOResp",
    .parentColumn = u"CodConsejoOrientador",
    .load = u"Select IDCOResp, CodConsejoOrientador, Descripcion from ConsejoOrientador_Respuesta  Where "
            u"IDCOResp={fila}",
    .insert = u"INSERT INTO ConsejoOrientador_Respuesta VALUES ({},{},'{}')",
    .update =
        u"UPDATE ConsejoOrientador_Respuesta SET CodConsejoOrientador={}, Descripcion='{}' WHERE IDCOResp={}",
    .guards = guards,
};
} // namespace

frmRespConsejo::frmRespConsejo() : ResponseDialog(u"frmRespConsejo", words) {}

} // namespace zv
