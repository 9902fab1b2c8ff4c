#include "journal/Journal.h"

#include "runtime/PrivateFile.h"

#include <chrono>
#include <fstream>
#include <random>

namespace zv::journal {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view magic = "ZVDIARIO1\n";
/// How long what was written waits for its sync, which may take as long again on a busy disk.
constexpr std::chrono::milliseconds pause{250};
constexpr std::size_t lengthSize = 4;

/// Name that no other program and no other dialog takes.
fs::path freshPath(const fs::path& folder)
{
    makePrivateFolder(folder);
    std::random_device chance;
    fs::path path;
    do
        path = folder / (std::to_string(chance()) + toUtf8(extension));
    while (fs::exists(path));
    return path;
}

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

} // namespace

Writer::Writer(const fs::path& folder, const SecretKey& key, const Opening& opening)
    : path_(freshPath(folder)), file_(path_), cipher_(key), waiting_(magic),
      syncing_([this](const std::stop_token& stop) { keepSyncing(stop); })
{
    waiting_.append(cipher_.header().begin(), cipher_.header().end());
    if (const std::error_code error = write(opening)) {
        remove();
        throw std::system_error(error);
    }
}

Writer::~Writer() = default;

std::error_code Writer::write(const Record& record)
{
    cipher_.seal(records_.pack(record), sealed_);
    appendLength(waiting_, sealed_.size());
    waiting_ += sealed_;
    if (const std::error_code error = file_.append(waiting_))
        return error;
    written_ += waiting_.size();
    waiting_.clear();
    const std::lock_guard lock(mutex_);
    if (!dirty_) {
        dirty_ = true;
        woken_.notify_one();
    }
    return {};
}

std::error_code Writer::sync()
{
    const std::uint64_t whole = written_;
    const std::error_code error = file_.sync();
    if (!error)
        synced_ = whole;
    return error;
}

void Writer::keepSyncing(const std::stop_token& stop)
{
    std::unique_lock lock(mutex_);
    // First the pause: what is typed and accepted at once costs no sync at all.
    while (woken_.wait(lock, stop, [this] { return dirty_; })) {
        woken_.wait_for(lock, stop, pause, [] { return false; });
        if (stop.stop_requested())
            return;
        dirty_ = false;
        lock.unlock();
        sync();
        lock.lock();
    }
}

void Writer::remove()
{
    std::error_code ignored;
    fs::remove(path_, ignored);
}

Reading read(std::string_view bytes, const SecretKey& key)
{
    Reading result;
    Cipher::Header header{};
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
        bytes.remove_prefix(lengthSize + length);
        result.end = End::whole;
    }
    return result;
}

Reading readFile(const fs::path& path, const SecretKey& key)
{
    std::ifstream stream(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    return read(bytes, key);
}

} // namespace zv::journal
