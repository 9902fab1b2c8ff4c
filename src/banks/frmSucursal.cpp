#include "banks/frmSucursal.h"

#include "banks/frmBanco.h"
#include "forms/Desktop.h"
#include "forms/Layout.h"
#include "services/modCentroConfiguracion.h"
#include "session/cConstCol.h"

#include <algorithm>

namespace zv {

namespace {

constexpr int nombre = 0;
constexpr int direccion = 1;
constexpr int codigo = 2;
constexpr int codigoPostal = 3;
constexpr int poblacion = 4;

constexpr Integer numberTooShort = 523;
constexpr Integer cannotDelete = 7080;
constexpr Integer postalCodeTooShort = 7082;
constexpr Integer numberTaken = 7083;

frmBanco& bank() { return single<frmBanco>(); }

bool isDeleted(const cSucursal& branch) { return branch.Estado == cConstCol::Eliminado; }

} // namespace

frmSucursal::frmSucursal() : MaintenanceDialog(u"frmSucursal")
{
    designField(lblSucursal(0), u"Nombre:", 7020, txtSucursal(nombre), 70);
    designField(lblSucursal(1), u"Dirección:", 7022, txtSucursal(direccion), 50, false);
    designField(lblSucursal(2), u"Codigo:", 7021, txtSucursal(codigo), 4);
    designField(lblSucursal(3), u"Codigo Postal:", 7023, txtSucursal(codigoPostal), 5, false);
    designField(lblSucursal(4), u"Población:", 7024, txtSucursal(poblacion), 50, false);
    designLabel(lblSucursal(5), u"Provincia:", 7025, false);
    designButtons(cmdSucursal(aceptar), cmdSucursal(cancelar));
    on(txtSucursal, &TextBox::KeyPress, &frmSucursal::txtSucursal_KeyPress);
    on(cmdSucursal, &CommandButton::Click, &frmSucursal::cmdSucursal_Click);
    Layout layout(*this);
    for (int field = nombre; field <= poblacion; ++field)
        layout.row(lblSucursal(field), txtSucursal(field));
    layout.row(lblSucursal(5), cboSucursal).buttons(cmdSucursal(aceptar), cmdSucursal(cancelar));
}

void frmSucursal::Form_Load()
{
    Hourglass wait(*this);
    strCodigoInicial.clear();
    const cCentroApi api = cCentroApi::create();
    ResumeNext next;
    next([&] { loadIcon(); });
    lockDown(next);
    const bool changes = bank().gBytOperSucursal == cConstCol::Modificado;
    next([&] { Tag = decimalText(changes ? 7002 : 7001); });
    localise(next, api);
    next([&] { fetch(u"Select * From Provincia Order by IDProvincia"); });
    if (reportedFailure(message::readFailed, sign::information))
        return;
    next([&] { api.agregarelementovacio(cboSucursal); });
    next([&] { addRows(cboSucursal, u"Descripcion", u"IDProvincia"); });
    if (changes)
        showBranch(next);
    closeRows();
}

void frmSucursal::showBranch(ResumeNext& next)
{
    next([&] {
        const cSucursal& branch = bank().gColSucursal().Item(Str(bank().gintIDSucursalSelec));
        strCodigoInicial = branch.Codigo;
        Caption = Caption + u" " + branch.Nombre;
        txtSucursal(nombre).Text = branch.Nombre;
        txtSucursal(direccion).Text = branch.Direccion;
        txtSucursal(codigo).Text = branch.Codigo;
        txtSucursal(codigoPostal).Text = branch.CodigoPostal;
        txtSucursal(poblacion).Text = branch.Poblacion;
        choose(cboSucursal, branch.CodProvincia);
    });
}

void frmSucursal::txtSucursal_KeyPress(int Index, Integer& KeyAscii)
{
    if ((Index == codigo || Index == codigoPostal) && onlyDigits(KeyAscii))
        Beep();
}

/// No error mode; the texts are escaped on cancel too.
void frmSucursal::cmdSucursal_Click(int Index)
{
    cCentroApi::create().ComprobarComilla(Controls);
    if (Index == aceptar) {
        if (!dataGiven())
            return;
        MousePointer = pointer::hourglass;
        if (bank().gBytOperSucursal == cConstCol::NUEVO && !addBranch())
            return;
        if (bank().gBytOperSucursal == cConstCol::Modificado && !changeBranch())
            return;
    }
    Unload();
}

bool frmSucursal::refuse(Integer messageId, int box)
{
    warn(messageId, sign::information);
    if (messageId == numberTooShort || messageId == postalCodeTooShort) {
        txtSucursal(codigoPostal).MaxLength = Long{5};
        txtSucursal(codigo).MaxLength = Long{4};
    }
    txtSucursal(box).SetFocus();
    return false;
}

bool frmSucursal::dataGiven()
{
    if (isBlank(txtSucursal(nombre)) || isBlank(txtSucursal(codigo)))
        return refuse(message::fieldsMissing, nombre);
    if (Trim(txtSucursal(codigo).Text()).size() < 4)
        return refuse(numberTooShort, codigo);
    const String postal = Trim(txtSucursal(codigoPostal).Text());
    return postal.empty() || postal.size() == 5 || refuse(postalCodeTooShort, codigoPostal);
}

bool frmSucursal::addBranch()
{
    Integer largest = 0;
    for (const cSucursal& other : bank().gColSucursal()) {
        if (other.Codigo == txtSucursal(codigo).Text() && !isDeleted(other)) {
            MousePointer = pointer::standard;
            refuse(numberTaken, codigo);
            txtSucursal(codigo).MaxLength = Long{4};
            return false;
        }
        largest = std::max(largest, other.IDSucursal);
    }
    cSucursal branch;
    branch.IDSucursal = CInt(Long{largest} + 1);
    // Error mode for one statement: a bank's number that overflows the field is left out, and nothing reads
    // it.
    ResumeNext next;
    next([&] { branch.CodBanco = CInt(bank().txtBanco(0).Text()); });
    ResumeNext::leave();
    branch.Estado = cConstCol::NUEVO;
    take(branch);
    bank().gColSucursal().Add(branch, Str(branch.IDSucursal));
    return true;
}

/// Duplicate check that tells the branch from the others by its former number; on a duplicate the hourglass
/// stays.
bool frmSucursal::changeBranch()
{
    for (const cSucursal& other : bank().gColSucursal())
        if (other.Codigo != strCodigoInicial && other.Codigo == txtSucursal(codigo).Text() &&
            !isDeleted(other))
            return refuse(numberTaken, codigo);
    cSucursal& branch = bank().gColSucursal().Item(Str(bank().gintIDSucursalSelec));
    if (isDeleted(branch))
        return true;
    take(branch);
    if (branch.Estado != cConstCol::NUEVO)
        branch.Estado = cConstCol::Modificado;
    return true;
}

void frmSucursal::take(cSucursal& branch)
{
    branch.Nombre = txtSucursal(nombre).Text();
    branch.Direccion = txtSucursal(direccion).Text();
    branch.Codigo = txtSucursal(codigo).Text();
    branch.CodigoPostal = txtSucursal(codigoPostal).Text();
    branch.Poblacion = txtSucursal(poblacion).Text();
    const Long province = cboSucursal.ListIndex();
    branch.CodProvincia = province == -1 ? Integer{0} : CInt(cboSucursal.ItemData(province));
}

void frmSucursal::QuitarSucursal(Integer& /*IDSucursal*/)
{
    auto& branches = bank().gColSucursal();
    const Integer selected = bank().gintIDSucursalSelec;
    auto found = branches.begin();
    while (found != branches.end() && (*found).IDSucursal != selected)
        ++found;
    if (found == branches.end() || isDeleted(*found)) {
        warn(cannotDelete, sign::information);
        return;
    }
    // A new branch is dropped, a stored one marked: only the latter needs a DELETE.
    if ((*found).Estado == cConstCol::NUEVO)
        branches.Remove(Str(selected));
    else
        (*found).Estado = cConstCol::Eliminado;
}

void frmSucursal::Form_Unload()
{
    bank().CargarGrid();
    DoEvents();
}

} // namespace zv
