#include "robot/PlayGuiones.h"

#include "data/Schools.h"
#include "data/history/HistoryEngine.h"
#include "robot/FreshSchool.h"
#include "robot/Verbs.h"
#include "runtime/WholeFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ostream>

namespace zv {

namespace {

enum class Purpose { print, compare, rewrite };

struct Options {
    Purpose purpose = Purpose::print;
    bool engine = false;
    bool sample = false;
    std::optional<String> fresh;    ///< URL of temporary databases.
    std::optional<String> existing; ///< URL of existing databases.
    std::vector<String> files;
};

[[noreturn]] void misused(StringView reason) { throw std::invalid_argument(toUtf8(reason)); }

Options understood(std::span<const String> words)
{
    Options result;
    for (auto word = words.begin(); word != words.end(); ++word) {
        const auto value = [&](std::optional<String>& place) {
            const String& name = *word;
            if (place || ++word == words.end())
                misused(u"guion: " + name + u" lleva detrás una URL, y está una sola vez.");
            place = *word;
        };
        const auto purpose = [&](Purpose chosen) {
            if (result.purpose != Purpose::print && result.purpose != chosen)
                misused(u"guion: o --comprobar o --reescribir.");
            result.purpose = chosen;
        };
        if (*word == u"--comprobar")
            purpose(Purpose::compare);
        else if (*word == u"--reescribir")
            purpose(Purpose::rewrite);
        else if (*word == u"--motor")
            result.engine = true;
        else if (*word == u"--ejemplo")
            result.sample = true;
        else if (*word == u"--bd")
            value(result.fresh);
        else if (*word == u"--en")
            value(result.existing);
        else if (word->starts_with(u"--"))
            misused(u"guion: «" + *word + u"» no es una opción de esta orden.");
        else
            result.files.push_back(*word);
    }
    if (result.existing && (result.fresh || result.sample))
        misused(u"guion: o bases de datos nuevas, con --bd y --ejemplo, o con --en las que existen.");
    if (result.files.empty())
        misused(u"guion: falta el fichero del guion.");
    return result;
}

std::string contents(const String& file)
{
    if (auto bytes = wholeFile(file))
        return *std::move(bytes);
    throw std::runtime_error("no se puede leer el fichero");
}

class Runner {
public:
    Runner(const Options& options, const StageMaker& stage, std::ostream& out, std::ostream& err)
        : options_(options), stage_(stage), out_(out), err_(err)
    {}

    int run()
    {
        for (const String& file : options_.files)
            runFile(file);
        if (options_.engine && engine_)
            out_ << toUtf8(engine_->name + u" " + engine_->version) << '\n';
        if (options_.purpose == Purpose::compare)
            out_ << options_.files.size() - failed_ << " passed, " << failed_ << " failed\n";
        return mistakes_ != 0 ? 2 : failed_ != 0 ? 1 : 0;
    }

private:
    void runFile(const String& file)
    {
        try {
            const std::string bytes = contents(file);
            const Guion guion = readGuion(bytes);
            playFile(file, bytes, guion);
        } catch (const GuionError& error) {
            mistake(toUtf8(file) + ":" + std::to_string(error.line()), error);
        } catch (const std::exception& error) {
            mistake(toUtf8(withoutPassword(file)), error);
        }
    }

    void playFile(const String& file, const std::string& bytes, const Guion& guion)
    {
        for (const GuionCommand& command : guion.commands)
            checkCommand(command);
        std::optional<FreshSchool> fresh;
        if (!options_.existing)
            fresh.emplace(options_.fresh.value_or(u"sqlite:"), options_.sample);
        const School school = fresh
                                  ? fresh->school()
                                  : history::withHistory(openSchool(*options_.existing), *options_.existing);
        engine_ = school.centro->engine();
        Play play(guion, school, stage_);
        try {
            play.run();
        } catch (...) {
            // The transcript up to the mistake.
            if (options_.purpose == Purpose::print)
                out_ << toUtf8(play.transcript().text());
            throw;
        }
        finish(file, bytes, play.transcript());
    }

    void finish(const String& file, const std::string& bytes, const Transcript& transcript)
    {
        switch (options_.purpose) {
        case Purpose::print:
            out_ << toUtf8(transcript.text());
            break;
        case Purpose::compare:
            compare(file, transcript);
            break;
        case Purpose::rewrite:
            rewrite(file, bytes, toUtf8(transcript.text()));
            break;
        }
    }

    void compare(const String& file, const Transcript& transcript)
    {
        const std::vector<Transcript::Difference> differences = transcript.differences();
        const auto whole = [](const String& line) { return line.empty() ? "(nada más)" : toUtf8(line); };
        for (const Transcript::Difference& each : differences) {
            const std::string place = toUtf8(file) + ":" + std::to_string(each.line);
            out_ << place << ": se esperaba: " << whole(each.expected) << '\n'
                 << place << ": se vio:      " << whole(each.seen) << '\n';
        }
        failed_ += differences.empty() ? 0 : 1;
    }

    static void rewrite(const String& file, const std::string& before, const std::string& after)
    {
        if (before == after)
            return;
        std::ofstream stream(std::filesystem::path(file), std::ios::binary | std::ios::trunc);
        if (!stream.write(after.data(), static_cast<std::streamsize>(after.size())).flush())
            throw std::runtime_error("no se puede escribir el fichero");
    }

    void mistake(const std::string& place, const std::exception& error)
    {
        err_ << place << ": " << error.what() << '\n';
        ++mistakes_;
        ++failed_;
    }

    const Options& options_;
    const StageMaker& stage_;
    std::ostream& out_;
    std::ostream& err_;
    std::optional<EngineInfo> engine_;
    std::size_t mistakes_ = 0;
    std::size_t failed_ = 0;
};

} // namespace

int playGuiones(std::span<const String> words, const StageMaker& stage, std::ostream& out, std::ostream& err)
{
    try {
        const Options options = understood(words);
        return Runner(options, stage, out, err).run();
    } catch (const std::invalid_argument& error) {
        err << error.what() << '\n';
        return 2;
    }
}

} // namespace zv
