#include "banks/frmBanco.h"

#include "banks/frmSucursal.h"
#include "forms/Desktop.h"
#include "forms/Layout.h"
#include "session/cConstCol.h"

#include <utility>

namespace zv {

namespace {

constexpr int agregar = 2;
constexpr int modificar = 3;
constexpr int eliminar = 4;

constexpr Integer numberTooShort = 522;
constexpr Integer numberExists = 524;
constexpr Integer branchHasAccounts = 1280;
constexpr Integer bankDataFirst = 1281;

} // namespace

frmBanco::frmBanco() : MaintenanceDialog(u"frmBanco")
{
    designField(lblBanco(0), u"Código:", 1121, txtBanco(0), 4);
    designField(lblBanco(1), u"Nombre:", 1122, txtBanco(1), 50);
    mstBanco.Tag = u"1101";
    mstBanco.addTab(u"Datos Generales", u"Datos Generales del Banco");
    mstBanco.addTab(u"Sucursales", u"Sucursales Bancarias");
    designButtons(cmdBotonera(aceptar), cmdBotonera(cancelar));
    designButton(cmdBotonera(agregar), u"Agregar", 336);
    designButton(cmdBotonera(modificar), u"Modificar", 337);
    designButton(cmdBotonera(eliminar), u"Eliminar", 338);
    on(txtBanco, &TextBox::KeyPress, &frmBanco::txtBanco_KeyPress);
    on(msgBanco.Click, &frmBanco::msgBanco_Click);
    on(msgBanco.DblClick, &frmBanco::msgBanco_DblClick);
    on(cmdBotonera, &CommandButton::Click, &frmBanco::cmdBotonera_Click);
    on(mstBanco.Click, &frmBanco::mstBanco_Click);
    Layout(*this)
        .tabs(mstBanco, {Layout(fraBanco(0)).row(lblBanco(0), txtBanco(0)).row(lblBanco(1), txtBanco(1)),
                         Layout(fraBanco(1)).block(msgBanco, 10)})
        .bar({&cmdBotonera(agregar), &cmdBotonera(modificar), &cmdBotonera(eliminar)})
        .buttons(cmdBotonera(aceptar), cmdBotonera(cancelar));
    fraBanco(1).Visible = false;
}

Collection<cSucursal>& frmBanco::gColSucursal()
{
    if (!branches_)
        branches_ = std::make_unique<Collection<cSucursal>>();
    return *branches_;
}

void frmBanco::ConfigurarGrid()
{
    constexpr Long columns = 4;
    constexpr Long firstHeading = 1270;
    msgBanco.Rows = Long{1};
    msgBanco.Cols = columns;
    for (Long column = 0; column < columns; ++column) {
        msgBanco.setColWidth(column, CLng(msgBanco.Width() / 4.0 - 50));
        msgBanco.setColAlignment(column, 1);
        msgBanco.setTextMatrix(0, column, LoadResString(firstHeading + column));
    }
}

/// Refresh that only overwrites and adds grid rows: removing one is the delete button's.
void frmBanco::CargarGrid()
{
    Long row = 0;
    for (const cSucursal& branch : gColSucursal()) {
        if (branch.Estado == cConstCol::Eliminado)
            continue;
        ++row;
        if (msgBanco.Rows() <= row)
            msgBanco.Rows = row + 1;
        msgBanco.setTextMatrix(row, 0, branch.Codigo);
        msgBanco.setTextMatrix(row, 1, branch.Nombre);
        msgBanco.setTextMatrix(row, 2, branch.Direccion);
        msgBanco.setTextMatrix(row, 3, branch.Poblacion);
        msgBanco.setRowData(row, branch.IDSucursal);
    }
}

void frmBanco::Form_Load()
{
    Hourglass wait(*this);
    gintIDSucursalSelec = 0;
    // Reset: an unload that failed leaves its list behind.
    branches_.reset();
    ResumeNext next;
    cCentroApi api;
    next([&] { loadIcon(); });
    next([&] { api = cCentroApi::create(); });
    lockDown(next);
    tagCaption(next, {.nuevo = 1001, .modificado = 1002});
    localise(next, api);
    next([&] { ConfigurarGrid(); });
    if (!changesRow() || !readRow(next, forRow(u"Select * From Banco where IDBanco={fila}")))
        return;
    const RecordsetPtr bank = takeRows();
    if (!readRow(next, forRow(u"Select * From Sucursal where CodBanco={fila}")))
        return;
    // Owning pointer, against re-entrant calls: a host that asks this dialog's guard while the rows are read
    // makes it fetch others.
    const RecordsetPtr branches = rows();
    next([&] { Caption = Caption + u" " + bank->Fields(u"Nombre"); });
    next([&] { txtBanco(0).Text = bank->Fields(u"Numero"); });
    next([&] { txtBanco(1).Text = bank->Fields(u"Nombre"); });
    next([&] { readBranches(next, *branches, *bank); });
    next([&] { CargarGrid(); });
    registerRow(next, api, cmdBotonera(aceptar));
}

void frmBanco::readBranches(ResumeNext& next, Recordset& branches, Recordset& bank)
{
    for (; !branches.Eof(); branches.MoveNext()) {
        cSucursal branch;
        const auto text = [&](String cSucursal::*member, StringView column) {
            next([&] { branch.*member = CStr(branches.Fields(column)); });
        };
        next([&] { branch.IDSucursal = CInt(branches.Fields(u"IDSucursal")); });
        next([&] { branch.CodBanco = CInt(bank.Fields(u"Numero")); });
        text(&cSucursal::Codigo, u"Codigo");
        text(&cSucursal::Nombre, u"Nombre");
        text(&cSucursal::Direccion, u"Direccion");
        text(&cSucursal::Poblacion, u"Poblacion");
        text(&cSucursal::CodigoPostal, u"CodigoPostal");
        next([&] { branch.CodProvincia = CInt(branches.Fields(u"CodProvincia")); });
        branch.Estado = cConstCol::NoModificado;
        const String key = Str(branch.IDSucursal);
        next([&] { gColSucursal().Add(std::move(branch), key); });
    }
}

void frmBanco::mstBanco_Click()
{
    const bool branches = mstBanco.Tabs(2).Selected();
    fraBanco(0).Visible = !branches;
    fraBanco(1).Visible = branches;
}

void frmBanco::msgBanco_Click() { gintIDSucursalSelec = CInt(msgBanco.RowData(msgBanco.Row())); }

void frmBanco::txtBanco_KeyPress(int Index, Integer& KeyAscii)
{
    if (Index == 0)
        onlyDigits(KeyAscii);
}

void frmBanco::cmdBotonera_Click(int Index)
{
    const cCentroApi api = cCentroApi::create();
    ResumeNext next;
    switch (Index) {
    case aceptar:
        accept(next, api);
        break;
    case cancelar:
        next([&] { Unload(); });
        break;
    case agregar:
        openBranch(next, cConstCol::NUEVO);
        break;
    case modificar:
        if (gintIDSucursalSelec >= 1)
            openBranch(next, cConstCol::Modificado);
        break;
    case eliminar:
        if (gintIDSucursalSelec >= 1)
            removeBranch(next);
        break;
    default:
        break;
    }
}

void frmBanco::openBranch(ResumeNext& next, Byte operation)
{
    if (isBlank(txtBanco(0)) && txtBanco(1).Text().empty()) {
        warn(bankDataFirst, sign::information);
        return;
    }
    gBytOperSucursal = operation;
    next([&] { single<frmSucursal>().Show(); });
}

void frmBanco::removeBranch(ResumeNext& next)
{
    next([&] {
        fetch(statement(u"SELECT Count(IDCuenta) as Cuentas FROM Cuenta WHERE codSucursal={}",
                        {gintIDSucursalSelec}));
    });
    if (next.condition([&] { return CLng(field(u"Cuentas")) > 0; })) {
        warn(branchHasAccounts, sign::information);
    } else {
        gBytOperSucursal = cConstCol::Eliminado;
        next([&] { single<frmSucursal>().QuitarSucursal(gintIDSucursalSelec); });
        if (msgBanco.Rows() == 2) {
            msgBanco.Clear();
            next([&] { ConfigurarGrid(); });
        } else {
            next([&] { msgBanco.RemoveItem(msgBanco.Row()); });
        }
    }
    closeRows();
}

void frmBanco::accept(ResumeNext& next, const cCentroApi& api)
{
    makeSafe(next, api);
    if (!dataGiven(next))
        return;
    MousePointer = pointer::hourglass;
    if (!writeBank(next, api))
        return;
    for (const cSucursal& branch : gColSucursal())
        if (!writeBranch(next, api, branch))
            return;
    next([&] { Unload(); });
}

bool frmBanco::dataGiven(ResumeNext& next)
{
    if (txtBanco(0).Text().empty() || txtBanco(1).Text().empty()) {
        warn(message::fieldsMissing, sign::information);
        return false;
    }
    if (txtBanco(0).Text().size() >= 4)
        return true;
    warn(numberTooShort, sign::information);
    next([&] { txtBanco(0).SetFocus(); });
    return false;
}

bool frmBanco::numberFree(ResumeNext& next, StringView query)
{
    next([&] { fetch(query); });
    if (!next.condition([&] { return !rows()->Eof(); }))
        return true;
    MousePointer = pointer::standard;
    warn(numberExists, sign::exclamation);
    txtBanco(0).MaxLength = Long{4};
    return false;
}

/// Inserts or updates by the session's action; with any other, the bank itself is not written.
bool frmBanco::writeBank(ResumeNext& next, const cCentroApi& api)
{
    const String& number = txtBanco(0).Text();
    const String& name = txtBanco(1).Text();
    if (createsRow()) {
        if (!numberFree(next, statement(u"SELECT IDBanco FROM Banco WHERE Numero='{}'", {number})))
            return false;
        Long tried = 0;
        const Long key = insert(next, api, {u"Banco", u"IDBanco"}, [&](Long id) {
            // Retry: a key that was taken stays the session's row until the next one is drawn.
            if (tried != 0)
                Configuracion().lngRowData = tried;
            tried = id;
            return statement(u"Insert into Banco(IDBanco,Nombre,Numero) values ({},'{}','{}')",
                             {id, name, number});
        });
        if (Err().Number != 0) {
            next([&] { Unload(); });
            return false;
        }
        // Foreign key of the branches, which read it from the session.
        Configuracion().lngRowData = key;
        return true;
    }
    if (!changesRow())
        return true;
    const Long row = Configuracion().lngRowData;
    return numberFree(next, statement(u"SELECT IDBanco FROM Banco WHERE Numero='{}' AND IDBanco<>{}",
                                      {number, row})) &&
           update(next, [&] {
               return statement(u"Update Banco Set Nombre='{}',Numero='{}' where  IDBanco={}",
                                {name, number, row});
           });
}

bool frmBanco::writeBranch(ResumeNext& next, const cCentroApi& api, const cSucursal& branch)
{
    switch (branch.Estado) {
    case cConstCol::NUEVO:
        // No early return: a failed insert is reported and stays in Err, the list goes on, and the next
        // update of a branch finds that failure and reports it.
        insert(next, api, {u"Sucursal", u"IDSucursal"}, [&](Long id) {
            return statement(
                u"Insert into Sucursal(IDSucursal,CodBanco,Codigo,Nombre,Direccion,Poblacion,Codigopostal,"
                u"CodProvincia) values ({},'{}','{}','{}','{}','{}','{}',{})",
                {id, Configuracion().lngRowData, branch.Codigo, branch.Nombre, branch.Direccion,
                 branch.Poblacion, branch.CodigoPostal, branch.CodProvincia});
        });
        return true;
    case cConstCol::Modificado:
        return update(next, [&] {
            return statement(u"Update Sucursal set "
                             u"Codigo='{}',Nombre='{}',Direccion='{}',Poblacion='{}',CodigoPostal='{}',"
                             u"Codprovincia={} Where IDSucursal={}",
                             {branch.Codigo, branch.Nombre, branch.Direccion, branch.Poblacion,
                              branch.CodigoPostal, branch.CodProvincia, branch.IDSucursal});
        });
    case cConstCol::Eliminado:
        next(
            [&] { execute(statement(u"Delete * From Sucursal where  IDSucursal={}", {branch.IDSucursal})); });
        return true;
    default:
        return true;
    }
}

bool frmBanco::ComprobarEliminacion()
{
    ResumeNext next;
    next([&] {
        fetch(forRow(u"SELECT Count(Cuenta.codSucursal) as Registros FROM Cuenta INNER JOIN "
                     u"(Sucursal INNER JOIN Banco ON Sucursal.codBanco=Banco.IDBanco) ON "
                     u"Cuenta.codSucursal=Sucursal.IDSucursal WHERE Banco.IDBanco={fila} UNION SELECT "
                     u"count(codBanco) FROM "
                     u"BancoMTP WHERE codBanco={fila} ORDER BY Registros DESC"));
    });
    const bool free = !reportedFailure(message::readFailed) &&
                      next.condition([&] { return CLng(field(u"Registros")) == 0; });
    closeRows();
    return free;
}

void frmBanco::Form_Unload()
{
    releaseRow();
    leaveScreen();
    branches_.reset();
    closeRows();
}

} // namespace zv
