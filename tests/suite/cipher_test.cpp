#include "data/NumberOf.h"
#include "runtime/CreateObject.h"
#include "services/modCentroConfiguracion.h"
#include "suite/sodium/EncryptoApi.h"
#include "suite/sodium/KeyFile.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace zv {
namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

TEST(CipherKey, gives_every_text_back_and_never_the_same_cipher_twice)
{
    const CipherKey key = CipherKey::random();
    const String texts[] = {
        u"",        u"Asma",           u"O'Hara; -- ñ ç €", u"\r\n\t ", u"\U0001F9A0 y más",
        u"a\0b\0"s, String(1, 0xFFFD), String(65536, u'ñ')};
    for (const String& text : texts) {
        const String sealed = key.seal(text);
        EXPECT_EQ(key.open(sealed), text);
        EXPECT_NE(key.seal(text), sealed);
        EXPECT_FALSE(CipherKey::random().open(sealed)) << "another key";
        EXPECT_EQ(CipherKey::parse(key.text())->open(sealed), text);
    }
    EXPECT_EQ(numberOf([&] { key.seal(u"a\xD83E"s); }), failure::invalidCall);
}

TEST(CipherKey, refuses_a_text_with_one_change_anywhere)
{
    const CipherKey key = CipherKey::random();
    for (const String& plain : {u"Asma"s, u"Asmas"s, u"Asmáti"s}) { // Three endings of base64.
        const String sealed = key.seal(plain);
        for (std::size_t at = 0; at < sealed.size(); ++at) {
            for (const char16_t other : u"AQgw+/= \nñ"s) {
                String changed = sealed;
                changed[at] = other;
                EXPECT_TRUE(changed == sealed || !key.open(changed)) << at;
            }
            EXPECT_FALSE(key.open(sealed.substr(0, at)));
            EXPECT_FALSE(key.open(sealed.substr(at + 1)));
        }
        EXPECT_FALSE(key.open(sealed + u"A"));
    }
}

/// A folder for the key, which the environment names.
class KeyFile : public testing::Test {
protected:
    KeyFile() { setenv("ZV_CLAVE", file.c_str(), 1); }
    ~KeyFile() override
    {
        unsetenv("ZV_CLAVE");
        fs::remove_all(folder);
    }
    void write(const std::string& text) const
    {
        fs::create_directories(folder);
        std::ofstream(file) << text;
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    }
    void expectRefused(StringView words) const
    {
        EXPECT_EQ(numberOf([&] { readKey(file); }, words), cipherFailed);
    }
    fs::path folder =
        fs::temp_directory_path() /
        ("zv-clave-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
    fs::path file = folder / "clave";
};

TEST_F(KeyFile, is_made_by_the_first_text_to_encipher_for_its_owner_alone)
{
    file = folder / "sub" / "clave";
    setenv("ZV_CLAVE", file.c_str(), 1);
    registerCipher();
    const String sealed = CipherKey::random().seal(u"Asma");
    EXPECT_EQ(numberOf([&] { CifrarTexto(sealed, false, u""); }), cipherFailed);
    EXPECT_FALSE(fs::exists(folder)) << "a text to decipher makes no key";

    std::vector<std::thread> stations;
    std::array<String, 4> texts;
    for (String& text : texts)
        stations.emplace_back([&text] { text = CifrarTexto(u"Asma", true, u""); });
    for (std::thread& each : stations)
        each.join();
    for (const String& text : texts)
        EXPECT_EQ(CifrarTexto(text, false, u""), u"Asma") << "one key, whoever made it";
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(file.parent_path()).permissions(), fs::perms::owner_all);
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), {}), 1) << "no draft is left";
    EXPECT_FALSE(createKey(file, CipherKey::random())) << "never over one that is there";
    EXPECT_EQ(CifrarTexto(texts[0], false, u""), u"Asma");
    EXPECT_EQ(numberOf([&] { CifrarTexto(sealed, false, u""); }), cipherFailed) << "another's text";
}

TEST_F(KeyFile, tells_what_is_wrong_with_it)
{
    const std::string good = "ZVConfiguracion clave 1\n" + CipherKey::random().text() + "\n";
    expectRefused(u"no existe");
    write(good);
    EXPECT_EQ(numberOf([&] { readKey(file); }), 0);
    for (const fs::perms others : {fs::perms::group_read, fs::perms::others_read, fs::perms::group_write}) {
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | others);
        expectRefused(u"la pueden leer otros");
    }
    const std::pair<std::string, StringView> cases[] = {
        {"", u"está vacía"},
        {good.substr(1), u"no es una clave"},
        {good.substr(24), u"no es una clave"},
        {good.substr(0, good.size() - 2), u"no está entera"},
        {good.substr(0, 24), u"no está entera"},
        {good + "x", u"no está entera"},
        {good.substr(0, 40) + "x" + good.substr(41), u"no está entera"}};
    for (const auto& [text, words] : cases) {
        write(text);
        expectRefused(words);
        EXPECT_EQ(numberOf([] { keyFromFile(true); }), cipherFailed) << "and is never written over";
    }
    fs::remove(file);
    fs::create_directory(file);
    expectRefused(u"no es un fichero");
}

TEST_F(KeyFile, stands_in_the_configuration_folder_unless_it_is_told_otherwise)
{
    EXPECT_EQ(keyPlace(), file);
    setenv("ZV_CLAVE", "", 1);
    setenv("XDG_CONFIG_HOME", "/c", 1);
    EXPECT_EQ(keyPlace(), "/c/ZVConfiguracion/clave");
    setenv("XDG_CONFIG_HOME", "relativa", 1);
    const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
    setenv("HOME", "/h", 1);
    EXPECT_EQ(keyPlace(), "/h/.config/ZVConfiguracion/clave");
    unsetenv("HOME");
    EXPECT_EQ(numberOf(keyPlace), cipherFailed);
    unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", home.c_str(), 1);
}

/// A host's own cipher, whose work is plain to see.
class Brackets final : public Object {
public:
    StringView TypeName() const override { return u"cZEncryptoAPI"; }
    Value invoke(StringView member, Access, Arguments& arguments) override
    {
        const String text = CStr(arguments.at(0));
        arguments[0] = member == u"Cifrar" ? u"(((((((((((" + text + u")))))))))))" : u"<" + text + u">";
        return {};
    }
};

TEST(CifrarTexto, cuts_the_length_of_the_key_text_off_both_ends_and_puts_the_key_text_there)
{
    registerCipher([](bool) { return CipherKey::random(); });
    registerClass(u"ZEncryptoAPI.cZEncryptoAPI", [] { return std::make_shared<Brackets>(); });
    EXPECT_EQ(CifrarTexto(u"Asma", true), u"Asma");
    EXPECT_EQ(CifrarTexto(u"Asma", false), u"<QUIMERATEXTAsmaQUIMERATEXT>");
    EXPECT_EQ(CifrarTexto(u"Asma", true, u"ab"), u"(((((((((Asma)))))))))");
    EXPECT_EQ(CifrarTexto(u"", true, u""), u"((((((((((()))))))))))");
    EXPECT_EQ(CifrarTexto(u"Asma", false, u""), u"<Asma>");
    EXPECT_EQ(numberOf([] { CifrarTexto(u"", true, u"doce letras o más y aún más"); }), failure::invalidCall);
    registerClass(u"ZEncryptoAPI.cZEncryptoAPI", nullptr);
    EXPECT_EQ(numberOf([] { CreateObject(u"ZEncryptoAPI.cZEncryptoAPI")->TypeName(); }), 0);
}

} // namespace
} // namespace zv
