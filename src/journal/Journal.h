#pragma once

#include "journal/Cipher.h"
#include "journal/Draft.h"
#include "journal/Records.h"
#include "journal/Spool.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>

namespace zv::journal {

/// Writer of one journal: a header, then one enciphered record after another. Each stands in the file when
/// write() returns, and is on the disk within a second, also while more are written.
class Writer {
public:
    /// In a file of the spool's folder, which is made if need be. Fails with a std::system_error.
    Writer(std::shared_ptr<Spool> spool, const SecretKey& key, const Opening& opening);

    /// The failure, if the file takes no more, or what it took before does not come to the disk; what it did
    /// not take is tried again with the next record.
    std::error_code write(const Record& record);
    /// Whether something waits that the file has not taken.
    bool pending() const { return !waiting_.empty(); }
    /// Returns when all that was written is on the disk.
    std::error_code sync() { return file_->sync(); }
    const std::filesystem::path& path() const { return file_->file.path(); }
    /// Bytes that are on the disk for certain.
    std::uint64_t synced() const { return std::max(file_->synced.load(), before_) - before_; }
    /// Ends the journal: nothing of it is left. To be called last.
    void remove() { spool_->end(file_); }

private:
    std::shared_ptr<Spool> spool_;
    std::shared_ptr<Spooled> file_;
    std::uint64_t before_; ///< Bytes of the journals that the file held before.
    Cipher cipher_;
    Records records_;
    std::string sealed_;
    std::string waiting_; ///< Bytes that the file has not taken yet.
};

/// How a journal could be read.
enum class End : unsigned char {
    whole,
    torn,     ///< The last record is not whole: the act in flight.
    spoilt,   ///< A record was changed; what stands before it was read.
    otherKey, ///< Not one record opens: written by another person, or with a key that is gone.
    newer,    ///< Of a format that this version does not know.
    foreign   ///< No journal.
};

struct Reading {
    End end = End::foreign;
    Draft draft = {};
};

/// Reads the bytes of a journal, as far as they are sound, and tells each record. Never fails.
using Each = std::function<void(const Record&)>;
Reading read(std::string_view bytes, const SecretKey& key, const Each& each = {});
/// Reads a journal's file; one that cannot be read is foreign.
Reading readFile(const std::filesystem::path& path, const SecretKey& key, const Each& each = {});

} // namespace zv::journal
