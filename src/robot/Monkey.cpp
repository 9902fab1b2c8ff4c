#include "robot/Monkey.h"

#include "data/Dialect.h"
#include "data/Statement.h"
#include "data/sample/Writer.h"
#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "robot/FreshSchool.h"
#include "robot/OddTexts.h"
#include "robot/Outline.h"
#include "robot/ScriptedStage.h"
#include "robot/Verbs.h"
#include "robot/WatchedConnection.h"
#include "session/DialogDirectory.h"
#include "session/NodeTable.h"
#include "session/cNombreNodo.h"
#include "suite/Registrations.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <set>
#include <utility>

namespace zv {

namespace {

/// Exempt from the check for read-only sessions: the dialogs of pupils' reports do not know those.
constexpr StringView neverLocked[] = {u"frmConsejoOrientador1", u"frmInformeIndividual",
                                      u"frmConsejoOrientador", u"frmInfIndESO", u"frmInfIndPrim"};

/// Errors that point to a bug of the module, whatever a host does: it asked for a member or class of its own
/// that does not exist.
constexpr std::int32_t ownFaults[] = {failure::classMissing, failure::memberMissing, failure::argumentCount,
                                      failure::noArrayElement};

/// Plausible input, among the odd texts.
constexpr StringView plainTexts[] = {u"Casado", u"1234", u"0049",  u"12,34", u"16",        u"100,5",
                                     u"28001",  u"001",  u"9,99%", u"a",     u"B12345678", u""};

constexpr StringView keys[] = {u"ENTER", u"ESC", u"TAB", u"BS",     u"DEL", u"IZQ",
                               u"DER",   u"ARR", u"ABA", u"INICIO", u"FIN"};

constexpr StringView failingStatements[] = {u"Select", u"Insert", u"Update",   u"Delete",
                                            u"",       u"Banco",  u"Sucursal", u"Where"};

constexpr std::int32_t failureNumbers[] = {
    failure::keyExists, failure::badStatement, failure::tableMissing,  failure::brokenConstraint,
    failure::locked,    failure::otherData,    failure::connectionLost};

/// Masks ciphertext with `{*}`: it differs each time, and the line is to be expected again.
String expectable(StringView line)
{
    constexpr std::size_t shortest = 56; ///< Least length of a ciphertext, in Base64.
    constexpr StringView letters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
    String result;
    while (!line.empty()) {
        const std::size_t run = std::min(line.find_first_not_of(letters), line.size());
        const std::size_t length = std::max<std::size_t>(run, 1);
        result += run < shortest ? line.substr(0, length) : StringView(u"{*}");
        line.remove_prefix(length);
    }
    return result;
}

/// Node numbers to draw from: the range of lists that open a dialog, and the nodes of reports, which lie
/// outside it.
struct Nodes {
    Long first = 255;
    Long span = 0;
    std::vector<Long> reports;
};

Nodes openingNodes()
{
    Nodes result;
    Long last = 0;
    for (const ModuleNode& node : moduleNodes()) {
        if (node.table.empty())
            result.reports.push_back(node.number);
        else if (node.opens) {
            result.first = std::min<Long>(result.first, node.number);
            last = std::max<Long>(last, node.number);
        }
    }
    result.span = last - result.first + 1;
    return result;
}

class Monkey {
public:
    Monkey(const RandomActs& wishes, std::ostream& out)
        : wishes_(wishes), out_(out), dice_(wishes.seed), odd_(typeable(oddTexts())),
          dialogs_(dialogs().names()), fresh_(wishes.url, true),
          school_(watched(fresh_.school(), [this](StringView statement) { watch(statement); })),
          play_(guion_, school_, scriptedStage)
    {
        play_.writeOn([this] { goOn(); });
    }

    bool run()
    {
        const String place = wishes_.url == u"sqlite:" ? u"" : u" --bd " + wishes_.url;
        comment(u"zvconf azar --semilla " + decimalText(wishes_.seed) + u" --actos " +
                decimalText(wishes_.acts) + (wishes_.failures ? u" --fallos" : u"") +
                (wishes_.readOnly ? u" --consulta" : u"") + place);
        comment(u"Se repite con: zvconf guion --ejemplo" + place + u" ESTE_FICHERO");
        try {
            play_.run();
        } catch (const std::exception& error) {
            fault(fromUtf8(error.what()));
        }
        takeDown();
        lookAtRows();
        summary();
        return faults_ == 0;
    }

private:
    /// Drops texts that no guion can hold, as its UTF-8 has no lone surrogates; tryTexts() tries those.
    static std::vector<String> typeable(std::vector<String> texts)
    {
        std::erase_if(texts, [](const String& text) { return !isWellFormed(text); });
        return texts;
    }

    void goOn()
    {
        takeDown();
        String command;
        Form* form = play_.openForm();
        if (given_ < wishes_.first.size()) {
            command = wishes_.first[given_++];
        } else if (form != nullptr) {
            if (home_ == nullptr && given_ > 0)
                home_ = form;
            else if (stays())
                patience_ = dice_.below(40);
            command = atDialog(*form);
        }
        if (form == nullptr && command.empty() && acts_ < wishes_.acts)
            command = betweenDialogs();
        if (!command.empty())
            give(command);
    }

    void give(const String& command)
    {
        ++acts_;
        out_ << toUtf8(command) << '\n' << std::flush;
        GuionCommand read = readGuion(toUtf8(command)).commands.front();
        checkCommand(read);
        read.line = ++lines_;
        guion_.commands.push_back(std::move(read));
    }

    // Observation.

    /// Writes and checks what the last command showed.
    void takeDown()
    {
        if (play_.transcript().commandsRead() == takenDown_)
            return;
        takenDown_ = play_.transcript().commandsRead();
        for (const String& line : play_.transcript().lastObserved()) {
            out_ << "> " << toUtf8(expectable(line)) << '\n';
            ++lines_;
            look(line);
        }
    }

    void look(StringView line)
    {
        const std::size_t blank = std::min(line.find(u' '), line.size());
        const StringView what = line.substr(0, blank);
        const StringView rest = line.substr(std::min(blank + 1, line.size()));
        if (what == u"muestra") {
            ++opened_;
            seen_.emplace(rest.substr(0, rest.find(u' ')));
        } else if (what == u"cierra") {
            leaving_.erase(String(rest));
        } else if (what == u"error") {
            const Long number = parseNumber(rest).value_or(0);
            ++failures_[number];
            if (std::ranges::find(ownFaults, number) != std::end(ownFaults))
                fault(u"un fallo que no debería verse: " + String(rest));
        }
    }

    void watch(StringView statement)
    {
        ++statements_;
        const Outline outline(statement);
        kinds_.insert(outline.skeleton);
        if (outline.second)
            fault(u"dos instrucciones en una: " + String(statement));
        const Form* form = play_.openForm();
        const bool lockable =
            form == nullptr || std::ranges::find(neverLocked, form->Name()) == std::end(neverLocked);
        if (readOnly_ && lockable && !isQuery(statement) && !outline.names(u"RegistroActivo"))
            fault(u"escribe en una sesión de consulta: " + String(statement));
    }

    /// Leak check: a registration that outlives its dialog locks the row for every other station. Known leak,
    /// exempt: a rate that was found twice, or only looked at, stays registered until the program ends.
    void lookAtRows()
    {
        for (const Registration& each : registrations(*fresh_.school().centro))
            if (each.station == thisStation().identity && !sameName(each.form, u"frmTipoIva"))
                fault(u"sigue en uso " + each.form + u" " + decimalText(each.row));
    }

    void comment(StringView text)
    {
        out_ << "# " << toUtf8(Replace(Replace(text, u"\r", u" "), u"\n", u" ")) << '\n' << std::flush;
        ++lines_;
    }

    void fault(StringView text)
    {
        ++faults_;
        comment(u"MAL: " + String(text));
    }

    void summary()
    {
        String failures;
        for (const auto& [number, times] : failures_)
            failures += u" " + decimalText(number) + u" (" + decimalText(times) + u")";
        comment(statement(
            u"Actos: {}; ventanas: {} de {}, abiertas {} veces; instrucciones: {}, de {} formas; "
            u"fallos que se vieron:{}",
            {acts_, static_cast<Long>(seen_.size()), static_cast<Long>(dialogs_.size()), opened_, statements_,
             static_cast<Long>(kinds_.size()), failures.empty() ? u" ninguno" : failures}));
        comment(faults_ == 0 ? String(u"Todo bien.")
                             : statement(u"Cosas que no están bien: {}. Cada una está arriba, detrás de MAL.",
                                         {faults_}));
    }

    // Choice of a command while no dialog is open.

    String betweenDialogs()
    {
        if (wishes_.readOnly && !readOnly_)
            return session(false);
        switch (dice_.below(12)) {
        case 0:
            return session(!wishes_.readOnly && !dice_.once(3));
        case 1:
            return dice_.once(2) ? u"region punto" : u"region coma";
        case 2:
            return u"ocupar " + dice_.of(dialogs_) + u" " + row() + u" " + decimalText(1 + dice_.below(3));
        case 3:
            return u"eliminar " + node() + u" " + row();
        case 4:
            if (wishes_.failures)
                return failing();
            break;
        default:
            break;
        }
        patience_ = 1 + dice_.below(40);
        const String action = decimalText(dice_.once(3) ? 1 : dice_.once(20) ? dice_.below(256) : 2);
        if (dice_.once(3))
            return u"mostrar " + dice_.of(dialogs_) + u" " + action + u" " + row();
        // Locked only together with opening a bank: BloquearBanco() already loads that dialog, which
        // registers its row.
        const String bank = decimalText(cNombreNodo::OC_Bancos);
        const String opened = dice_.once(25) ? bank : node();
        const bool locked = opened == bank && dice_.once(3);
        return u"abrir " + opened + u" " + action + u" " + row() + (locked ? u" bloqueado" : u"");
    }

    String session(bool active)
    {
        const auto truth = [](bool on) { return String(on ? u"True" : u"False"); };
        readOnly_ = !active;
        return u"sesion Activa=" + truth(active) + u" MTP=" + truth(dice_.once(2)) + u" Pesetas=" +
               truth(dice_.once(4)) + u" sqlserver=" + truth(dice_.once(8)) + u" IDPerfil=" +
               decimalText(dice_.once(3) ? dice_.below(4) : 0) + u" IDUsuario=" +
               decimalText(1 + dice_.below(14)) + u" IDCursoEscolar=" + decimalText(1 + dice_.below(2)) +
               u" RutaIcono=" + (dice_.once(8) ? u"\"no-hay.ico\"" : u"\"\"");
    }

    String node()
    {
        const Long any = dice_.once(10) ? dice_.below(256) : nodes_.first + dice_.below(nodes_.span);
        return decimalText(dice_.once(8) ? dice_.of(nodes_.reports) : any);
    }

    /// Mostly keys of existing rows; sometimes boundary values of 16 and 32 bits.
    String row()
    {
        constexpr Long odd[] = {0, -1, 32767, 32768, 65536, 2147483647, -2147483647};
        return decimalText(dice_.once(8) ? dice_.of(odd) : 1 + dice_.below(dice_.once(4) ? 200 : 12));
    }

    String failing()
    {
        const Long number = dice_.of(failureNumbers);
        return u"fallar " + decimalText(number) + u" " + zv::quoted(dice_.of(failingStatements)) + u" " +
               decimalText(1 + dice_.below(3));
    }

    // Choice of a command at an open dialog.

    String atDialog(const Form& form)
    {
        if ((--patience_ < 0 && !stays()) || acts_ >= wishes_.acts)
            return leave(form);
        if (wishes_.failures && dice_.once(30))
            return failing();
        switch (dice_.below(60)) {
        case 0:
            return u"fondo";
        case 1:
            if (!stays())
                return u"cerrar";
            [[fallthrough]];
        case 2:
            return u"ver forma.Caption forma.Foco forma.MousePointer forma.MarcaBloqueo";
        default:
            return onControl(someControl(form));
        }
    }

    /// Cancel button or frame, at random; a fault when several tries left the dialog open.
    String leave(const Form& form)
    {
        constexpr int mostTries = 6;
        const int tries = ++leaving_[form.Name()];
        if (tries > mostTries) {
            fault(u"no se puede cerrar la ventana " + form.Name());
            return {};
        }
        const Control* cancel = cancelButton(form);
        if (cancel != nullptr && cancel->accessible() && dice_.once(2) == (tries % 2 != 0))
            return u"pulsar " + cancel->fullName();
        return u"cerrar";
    }

    static const Control* cancelButton(const Form& form)
    {
        for (const Control* control : form.Controls)
            if (const auto* button = dynamic_cast<const CommandButton*>(control))
                if (button->Cancel() || button->Caption() == u"Cancelar" || button->Caption() == u"Salir")
                    return button;
        return nullptr;
    }

    bool stays() const { return home_ != nullptr && play_.openForm() == home_; }

    static bool leaves(const Control* control)
    {
        const auto* button = dynamic_cast<const CommandButton*>(control);
        return button != nullptr && (button->Default() || button->Cancel() ||
                                     button->Caption() == u"Aceptar" || button->Caption() == u"Cancelar");
    }

    Control& someControl(const Form& form)
    {
        // Second half of an act that needed the focus first.
        if (Control* aimed = std::exchange(aimed_, nullptr);
            aimed != nullptr && form.ActiveControl() == aimed)
            return *aimed;
        std::vector<Control*> choice(form.Controls.begin(), form.Controls.end());
        if (!dice_.once(12))
            std::erase_if(choice,
                          [](const Control* each) { return !each->takesFocus() || !each->accessible(); });
        if (stays())
            std::erase_if(choice, leaves);
        return choice.empty() ? **form.Controls.begin() : *dice_.of(choice);
    }

    String onControl(Control& control)
    {
        const String name = u" " + control.fullName();
        // Focus first: its handlers may refill a list or a grid, and the act names an entry by what is there
        // then.
        const bool named = dynamic_cast<ComboBox*>(&control) || dynamic_cast<MSFlexGrid*>(&control);
        if (named && control.form().ActiveControl() != &control) {
            aimed_ = &control;
            return u"foco" + name;
        }
        if (dice_.once(12))
            return u"ver" + name + u".Enabled" + name + u".Visible" + name + u".Tag";
        if (dice_.once(12) || !control.takesFocus())
            return u"foco" + name;
        if (dice_.once(12) && !stays())
            return u"tecla" + name + u" " + String(dice_.of(keys));
        if (auto* box = dynamic_cast<TextBox*>(&control))
            return inText(*box, name);
        if (auto* list = dynamic_cast<ComboBox*>(&control))
            return inList(*list, name);
        if (auto* grid = dynamic_cast<MSFlexGrid*>(&control))
            return inGrid(*grid, name);
        if (auto* strip = dynamic_cast<TabStrip*>(&control))
            return u"pestana" + name + u" " +
                   decimalText(1 + dice_.below(static_cast<int>(strip->tabCount())));
        return u"pulsar" + name;
    }

    String text(std::size_t most)
    {
        const bool plain = dice_.once(2);
        String chosen = plain ? String(dice_.of(plainTexts)) : dice_.of(odd_);
        return u" " + zv::quoted(cut(chosen, most));
    }

    String inText(const TextBox& box, const String& name)
    {
        constexpr std::size_t byHand = 200;
        constexpr std::size_t fromClipboard = 70000;
        const int end = static_cast<int>(box.Text().size()) + 2;
        switch (dice_.below(6)) {
        case 0:
            return u"teclear" + name + text(byHand);
        case 1:
            return u"pegar" + name + text(fromClipboard);
        case 2:
            return u"seleccionar" + name + u" " + decimalText(dice_.below(end)) + u" " +
                   decimalText(dice_.below(end));
        case 3:
            return u"ver" + name + u".Text" + name + u".SelStart" + name + u".MaxLength";
        default:
            return u"escribir" + name + text(byHand);
        }
    }

    String inList(const ComboBox& list, const String& name)
    {
        if (list.ListCount() == 0 || dice_.once(6))
            return dice_.once(2) ? u"teclear" + name + u" \"m\""
                                 : u"ver" + name + u".Text" + name + u".ListIndex";
        const Long entry = dice_.below(static_cast<int>(list.ListCount()));
        return u"elegir" + name + u" " + (dice_.once(4) ? zv::quoted(list.List(entry)) : decimalText(entry));
    }

    String inGrid(const MSFlexGrid& grid, const String& name)
    {
        const String row = u" " + decimalText(dice_.below(static_cast<int>(grid.Rows())));
        Long at = dice_.below(static_cast<int>(grid.Cols()));
        while (at > 0 && grid.ColWidth(at) == 0) // A hidden one is not clicked.
            --at;
        const String column = u" " + decimalText(at);
        switch (dice_.below(4)) {
        case 0:
            return u"doble" + name + row + column;
        case 1:
            return u"desplazar" + name + row;
        default:
            return u"celda" + name + row + column;
        }
    }

    const RandomActs& wishes_;
    std::ostream& out_;
    sample::Dice dice_;
    std::vector<String> odd_;
    std::vector<String> dialogs_;
    const Nodes nodes_ = openingNodes();
    Guion guion_; ///< Commands only, without lines.

    std::size_t given_ = 0;     ///< Number of the wished commands that were given.
    Form* home_ = nullptr;      ///< The dialog that is not left.
    std::size_t lines_ = 0;     ///< Number of lines written.
    std::size_t takenDown_ = 0; ///< Number of commands whose observations are written.
    bool readOnly_ = false;
    Control* aimed_ = nullptr;      ///< Target of the next act, focused by the last one.
    int patience_ = 0;              ///< Remaining acts before the dialog is closed.
    std::map<String, int> leaving_; ///< Attempts to close each dialog.

    Long acts_ = 0;
    Long opened_ = 0;
    Long statements_ = 0;
    Long faults_ = 0;
    std::set<String> seen_;
    std::set<String> kinds_; ///< Skeletons of the statements.
    std::map<Long, Long> failures_;

    FreshSchool fresh_;
    School school_;
    Play play_; ///< Last member: destroyed first, since its callbacks use the others.
};

} // namespace

bool actAtRandom(const RandomActs& wishes, std::ostream& out) { return Monkey(wishes, out).run(); }

} // namespace zv
