#include "services/modCentroConfiguracion.h"

#include "services/Messages.h"
#include "services/cZEncryptoAPI.h"

namespace zv {

namespace {

enum class First { zero = 0, one = 1 };

/// Loop over a late-bound collection; an element that cannot be reached is skipped.
template <class Action>
void forEach(ResumeNext& next, const ObjectPtr& owner, StringView collection, First first, Action&& action)
{
    ObjectPtr items;
    Long count = 0;
    next([&] { items = CObj(get(owner, collection)); });
    next([&] { count = CLng(get(items, u"Count")); });
    const auto start = static_cast<Long>(first);
    for (Long i = start; i < start + count; ++i) {
        ObjectPtr item;
        if (next([&] { item = CObj(get(items, u"Item", {Value(i)})); }))
            action(item);
    }
}

String resourceOf(const ObjectPtr& object, StringView member)
{
    return LoadResString(CInt(get(object, member)));
}

/// Localiser with one variable for all controls: where a tag cannot be read, the control gets the number of
/// the one before.
class Localiser {
public:
    explicit Localiser(ResumeNext& next) : next_(next) {}

    void localise(const ObjectPtr& control)
    {
        const StringView kind = control->TypeName();
        if (kind == u"Label")
            next_([&] { let(control, u"Caption", resourceOf(control, u"Tag")); });
        else if (kind == u"Menu")
            next_([&] { let(control, u"Caption", resourceOf(control, u"Caption")); });
        else if (kind == u"TabStrip")
            localiseTabs(control);
        else if (kind == u"Toolbar")
            forEach(next_, control, u"Buttons", First::one, [&](const ObjectPtr& button) {
                next_([&] { let(button, u"ToolTipText", resourceOf(button, u"ToolTipText")); });
            });
        else if (kind == u"ListView")
            forEach(next_, control, u"ColumnHeaders", First::one, [&](const ObjectPtr& header) {
                next_([&] { let(header, u"Text", resourceOf(header, u"Tag")); });
            });
        else
            localiseOther(control);
    }

private:
    void localiseTabs(const ObjectPtr& strip)
    {
        next_([&] { id_ = CInt(get(strip, u"Tag")); });
        forEach(next_, strip, u"Tabs", First::one, [&](const ObjectPtr& tab) {
            next_([&] { let(tab, u"Caption", LoadResString(id_)); });
            next_([&] { id_ = CInt(Long{id_} + 100); });
        });
    }
    void localiseOther(const ObjectPtr& control)
    {
        next_([&] { id_ = CInt(Val(CStr(get(control, u"Tag")))); });
        if (id_ > 0)
            next_([&] { let(control, u"Caption", LoadResString(id_)); });
    }

    ResumeNext& next_;
    Integer id_ = 0;
};

/// Read-only mode, control by control.
class Locker {
public:
    explicit Locker(ResumeNext& next) : next_(next) {}

    void lock(const ObjectPtr& control)
    {
        const StringView kind = control->TypeName();
        if (kind == u"CommandButton")
            lockButton(control);
        else if (kind == u"OptionButton") {
            // Exception: the chosen option stays enabled, so that it remains legible.
            if (next_.condition([&] { return !CBool(get(control, u"Value")); }))
                disable(control);
        } else if (kind == u"TextBox" || kind == u"ComboBox" || kind == u"ZDatePicker" || kind == u"ZMenu" ||
                   kind == u"CheckBox" || kind == u"ZTimeBox")
            disable(control);
    }

private:
    void lockButton(const ObjectPtr& button)
    {
        if (next_.condition([&] { return changesData(button); }))
            disable(button);
        else if (tagIs(button, u"335"))
            retag(button, u"340");
        else if (tagIs(button, u"336"))
            hide(button);
        else if (tagIs(button, u"337"))
            turnIntoConsult(button);
        else if (tagIs(button, u"338"))
            giveUpPlace(button);
    }
    /// Heuristic by tag and caption: accept, the buttons that start a row or move entries between lists, and
    /// the small lookup buttons.
    static bool changesData(const ObjectPtr& button)
    {
        const String tag = CStr(get(button, u"Tag"));
        const String caption = CStr(get(button, u"Caption"));
        return tag == u"334" || (tag >= u"327" && tag <= u"333" && tag.size() == 3) || caption.empty() ||
               caption == u"...";
    }
    bool tagIs(const ObjectPtr& button, StringView tag)
    {
        return next_.condition([&] { return CStr(get(button, u"Tag")) == tag; });
    }
    void disable(const ObjectPtr& control)
    {
        next_([&] { let(control, u"Enabled", false); });
    }
    void hide(const ObjectPtr& button)
    {
        next_([&] { let(button, u"Visible", false); });
    }
    void retag(const ObjectPtr& button, StringView tag)
    {
        next_([&] { let(button, u"Tag", tag); });
    }
    void turnIntoConsult(const ObjectPtr& button)
    {
        modify_ = button;
        retag(button, u"339");
        if (deleteLeft_ > 0 && deleteTop_ > 0)
            moveModify();
    }
    void giveUpPlace(const ObjectPtr& button)
    {
        hide(button);
        next_([&] { deleteLeft_ = CInt(get(button, u"Left")); });
        next_([&] { deleteTop_ = CInt(get(button, u"Top")); });
        if (modify_)
            moveModify();
    }
    /// Runs once both buttons were met, whichever comes first: modify takes the place of delete and reads
    /// "Consultar".
    void moveModify()
    {
        next_([&] { let(modify_, u"Left", deleteLeft_); });
        next_([&] { let(modify_, u"Top", deleteTop_); });
    }

    ResumeNext& next_;
    ObjectPtr modify_;
    Integer deleteLeft_ = 0;
    Integer deleteTop_ = 0;
};

} // namespace

void CargarTextos(Object& form)
{
    const ObjectPtr self = uncounted(form);
    ResumeNext next;
    next([&] { let(self, u"Caption", resourceOf(self, u"Tag")); });
    Localiser localiser(next);
    forEach(next, self, u"Controls", First::zero,
            [&](const ObjectPtr& control) { localiser.localise(control); });
}

void BloquearControles(Object& form, bool blnActiva)
{
    if (blnActiva)
        return;
    ResumeNext next;
    Locker locker(next);
    forEach(next, uncounted(form), u"Controls", First::zero,
            [&](const ObjectPtr& control) { locker.lock(control); });
}

String CifrarTexto(String strTexto, bool blnCifrar, StringView strClave)
{
    const cZEncryptoAPI cipher = cZEncryptoAPI::create();
    if (!blnCifrar) {
        strTexto.insert(0, strClave).append(strClave);
        cipher.descifrar(strTexto);
        return strTexto;
    }
    cipher.Cifrar(strTexto);
    const auto lengthWithoutKey = [&] {
        return static_cast<long>(strTexto.size()) - static_cast<long>(strClave.size());
    };
    strTexto = Left(strTexto, lengthWithoutKey());
    return Right(strTexto, lengthWithoutKey());
}

} // namespace zv
