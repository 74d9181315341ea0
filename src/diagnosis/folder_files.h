#pragma once

#include "syncfiles/descriptor.h"

#include <cstdint>
#include <string>

namespace qndr::diagnosis {

enum class FileKind {
    SyncFile,
    UnreadableSyncFile, ///< a sync file by its name; the fields of its descriptor are 0 and empty
    Heartbeat,
    Standing,       ///< what a company tells a partner of its standing
    Misnamed,       ///< a sync file by what is in it, under a name that no agent takes for one
    Mark,           ///< by which the agents know the Sync folder
    UnfinishedCopy, ///< on its way under a temporary name, or left there by a power cut
    Foreign         ///< nothing that an agent looks at
};

struct FolderFile {
    FileKind kind = FileKind::Foreign;
    /// `To` from the name; the rest from the descriptor, as the receiving steps read it. A heartbeat file and a
    /// standing file have their sender, which stands in the name, in `From`.
    FoundSyncFile entry;
};

/// A file as it lies in the Sync folder.
struct ListedFile {
    std::string name;
    std::int64_t size = 0;
    std::int64_t ageSeconds = 0; ///< by the stamp of its name, or else by its last modification
    std::string damage;          ///< why its descriptor cannot be read; empty otherwise
    FolderFile file;
    /// Of a misnamed file: the name that it had, where the present one still begins with it.
    std::string properName = {};
};

/// What a file is, in words.
std::string KindInWords(const FolderFile& file);

} // namespace qndr::diagnosis
