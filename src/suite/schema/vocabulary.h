#pragma once

#include "services/company_numbers.h"

#include <cstdint>
#include <string>
#include <string_view>

/// What the numbers in a company's tables mean, beside those of services/company_numbers.h. They are stored: never
/// change one.
namespace qndr::suite {

/// Company.CompanyType. Every company that is no workstation is one that workstations report to.
inline constexpr int MainCompanyType = 1;
inline constexpr int RoamingCompanyType = 2;

/// ImportConflicts.State.
enum class ConflictState : std::int64_t { Open = 0, Restored = 1, Dismissed = 2 };

/// ImportConflicts.Reason.
enum class ConflictReason : std::int64_t {
    OtherVersion = 0, ///< it lost against a different version
    GivenUp = 1,      ///< a change that was not sent when a reset gave it up
    NotConfirmed = 2, ///< a change that was sent before a reset, and main did not tell that it took it
    Repaired = 3,     ///< it stood where a proof had found the two sides to differ; nobody has to decide
};

/// SyncState of an order or purchase order whose number was queued for main; 0 before.
inline constexpr std::int64_t NumberQueued = 1;

/// The SQL text with its words in braces replaced by the numbers above: "{Roaming}" is the type of a company,
/// "{Insertion}", "{Update}" and "{Deletion}" are those of audit rows, "{GivenUp}" and "{NotConfirmed}" reasons,
/// and
/// "{InitialSyncRequired}", "{InitialSyncRequested}", "{InitialSyncSent}", "{Ready}", "{ResetRequested}",
/// "{ResetPending}" states of a pairing. Any other stays as it stands.
std::string WithNumbers(std::string_view sql);

} // namespace qndr::suite
