#pragma once

#include "data/sample/SampleSchool.h"
#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/SectionControls.h"
#include "forms/TabStrip.h"
#include "journal/Recorder.h"
#include "module/Hosted.h"
#include "module/Section.h"
#include "qt/QtDesktop.h"
#include "qt/Screen.h"

#include <QMessageBox>
#include <QTest>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

namespace zv::test {

/// A person at the real windows of a school on the disk, with a state folder of his own; other processes may
/// be killed while they do the same.
struct Hands : testing::Test {
    struct Hand final : QtDesktop {
        std::function<void(FormWindow&)> does;
        void runWindow(FormWindow& window) override
        {
            window.ready();
            QApplication::processEvents();
            does(window);
            if (window.alive() && window.form().Visible())
                window.form().Unload();
        }
        void ask(QMessageBox&) override {}
    } hand;
    School school;

    Hands()
    {
        if (qEnvironmentVariableIsEmpty("ZV_LUGAR")) {
            created = std::filesystem::temp_directory_path() / ("zv-diario-" + std::to_string(getpid()));
            std::filesystem::create_directory(created);
            qputenv("ZV_LUGAR", QByteArray::fromStdString(created.string()));
        }
        const std::filesystem::path place = qgetenv("ZV_LUGAR").toStdString();
        qputenv("XDG_STATE_HOME", QByteArray::fromStdString((place / "estado").string()));
        qunsetenv("ZV_DIARIO");
        registerEngine(sqliteEngine());
        installModule();
        const String url = u"sqlite:" + (place / "colegio.db").u16string();
        if (!created.empty())
            createSchool(url, fillSampleSchool);
        school = openSchool(url);
        useDesktop(&hand);
    }
    ~Hands() override
    {
        journal::recording(false);
        qputenv("ZV_DIARIO", "no");
        resetSingles();
        useDesktop(nullptr);
        school = {};
        if (created.empty())
            return;
        std::filesystem::remove_all(created);
        qunsetenv("ZV_LUGAR");
    }
    std::filesystem::path created; ///< Empty in another process.

    /// What all inputs hold; of a section, those of each pupil.
    static std::string state(FormWindow& window)
    {
        std::string text;
        const SectionControls section(window.form());
        const Long pupils = section.isSection() ? section.pupils->ListCount() : 1;
        for (Long pupil = 0; pupil < pupils; ++pupil) {
            if (section.isSection())
                window.act([&](Acts& acts) { return acts.choose(*section.pupils, pupil); });
            const Long tabs =
                section.strip != nullptr && section.grid != nullptr ? section.strip->tabCount() : 1;
            for (Long tab = 1; tab <= tabs; ++tab) {
                if (tabs > 1)
                    window.act([&](Acts& acts) { return acts.clickTab(*section.strip, tab); });
                text += heldBy(window.form());
            }
        }
        return text;
    }
    static std::string heldBy(const Form& form)
    {
        std::string text;
        for (const Control* each : form.Controls) {
            std::string value;
            if (const auto* box = dynamic_cast<const TextBox*>(each))
                value = toUtf8(box->Text());
            else if (const auto* list = dynamic_cast<const ComboBox*>(each))
                value = list->Visible() ? toUtf8(list->Text()) : "";
            else if (const auto* tick = dynamic_cast<const CheckBox*>(each))
                value = std::to_string(tick->Value());
            else if (const auto* option = dynamic_cast<const OptionButton*>(each))
                value = option->Value() ? "1" : "0";
            else if (const auto* grid = dynamic_cast<const MSFlexGrid*>(each))
                for (Long row = 0; row < grid->Rows(); ++row)
                    for (Long column = 0; column < grid->Cols(); ++column)
                        value += rated(toUtf8(grid->TextMatrix(row, column))) + "|";
            if (!value.empty())
                text += toUtf8(each->fullName()) + "=" + value + "\n";
        }
        return text;
    }
    /// A cell, but for what its list leaves in front of an answer that was looked at and left as it was: its
    /// number, or a blank for none.
    static std::string rated(const std::string& cell)
    {
        const std::size_t text = cell.find_first_not_of("0123456789");
        const bool number = text != std::string::npos && text > 0 && cell[text] == ' ';
        return number ? cell.substr(text + 1) : cell == " " ? "" : cell;
    }
    /// Starts that test in another process, with `what` in ZV_MUERE, and kills it so long after its first
    /// act. How many acts it told of.
    static int dies(const std::string& test, const std::string& what, std::chrono::milliseconds life)
    {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            dup2(ends[1], STDOUT_FILENO);
            setenv("ZV_MUERE", what.c_str(), 1);
            const std::string filter = "--gtest_filter=" + test;
            execl("/proc/self/exe", "test_qt", filter.c_str(), "--gtest_also_run_disabled_tests",
                  "--gtest_brief=1", nullptr);
            _exit(127);
        }
        close(ends[1]);
        char one = 0;
        int done = 0;
        while (done == 0 && read(ends[0], &one, 1) == 1)
            done += one == '\1';
        std::this_thread::sleep_for(life);
        kill(child, SIGKILL);
        while (read(ends[0], &one, 1) == 1)
            done += one == '\1';
        close(ends[0]);
        int ended = 0;
        waitpid(child, &ended, 0);
        EXPECT_TRUE(WIFSIGNALED(ended) && WTERMSIG(ended) == SIGKILL);
        return done;
    }
};

} // namespace zv::test
