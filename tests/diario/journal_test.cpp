#include "diario/Dialogs.h"

#include "robot/OddTexts.h"
#include "session/cConfiguracion.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>

namespace zv::journal {
namespace {

using Clock = std::chrono::steady_clock;

std::string bytesOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

struct JournalTest : Recorded {
    JournalTest() : fresh(u"sqlite:", true), key(ownKey(folder)) {}
    /// Opens an office's list, and drops it at the end as a dying program does.
    void inList(const std::function<void(Form&, Person&)>& then)
    {
        int asked = 0;
        playOn(fresh.school(), [&](Play& play) -> std::string {
            if (asked++ == 0)
                return "abrir 65 2 1";
            if (play.openForm() != nullptr)
                then(*play.openForm(), play.person());
            return "";
        });
    }
    std::filesystem::path written(const std::vector<String>& texts)
    {
        inList([&](Form& form, Person& person) {
            auto& box = dynamic_cast<TextBox&>(*form.find(u"txtIdioma"));
            for (const String& text : texts) {
                person.select(box, 0, 0x7FFF);
                person.paste(box, text);
            }
        });
        return journalFiles(folder).at(0);
    }
    static std::vector<String> textsOf(const Reading& reading)
    {
        std::vector<String> texts;
        for (const Act& act : reading.draft.acts)
            for (const Change& change : act.changes)
                texts.push_back(change.after.value.text);
        return texts;
    }

    const FreshSchool fresh;
    const SecretKey key;
};

TEST_F(JournalTest, cut_anywhere_or_with_any_byte_changed_it_is_read_up_to_there)
{
    std::vector<String> texts;
    for (int text = 0; text < 20; ++text)
        texts.push_back(u"Texto " + decimalText(text));
    const std::string whole = bytesOf(written(texts));
    EXPECT_EQ(textsOf(read(whole, key)), texts);
    SecretKey other = key;
    other[0] ^= 1;
    EXPECT_EQ(read(whole, other).end, End::otherKey);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        const Reading cut = read(whole.substr(0, at), key);
        std::string changed = whole;
        changed[at] = static_cast<char>(changed[at] ^ 1 << at % 8);
        const Reading spoilt = read(changed, key);
        EXPECT_NE(spoilt.end, End::whole) << at;
        for (const Reading& reading : {cut, spoilt}) {
            const std::vector<String> seen = textsOf(reading);
            ASSERT_LE(seen.size(), texts.size());
            EXPECT_TRUE(std::ranges::equal(seen, std::span(texts).first(seen.size()))) << at;
        }
    }
}

TEST_F(JournalTest, holds_no_text_in_clear_and_is_its_owners_alone)
{
    std::vector<String> texts = oddTexts();
    std::erase_if(texts, [](const String& text) { return text.size() < 4; });
    const auto file = written(texts);
    const std::string bytes = bytesOf(file);
    for (const String& text : texts) {
        const String seen = text.substr(0, 50); // As much as the field takes.
        EXPECT_EQ(bytes.find(toUtf8(seen)), std::string::npos);
        EXPECT_EQ(bytes.find({reinterpret_cast<const char*>(seen.data()), 2 * seen.size()}),
                  std::string::npos);
    }
    EXPECT_GE(textsOf(read(bytes, key)).size(), texts.size() / 2);
    constexpr auto others = std::filesystem::perms::group_all | std::filesystem::perms::others_all;
    for (const auto& each : {file, folder / "clave"})
        EXPECT_EQ(std::filesystem::status(each).permissions() & others, std::filesystem::perms::none);
}

/// What a power cut leaves is what was synced: nothing that was typed more than a second before is missing.
TEST_F(JournalTest, is_on_the_disk_within_a_second_while_somebody_types_without_pause)
{
    std::vector<std::pair<Clock::time_point, std::uint64_t>> sizes;
    double worst = 0;
    inList([&](Form& form, Person& person) {
        const auto until = Clock::now() + std::chrono::seconds(times("ZV_SEGUNDOS", 3));
        std::size_t onDisk = 0;
        while (Clock::now() < until) {
            person.type(*form.find(u"txtIdioma"), u"a");
            person.key(*form.find(u"txtIdioma"), Key::Backspace);
            const Writer& writer = *recorder().writer(form);
            sizes.emplace_back(Clock::now(), std::filesystem::file_size(writer.path()));
            while (onDisk < sizes.size() && sizes[onDisk].second <= writer.synced())
                ++onDisk;
            if (onDisk < sizes.size())
                worst = std::max(worst,
                                 std::chrono::duration<double>(Clock::now() - sizes[onDisk].first).count());
        }
    });
    std::cout << sizes.size() * 2 << " keys, " << worst << " s at most not on the disk\n";
    EXPECT_LT(worst, 1);
}

TEST_F(JournalTest, goes_with_its_dialog_and_is_not_anothers_while_it_is_open)
{
    for (const char* way : {"cerrar", "pulsar cmdIdioma(1)", "pulsar cmdIdioma(0)"}) {
        int step = 0;
        playOn(fresh.school(), [&](Play& play) -> std::string {
            const std::vector<std::string> commands = {"abrir 65 2 1", "teclear txtIdioma \"a\"",
                                                       "ver forma.Name", way};
            if (step == 3) {
                EXPECT_EQ(journalFiles(folder).size(), 1);
                EXPECT_TRUE(inUse(recorder().file(*play.openForm())));
                EXPECT_TRUE(draftsFor(*recorder().opening(*play.openForm()), folder).empty());
            }
            const std::size_t at = static_cast<std::size_t>(step++);
            return at < commands.size() ? commands[at] : "";
        });
        EXPECT_TRUE(journalFiles(folder).empty()) << way;
    }
}

TEST_F(JournalTest, that_cannot_be_written_is_told_once_and_work_goes_on)
{
    std::vector<String> told;
    onTrouble([&](StringView why) { told.emplace_back(why); });
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit none{5, before.rlim_max};
    inList([&](Form& form, Person& person) {
        Control& box = *form.find(u"txtIdioma");
        setrlimit(RLIMIT_FSIZE, &none);
        person.type(box, u"a");
        person.type(box, u"a");
        EXPECT_EQ(told.size(), 1);
        EXPECT_FALSE(recorder().sync(form));
        setrlimit(RLIMIT_FSIZE, &before);
        person.type(box, u"a");
        EXPECT_TRUE(recorder().sync(form));
        const rlimit full{std::filesystem::file_size(recorder().file(form)) + 10, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        for (int times = 0; times < 5; ++times)
            person.type(box, u"b");
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(told.size(), 2) << toUtf8(told.back());
        // There is room again: what could not be written comes with the next key.
        person.type(box, u"c");
    });
    const Reading reading = readFile(journalFiles(folder).at(0), key);
    EXPECT_EQ(reading.end, End::whole);
    EXPECT_EQ(textsOf(reading).size(), 9);
    record(folder / "clave"); // A folder that cannot be.
    inList([&](Form& form, Person& person) { EXPECT_TRUE(person.type(*form.find(u"txtIdioma"), u"a")); });
    EXPECT_EQ(told.size(), 3);
    onTrouble(nullptr);
}

TEST_F(JournalTest, that_nobody_here_is_offered_is_counted_when_it_is_old_and_an_empty_one_goes)
{
    const auto file = written({u"Uno"});
    const auto spare = folder / "1.diario";
    std::ofstream(spare).close();
    for (const auto& each : {file, spare})
        last_write_time(each, std::filesystem::file_time_type::clock::now() - std::chrono::days(31));
    EXPECT_EQ(forgotten(folder, 32), 0);
    EXPECT_EQ(forgotten(folder, 30), 1);
    EXPECT_FALSE(exists(spare));
    cConfiguracion& session = Configuracion();
    session.intIDUsuario = session.intIdCentro = 1;
    session.strNombreCentro = u"Centro";
    session.RutaBD = u"odbc:DSN=otro";
    EXPECT_EQ(draftsOfSession(folder).size(), 0);
    EXPECT_EQ(forgotten(folder, 30), 0);
    bringHere(draftsElsewhere(folder).at(0));
    EXPECT_EQ(textsOf({End::whole, draftsOfSession(folder).at(0).draft}), std::vector<String>{u"Uno"});
    EXPECT_EQ(journalFiles(folder).size(), 1);
}

TEST_F(JournalTest, programs_that_start_at_once_have_one_key)
{
    const auto fresher = folder / "otra" / "carpeta";
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    for (int program = 0; program < 8; ++program)
        if (fork() == 0) {
            const SecretKey mine = ownKey(fresher);
            _exit(write(ends[1], mine.data(), mine.size()) == 32 ? 0 : 1);
        }
    for (int program = 0; program < 8; ++program) {
        SecretKey theirs{};
        EXPECT_EQ(::read(ends[0], theirs.data(), theirs.size()), 32);
        EXPECT_EQ(theirs, ownKey(fresher));
    }
    while (wait(nullptr) > 0) {
    }
}

TEST_F(JournalTest, is_listed_shown_exported_and_deleted_by_the_command)
{
    const std::string number = written({u"Uno", u"Dos"}).stem().string();
    const auto said = [&](const std::string& arguments) {
        FILE* const seen =
            popen((ZVCONF " diario " + arguments + " --carpeta " + folder.string() + " 2>&1").c_str(), "r");
        std::string text;
        for (int c = 0; (c = fgetc(seen)) != EOF;)
            text += static_cast<char>(c);
        return text + std::to_string(WEXITSTATUS(pclose(seen)));
    };
    using testing::HasSubstr;
    EXPECT_THAT(said("lista"), HasSubstr(number + ": "));
    EXPECT_THAT(said("lista"),
                HasSubstr("usuario, Centro, «Propiedades del Estado Civil Soltero/a»: 1 texto.\n0"));
    EXPECT_THAT(said("ver " + number), HasSubstr("había \"Soltero/a\", se escribió \"Dos\"\n0"));
    const std::string guion = (folder / "hecho.guion").string();
    EXPECT_THAT(said("exportar " + number + " " + guion), testing::EndsWith("\n0"));
    EXPECT_THAT(bytesOf(guion),
                HasSubstr("abrir 65 2 1\nseleccionar txtIdioma 0 32767\npegar txtIdioma \"Uno\"\n"));
    EXPECT_NO_THROW(readGuion(bytesOf(guion)));
    EXPECT_THAT(said("exportar " + number + " " + guion), HasSubstr("ya existe"));
    EXPECT_THAT(said("borrar " + number), HasSubstr("Con --si se borra"));
    EXPECT_EQ(journalFiles(folder).size(), 1);
    EXPECT_THAT(said("borrar " + number + " --si"), HasSubstr("Borrado.\n0"));
    EXPECT_THAT(said("lista"), HasSubstr("No hay diarios.\n0"));
    EXPECT_THAT(said("ver " + number), testing::EndsWith("2"));
    EXPECT_THAT(said("anota"), testing::EndsWith("2"));
    std::filesystem::create_directories(folder / "9.diario" / "nada");
    EXPECT_THAT(said("lista"), HasSubstr("9: no es un diario, o no se puede leer.\n0"));
    EXPECT_THAT(said("borrar 9 --si"), HasSubstr("No se ha podido borrar"));
}

} // namespace
} // namespace zv::journal
