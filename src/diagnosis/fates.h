#pragma once

#include "diagnosis/company_facts.h"
#include "diagnosis/folder_files.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::diagnosis {

enum class Fate {
    Taken,   ///< with the data that it holds, if it can be read
    Deleted, ///< unread
    Waits,
    Late,   ///< its number is past; it lies there for ever
    Nobody, ///< nobody takes it
    Elsewhere
};

/// What becomes of a file, and why.
struct Judgement {
    Fate fate = Fate::Nobody;
    std::string text;
    /// The number that its receiver takes first, of a file that waits for its own. When the file right before it
    /// is taken, it can be taken in the same pass.
    std::optional<std::int64_t> waitsFor = {};

    /// Whether it goes out of the folder with its receiver's next pass.
    bool Goes() const { return fate == Fate::Taken || fate == Fate::Deleted; }
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

/// One word for machines, for which a file that goes is taken.
std::string_view FateWord(Fate fate);

} // namespace qndr::diagnosis
