#include "journal/Journal.h"

#include "runtime/WholeFile.h"

#include <algorithm>
#include <utility>

namespace zv::journal {

namespace {

namespace fs = std::filesystem;

/// First line, with the number of the format at its end.
constexpr std::string_view magic = "ZVDIARIO1\n";
constexpr std::size_t lengthSize = 4;

void appendLength(std::string& bytes, std::size_t length)
{
    for (std::size_t byte = 0; byte < lengthSize; ++byte)
        bytes.push_back(static_cast<char>(length >> 8 * byte & 0xFFU));
}

std::size_t lengthAt(std::string_view bytes)
{
    std::size_t length = 0;
    for (std::size_t byte = 0; byte < lengthSize; ++byte)
        length |= static_cast<std::size_t>(static_cast<unsigned char>(bytes[byte])) << 8 * byte;
    return length;
}

/// Whether its first line, which is whole, is a journal's with another number of at most nine digits.
bool isNewer(std::string_view bytes)
{
    const std::string_view name = magic.substr(0, magic.size() - 2);
    const std::size_t end = bytes.substr(0, name.size() + 10).find('\n');
    return bytes.starts_with(name) && end != std::string_view::npos && end > name.size() &&
           bytes.substr(0, end).find_first_not_of("0123456789", name.size()) == std::string_view::npos;
}

} // namespace

Writer::Writer(std::shared_ptr<Spool> spool, const SecretKey& key, const Opening& opening)
    : spool_(std::move(spool)), file_(spool_->open()), before_(file_->written), cipher_(key), waiting_(magic)
{
    waiting_.append(cipher_.header().begin(), cipher_.header().end());
    if (const std::error_code error = write(opening)) {
        remove();
        throw std::system_error(error);
    }
}

std::error_code Writer::write(const Record& record)
{
    cipher_.seal(records_.pack(record), sealed_);
    appendLength(waiting_, sealed_.size());
    waiting_ += sealed_;
    if (const std::error_code error = file_->file.append(waiting_))
        return error;
    file_->written += waiting_.size();
    waiting_.clear();
    spool_->syncSoon(file_);
    return file_->trouble();
}

Reading read(std::string_view bytes, const SecretKey& key, const Each& each)
{
    Reading result;
    Cipher::Header header{};
    if (!bytes.starts_with(magic) && isNewer(bytes))
        result.end = End::newer;
    if (!bytes.starts_with(magic) || bytes.size() < magic.size() + header.size())
        return result;
    bytes.remove_prefix(magic.size());
    std::copy_n(bytes.begin(), header.size(), header.begin());
    bytes.remove_prefix(header.size());
    Cipher cipher(key, header);
    Records records;
    for (bool first = true; !bytes.empty(); first = false) {
        result.end = End::torn;
        const std::size_t length = bytes.size() < lengthSize ? bytes.size() : lengthAt(bytes);
        if (length > bytes.size() - std::min(lengthSize, bytes.size()))
            return result;
        const auto plain = cipher.open(bytes.substr(lengthSize, length));
        result.end = first ? End::otherKey : End::spoilt;
        const auto record = plain ? records.unpack(*plain) : std::nullopt;
        if (!record || std::holds_alternative<Opening>(*record) != first || !result.draft.add(*record))
            return result;
        if (each)
            each(*record);
        bytes.remove_prefix(lengthSize + length);
        result.end = End::whole;
    }
    return result;
}

Reading readFile(const fs::path& path, const SecretKey& key, const Each& each)
{
    // What cannot be read is none.
    return read(wholeFile(path).value_or(""), key, each);
}

} // namespace zv::journal
