#pragma once

#include "syncfiles/descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::control {

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

enum class FileKind {
    SyncFile,
    UnreadableSyncFile, ///< a sync file by its name; the fields of its descriptor are 0 and empty
    Heartbeat,
    Misnamed,       ///< a sync file by what is in it, under a name that no agent takes for one
    Mark,           ///< by which the agents know the Sync folder
    UnfinishedCopy, ///< on its way under a temporary name, or left there by a power cut
    Foreign         ///< nothing that an agent looks at
};

struct FolderFile {
    FileKind kind = FileKind::Foreign;
    /// `To` from the name; the rest from the descriptor, as the receiving steps read it. A heartbeat file has its
    /// sender, which stands in its name, in `From`.
    FoundSyncFile entry;
};

enum class Fate { Taken, Waits, Late, Nobody, Elsewhere };

/// What becomes of a file, and why.
struct Judgement {
    Fate fate = Fate::Nobody;
    std::string text;
};

/// Judges every file by the rules of the receiving steps and by what the companies hold at this moment, as if each
/// of them ran its next pass now. The files of one folder belong together: a request or an acknowledge among them
/// changes what becomes of the others. One judgement a file, in their order.
std::vector<Judgement> JudgeFiles(const std::vector<FolderFile>& files,
                                  const std::vector<CompanyFacts>& companies);

/// The company that a sync file is for when its name does not tell: the only one that would take it or waits for
/// what stands before it. Empty when there is none or there are several.
std::string AddresseeOf(const FolderFile& file, const std::vector<FolderFile>& files,
                        const std::vector<CompanyFacts>& companies);

/// What a file is, in words.
std::string KindInWords(const FolderFile& file);
/// One word for machines.
std::string_view FateWord(Fate fate);
/// The name of the company or workstation with this identity, or the identity itself.
std::string NameOf(const std::string& identity, const std::vector<CompanyFacts>& companies);

} // namespace qndr::control
