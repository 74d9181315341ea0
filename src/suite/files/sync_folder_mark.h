#pragma once

#include <string>
#include <string_view>

namespace qndr::suite {

// A share that is not mounted leaves an empty folder under the same path, and what is written there reaches
// nobody. So a small file marks the Sync folder, and each computer remembers the identity that stood in it at
// set-up.

/// The mark's name in the Sync folder; no pattern that an agent looks for matches it. Stored: never change.
inline constexpr std::string_view SyncFolderMark = "sync-folder.qndr5";
/// The setting beside the location "UFL:Sync": the identity of the folder. Stored: never change.
inline constexpr const char* SyncFolderIdentity = "UFL:Sync Identity";

/// The identity in the folder's mark; empty without a mark that can be read.
std::string ReadSyncFolderMark(const std::string& folder);

/// The identity in the folder's mark, which is made where there is none. Raises services::Failure when it cannot
/// be written.
std::string MakeSyncFolderMark(const std::string& folder);

/// Whether the folder is the one that was set up. One without a remembered identity is taken on trust.
bool IsMarkedAs(const std::string& folder, const std::string& identity);

} // namespace qndr::suite
