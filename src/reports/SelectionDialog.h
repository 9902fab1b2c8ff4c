#pragma once

#include "data/Connection.h"
#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"

namespace zv {

/// First page of a pupil report's wizard: the user picks a kind of teaching, a course and a section, each
/// list filtered by what his profile may see. It stays loaded under the second page, which reads the section
/// from its list.
class SelectionDialog : public Form {
public:
    ControlArray<Frame, 1> fraNotaManual1{*this, u"fraNotaManual1"};
    ControlArray<Label, 3> lblNotamanual1{fraNotaManual1(0), u"lblNotamanual1"};
    ComboBox cboTipoEnsenanza{fraNotaManual1(0), u"cboTipoEnsenanza"};
    ComboBox cboCursos{fraNotaManual1(0), u"cboCursos"};
    ComboBox cboSecciones{fraNotaManual1(0), u"cboSecciones"};
    ControlArray<CommandButton, 2> cmdNotaManual1{*this, u"cmdNotaManual1"};

    /// The chosen section, of the dialog as it stands: one that is closed is loaded first, and stays so,
    /// unseen. Fails with 381 where none is chosen.
    Long section();

protected:
    SelectionDialog(StringView name, StringView caption);

    void Form_Load() override;
    void Form_Unload() override;

    /// Query patterns (template methods): {p} is the staff row of the user, {t} the kind of teaching.
    virtual StringView kindsOfAll() const = 0;
    virtual StringView kindsOfUser() const = 0;
    virtual String coursesOfAll(Long kind) const = 0;
    virtual String coursesOfUser(Long kind) const = 0;
    virtual void showStepTwo() = 0;

private:
    void cboTipoEnsenanza_Click();
    void cboCursos_Click();
    void cboSecciones_Click() { cmdNotaManual1(0).Enabled = true; }
    void cmdNotaManual1_Click(int Index);
    void CargarCombo(StringView strCampo, ComboBox& objCombo, Recordset& rs);
    String forUser(StringView pattern) const;

    Integer intIDPersonal = 0; ///< Staff row of the user; 0 where he has none.
};

} // namespace zv
