#pragma once

#include "catalogues/TextCatalogue.h"

#include <cstdlib>
#include <fstream>
#include <list>
#include <string>

/// The switch of the mutants in the catalogue dialogs: tools/mutants writes its calls into a copy of
/// TextCatalogue.cpp, so that one build holds every mutant, and ZV_MUTANT names the one that is alive, such
/// as "frmTurno.load.2". The product knows nothing of it.
namespace zv::mutant {

/// Whether that mutant is alive; if so, leaves a file at ZV_MUTANT_SEEN, a proof that it was reached.
inline bool alive(StringView dialog, const std::string& what)
{
    const char* chosen = std::getenv("ZV_MUTANT");
    if (chosen == nullptr || toUtf8(dialog) + "." + what != chosen)
        return false;
    std::ofstream(std::getenv("ZV_MUTANT_SEEN")) << "reached\n";
    return true;
}

/// Whether a step is left out.
inline bool drops(StringView dialog, const TextCatalogue& words, Steps steps, const Step& step)
{
    const std::string place = std::to_string(&step - steps.data());
    return (steps.data() == words.load.data() && alive(dialog, "load." + place)) ||
           (steps.data() == words.accept.data() && alive(dialog, "accept." + place)) ||
           (steps.data() == words.guard.data() && alive(dialog, "guard." + place)) ||
           (steps.data() == words.unload.data() && alive(dialog, "unload." + place));
}

/// The descriptor, with the one word changed that the mutant names; the same where none is.
inline const TextCatalogue& changed(StringView dialog, const TextCatalogue& words)
{
    static std::list<TextCatalogue> kept;
    static std::list<String> texts;
    static std::list<std::vector<StringView>> lists;
    TextCatalogue& copy = kept.emplace_back(words);
    const auto longer = [](StringView text) -> StringView { return texts.emplace_back(String(text) + u" "); };
    const auto misspell = [&](const char* what, StringView& text) {
        if (alive(dialog, what))
            text = texts.emplace_back(String(text) + u"x");
    };
    const auto lengthen = [&](const char* what, StringView& text) {
        if (!text.empty() && alive(dialog, what))
            text = longer(text);
    };
    if (copy.captions.nuevo != 0 && alive(dialog, "captions.nuevo"))
        copy.captions.nuevo = copy.captions.modificado;
    if (copy.captions.nuevo != 0 && alive(dialog, "captions.modificado"))
        copy.captions.modificado = copy.captions.nuevo;
    lengthen("captionTexts.nuevo", copy.captionTexts.nuevo);
    lengthen("captionTexts.modificado", copy.captionTexts.modificado);
    if (alive(dialog, "joint"))
        copy.joint = copy.joint.empty() ? u" " : u"";
    misspell("table", copy.table);
    misspell("key", copy.key);
    if (alive(dialog, "width"))
        copy.width = copy.width == KeyWidth::bits16 ? KeyWidth::bits32 : KeyWidth::bits16;
    lengthen("query", copy.query);
    if (alive(dialog, "readFailed"))
        copy.readFailed =
            copy.readFailed == message::readFailed ? message::updateFailed : message::readFailed;
    lengthen("insert", copy.insert);
    lengthen("update", copy.update);
    for (std::size_t i = 0; i < words.guards.size(); ++i) {
        const std::string name = "guards" + std::to_string(i);
        std::vector<StringView> guards(words.guards.begin(), words.guards.end());
        if (alive(dialog, name + ".text"))
            guards[i] = longer(guards[i]);
        else if (alive(dialog, name + ".drop"))
            guards.erase(guards.begin() + static_cast<std::ptrdiff_t>(i));
        else
            continue;
        copy.guards = lists.emplace_back(std::move(guards));
    }
    return copy;
}

/// The fields, with the one thing changed that the mutant names.
inline std::vector<TextField> fields(StringView dialog, std::initializer_list<TextField> design)
{
    std::vector<TextField> result(design);
    for (std::size_t i = 0; i < result.size(); ++i) {
        TextField& field = result[i];
        const std::string name = "field" + std::to_string(i);
        // The text of the design is seen only where no number takes its place.
        if (field.captionId == 0 && alive(dialog, name + ".caption"))
            field.caption = u"Otro:";
        if (alive(dialog, name + ".captionId"))
            field.captionId = 334;
        if (alive(dialog, name + ".column"))
            field.column = u"Nada";
        if (alive(dialog, name + ".width"))
            --field.width;
        if (alive(dialog, name + ".mandatory"))
            field.mandatory = !field.mandatory;
        if (alive(dialog, name + ".selectsAll"))
            field.selectsAll = !field.selectsAll;
    }
    return result;
}

/// Which of an array of two buttons accepts.
inline int accepts(StringView dialog, int index) { return alive(dialog, "accepts") ? 1 - index : index; }

} // namespace zv::mutant
