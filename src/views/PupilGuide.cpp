#include "views/PupilGuide.h"

#include "forms/ComboBox.h"
#include "runtime/Convert.h"
#include "runtime/Counted.h"

namespace zv {

namespace {

using Macro = bool (*)(SectionKeys&, Acts&);

constexpr Macro nextPage = [](SectionKeys& keys, Acts& acts) { return keys.goToPage(acts, 1); };
constexpr Macro pageBefore = [](SectionKeys& keys, Acts& acts) { return keys.goToPage(acts, -1); };
constexpr Macro nextPupil = [](SectionKeys& keys, Acts& acts) { return keys.goToPupil(acts, 1); };
constexpr Macro pupilBefore = [](SectionKeys& keys, Acts& acts) { return keys.goToPupil(acts, -1); };
constexpr Macro repeatAbove = [](SectionKeys& keys, Acts& acts) { return keys.repeatAbove(acts); };
constexpr Macro clear = [](SectionKeys& keys, Acts& acts) { return keys.clear(acts); };
constexpr Macro goDown = [](SectionKeys& keys, Acts& acts) { return keys.leaveList(acts, true); };
constexpr Macro goBack = [](SectionKeys& keys, Acts& acts) { return keys.leaveList(acts, false); };

/// None of them means anything else in a dialog or on the desktops that were looked at.
constexpr std::pair<Chord, Macro> chords[] = {
    {{.key = Chord::Key::tab, .control = true}, nextPage},
    {{.key = Chord::Key::tab, .control = true, .shift = true}, pageBefore},
    {{.key = Chord::Key::pageDown, .control = true}, nextPage},
    {{.key = Chord::Key::pageUp, .control = true}, pageBefore},
    {{.key = Chord::Key::pageDown, .alt = true}, nextPupil},
    {{.key = Chord::Key::pageUp, .alt = true}, pupilBefore},
    {{.key = Chord::Key::d, .control = true}, repeatAbove},
    {{.key = Chord::Key::remove}, clear},
    {{.key = Chord::Key::enter}, goDown},
    {{.key = Chord::Key::tab}, goDown},
    {{.key = Chord::Key::tab, .shift = true}, goBack},
};

/// Times after which a save begins to tell of itself, and tells again.
constexpr std::chrono::milliseconds noticeable{300};
constexpr std::chrono::milliseconds again{100};

String countedPupils(std::size_t pupils) { return counted(pupils, u"alumno", u"alumnos"); }

/// Of so many, so many.
String part(int given, int all) { return decimalText(given) + u" de " + decimalText(all); }

} // namespace

bool PupilGuide::press(const Chord& chord, const Run& run)
{
    for (const auto& [known, macro] : chords)
        if (known == chord)
            return run([&, does = macro](Acts& acts) { return does(keys_, acts); });
    return false;
}

bool PupilGuide::type(StringView typed, const Run& run)
{
    return keys_.atRating() && run([&](Acts& acts) { return keys_.rate(acts, typed); });
}

bool PupilGuide::mayClick(const Control& control)
{
    if (&control == controls_.accept) {
        cut_ = true;
        tellNext_ = Clock::now() + noticeable;
        statements_ = 0;
    }
    return &control != controls_.cancel || mayLeave();
}

bool PupilGuide::mayLeave()
{
    unsaved_.look();
    const std::size_t pupils = unsaved_.pupils().size();
    return pupils == 0 || aids_.asks({.text = cut_ ? String(u"Puede haber cambios sin guardar")
                                                   : u"Cambios sin guardar de " + countedPupils(pupils),
                                      .detail = u"Si sale ahora, se pierden. «Aceptar» los guarda.",
                                      .yes = u"Salir sin guardar",
                                      .no = u"Seguir aquí"});
}

void PupilGuide::changed(const Control& control, const PropertyBase* property)
{
    unsaved_.changed(control, property);
}

bool PupilGuide::look()
{
    if (!isSection())
        return false;
    tellNext_.reset();
    unsaved_.look();
    const ComboBox& list = *controls_.pupils;
    String text = list.ListIndex() < 0 ? String(u"Sin alumnos")
                                       : u"Alumno " + part(list.ListIndex() + 1, list.ListCount());
    const auto all = unsaved_.onAllPages();
    if (const auto page = unsaved_.onPage(); all.all > 0)
        text += u" · " + part(all.given, all.all) + u" valoraciones";
    else if (page.all > 0)
        text += u" · " + part(page.given, page.all) + u" valoraciones en esta pestaña";
    if (const std::size_t changed = unsaved_.pupils().size(); changed > 0 && !cut_)
        text += u" · sin guardar: " + countedPupils(changed);
    return std::exchange(line_, text) != text;
}

bool PupilGuide::working()
{
    if (!tellNext_)
        return false;
    ++statements_;
    if (Clock::now() < *tellNext_)
        return false;
    tellNext_ = Clock::now() + again;
    line_ = u"Guardando la sección… " + decimalText(statements_) + u" operaciones";
    return true;
}

} // namespace zv
