#include "robot/ImportFields.h"

#include "care/joins/LookAlike.h"
#include "forms/Acts.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <optional>

namespace zv {
namespace {

/// Heading of the reference host's list where it is not the field's own caption.
struct Heading {
    StringView dialog;
    StringView heading;
    StringView control;     ///< "" where the dialog works the column out by itself.
    bool byAnother = false; ///< Another field fills it as well: a list may lack it.
};

constexpr Heading headingsOfLists[] = {
    {u"frmOpcionMateria", u"Nombre", u"txtNombre"},
    {u"frmOpcionMateria", u"En el acta", u"txtDescripcionActa"},
    {u"frmPonderacion", u"Descripción", u"txtDescripcion"},
    {u"frmTipoMiembroCentro", u"Tipo", u"optAdmin"},
    {u"frmTipoTarea", u"Tipo de miembro", u"cboMiembroCentro"},
    {u"frmTurno", u"Tipo", u"optDiurno"},
    {u"frmBanco", u"Número", u"txtBanco(0)"},
    {u"frmPresentador", u"NIF", u"txtNIF"},
    {u"frmPresentador", u"Banco", u"cboBancos"},
    {u"frmPresentador", u"Número de entidad", u"txtNEntidad", true},
    {u"frmTipoIva", u"Valor", u""},
    {u"frmRespConsejo", u"Apartado", u"cboPregunta"},
    {u"frmRespInfInd", u"Apartado", u"cboPregunta"},
};

/// Headings of a list's only text.
constexpr StringView onlyText[] = {u"Descripción", u"Nombre"};

/// Words of the reference host's lists for an option with another caption.
constexpr Heading wordsOfLists[] = {
    {u"frmTipoMiembroCentro", u"Administración", u"optAdmin"},
    {u"frmTipoMiembroCentro", u"Subalterno", u"optSub"},
};

constexpr StringView yes[] = {u"sí", u"s", u"x", u"1", u"-1", u"verdadero"};
constexpr StringView no[] = {u"no", u"n", u"", u"0", u"falso"};

/// Dialogs whose fields change with what is chosen in them, and those that work on no row of a list.
constexpr StringView withoutLists[] = {u"frmEmisor", u"frmConsejoOrientador1", u"frmInformeIndividual"};

template <class List>
bool isOneOf(StringView word, const List& words)
{
    return std::ranges::any_of(words, [&](StringView each) { return sameWord(word, each); });
}

/// Without the colon behind a caption.
String folded(StringView word)
{
    String result = care::folded(word);
    while (!result.empty() && result.back() == u':')
        result.pop_back();
    return result;
}

const Label* labelOf(const Control& control) { return dynamic_cast<const Label*>(control.label()); }

/// Builder of the fields of one dialog.
class Fields {
public:
    explicit Fields(Form& form) : form_(form)
    {
        for (Control* each : form.Controls)
            add(*each);
        for (const Heading& each : headingsOfLists)
            if (sameName(each.dialog, form.Name()) && each.control.empty())
                fields_.push_back({.headings = {String(each.heading)}, .target = {}});
        nameOnlyText();
        std::erase_if(fields_, [](const ImportField& each) { return each.headings.empty(); });
    }
    std::vector<ImportField> take() { return std::move(fields_); }

private:
    void add(Control& control)
    {
        if (auto* option = dynamic_cast<OptionButton*>(&control))
            return addOption(*option);
        auto* box = dynamic_cast<TextBox*>(&control);
        auto* list = dynamic_cast<ComboBox*>(&control);
        auto* tick = dynamic_cast<CheckBox*>(&control);
        if (box == nullptr && list == nullptr && tick == nullptr)
            return;
        ImportField field;
        const Label* const label = labelOf(control);
        field.mandatory = list != nullptr || (label != nullptr && label->Marca() == u"*");
        addHeadings(field, control, tick != nullptr ? tick->Caption() : label ? label->Caption() : String());
        if (box != nullptr)
            field.target = box;
        else if (list != nullptr)
            field.target = list;
        else
            field.target = tick;
        fields_.push_back(std::move(field));
    }

    void addOption(OptionButton& option)
    {
        if (fields_.empty() || options_ != fields_.size() - 1 || frame_ != option.frame()) {
            options_ = fields_.size();
            frame_ = option.frame();
            const auto* frame = dynamic_cast<const Frame*>(frame_);
            ImportField field{.headings = {}, .target = OptionChoice()};
            addHeadings(field, option, frame != nullptr ? frame->Caption() : String());
            fields_.push_back(std::move(field));
        }
        auto& words = std::get<OptionChoice>(fields_.back().target).words;
        words.emplace_back(option.Caption(), &option);
        for (const Heading& each : wordsOfLists)
            if (sameName(each.dialog, form_.Name()) && sameName(each.control, option.Name()))
                words.emplace_back(each.heading, &option);
    }

    void addHeadings(ImportField& field, const Control& control, const String& caption) const
    {
        for (const Heading& each : headingsOfLists)
            if (sameName(each.dialog, form_.Name()) && sameName(each.control, control.fullName())) {
                field.headings.emplace_back(each.heading);
                field.mandatory &= !each.byAnother;
            }
        String words = Trim(caption);
        if (words.ends_with(u':'))
            words.pop_back();
        if (!words.empty())
            field.headings.push_back(words);
    }

    void nameOnlyText()
    {
        const auto isText = [](const ImportField& each) {
            return std::holds_alternative<TextBox*>(each.target);
        };
        if (std::ranges::count_if(fields_, isText) != 1)
            return;
        ImportField& field = *std::ranges::find_if(fields_, isText);
        for (const StringView heading : onlyText)
            if (std::ranges::none_of(
                    fields_, [&](const ImportField& each) { return isOneOf(heading, each.headings); }))
                field.headings.emplace_back(heading);
    }

    Form& form_;
    std::vector<ImportField> fields_;
    std::size_t options_ = String::npos; ///< Place of the field of the options that stand together.
    const Control* frame_ = nullptr;
};

String between(StringView text) { return u"«" + String(text) + u"»"; }

/// A text of several lines as a box has it.
String withBoxBreaks(StringView text)
{
    return Replace(Replace(Replace(text, u"\r\n", u"\n"), u"\r", u"\n"), u"\n", u"\r\n");
}

String fillText(TextBox& box, const String& name, StringView cell)
{
    if (!box.MultiLine() && cell.find_first_of(u"\r\n") != StringView::npos)
        return u"En " + name + u" cabe un solo renglón.";
    const String text = box.MultiLine() ? withBoxBreaks(cell) : String(cell);
    if (box.Text() == text)
        return {};
    Acts acts;
    const auto write = [&](bool pasted) {
        acts.select(box, 0, static_cast<Long>(box.Text().size()));
        if (text.empty())
            acts.key(box, Key::Delete);
        else if (pasted)
            acts.paste(box, text);
        else
            acts.type(box, text);
    };
    write(false);
    if (box.Text() != text)
        write(true);
    if (box.Text() == text)
        return {};
    if (box.MaxLength() > 0 && text.size() > static_cast<std::size_t>(box.MaxLength()))
        return u"En " + name + u" caben " + decimalText(box.MaxLength()) + u" letras, y son " +
               decimalText(static_cast<std::int64_t>(text.size())) + u".";
    return u"En " + name + u" no se puede escribir " + between(text) + u": queda " + between(box.Text()) +
           u".";
}

String chooseEntry(ComboBox& list, const String& name, StringView cell)
{
    if (cell.empty() && list.ListIndex() < 0)
        return {};
    std::optional<Long> found;
    for (const bool exact : {true, false}) {
        for (Long index = 0; index < list.ListCount(); ++index) {
            if (exact ? list.List(index) != cell : !sameWord(list.List(index), cell))
                continue;
            if (found)
                return u"En " + name + u" hay más de una fila " + between(cell) + u".";
            found = index;
        }
        if (found)
            break;
    }
    if (!found)
        return u"En " + name + u" no se puede elegir " + between(cell) + u".";
    Acts().choose(list, *found);
    return {};
}

String tick(CheckBox& box, const String& name, StringView cell)
{
    const bool wanted = isOneOf(cell, yes);
    if (!wanted && !isOneOf(cell, no))
        return u"En " + name + u" va Sí o No, y no " + between(cell) + u".";
    if (wanted != (box.Value() != 0))
        Acts().click(box);
    return {};
}

String chooseOption(const OptionChoice& choice, const String& name, StringView cell)
{
    if (Trim(cell).empty())
        return {};
    String words;
    for (const auto& [word, option] : choice.words) {
        if (sameWord(word, cell)) {
            Acts().click(*option);
            return {};
        }
        words += (words.empty() ? u"" : u", ") + between(word);
    }
    return u"En " + name + u" no hay " + between(cell) + u": se elige de " + words + u".";
}

} // namespace

bool sameWord(StringView a, StringView b) { return folded(a) == folded(b); }

bool takesLists(StringView dialog)
{
    return std::ranges::none_of(withoutLists, [&](StringView each) { return sameName(each, dialog); });
}

std::vector<ImportField> importFieldsOf(Form& form) { return Fields(form).take(); }

String fillIn(const ImportField& field, StringView cell)
{
    const String name = between(field.headings.front());
    if (auto* const* box = std::get_if<TextBox*>(&field.target))
        return fillText(**box, name, cell);
    if (auto* const* list = std::get_if<ComboBox*>(&field.target))
        return chooseEntry(**list, name, cell);
    if (auto* const* box = std::get_if<CheckBox*>(&field.target))
        return tick(**box, name, cell);
    if (const auto* choice = std::get_if<OptionChoice>(&field.target))
        return chooseOption(*choice, name, cell);
    return {};
}

} // namespace zv
