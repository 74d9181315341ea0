#pragma once

#include "diagnosis/company_facts.h"
#include "diagnosis/folder_files.h"
#include "services/date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qndr::diagnosis {

/// What happened to a file that was made in the Sync folder as the agent makes its files there, and taken out
/// again.
struct Probe {
    bool isWritten = false;
    bool isRenamed = false;
    bool isRemoved = false;
    std::string file;            ///< its name at the end; empty when none could be made
    std::int64_t clockAhead = 0; ///< seconds that this computer's clock is ahead of the folder's
    bool isSticky = false;       ///< files of other users cannot be deleted there

    bool IsWell() const { return isWritten && isRenamed && isRemoved && !isSticky; }
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
    std::string syncComputerName;
    std::int64_t openConflicts = 0;
    std::int64_t putAside = 0;             ///< records of the last `days` days
    std::vector<RefusedFile> refusedHere;  ///< those of its partners, by partner and number
    std::vector<RefusedFile> refusedThere; ///< its own, as far as their receivers told
    std::string damage;                    ///< what the database's own check found; empty when it is sound
    std::string cannotStore; ///< why its agent could not store something lately; empty when it has since, or could
    std::string anotherAgent; ///< what an agent recorded of late that found another one at work; empty otherwise
    std::string database;     ///< path of the database file
    std::int64_t newestChange = 0; ///< the highest number in its audit log
    std::string changedOn;         ///< when that was, UTC, as it is stored
    std::string sentOn;            ///< of a workstation: when the newest change was made that was sent
    Date fileDate;                 ///< of the .psd file
    std::int64_t atStake = 0;      ///< of a workstation: changes that a reset gives up, and keeps
};

/// A company file behind which there is no company that can be asked.
struct UnopenedCompany {
    enum class Because { NotOpened, Damaged, Older };

    std::string file;
    std::string reason;
    Because because = Because::NotOpened; ///< a damaged one opens, but cannot be read
};

/// A place with little room.
struct FullPlace {
    std::string what; ///< what lies there, in words
    std::string folder;
    std::int64_t free = 0; ///< bytes
};

/// What this computer's settings say.
struct ObservedSettings {
    bool stopSync = false;
    bool debugLog = false;
    bool heartbeatNoResponse = false;
    bool roleIsSet = false;
    std::optional<Date> lastSync; ///< local time, as below
    std::optional<Date> nextSync;
    std::int64_t frequency = 0; ///< minutes
    std::vector<std::string> bad;
};

/// All that a diagnosis goes by, as it stood at one moment.
struct Observations {
    std::string computerName;
    bool isRoaming = false; ///< what the agent of this computer takes it for
    Date nowUtc;
    Date now;              ///< local time
    std::int64_t days = 0; ///< silence and waiting longer than this count as trouble

    std::string temporaryFolder;  ///< the usual one
    std::string temporaryFailure; ///< why it cannot be used; empty when it can
    std::string temporaryInstead; ///< what is used in its place; empty when nothing is

    ObservedSettings settings;

    std::vector<std::string> companiesFolders; ///< none when this computer has no such location
    std::vector<std::string> missingFolders;   ///< those of them that do not exist
    std::vector<ObservedCompany> companies;
    std::vector<UnopenedCompany> unopened;

    std::string syncFolder; ///< empty when this computer has no such location
    bool syncFolderExists = false;
    std::string syncFolderFailure; ///< why it cannot be read; empty otherwise
    bool isOwnSyncFolder = false;  ///< it is this computer's Sync location
    std::string syncIdentity;      ///< what its mark must say; empty when none was remembered
    std::string syncMark;          ///< what its mark says; empty without one
    std::vector<ListedFile> files;
    /// Sync files of the companies at hand that lie in folders which were this computer's Sync folder before.
    std::vector<ListedFile> formerFiles;
    std::optional<Probe> probe;
    std::vector<FullPlace> fullPlaces;
    std::string nestedFolder; ///< a Companies folder that lies in the Sync folder or holds it; empty otherwise

    /// Then no archive can be read, which says nothing of the Sync folder.
    bool LacksTemporaryFolder() const { return !temporaryFailure.empty() && temporaryInstead.empty(); }
    /// Only then is a file that is not among them a file that is not there.
    bool KnowsFiles() const { return IsRightFolder() && syncFolderExists && syncFolderFailure.empty(); }
    /// False for an empty place where a share should be.
    bool IsRightFolder() const { return syncIdentity.empty() || syncMark == syncIdentity; }
};

} // namespace qndr::diagnosis
