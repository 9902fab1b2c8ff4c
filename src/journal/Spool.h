#pragma once

#include "journal/File.h"
#include "runtime/String.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace zv::journal {

/// Ending of a journal's name.
inline constexpr StringView extension = u".diario";

/// A journal's file, as its writer and the thread that syncs it share it.
struct Spooled {
    explicit Spooled(const std::filesystem::path& path) : file(path) {}
    /// Returns when all that was written is on the disk.
    std::error_code sync();
    /// The failure of a sync in the background, once.
    std::error_code trouble();

    File file;
    /// Bytes of all the journals that it has held, and how many of them are on the disk for certain.
    std::atomic<std::uint64_t> written = 0;
    std::atomic<std::uint64_t> synced = 0;

private:
    friend class Spool;
    bool waits_ = false;   ///< For its sync; the spool's mutex guards it, and the next.
    bool reached_ = false; ///< Something of this journal may have come to the disk.
    std::atomic<bool> failed_ = false;
    std::error_code failure_; ///< Valid once failed_ is set, until it is taken.
};

/// The files of a program's journals, and the one thread that puts on the disk what is written to them. A
/// file whose journal has ended is emptied at once and kept for the next one, as to make a file costs more
/// than all that a small dialog writes to it; it is deleted with the spool. Files in use stay: they are what
/// a program that dies leaves behind.
class Spool {
public:
    explicit Spool(std::filesystem::path folder) : folder_(std::move(folder)) {}
    ~Spool();
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;

    const std::filesystem::path& folder() const { return folder_; }
    /// An empty file for a journal. Fails with a std::system_error.
    std::shared_ptr<Spooled> open();
    /// What was written to it will be on the disk within a second.
    void syncSoon(const std::shared_ptr<Spooled>& file);
    /// Ends the thread until something is to be synced again; what waits comes to the disk before this
    /// returns. No journal is being written meanwhile.
    void rest();
    /// Its journal has ended: nothing of it is left.
    void end(const std::shared_ptr<Spooled>& file);

private:
    void keepSyncing(const std::stop_token& stop);

    std::filesystem::path folder_;
    std::shared_ptr<Spooled> spare_;
    std::mutex mutex_;
    std::condition_variable_any woken_;
    std::vector<std::shared_ptr<Spooled>> waiting_;
    std::jthread syncing_; ///< From the first record on. Last member: it uses the others.
};

} // namespace zv::journal
