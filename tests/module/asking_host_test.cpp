#include "forms/Ficha.h"
#include "module/Hosted.h"
#include "session/DialogDirectory.h"

namespace zv::test {

/// Rows of a host that asks, whenever a field is read for something else, whether the bank may be deleted.
struct AskingRows final : Recordset {
    AskingRows(RecordsetPtr rows, bool& asks) : inner(std::move(rows)), asking(asks) {}
    bool Eof() override { return inner->Eof(); }
    void MoveNext() override { inner->MoveNext(); }
    void MoveFirst() override { inner->MoveFirst(); }
    Value Fields(StringView name) override
    {
        if (!std::exchange(asking, true)) {
            cAsignarDatos().Eliminar(cNombreNodo::OC_Bancos);
            asking = false;
        }
        return inner->Fields(name);
    }
    std::vector<Value> row() override { return inner->row(); }
    Long State() const override { return inner->State(); }
    void Close() override { inner->Close(); }
    RecordsetPtr inner;
    bool& asking;
};

struct AskingHost final : ConnectionDecorator {
    using ConnectionDecorator::ConnectionDecorator;
    RecordsetPtr Execute(StringView statement) override
    {
        return std::make_shared<AskingRows>(inner()->Execute(statement), asking);
    }
    bool asking = false;
};

TEST(AskingHost, gets_a_bank_with_all_its_branches)
{
    FakeDesktop desktop;
    Hosted hosted(&desktop);
    School& school = hosted.school;
    school.centro->executeNative(u"INSERT INTO Banco (IDBanco, Numero, Nombre) VALUES (1, '0049', 'Uno')");
    for (const StringView branch : {u"1", u"2", u"3"})
        school.centro->executeNative(u"INSERT INTO Sucursal (IDSucursal, codBanco, Codigo, Nombre) VALUES (" +
                                     String(branch) + u", 1, '0001', 'Sucursal')");
    school.centro = std::make_shared<AskingHost>(school.centro);
    Long rows = 0;
    desktop.steps = {[&] {
        Form& bank = dialogs().find(u"frmBanco").instance();
        rows = CLng(get(bank.reach(u"msgBanco"), u"Rows"));
        bank.Unload();
    }};
    openNode(school, cNombreNodo::OC_Bancos, 2, 1);
    EXPECT_EQ(rows, 1 + 3) << "a heading and the branches";
}

} // namespace zv::test
