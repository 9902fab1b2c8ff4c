#include "catalogues/frmIdioma.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From Centro Where CodIdioma={}",
                                 u"Select * From Centro_Idioma Where CodIdioma={}"};
constexpr OneFieldCatalogue words{
    .captions = {.nuevo = 27001, .modificado = 27002},
    .table = u"Idioma",
    .key = u"IDIdioma",
    .column = u"Descripcion",
    .load = u"Select * from Idioma  Where IDIdioma={}",
    .insert = u"Insert into Idioma (IDIdioma,Descripcion) values ({},'{}')",
    .update = u"Update Idioma Set Descripcion='{}' Where IDIdioma={}",
    .guards = guards,
};
} // namespace

frmIdioma::frmIdioma() : OneFieldDialog(u"frmIdioma", words) { assemble(txtIdioma, lblPais, u"Idioma:", 27003, cmdIdioma); }

/// Err is not cleared before the row is read, so a failure of the steps before shows as a failed read. The caption's own text
/// ends in a blank.
void frmIdioma::Form_Load()
{
    Hourglass wait(*this);
    ResumeNext next;
    const cCentroApi api = prelude(next, words.captions);
    if (changesRow())
        showRow(next, api, u"");
}

} // namespace zv
