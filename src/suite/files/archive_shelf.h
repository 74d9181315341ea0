#pragma once

#include "services/platform.h"
#include "suite/computer/patience.h"
#include "suite/files/file_reads.h"
#include "suite/files/unwritten_files.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <unordered_map>

namespace qndr::suite {

/// What the archives of one process know together: the descriptors that were read, since a pass opens each file of
/// the Sync folder many times; how long to wait for a file that cannot be read; which files may not be taken yet,
/// and which folders not be packed.
class ArchiveShelf {
  public:
    /// With neither patience nor clock nobody waits. What changed less than `settleSeconds` ago is not remembered:
    /// it could change once more within the same tick of its file system's clock.
    explicit ArchiveShelf(FileReads& reads, Patience* patience = nullptr, const services::Clock* clock = nullptr,
                          int settleSeconds = 2)
        : reads_(reads), patience_(patience), clock_(clock), settleSeconds_(settleSeconds) {}

    FileReads& Reads() { return reads_; }

    /// What is known of a file as long as it is the same one, unchanged.
    struct Known {
        std::string noArchive; ///< why it is none; empty for an archive
        bool hasDescriptor = false;
        std::string damage; ///< why the descriptor cannot be had
        std::string descriptor;
    };
    /// Null when the file is not known, or is another by now.
    const Known* Find(const std::string& path, const FileFacts& facts) const;
    void Keep(const std::string& path, const FileFacts& facts, Known known);

    /// Whether to try once more, behind the attempt of this number (from 0), which failed with this error; waits a
    /// little before it says so. A trouble that has outlasted the waiting is not waited for again for a minute: a
    /// share that is away fails for every file.
    bool WaitOut(int attempt, std::error_code error);

    /// Between the moment at which a descriptor was asked for and the moment at which it was had, or turned out to
    /// be damaged, nothing else of the archive is to be given out: its reader would take it for a file without
    /// number and kind, and go by that.
    void Owe(const std::string& path) { owed_.insert(path); }
    void Settle(const std::string& path) { owed_.erase(path); }
    bool IsOwed(const std::string& path) const { return owed_.contains(path); }

    UnwrittenFiles& Unwritten() { return unwritten_; }

  private:
    struct Entry {
        FileFacts facts;
        Known known;
    };

    FileReads& reads_;
    Patience* patience_;
    const services::Clock* clock_;
    int settleSeconds_;
    std::unordered_map<std::string, Entry> entries_;
    std::size_t bytes_ = 0;
    std::optional<Date> waitedInVain_;
    std::set<std::string> owed_;
    UnwrittenFiles unwritten_;
};

} // namespace qndr::suite
