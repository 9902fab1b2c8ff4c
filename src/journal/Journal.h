#pragma once

#include "journal/Cipher.h"
#include "journal/Draft.h"
#include "journal/File.h"
#include "journal/Records.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

namespace zv::journal {

/// Ending of a journal's name.
inline constexpr StringView extension = u".diario";

/// Writer of one journal: a header, then one enciphered record after another. Each stands in the file when
/// write() returns, and is on the disk within a second, also while more are written.
class Writer {
public:
    /// A new file in the folder, which is made if need be. Fails with a std::system_error.
    Writer(const std::filesystem::path& folder, const SecretKey& key, const Opening& opening);
    ~Writer();
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// The failure, if the file takes no more; what it did not take is tried again with the next record.
    std::error_code write(const Record& record);
    /// Whether something waits that the file has not taken.
    bool pending() const { return !waiting_.empty(); }
    /// Returns when all that was written is on the disk.
    std::error_code sync();
    const std::filesystem::path& path() const { return path_; }
    /// Bytes that are on the disk for certain.
    std::uint64_t synced() const { return synced_; }
    /// Deletes the file.
    void remove();

private:
    void keepSyncing(const std::stop_token& stop);

    std::filesystem::path path_;
    File file_;
    Cipher cipher_;
    Records records_;
    std::string sealed_;
    std::string waiting_; ///< Bytes that the file has not taken yet.
    std::atomic<std::uint64_t> written_ = 0;
    std::atomic<std::uint64_t> synced_ = 0;
    std::mutex mutex_;
    std::condition_variable_any woken_;
    bool dirty_ = false;
    std::jthread syncing_; ///< Last member: it uses the others.
};

/// How a journal could be read.
enum class End : unsigned char {
    whole,
    torn,     ///< The last record is not whole: the act in flight.
    spoilt,   ///< A record was changed; what stands before it was read.
    otherKey, ///< Not one record opens: written by another person, or with a key that is gone.
    foreign   ///< No journal.
};

struct Reading {
    End end = End::foreign;
    Draft draft = {};
};

/// Reads the bytes of a journal, as far as they are sound. Never fails.
Reading read(std::string_view bytes, const SecretKey& key);
/// Reads a journal's file; one that cannot be read is foreign.
Reading readFile(const std::filesystem::path& path, const SecretKey& key);

} // namespace zv::journal
