#pragma once

#include <cstdint>

/// What the numbers in a company's tables mean. They are stored: never change one.
namespace qndr::suite {

/// Company.CompanyType. Every company that is no workstation is one that workstations report to.
inline constexpr int MainCompanyType = 1;
inline constexpr int RoamingCompanyType = 2;

/// AuditLog.AuditType.
enum class AuditType : std::int64_t { Insertion = 1, Update = 2, Deletion = 3 };

/// ImportConflicts.State.
enum class ConflictState : std::int64_t { Open = 0, Restored = 1, Dismissed = 2 };

/// ImportConflicts.Reason.
enum class ConflictReason : std::int64_t {
    OtherVersion = 0, ///< it lost against a different version
    GivenUp = 1,      ///< a change that was not sent when a reset gave it up
    NotConfirmed = 2, ///< a change that was sent before a reset, and main did not tell that it took it
    Repaired = 3,     ///< it stood where a proof had found the two sides to differ; nobody has to decide
};

} // namespace qndr::suite
