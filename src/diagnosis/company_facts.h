#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qndr::diagnosis {

/// A workstation as its row on main has it.
struct WorkstationFacts {
    std::string name;
    std::string uniqueID;
    std::int64_t syncState = 0;
    std::int64_t nextSequenceFromRoaming = 0;
    std::int64_t nextSequenceToRoaming = 0;
    std::string lastReceivedFrom = {}; ///< UTC, as it is stored; empty for NULL
    /// How many files to it it has told to have accepted; nothing when that is not known.
    std::optional<std::int64_t> confirmed = {};

    bool operator==(const WorkstationFacts&) const = default;
};

/// What a company goes by when it meets a sync file.
struct CompanyFacts {
    std::string name;
    std::string uniqueID;
    bool isMain = false;
    bool syncEnabled = true; ///< of a main company
    std::int64_t syncState = 0;
    std::string mainUniqueID;
    std::int64_t nextSequenceFromMain = 0;
    std::vector<WorkstationFacts> workstations; ///< of a main company
    std::int64_t nextSequenceToMain = 0;
    /// How many files to main it has told to have accepted; nothing when that is not known.
    std::optional<std::int64_t> confirmed = {};

    bool operator==(const CompanyFacts&) const = default;
};

/// The name of the company or workstation with this identity, or the identity itself.
std::string NameOf(const std::string& identity, const std::vector<CompanyFacts>& companies);

} // namespace qndr::diagnosis
