#pragma once

#include "standing/message.h"
#include "suite/files/archive_shelf.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qndr::suite {

/// A message as it lies in the Sync folder, with what goes with it.
struct StandingFile {
    standing::Message message;
    std::string proof; ///< what standing::ToText makes of digests; empty without
    std::string rows;  ///< what standing::ToText makes of lists of rows; empty without
    /// The same: of a workstation's, what a mending gave up, with the number of the kept conflict as the own
    /// change; of main's, those of them that nobody else has touched.
    std::string givenUp;
};

/// What tells whether a file is the one that was read or written before; empty when there is none.
std::string StandingFileFacts(const std::string& path);

/// Nothing for a file that cannot be read or is no message. Whoever can write into the folder may have written it.
std::optional<StandingFile> ReadStandingFile(FileReads& reads, const std::string& path);

/// The one company that has left a message for `own`; empty when there are several, or none.
std::string FindSpeaker(const std::string& folder, const std::string& own);

/// In one step: a reader finds the old file or the new one. The system's words on failure, empty on success.
std::string WriteStandingFile(const std::string& path, const StandingFile& file);

/// The numbers of the sync files that lie in the Sync folder, by their two companies in lower case.
class SyncFolderCensus {
  public:
    /// `own` is the company whose files and whose partners' files are told apart. Files that cannot be read are
    /// not among them.
    SyncFolderCensus(ArchiveShelf& archives, const std::string& folder, const std::string& own);

    /// Those to the main company of which the sender knows nothing yet are among those to any company that is
    /// asked for with `isMain`. Ascending; a request of a reset is -1, and a file of the first exchange has its
    /// SyncState as -100 - state.
    std::vector<std::int64_t> Files(const std::string& to, const std::string& from, bool isMain) const;

  private:
    std::map<std::pair<std::string, std::string>, std::vector<std::int64_t>> files_;
};

/// Deletes the sync files of a company that are on their way to a main company, or to any.
void DeleteFiles(ArchiveShelf& archives, const std::string& folder, const std::string& from,
                 const std::string& main);

} // namespace qndr::suite
