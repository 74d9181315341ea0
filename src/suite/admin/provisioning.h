#pragma once

#include "suite/sql/connection.h"

#include <cstdint>
#include <optional>
#include <string>

namespace qndr::suite {

// What the application around a company database does for the exchange. Each routine is one transaction a database
// and raises services::Failure, with nothing changed, when it is refused.

/// Makes a workstation known to its main company, with its UniqueID as it is written and its name, and lets it ask
/// for its initial sync. Without a reference code (1 to 255) the lowest free one is given; gives the code back.
/// Refused: companies of other types, a workstation that is known already or belongs to another main company, a
/// reference code in use, and a workstation that was never paired but holds audited changes, for they would all be
/// sent to main.
std::uint8_t AddWorkstation(const sql::Connection& main, const sql::Connection& roaming,
                            std::optional<int> referenceCode = std::nullopt);

/// Lets the workstation ask for an initial sync at its next pass. True when it has exchanged data with its main
/// company before: ResetCountersOf must then be run on main before the request arrives there, or both sides refuse
/// each other's changes afterwards, until a reset.
bool RequestInitialSync(const sql::Connection& roaming);

/// Readies a workstation's row on main for a new initial sync: both its sequence counters go to 0, as the
/// workstation's own do. A row in running order goes to SyncState 0 as well, where main sends it nothing until its
/// request comes: a change file with a new number would be taken after the initial sync and undo newer values.
/// Refused when main knows no such workstation.
void ResetCountersOf(const sql::Connection& main, const std::string& workstationUniqueID);

/// Lets the workstation ask main for a reset at its next pass. Refused unless it is in normal running or already
/// waits for a reset.
void RequestReset(const sql::Connection& roaming);

/// Takes a request back that has not left yet: the state and the counters are as RequestReset found them. Refused
/// when there is none, and when it was not made by RequestReset or the counters have moved since.
void CancelReset(const sql::Connection& roaming);

/// The profile that every other one falls back on.
inline constexpr const char* DefaultProfile = "Default";

/// The option of the profile, or else of the default profile. Section, key and profile have no letter case.
std::optional<std::string> GetCompanyOption(const sql::Connection& company, const std::string& section,
                                            const std::string& key, const std::string& profile = DefaultProfile);
/// Adds or replaces one option.
void SetCompanyOption(const sql::Connection& company, const std::string& section, const std::string& key,
                      const std::string& value, const std::string& profile = DefaultProfile);

} // namespace qndr::suite
