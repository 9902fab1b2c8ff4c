#include "banks/frmPresentador.h"

#include "forms/Desktop.h"
#include "forms/Layout.h"
#include "session/cAsignarDatos.h"
#include "session/cConstCol.h"
#include "session/cNombreNodo.h"

#include <algorithm>

namespace zv {

namespace {

constexpr StringView guards[] = {u"Select IDEmisor From Emisor Where CodPresentador={fila}"};

constexpr Integer suffixTooShort = 521;
constexpr Integer bankFirst = 24101;
constexpr Integer bankUnknown = 24102;
constexpr Integer noSign = 128;

/// Key of the chosen entry; fails with 381 where none is.
Long chosen(const ComboBox& list) { return list.ItemData(list.ListIndex()); }

Long largestData(const ComboBox& list)
{
    Long largest = 0;
    for (Long entry = 0; entry < list.ListCount(); ++entry)
        largest = std::max(largest, list.ItemData(entry));
    return largest;
}

/// RAII guard of the session's row and action around a nested dialog: what the host had set is restored,
/// however the inner dialog ends.
class InnerSession {
public:
    InnerSession(Long row, Byte action)
        : row_(get(Configuracion().datossesion, u"lngRowData")),
          action_(get(Configuracion().datossesion, u"Accion"))
    {
        let(Configuracion().datossesion, u"lngRowData", row);
        let(Configuracion().datossesion, u"Accion", action);
    }
    InnerSession(const InnerSession&) = delete;
    InnerSession& operator=(const InnerSession&) = delete;
    ~InnerSession()
    {
        ResumeNext next;
        next([&] { let(Configuracion().datossesion, u"lngRowData", row_); });
        next([&] { let(Configuracion().datossesion, u"Accion", action_); });
        next([&] { Configuracion().lngRowData = CLng(row_); });
        next([&] { Configuracion().bytAccion = CByte(action_); });
        ResumeNext::leave();
    }

private:
    Value row_;
    Value action_;
};

} // namespace

frmPresentador::frmPresentador() : MaintenanceDialog(u"frmPresentador")
{
    designField(lblNombre, u"Nombre:", 24020, txtNombre, 40);
    designField(lblNIF, u"NIF-CIF:", 24021, txtNIF, 9);
    designField(lblsufijo, u"Sufijo:", 24022, txtSufijo, 3);
    txtSufijo.Text = u"000";
    fraBanco.Caption = u"Datos del banco de presentación del disco";
    fraBanco.Tag = u"24100";
    designLabel(lblEntidad4, u"Nº Entidad:", 0);
    txtNEntidad.MaxLength = Long{4};
    designLabel(lblEntidad0, u"Banco:", 139);
    designLabel(lblEntidad2, u"Sucursal:", 140);
    designButton(cmdNuevoBanco0, u"...");
    designButton(cmdNuevoBanco1, u"...");
    cmdNuevoBanco0.ToolTipText = u"Añadir un banco";
    cmdNuevoBanco1.ToolTipText = u"Ver y cambiar las sucursales de este banco";
    designButtons(cmdAceptar, cmdCancelar);
    on(txtSufijo.KeyPress, &frmPresentador::txtSufijo_KeyPress);
    on(txtSufijo.Change, &frmPresentador::txtSufijo_Change);
    on(txtNEntidad.KeyPress, &frmPresentador::txtNEntidad_KeyPress);
    on(txtNEntidad.LostFocus, &frmPresentador::txtNEntidad_LostFocus);
    on(cboBancos.Click, &frmPresentador::cboBancos_Click);
    on(cmdNuevoBanco0.Click, &frmPresentador::cmdNuevoBanco0_Click);
    on(cmdNuevoBanco1.Click, &frmPresentador::cmdNuevoBanco1_Click);
    on(cmdAceptar.Click, &frmPresentador::cmdAceptar_Click);
    on(cmdCancelar.Click, &frmPresentador::cmdCancelar_Click);
    Layout(*this)
        .row(lblNombre, txtNombre)
        .row(lblNIF, txtNIF)
        .row(lblsufijo, txtSufijo)
        .frame(fraBanco, Layout(fraBanco)
                             .row(lblEntidad4, txtNEntidad)
                             .row(lblEntidad0, cboBancos, {&cmdNuevoBanco0})
                             .row(lblEntidad2, cboSucursales, {&cmdNuevoBanco1}))
        .buttons(cmdAceptar, cmdCancelar);
}

bool frmPresentador::ComprobarEliminacion() { return unreferenced(guards); }

void frmPresentador::CargarBancos()
{
    cboBancos.Clear();
    cboSucursales.Clear();
    fetch(u"Select Nombre,IDBanco From Banco Order by Nombre");
    addRows(cboBancos, u"Nombre", u"IDBanco");
}

void frmPresentador::CargarSucursales(Integer CodBanco)
{
    cboSucursales.Clear();
    fetch(statement(u"Select Nombre,IDSucursal From Sucursal Where CodBanco={} Order by Nombre", {CodBanco}));
    addRows(cboSucursales, u"Nombre", u"IDSucursal");
}

void frmPresentador::CargarCombo(StringView strTabla, StringView strCampoID, StringView strCampoTexto,
                                 ComboBox& combo)
{
    combo.Clear();
    fetch(statement(u"SELECT * FROM {} ORDER BY {}", {strTabla, strCampoTexto}));
    addRows(combo, strCampoTexto, strCampoID);
}

void frmPresentador::SoloNumeros(Integer& KeyAscii)
{
    if (onlyDigits(KeyAscii))
        Beep();
}

/// Validation on Change: a text that is no number is cleared, which raises Change once more.
void frmPresentador::txtSufijo_Change()
{
    if (IsNumeric(Trim(txtSufijo.Text())))
        return;
    Beep();
    txtSufijo.Text = u"";
}

/// Writes the number only where it differs: an assignment would move the caret of whoever types it.
void frmPresentador::cboBancos_Click()
{
    if (cboBancos.ListIndex() == -1)
        return;
    fetch(statement(u"SELECT Numero FROM Banco WHERE IDBanco={}", {chosen(cboBancos)}));
    const Value number = field(u"numero");
    if (!number.isNull() && txtNEntidad.Text() != CStr(number))
        txtNEntidad.Text = number;
    rows()->Close();
    CargarSucursales(CInt(chosen(cboBancos)));
}

/// Lookup: a typed number chooses the bank that has it.
void frmPresentador::txtNEntidad_LostFocus()
{
    if (txtNEntidad.Text().size() < 4) {
        Beep();
        return;
    }
    fetch(statement(u"SELECT IDBanco FROM Banco WHERE Numero='{}'", {doubled(txtNEntidad.Text())}));
    if (rows()->Eof()) {
        warn(bankUnknown, sign::information);
    } else {
        // Copied first: choosing raises Click, which fetches another recordset.
        const Value bank = field(u"IDBanco");
        choose(cboBancos, bank);
    }
    closeRows();
}

void frmPresentador::Form_Load()
{
    Hourglass wait(*this);
    const cCentroApi api = cCentroApi::create();
    const cConfiguracion& session = Configuracion();
    api.Comprobar_BotonesAccesoRapido(*this, session.conLocalAppEntrada, session.intIDPerfil);
    ResumeNext next;
    next([&] { loadIcon(); });
    lockDown(next);
    tagCaption(next, {.nuevo = 24001, .modificado = 24002});
    localise(next, api);
    next([&] { CargarBancos(); });
    if (!changesRow())
        return;
    Err().Clear();
    if (readRow(next, forRow(u"Select * from Presentador  Where IDPresentador={fila}")))
        readSubmitter(next, api);
}

void frmPresentador::readSubmitter(ResumeNext& next, const cCentroApi& api)
{
    // Takes the recordset over: choosing a bank raises Click, which fetches its branches into the dialog's.
    const RecordsetPtr submitter = takeRows();
    next([&] { Caption = Caption + u" " + submitter->Fields(u"Nombre"); });
    next([&] { txtNombre.Text = submitter->Fields(u"Nombre"); });
    next([&] { txtNIF.Text = submitter->Fields(u"NIF"); });
    next([&] { txtSufijo.Text = submitter->Fields(u"Sufijo"); });
    next([&] { choose(cboBancos, submitter->Fields(u"CodBanco")); });
    if (next.condition([&] {
            const Value branch = submitter->Fields(u"CodSucursal");
            return !branch.isNull() && CLng(branch) > 0;
        }))
        next([&] { choose(cboSucursales, submitter->Fields(u"CodSucursal")); });
    registerRow(next, api, cmdAceptar);
}

bool frmPresentador::dataGiven(ResumeNext& next)
{
    if (isBlank(txtNEntidad) || txtNEntidad.Text().size() < 4 || isBlank(txtNombre) || isBlank(txtNIF) ||
        isBlank(txtSufijo) || cboBancos.ListIndex() == -1 || cboSucursales.ListIndex() == -1) {
        warn(message::fieldsMissing, sign::information);
        return false;
    }
    if (Trim(txtSufijo.Text()).size() >= 3)
        return true;
    warn(suffixTooShort, sign::information);
    next([&] { txtSufijo.SetFocus(); });
    return false;
}

void frmPresentador::cmdAceptar_Click()
{
    const cCentroApi api = cCentroApi::create();
    ResumeNext next;
    if (!dataGiven(next))
        return;
    MousePointer = pointer::hourglass;
    makeSafe(next, api);
    if (write(next, api))
        next([&] { Unload(); });
}

/// Insert or update by the session's row and not by its action: opened from an issuer that is being changed,
/// the dialog says that it is new and overwrites the submitter of the issuer's number.
bool frmPresentador::write(ResumeNext& next, const cCentroApi& api)
{
    Integer bank = 0;
    Integer branch = 0;
    next([&] { bank = CInt(chosen(cboBancos)); });
    next([&] { branch = CInt(chosen(cboSucursales)); });
    const Long row = Configuracion().lngRowData;
    if (row >= 1)
        return update(next, [&] {
            return statement(
                u"Update Presentador Set Nombre='{}',NIF='{}',Sufijo='{}',CodBanco={},CodSucursal={} "
                u"Where IDPresentador={}",
                {txtNombre.Text(), txtNIF.Text(), txtSufijo.Text(), bank, branch, row});
        });
    insert(next, api, {u"Presentador", u"IDPresentador"}, [&](Long id) {
        return statement(u"Insert into Presentador Values ({},'{}','{}','{}',{},{})",
                         {id, txtNombre.Text(), txtNIF.Text(), txtSufijo.Text(), bank, branch});
    });
    Err().Clear();
    return true;
}

void frmPresentador::cmdNuevoBanco1_Click()
{
    if (cboBancos.ListIndex() < 0)
        showMessage(bankFirst, noSign);
    else
        openBank(chosen(cboBancos), cboSucursales, u"Sucursal", u"IDSucursal");
}

void frmPresentador::openBank(Long bank, ComboBox& list, StringView table, StringView key)
{
    const bool branches = &list == &cboSucursales;
    {
        const InnerSession inner(bank, branches ? cConstCol::Modificado : cConstCol::NUEVO);
        cAsignarDatos facade;
        facade.ObtenerDatos(ObjectPtr(Configuracion().datossesion));
        if (branches)
            facade.BloquearBanco();
        facade.ActivarFormulario(cNombreNodo::OC_Bancos);
    }
    const Long largest = largestData(list);
    const String query = statement(u"SELECT MAX({}) AS Mayor FROM {}", {key, table});
    fetch(branches ? query + statement(u" WHERE CodBanco={}", {chosen(cboBancos)}) : query);
    const Value found = field(u"mayor");
    if (found.isNull() || CLng(found) <= largest)
        return;
    const Integer added = CInt(found);
    if (branches)
        cboBancos_Click();
    else
        CargarCombo(u"Banco", u"IDBanco", u"Nombre", cboBancos);
    choose(list, added);
}

void frmPresentador::Form_Unload()
{
    releaseRow();
    leaveScreen();
    closeRows();
}

} // namespace zv
