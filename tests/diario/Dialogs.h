#pragma once

#include "Times.h"
#include "data/Engine.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "journal/Journals.h"
#include "journal/Recorder.h"
#include "journal/Recovery.h"
#include "journal/Watch.h"
#include "module/Module.h"
#include "robot/FreshSchool.h"
#include "robot/ScriptedStage.h"
#include "session/DialogDirectory.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <map>

namespace zv::journal {

/// A state folder of its own, and journals in it while it lives.
class Recorded : public testing::Test {
protected:
    Recorded()
    {
        registerEngine(sqliteEngine());
        installModule();
        std::filesystem::create_directories(folder);
        unsetenv("ZV_DIARIO");
        record(folder);
    }
    ~Recorded() override
    {
        recording(false);
        std::filesystem::remove_all(folder);
    }
    void forget() const
    {
        for (const auto& file : journalFiles(folder))
            discard(file);
    }

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("zv-diario-" + std::to_string(getpid()));
};

inline std::vector<Form*> openDialogs()
{
    std::vector<Form*> open;
    for (const String& name : dialogs().names())
        if (Form& form = dialogs().find(name).instance(); form.Visible())
            open.push_back(&form);
    return open;
}

/// What a person sees of the inputs: each control's value, and the cells of grids.
using Seen = std::map<std::string, std::string>;

inline Seen seenIn(const Form& form)
{
    Seen seen;
    const SectionControls controls(const_cast<Form&>(form));
    for (Control* control : form.Controls) {
        std::string& text = seen[toUtf8(form.Name() + u"." + control->fullName())];
        if (const auto* grid = dynamic_cast<const MSFlexGrid*>(control)) {
            if (!grid->Visible()) // Another page's.
                continue;
            for (Long row = 1; row < grid->Rows(); ++row)
                for (Long column = 0; column < grid->Cols(); ++column)
                    if (grid->ColWidth(column) != 0)
                        text += toUtf8(grid->TextMatrix(row, column)) + "|";
        } else if (control != controls.floating) {
            const Content content = contentOf(*control);
            text =
                content.none ? "-" : std::to_string(content.value.number) + " " + toUtf8(content.value.text);
        }
    }
    return seen;
}

/// A list that floats over a cell gives it its answer when it is left, and one that floats over a subject's
/// name shows it there until the pupil is shown anew.
inline Seen allSeen(Play& play)
{
    Seen seen;
    if (play.openForm() == nullptr)
        return seen;
    if (const SectionControls controls(*play.openForm()); controls.floating != nullptr) {
        auto& pupils = *controls.pupils;
        const Long shown = pupils.ListIndex();
        play.person().focus(pupils);
        if (shown >= 0 && pupils.ListCount() > 1) {
            play.person().choose(pupils, shown == 0 ? 1 : 0);
            play.person().choose(pupils, shown);
        }
    }
    for (const Form* form : openDialogs())
        seen.merge(seenIn(*form));
    return seen;
}

/// Plays commands that a callback gives one by one, also while dialogs are open; with "" it ends, and what is
/// open is dropped.
inline void playOn(const School& school, const std::function<std::string(Play&)>& next)
{
    Guion guion;
    Play play(guion, school, scriptedStage);
    play.writeOn([&] {
        if (const std::string command = next(play); !command.empty())
            guion.commands.push_back(readGuion(command).commands.front());
    });
    try {
        play.run();
    } catch (const GuionError&) {
        // It ends with a dialog open.
    }
}

} // namespace zv::journal
