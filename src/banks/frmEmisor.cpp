#include "banks/frmEmisor.h"

#include "banks/frmPresentador.h"
#include "forms/Desktop.h"
#include "forms/Layout.h"
#include "services/modCentroConfiguracion.h"
#include "session/cConstCol.h"

#include <algorithm>

namespace zv {

namespace {

constexpr StringView guards[] = {u"Select CodCuenta From Centro_Cuenta_Emisor Where CodEmisor={fila}"};

constexpr StringView provinces = u"Select Descripcion, IDProvincia From Provincia Order by IDProvincia";
constexpr StringView submitters = u"Select * From Presentador";

constexpr Long newOrderingParty = -2;
constexpr Long newIssuer = -1;

constexpr Integer issuerNew = 23001;
constexpr Integer issuerChanged = 23002;
constexpr Integer orderingPartyNew = 23003;
constexpr Integer orderingPartyChanged = 23004;
constexpr Integer suffixTooShort = 521;
constexpr Integer kindIsFixed = 23080;

/// Twips by which an ordering party's dialog is smaller: the submitter's row.
constexpr Long submitterRow = 645;

bool refuseEmpty()
{
    warn(message::fieldsMissing, sign::information);
    return false;
}

} // namespace

frmEmisor::frmEmisor() : MaintenanceDialog(u"frmEmisor")
{
    design();
    on(optEmisor.Click, &frmEmisor::optEmisor_Click);
    on(optOrdenante.Click, &frmEmisor::optOrdenante_Click);
    on(chkMTP.MouseDown, &frmEmisor::chkMTP_MouseDown);
    on(chkMTP.Click, &frmEmisor::chkMTP_Click);
    on(txtSufijo.Change, &frmEmisor::txtSufijo_Change);
    on(txtCP.Change, &frmEmisor::txtCP_Change);
    for (TextBox* box : {&txtSufijo, &txtCP})
        box->KeyPress.bind([](Integer& KeyAscii) { onlyDigits(KeyAscii); });
    on(cmdNuevoPresentador.Click, &frmEmisor::cmdNuevoPresentador_Click);
    on(cmdAceptar.Click, &frmEmisor::cmdAceptar_Click);
    on(cmdCancelar.Click, &frmEmisor::cmdCancelar_Click);
}

void frmEmisor::design()
{
    designField(lblNombre, u"Nombre:", 23020, txtNombre, 50);
    designField(lblNIF, u"NIF:", 23021, txtNIF, 9);
    designField(lblsufijo, u"Sufijo:", 23022, txtSufijo, 3);
    txtSufijo.Text = u"000";
    designLabel(lblCodigoOrdenante, u"Código del ordenante", 0);
    txtCodOrdenante.MaxLength = Long{10};
    designField(lblDireccion, u"Dirección:", 23023, txtDireccion, 50);
    designField(lblPoblacion, u"Población:", 23024, txtPoblacion, 50);
    designLabel(lblProvincia, u"Provincia:", 23025);
    designField(lblCP, u"C.P.:", 23026, txtCP, 5);
    designLabel(lblPresentador, u"Presentador:", 23029);
    fraEntidad.Caption = u"Entidad";
    fraEntidad.Tag = u"23010";
    optEmisor.Caption = u"Emisora";
    optEmisor.Tag = u"23011";
    optOrdenante.Caption = u"Ordenante";
    optOrdenante.Tag = u"23012";
    chkMTP.Caption = u"Utilizar servicio MTP";
    chkMTP.Tag = u"23028";
    designButton(cmdNuevoPresentador, u"...");
    cmdNuevoPresentador.ToolTipText = u"Añadir un presentador";
    designButtons(cmdAceptar, cmdCancelar);
    Layout(*this)
        .labels(lblCodigoOrdenante.Caption())
        .frame(fraEntidad, Layout(fraEntidad).line({&optEmisor, &optOrdenante}))
        .line({&chkMTP})
        .row(lblNombre, txtNombre)
        .row(lblNIF, txtNIF)
        .row(lblsufijo, txtSufijo)
        .row(lblDireccion, txtDireccion)
        .row(lblPoblacion, txtPoblacion)
        .row(lblProvincia, cboProvincia)
        .row(lblCP, txtCP)
        .row(lblPresentador, cboPresentador, {&cmdNuevoPresentador})
        .floating(txtCodOrdenante)
        .buttons(cmdAceptar, cmdCancelar);
    txtCodOrdenante.labelledBy(lblCodigoOrdenante);
    // Spare height of the layout, since the dialog shrinks by more than a row: it goes above the submitter,
    // so that the buttons end as far below the postal code as they stand below the submitter.
    const Long spare = submitterRow - (cboPresentador.Top - txtCP.Top);
    for (Control* control :
         std::initializer_list<Control*>{&lblPresentador, &cboPresentador, &cmdNuevoPresentador})
        control->Top = control->Top + spare;
    moveEnd(spare);
    lblCodigoOrdenante.Width = lblsufijo.Width;
    lblCodigoOrdenante.Height = lblsufijo.Height;
}

bool frmEmisor::ComprobarEliminacion() { return unreferenced(guards); }

void frmEmisor::moveEnd(Long twips)
{
    cmdAceptar.Top = cmdAceptar.Top + twips;
    cmdCancelar.Top = cmdCancelar.Top + twips;
    Height = Height + twips;
}

void frmEmisor::showSubmitter(bool visible)
{
    lblPresentador.Visible = visible;
    cboPresentador.Visible = visible;
    cmdNuevoPresentador.Visible = visible;
}

void frmEmisor::layoutIssuer()
{
    if (Height() < lngAltura)
        moveEnd(submitterRow);
    txtCodOrdenante.Text = u"";
    lblCodigoOrdenante.Visible = false;
    txtCodOrdenante.Visible = false;
    txtSufijo.Visible = true;
    lblsufijo.Visible = true;
    for (Label* label : {&lblDireccion, &lblPoblacion, &lblProvincia, &lblCP})
        label->Marca = u"";
    showSubmitter(true);
}

void frmEmisor::layoutOrderingParty()
{
    txtSufijo.Text = u"";
    lblCodigoOrdenante.Visible = true;
    txtCodOrdenante.Visible = true;
    txtSufijo.Visible = false;
    lblsufijo.Visible = false;
    txtCodOrdenante.Left = txtSufijo.Left;
    txtCodOrdenante.Top = txtSufijo.Top;
    lblCodigoOrdenante.Left = lblsufijo.Left;
    lblCodigoOrdenante.Top = lblsufijo.Top;
    for (Label* label : {&lblDireccion, &lblPoblacion, &lblProvincia, &lblCP, &lblPresentador,
                         &lblCodigoOrdenante, &lblsufijo})
        label->Marca = u"*";
    showSubmitter(false);
    moveEnd(-submitterRow);
}

void frmEmisor::optEmisor_Click()
{
    const cCentroApi api = cCentroApi::create();
    cboProvincia.Clear();
    if (optEmisor.Value()) {
        layoutIssuer();
        lblCodigoOrdenante.Marca = u"";
        // Optional address: the list gets an empty entry.
        api.agregarelementovacio(cboProvincia);
    } else {
        layoutOrderingParty();
    }
    afterLayout(api);
}

void frmEmisor::optOrdenante_Click()
{
    const cCentroApi api = cCentroApi::create();
    cboProvincia.Clear();
    if (optOrdenante.Value()) {
        layoutOrderingParty();
    } else {
        layoutIssuer();
        api.agregarelementovacio(cboProvincia);
    }
    afterLayout(api);
}

void frmEmisor::afterLayout(const cCentroApi& api)
{
    ResumeNext next;
    next([&] { fetch(provinces); });
    if (reportedRead())
        return;
    next([&] { addRows(cboProvincia, u"Descripcion", u"IDProvincia"); });
    closeRows();
    next([&] { api.Marcar_Obligatorios(Controls); });
    Err().Clear();
    if (!changesRow())
        next([&] { Caption = LoadResString(optEmisor.Value() ? issuerNew : orderingPartyNew); });
}

/// Tests Err after the read of a list: the message adds the failure's own description.
bool frmEmisor::reportedRead()
{
    if (Err().Number == 0)
        return false;
    Beep();
    MsgBox(LoadResString(message::readFailed) + u"\r" + Err().Description, sign::information,
           LoadResString(message::title));
    Err().Clear();
    return true;
}

void frmEmisor::Form_Load()
{
    Hourglass wait(*this);
    ResumeNext next;
    lngAltura = Height;
    // Raises Click of both options, so that both layouts run: that leaves the shape of an issuer at full
    // height, and the suffix empty.
    next([&] { optOrdenante.Value = true; });
    next([&] { optEmisor.Value = true; });
    next([&] { loadIcon(); });
    cCentroApi api;
    next([&] { api = cCentroApi::create(); });
    lockDown(next);
    next([&] { CargarTextos(*this); });
    if (!readLists(next))
        return;
    showService(next);
    next([&] { Caption = LoadResString(changesRow() ? issuerChanged : issuerNew); });
    const Long row = Configuracion().lngRowData;
    next([&] { (row == newOrderingParty ? optOrdenante : optEmisor).Value = true; });
    if (row == newOrderingParty || row == newIssuer)
        fraEntidad.Enabled = false;
    Err().Clear();
    if (changesRow())
        showParty(next, api);
    next([&] { restrictButtons(api); });
    next([&] { api.Marcar_Obligatorios(Controls); });
}

/// Appends the provinces without clearing the list, which the layout has filled already: an issuer's shows
/// each twice.
bool frmEmisor::readLists(ResumeNext& next)
{
    Err().Clear();
    next([&] { fetch(provinces); });
    if (reportedRead())
        return false;
    next([&] { addRows(cboProvincia, u"Descripcion", u"IDProvincia"); });
    next([&] { fetch(submitters); });
    if (reportedRead())
        return false;
    next([&] { addRows(cboPresentador, u"Nombre", u"IDPresentador"); });
    return true;
}

void frmEmisor::showService(ResumeNext& next)
{
    chkMTP.Visible = Configuracion().MTP;
    if (!Configuracion().MTP)
        next([&] { cmdNuevoPresentador.Enabled = true; });
}

void frmEmisor::showParty(ResumeNext& next, const cCentroApi& api)
{
    next([&] { fetch(forRow(u"Select * from Emisor  Where IDEmisor={fila}")); });
    // The closure takes over the recordset: other reads use the dialog's meanwhile.
    const PartyReader read = [held = takeRows()](StringView column) {
        if (!held)
            fail(failure::noObject);
        return held->Fields(column);
    };
    const std::pair<TextBox*, StringView> texts[] = {{&txtNombre, u"Nombre"},
                                                     {&txtNIF, u"CIF"},
                                                     {&txtDireccion, u"Direccion"},
                                                     {&txtPoblacion, u"Poblacion"},
                                                     {&txtCP, u"CP"}};
    for (const auto& [box, column] : texts)
        next([&, box = box, column = column] { box->Text = read(column); });
    if (next.condition([&] { return isTrue(read(u"MTP")); }))
        next([&] { showServiceRow(next, read, api); });
    else
        next([&] { choose(cboPresentador, read(u"CodPresentador")); });
    next([&] { showKind(next, read); });
    next([&] { choose(cboProvincia, read(u"CodProvincia")); });
    reportedFailure(message::readFailed);
    // Immutable once saved: the kind.
    fraEntidad.Enabled = false;
    if (chkMTP.Visible())
        chkMTP.Enabled = false;
    next([&] { Caption = LoadResString(optEmisor.Value() ? issuerChanged : orderingPartyChanged); });
    next([&] { Caption = Caption + u" " + read(u"Nombre"); });
}

/// Shows a row that uses the service; only such a row is registered.
void frmEmisor::showServiceRow(ResumeNext& next, const PartyReader& party, const cCentroApi& api)
{
    next([&] { chkMTP_Click(); });
    next([&] { chkMTP.Value = Integer{1}; });
    next([&] { choose(cboPresentador, party(u"CodPresentadorMTP")); });
    if (!Configuracion().MTP)
        next([&] { BloquearControles(*this, false); });
    registerRow(next, api, cmdAceptar);
}

void frmEmisor::showKind(ResumeNext& next, const PartyReader& party)
{
    const bool issuer = next.condition([&] { return Trim(String() + party(u"CodigoOrdenante")).empty(); });
    if (issuer) {
        next([&] { optEmisor.Value = true; });
        next([&] { txtSufijo.Text = party(u"Sufijo"); });
    } else {
        next([&] { optOrdenante.Value = true; });
        next([&] { txtCodOrdenante.Text = party(u"CodigoOrdenante"); });
    }
}

void frmEmisor::restrictButtons(const cCentroApi& api)
{
    const cConfiguracion& session = Configuracion();
    api.Comprobar_BotonesAccesoRapido(*this, session.conLocalAppEntrada, session.intIDPerfil);
}

void frmEmisor::Form_Activate()
{
    if (fraEntidad.Enabled())
        return;
    txtNombre.Enabled = true;
    txtNombre.SetFocus();
}

void frmEmisor::txtSufijo_Change()
{
    if (!optEmisor.Value() || IsNumeric(Trim(txtSufijo.Text())))
        return;
    Beep();
    txtSufijo.Text = u"";
}

void frmEmisor::txtCP_Change()
{
    if (IsNumeric(Trim(txtCP.Text())))
        return;
    Beep();
    txtCP.Text = u"";
}

void frmEmisor::chkMTP_Click()
{
    cboPresentador.Clear();
    if (chkMTP.Value() == 1) {
        cmdNuevoPresentador.Enabled = false;
        fetch(u"Select * From PresentadorMTP");
        addRows(cboPresentador, u"Nombre", u"IDPresentadorMTP");
    } else {
        const cCentroApi api = cCentroApi::create();
        cmdNuevoPresentador.Enabled = true;
        restrictButtons(api);
        fetch(submitters);
        addRows(cboPresentador, u"Nombre", u"IDPresentador");
    }
    rows()->Close();
}

/// Warning without a veto: the service of a row with accounts is not to be changed, but the box changes all
/// the same.
void frmEmisor::chkMTP_MouseDown()
{
    if (!changesRow())
        return;
    const StringView pattern = optEmisor.Value()
                                   ? u"SELECT Count(codCCECobro) as codCCE FROM Actividad WHERE "
                                     u"codCCECobro={fila} UNION SELECT Count(IDCCE) FROM "
                                     u"Centro_Cuenta_Emisor WHERE IDCCE={fila} ORDER BY codCCE DESC"
                                   : u"SELECT Count(codCCECobro) as codCCE FROM Actividad WHERE "
                                     u"codCCEPago={fila} UNION SELECT Count(IDCCE) FROM "
                                     u"Centro_Cuenta_Emisor WHERE IDCCE={fila} ORDER BY codCCE DESC";
    fetch(forRow(pattern));
    if (CLng(field(u"codCCE")) > 0)
        warn(kindIsFixed, sign::exclamation);
    else
        closeRows();
}

/// Nested dialog: it finds the session's action set to a new row, and this dialog's row.
void frmEmisor::cmdNuevoPresentador_Click()
{
    ResumeNext next;
    const Byte action = Configuracion().bytAccion;
    Configuracion().bytAccion = cConstCol::NUEVO;
    next([&] { single<frmPresentador>().Show(); });
    Configuracion().bytAccion = action;
    Long largest = 0;
    for (Long entry = 0; entry < cboPresentador.ListCount(); ++entry)
        largest = std::max(largest, cboPresentador.ItemData(entry));
    next([&] { fetch(u"SELECT MAX(IDPresentador) as Mayor FROM Presentador"); });
    if (next.condition([&] {
            const Value found = field(u"mayor");
            return !found.isNull() && CLng(found) > largest;
        })) {
        next([&] { largest = CInt(field(u"mayor")); });
        next([&] { fetch(u"SELECT IDPresentador,Nombre FROM Presentador ORDER BY Nombre"); });
        cboPresentador.Clear();
        next([&] { fetch(submitters); });
        next([&] { addRows(cboPresentador, u"Nombre", u"IDPresentador"); });
        next([&] { choose(cboPresentador, largest); });
    }
    closeRows();
}

bool frmEmisor::dataGiven()
{
    if (isBlank(txtNombre) || isBlank(txtNIF) || (optEmisor.Value() && cboPresentador.ListIndex() == -1))
        return refuseEmpty();
    if (optEmisor.Value() && Trim(txtSufijo.Text()).size() < 3) {
        warn(suffixTooShort, sign::information);
        txtSufijo.SetFocus();
        return false;
    }
    const bool addressMissing = isBlank(txtCodOrdenante) || isBlank(txtDireccion) || isBlank(txtPoblacion) ||
                                isBlank(txtCP) || cboProvincia.ListIndex() == -1;
    return !(optOrdenante.Value() && addressMissing) || refuseEmpty();
}

/// No error mode: the first failing statement ends the handler, is shown with its own description, and leaves
/// the dialog open.
void frmEmisor::cmdAceptar_Click()
{
    const cCentroApi api = cCentroApi::create();
    if (!dataGiven())
        return;
    MousePointer = pointer::hourglass;
    api.ComprobarComilla(Controls);
    write(api);
    Unload();
}

/// Values of the columns behind the key, in their order. An ordering party has no submitter, whatever its
/// hidden list holds chosen.
std::vector<Value> frmEmisor::values() const
{
    const Long submitter = optOrdenante.Value() ? -1 : cboPresentador.ListIndex();
    const Integer key = submitter == -1 ? Integer{0} : CInt(cboPresentador.ItemData(submitter));
    const bool service = chkMTP.Value() == 1;
    const Long province = cboProvincia.ListIndex();
    return {txtNombre.Text(),
            txtNIF.Text(),
            txtSufijo.Text(),
            service ? Integer{0} : key,
            txtDireccion.Text(),
            txtPoblacion.Text(),
            province == -1 ? Long{0} : cboProvincia.ItemData(province),
            txtCP.Text(),
            service ? key : Integer{0},
            txtCodOrdenante.Text(),
            StringView(chkMTP.Value() != 0 ? u"-1" : u"0")};
}

void frmEmisor::write(const cCentroApi& api)
{
    const cConfiguracion& session = Configuracion();
    std::vector<Value> written = values();
    if (!createsRow()) {
        written.emplace_back(session.lngRowData);
        execute(statement(
            u"Update Emisor Set Nombre='{}',CIF='{}',Sufijo='{}',CodPresentador={},Direccion='{}',"
            u"Poblacion='{}',CodProvincia={},CP='{}',CodPresentadorMTP={},CodigoOrdenante='{}',MTP={} "
            u"Where IDEmisor={}",
            written));
        return;
    }
    const Integer id =
        CInt(api.IDMax(session.conLocalCentro, session.conLocalBorradoCentro, u"Emisor", u"IDEmisor"));
    written.insert(written.begin(), Value(id));
    execute(
        statement(u"Insert into Emisor Values ({},'{}','{}','{}',{},'{}','{}',{},'{}',{},'{}',{})", written));
}

void frmEmisor::Form_Unload()
{
    releaseRow();
    leaveScreen();
    closeRows();
}

} // namespace zv
