#include "journal/Item.h"
#include "journal/Journal.h"

#include <cstdlib>

namespace zv::journal {
namespace {

constexpr SecretKey key{1, 2, 3};

/// A journal whose records are those bytes, enciphered as the person himself would have: what comes behind
/// the cipher has to hold too.
std::string sealed(std::string_view bytes)
{
    Cipher cipher(key);
    std::string file = "ZVDIARIO1\n";
    file.append(reinterpret_cast<const char*>(cipher.header().data()), Cipher::headerSize);
    std::string record;
    while (!bytes.empty()) {
        const std::size_t length =
            std::min<std::size_t>(static_cast<unsigned char>(bytes[0]), bytes.size() - 1);
        cipher.seal(bytes.substr(1, length), record);
        for (std::size_t byte = 0; byte < 4; ++byte)
            file.push_back(static_cast<char>(record.size() >> 8 * byte & 0xFFU));
        file += record;
        bytes.remove_prefix(1 + length);
    }
    return file;
}

/// Whatever it says, the draft can be counted and shown.
void use(const Reading& reading)
{
    const Draft& draft = reading.draft;
    const std::vector<Item> items = itemsOf(draft);
    if (draft.empty() != (draft.texts() + draft.choices() + draft.rows() == 0) ||
        draft.pupils() > draft.places.size() || (draft.places.empty() && !items.empty()))
        std::abort();
}

} // namespace
} // namespace zv::journal

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    using namespace zv::journal;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    use(read(bytes, key));
    use(read(sealed(bytes), key));
    return 0;
}
