#pragma once

#include "programs/qndr5ctl/sync_folder_files.h"
#include "programs/qndr5ctl/troubles.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qndr::control {

/// One trouble and what to do about it, for people; the code is for machines.
struct Finding {
    std::string code;
    Severity severity = Severity::Error;
    std::string subject; ///< the company, workstation, file, folder or setting that it is about
    std::string text;
    std::string remedy;
};

/// A file that counts as taken although its data could not be imported.
struct RefusedFile {
    std::string partner;       ///< UniqueID of the other company
    std::int64_t sequence = 0; ///< -1 for the full data that the numbering began with
    std::string on;            ///< when it was refused, or told here that it was; UTC as it is stored
    std::string held = {};     ///< "Customers 2, Orders 1"; its sender alone knows
};

/// A company at hand.
struct ObservedCompany {
    std::string file;
    bool isHere = false; ///< it lies where the agent of this computer finds it
    CompanyFacts facts;
    bool enableSync = false;
    std::string syncComputerName;
    std::int64_t openConflicts = 0;
    std::int64_t putAside = 0;             ///< records of the last `days` days
    std::vector<RefusedFile> refusedHere;  ///< those of its partners, by partner and number
    std::vector<RefusedFile> refusedThere; ///< its own, as far as their receivers told
    std::string damage;                    ///< what the database's own check found; empty when it is sound
    std::string cannotStore; ///< why its agent could not store something lately; empty when it has since, or could
};

/// A company file behind which there is no company that can be asked.
struct UnopenedCompany {
    std::string file;
    std::string reason;
    bool isDamaged = false; ///< it opens, but cannot be read
};

/// What happened to a file that was made in the Sync folder and taken out again.
struct Probe {
    bool isWritten = false;
    bool isRemoved = false;
    std::string file;
    std::int64_t clockAhead = 0; ///< seconds that this computer's clock is ahead of the folder's
};

/// All that a diagnosis goes by, as it stood at one moment.
struct Observations {
    std::string computerName;
    bool isRoaming = false; ///< what the agent of this computer takes it for
    Date nowUtc;
    std::int64_t days = 0; ///< silence and waiting longer than this count as trouble

    bool stopSync = false;
    bool debugLog = false;
    bool heartbeatNoResponse = false;
    std::vector<std::string> badSettings;

    std::vector<std::string> companiesFolders; ///< none when this computer has no such location
    std::vector<std::string> missingFolders;   ///< those of them that do not exist
    std::vector<ObservedCompany> companies;
    std::vector<UnopenedCompany> unopened;

    std::string syncFolder; ///< empty when this computer has no such location
    bool syncFolderExists = false;
    std::string syncFolderFailure; ///< why it cannot be read; empty otherwise
    std::vector<ListedFile> files;
    std::optional<Probe> probe;

    /// Only then is a file that is not among them a file that is not there.
    bool KnowsFiles() const { return syncFolderExists && syncFolderFailure.empty(); }
};

/// Every trouble that the observations prove, errors first. Where an exchange is merely in the middle, with files
/// on their way, nothing is named.
std::vector<Finding> Diagnose(const Observations& observations);

} // namespace qndr::control
