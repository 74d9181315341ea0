#pragma once

#include "services/registry_tools.h"

/// The settings and signals that lie in the current user's registry. Other programs read and write some of them by
/// these names: never change one. Each is read afresh at each use.
namespace qndr::settings {

inline constexpr const char* RootKey = R"(Software\Velmoran\Ordergrove Suite\5.0)";
/// Locations of the default profile.
inline constexpr const char* DefaultProfileKey = R"(Software\Velmoran\Ordergrove Suite\5.0\Settings (Default))";
/// What a /DVLP run works on: texts MainProfile, MainCompany, RoamingProfile, RoamingCompany.
inline constexpr const char* DeveloperKey = R"(Software\Velmoran\Ordergrove Suite\5.0\Settings (Developer))";

inline constexpr const char* SyncFrequency = "SyncFrequency"; ///< number, minutes between passes, default 5
inline constexpr const char* NextSync = "NextSync";           ///< date, when the next pass is due
inline constexpr const char* LastSync = "LastSync";           ///< date, when the last pass ended
inline constexpr const char* StopSync = "StopSync";           ///< number, non-zero asks the agent to exit
/// Number. The window's attempt to store it fails by its nature, so it is never there; nothing reads it.
inline constexpr const char* SyncSettingsUpdated = "SyncSettingsUpdated";
inline constexpr const char* SyncHeartbeat = "SyncHeartbeat";     ///< number, 0 pending, 1 OK, 2 no response
inline constexpr const char* EnableHeartbeat = "EnableHeartbeat"; ///< number, default 1
inline constexpr const char* KeepSyncFiles = "KeepSyncFiles";     ///< number, default 0
inline constexpr const char* ManageDeleting = "ManageDeleting";   ///< number, default 1
inline constexpr const char* BackupOrderData = "BackupOrderData"; ///< number, default 1
inline constexpr const char* DebugSyncAgent = "DebugSyncAgent";   ///< number, exactly 1 turns the log on
inline constexpr const char* DebugSyncAgentStartDate = "DebugSyncAgentStartDate"; ///< date, when it was turned on
inline constexpr const char* ProofHours =
    "ProofHours"; ///< number, hours between two proofs, 0 for none, default 24
inline constexpr const char* MendMinutes =
    "MendMinutes"; ///< number, minutes until mending, 0 for never, default 60
inline constexpr const char* CompaniesLocation = "UFL:Companies"; ///< text, below DefaultProfileKey

} // namespace qndr::settings
