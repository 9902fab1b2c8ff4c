// The design of the issuer's dialog and what its accept does.

#include "banks/frmEmisor.h"
#include "forms/Layout.h"

namespace zv {

namespace {

constexpr Integer suffixTooShort = 521;

bool refuseEmpty()
{
    warn(message::fieldsMissing, sign::information);
    return false;
}

} // namespace

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
    lblCodigoOrdenante.Width = lblsufijo.Width;
    lblCodigoOrdenante.Height = lblsufijo.Height;
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

/// In no error mode: a failing statement leaves the dialog open and is told with its own words.
void frmEmisor::cmdAceptar_Click()
{
    const cCentroApi api = cCentroApi::create();
    if (!dataGiven())
        return;
    MousePointer = Integer{11};
    api.ComprobarComilla(Controls);
    write(api);
    Unload();
}

/// The columns behind the key, in their order.
std::vector<Value> frmEmisor::values() const
{
    const Long submitter = cboPresentador.ListIndex();
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

} // namespace zv
