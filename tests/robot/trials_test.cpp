#include "data/sqlite/SqliteEngine.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "robot/Monkey.h"
#include "robot/TextTrial.h"
#include "runtime/Single.h"
#include "session/DialogDirectory.h"
#include "session/cConfiguracion.h"

#include <gmock/gmock.h>

#include <sstream>

namespace zv {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// A dialog with the faults that the trials look for: it writes the text as it was typed, in a read-only
/// session too, and one of its buttons leaves it dead.
class frmMala final : public Form {
public:
    frmMala() : Form(u"frmTurno")
    {
        accept.Caption = u"Aceptar";
        on(accept.Click, &frmMala::accept_Click);
        on(dead.Click, &frmMala::dead_Click);
    }
    TextBox txt{*this, u"txt"};
    CommandButton accept{*this, u"accept"};
    CommandButton dead{*this, u"dead"};

private:
    static RecordsetPtr execute(StringView text) { return Configuracion().conLocalCentro->Execute(text); }
    void Form_Load() override
    {
        txt.Text =
            String() + execute(u"SELECT Descripcion FROM Turno WHERE IDTurno=1")->Fields(u"Descripcion");
    }
    void accept_Click()
    {
        execute(u"UPDATE Turno SET Descripcion='" + txt.Text() + u"' WHERE IDTurno=1");
        written_ = true;
        Unload();
    }
    void dead_Click() { Enabled = !written_; }
    bool written_ = false; ///< A dead dialog ends the acts: not before the other fault was shown.
};

struct Trials : testing::Test {
    Trials()
    {
        registerEngine(sqliteEngine());
        dialogs().add(u"frmTurno", {.instance = []() -> Form& { return single<frmMala>(); },
                                    .ComprobarEliminacion = nullptr});
    }
    std::ostringstream out;
};

TEST_F(Trials, tell_of_a_dialog_that_writes_what_is_typed)
{
    EXPECT_FALSE(tryTexts({.url = u"sqlite:", .every = 4, .dialog = u"frmTurno"}, out));
    EXPECT_THAT(out.str(), AllOf(HasSubstr(": dos instrucciones en una: UPDATE"),
                                 HasSubstr(": hizo UPDATE Turno SET Descripcion=?")));
}

TEST_F(Trials, tell_of_a_dialog_that_stays_open_and_of_one_that_writes_when_it_must_not)
{
    EXPECT_FALSE(actAtRandom({.seed = 1, .acts = 5000, .readOnly = true}, out));
    EXPECT_THAT(out.str(), AllOf(HasSubstr("MAL: escribe en una sesión de consulta: UPDATE Turno SET"),
                                 HasSubstr("MAL: no se puede cerrar la ventana frmTurno")));
}

} // namespace
} // namespace zv
