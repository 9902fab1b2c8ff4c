#pragma once

#include "dialogs/MaintenanceDialog.h"

namespace zv {

/// Descriptor of a catalogue of answers: its words and statements.
struct ResponseCatalogue {
    StringView caption;
    StringView parents; ///< Query of the questions.
    StringView parentKey;
    StringView table;
    StringView key;
    StringView parentColumn;
    StringView load;   ///< Pattern with {fila}: reads the row.
    StringView insert; ///< Pattern: key, question, text.
    StringView update; ///< Pattern: question, text, the row's key.
    std::span<const StringView> guards;
};

/// Dialog of a catalogue of possible answers: a text under a question chosen in a list.
class ResponseDialog : public MaintenanceDialog {
public:
    ComboBox cboPregunta{*this, u"cboPregunta"};
    Label Label1{*this, u"Label1"};
    TextBox txtRespuesta{*this, u"txtRespuesta"};
    Label Label2{*this, u"Label2"};
    ControlArray<CommandButton, 2> cmdProvincia{*this, u"cmdProvincia"};

    bool ComprobarEliminacion() { return unreferenced(words_.guards); }

protected:
    ResponseDialog(StringView name, const ResponseCatalogue& words);

private:
    void Form_Load() override;
    void Form_Unload() override;
    void cmdProvincia_Click(int Index);
    void insertAnswer(const cCentroApi& api, Long question, const String& text);

    const ResponseCatalogue& words_;
};

} // namespace zv
