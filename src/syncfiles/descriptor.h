#pragma once

#include "services/date.h"
#include "shared/agent_context.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qndr {

/// A Boolean field of a record: 16 bits. Where a field is tested for True, it is this value that counts.
using FieldBoolean = std::int16_t;
inline constexpr FieldBoolean FieldTrue = -1;
inline constexpr FieldBoolean FieldFalse = 0;

// What the key `SyncState` of a descriptor says; 0 or no key is any other file. Stored: never change.
inline constexpr std::int16_t SyncFileInitialSyncRequest = -2; ///< asks for an initial sync
inline constexpr std::int16_t SyncFileInitialSync = 1;         ///< holds the initial sync data
inline constexpr std::int16_t SyncFileReady = 4;               ///< acknowledges an initial sync

/// The `Sequence` of a file that asks for a sync reset. Stored: never change.
inline constexpr std::int32_t SyncResetSequence = -1;

/// A sync file under construction. A default one is what InitSyncFileInfo makes.
struct SyncFileInfo {
    FieldBoolean IsMessage = FieldFalse;
    std::int16_t MessageCode = 0;
    std::int16_t SyncState = 0; ///< one of the descriptor's own values, 0 for none
    std::int32_t Sequence = 0;
    Date ResetDate = NoDate; ///< goes with a reset request
    FieldBoolean IsSyncReset = FieldFalse;
    std::uint8_t ReferenceCode = 0;
    std::vector<std::string> Files{""}; ///< paths of the data files; "nothing" is one empty element
};

/// A file found in the Sync folder. FindSyncFiles fills the first group and `To`, ReadSyncFile the rest of the
/// second from the file's descriptor, the protocol steps the marks. A list of these starts with one blank element
/// and is never empty.
struct FoundSyncFile {
    std::string FilePath;
    Date NameDate;
    Date FileDate;

    FieldBoolean IsMessage = FieldFalse;
    std::int16_t MessageCode = 0;
    std::string From; ///< as the sender's database gives it
    std::string To;   ///< through NormalizeUniqueID
    std::string FromCompanyVersion;
    std::string FromAppVersion;
    std::int16_t SyncState = 0;
    std::int32_t Sequence = 0;
    Date ResetDate;
    FieldBoolean IsSyncReset = FieldFalse;
    std::uint8_t ReferenceCode = 0;

    FieldBoolean Processed = FieldFalse; ///< needs no further look in this pass
    FieldBoolean Delete = FieldFalse;    ///< DeleteMarkedSyncFiles is to retire it
};

/// The entry's file name, as messages show it; empty when it cannot be had.
std::string GetSyncFileName(AgentContext& context, const FoundSyncFile& entry);

void InitSyncFileInfo(SyncFileInfo& info);

/// Appends a path to `Files`; an empty last element takes it.
void AddFileToSyncFileInfo(const std::string& path, SyncFileInfo& info);

/// Writes "id.dat" into the folder. The company must be open. Always true: no write's result is examined.
bool WriteIdFile(AgentContext& context, const std::string& folder, const SyncFileInfo& info);

/// Writes "sequence.dat", the names of the data files, into the folder. True also when there is nothing to list
/// and so no file is written; false when the file cannot be written.
bool WriteSequenceFile(AgentContext& context, const std::string& folder, const SyncFileInfo& info);

/// Takes the keys of an "id.dat" into the entry. A missing key gives its default; a value that does not convert
/// leaves its field as it was. Nothing is reported.
void ReadIdFile(AgentContext& context, const std::string& path, FoundSyncFile& entry);

} // namespace qndr
