#include "journal/Spool.h"

#include "runtime/PrivateFile.h"

#include <chrono>
#include <random>
#include <utility>

namespace zv::journal {

namespace {

namespace fs = std::filesystem;

/// How long what was written waits for its sync, which may take as long again on a busy disk.
constexpr std::chrono::milliseconds pause{250};

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

void remove(const Spooled& spooled)
{
    std::error_code ignored;
    fs::remove(spooled.file.path(), ignored);
}

} // namespace

std::error_code Spooled::sync()
{
    const std::uint64_t whole = written;
    const std::error_code error = file.sync();
    if (!error)
        synced = whole;
    return error;
}

std::error_code Spooled::trouble() { return failed_ ? (failed_ = false, failure_) : std::error_code(); }

Spool::~Spool()
{
    syncing_ = {};
    if (spare_)
        remove(*spare_);
}

std::shared_ptr<Spooled> Spool::open()
{
    // Emptied once more: that fails where somebody has deleted it meanwhile.
    if (std::shared_ptr<Spooled> spare = std::exchange(spare_, {}); spare && !spare->file.empty()) {
        const std::lock_guard lock(mutex_);
        spare->reached_ = spare->waits_;
        return spare;
    }
    return std::make_shared<Spooled>(freshPath(folder_));
}

void Spool::syncSoon(const std::shared_ptr<Spooled>& file)
{
    const std::lock_guard lock(mutex_);
    if (std::exchange(file->waits_, true))
        return;
    waiting_.push_back(file);
    if (!syncing_.joinable())
        syncing_ = std::jthread([this](const std::stop_token& stop) { keepSyncing(stop); });
    woken_.notify_one();
}

void Spool::rest()
{
    syncing_ = {};
    for (const auto& each : std::exchange(waiting_, {})) {
        each->waits_ = false;
        static_cast<void>(each->sync());
    }
}

void Spool::end(const std::shared_ptr<Spooled>& file)
{
    bool reached = false;
    {
        const std::lock_guard lock(mutex_);
        reached = file->reached_;
        std::erase(waiting_, file);
        file->waits_ = false;
    }
    if (spare_ || file->file.empty()) {
        remove(*file);
        return;
    }
    spare_ = file;
    // A power cut would bring back what the disk has.
    if (reached)
        syncSoon(file);
}

void Spool::keepSyncing(const std::stop_token& stop)
{
    std::unique_lock lock(mutex_);
    // First the pause: what is typed and accepted at once costs no sync at all.
    while (woken_.wait(lock, stop, [this] { return !waiting_.empty(); })) {
        woken_.wait_for(lock, stop, pause, [] { return false; });
        if (stop.stop_requested())
            return;
        const auto files = std::exchange(waiting_, {});
        for (const auto& each : files) {
            each->waits_ = false;
            each->reached_ = true;
        }
        lock.unlock();
        for (const auto& each : files)
            if (const std::error_code error = each->sync(); error && !each->failed_) {
                each->failure_ = error;
                each->failed_ = true;
            }
        lock.lock();
    }
}

} // namespace zv::journal
