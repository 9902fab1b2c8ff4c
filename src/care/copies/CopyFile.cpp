#include "care/copies/CopyFile.h"

#include "crypto/Sodium.h"
#include "data/DataError.h"

#include <sodium.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <new>
#include <utility>
#include <vector>

namespace zv::care {
namespace {

namespace fs = std::filesystem;
using crypto::bytesOf;

/// First line, with the number of the format behind.
constexpr std::string_view magic = "ZVConfiguracion copia ";
constexpr std::string_view format = "1";
constexpr std::size_t longestManifest = 1 << 20;
constexpr std::size_t block = 1 << 20;
constexpr crypto::Base64 base64 = crypto::Base64::Unpadded;

[[noreturn]] void refuse(const fs::path& file, StringView words)
{
    throw BadCopy(u"«" + file.u16string() + u"» " + String(words));
}

[[noreturn]] void failReading(const fs::path& file, StringView words)
{
    throw RuntimeError(failure::otherData, u"«" + file.u16string() + u"» " + String(words));
}

[[noreturn]] void failWriting(const fs::path& file)
{
    throw fs::filesystem_error("no se puede escribir", file, std::error_code(errno, std::generic_category()));
}

class Digest {
public:
    Digest()
    {
        crypto::useSodium();
        crypto_generichash_init(&state_, nullptr, 0, crypto_generichash_BYTES);
    }
    void add(std::string_view bytes) { crypto_generichash_update(&state_, bytesOf(bytes), bytes.size()); }
    std::string text()
    {
        std::array<unsigned char, crypto_generichash_BYTES> result{};
        crypto_generichash_final(&state_, result.data(), result.size());
        return crypto::toBase64(result, base64);
    }

private:
    crypto_generichash_state state_{};
};

/// Passes `size` bytes of a file, or all, in blocks to the callback; the number passed.
std::uintmax_t forEachBlock(std::istream& from, std::uintmax_t size,
                            const std::function<void(std::string_view)>& use)
{
    std::string room(block, '\0');
    std::uintmax_t passed = 0;
    while (passed < size) {
        from.read(room.data(),
                  static_cast<std::streamsize>(std::min<std::uintmax_t>(size - passed, room.size())));
        const auto got = static_cast<std::size_t>(from.gcount());
        if (got == 0)
            break;
        use(std::string_view(room).substr(0, got));
        passed += got;
    }
    return passed;
}

std::string written(const Manifest& manifest)
{
    std::string text;
    for (const auto& [name, value] : manifest)
        text.append(name).append(": ").append(value).append("\n");
    return text + "\n";
}

/// Reads head and manifest; the stream then stands at the first part.
Manifest readManifest(std::ifstream& from, const fs::path& file)
{
    std::string head(magic.size() + format.size() + 1, '\0');
    if (!from.read(head.data(), static_cast<std::streamsize>(head.size())) || !head.starts_with(magic))
        refuse(file, u"no es una copia de seguridad de este programa, o le falta el principio.");
    if (!head.ends_with(std::string(format) + "\n"))
        failReading(file,
                    u"la hizo una versión más nueva de este programa: ponga esa en este equipo y repita "
                    u"la orden.");
    std::string text;
    std::string line;
    Manifest manifest;
    while (std::getline(from, line) && text.size() < longestManifest) {
        text += line + "\n";
        if (line.empty())
            break;
        const std::size_t end = line.find(": ");
        if (end == std::string::npos)
            break;
        manifest[line.substr(0, end)] = line.substr(end + 2);
    }
    if (!std::getline(from, line) || line != digestOf(text) || written(manifest) != text)
        refuse(file, u"está estropeada: su principio no es como se escribió. Use otra copia.");
    return manifest;
}

std::string entry(const Manifest& manifest, const std::string& name)
{
    const auto found = manifest.find(name);
    return found == manifest.end() ? std::string() : found->second;
}

std::uintmax_t sizeIn(const Manifest& manifest, const std::string& part)
{
    return std::strtoull(entry(manifest, part + "-bytes").c_str(), nullptr, 10);
}

constexpr std::size_t beforeSecret = crypto_pwhash_SALTBYTES + crypto_secretbox_NONCEBYTES;

std::array<unsigned char, crypto_secretbox_KEYBYTES> keyFrom(std::string_view passphrase,
                                                             const unsigned char* salt)
{
    std::array<unsigned char, crypto_secretbox_KEYBYTES> key{};
    if (crypto_pwhash(key.data(), key.size(), passphrase.data(), passphrase.size(), salt,
                      crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE,
                      crypto_pwhash_ALG_ARGON2ID13) != 0)
        throw std::bad_alloc();
    return key;
}

} // namespace

BadCopy::BadCopy(String description) : RuntimeError(failure::otherData, std::move(description)) {}

std::string digestOf(std::string_view text)
{
    Digest digest;
    digest.add(text);
    return digest.text();
}

void pack(const fs::path& file, Manifest manifest, const std::function<fs::path(std::size_t part)>& partOf)
{
    for (std::size_t part = 0; part < partNames.size(); ++part) {
        std::ifstream from(partOf(part), std::ios::binary);
        Digest digest;
        const std::uintmax_t size =
            forEachBlock(from, UINTMAX_MAX, [&](std::string_view bytes) { digest.add(bytes); });
        manifest[std::string(partNames[part]) + "-bytes"] = std::to_string(size);
        manifest[std::string(partNames[part]) + "-huella"] = digest.text();
    }
    std::ofstream to(file, std::ios::binary | std::ios::trunc);
    const std::string text = written(manifest);
    to << magic << format << '\n' << text << digestOf(text) << '\n';
    for (std::size_t part = 0; part < partNames.size(); ++part) {
        std::ifstream from(partOf(part), std::ios::binary);
        forEachBlock(from, UINTMAX_MAX, [&](std::string_view bytes) { to << bytes; });
    }
    if (!to.flush())
        failWriting(file);
}

Manifest manifestOf(const fs::path& file)
{
    std::ifstream from(file, std::ios::binary);
    if (!from)
        failReading(file, u"no se puede leer: compruebe el nombre y el permiso.");
    Manifest manifest = readManifest(from, file);
    auto size = static_cast<std::uintmax_t>(from.tellg());
    for (const char* const part : partNames)
        size += sizeIn(manifest, part);
    if (size != fs::file_size(file))
        refuse(file, u"no está entera. Use otra copia.");
    return manifest;
}

Manifest unpack(const fs::path& file, const std::function<fs::path(std::size_t part)>& partOf)
{
    std::ifstream from(file, std::ios::binary);
    if (!from)
        failReading(file, u"no se puede leer: compruebe el nombre y el permiso.");
    Manifest manifest = readManifest(from, file);
    for (std::size_t part = 0; part < partNames.size(); ++part) {
        const std::string name = partNames[part];
        const std::uintmax_t size = sizeIn(manifest, name);
        Digest digest;
        std::ofstream to(partOf(part), std::ios::binary | std::ios::trunc);
        const std::uintmax_t passed = forEachBlock(from, size, [&](std::string_view bytes) {
            digest.add(bytes);
            to << bytes;
        });
        if (passed != size || digest.text() != entry(manifest, name + "-huella"))
            refuse(file, u"está estropeada o no está entera. Use otra copia.");
        if (!to.flush())
            failWriting(partOf(part));
    }
    if (from.peek() != std::ifstream::traits_type::eof())
        refuse(file, u"está estropeada: le sobra algo al final. Use otra copia.");
    return manifest;
}

std::string wrapped(std::string_view secret, std::string_view passphrase)
{
    crypto::useSodium();
    std::vector<unsigned char> bytes(crypto_pwhash_SALTBYTES + crypto_secretbox_NONCEBYTES +
                                     crypto_secretbox_MACBYTES + secret.size());
    unsigned char* const nonce = bytes.data() + crypto_pwhash_SALTBYTES;
    randombytes_buf(bytes.data(), crypto_pwhash_SALTBYTES + crypto_secretbox_NONCEBYTES);
    crypto_secretbox_easy(nonce + crypto_secretbox_NONCEBYTES, bytesOf(secret), secret.size(), nonce,
                          keyFrom(passphrase, bytes.data()).data());
    return crypto::toBase64(bytes, base64);
}

std::optional<std::string> unwrapped(std::string_view wrapped, std::string_view passphrase)
{
    crypto::useSodium();
    const auto bytes = crypto::fromBase64(wrapped, base64);
    if (!bytes || bytes->size() < beforeSecret + crypto_secretbox_MACBYTES)
        return std::nullopt;
    std::string secret(bytes->size() - beforeSecret - crypto_secretbox_MACBYTES, '\0');
    const unsigned char* const nonce = bytes->data() + crypto_pwhash_SALTBYTES;
    if (crypto_secretbox_open_easy(bytesOf(secret), bytes->data() + beforeSecret,
                                   bytes->size() - beforeSecret, nonce,
                                   keyFrom(passphrase, bytes->data()).data()) != 0)
        return std::nullopt;
    return secret;
}

bool isWrapped(std::string_view text)
{
    const auto bytes = crypto::fromBase64(text, base64);
    return bytes && bytes->size() > beforeSecret + crypto_secretbox_MACBYTES;
}

} // namespace zv::care
