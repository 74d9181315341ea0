#pragma once

#include "diagnosis/sections.h"
#include "diagnosis/traffic.h"

#include <cstdint>
#include <optional>
#include <string>

namespace qndr::diagnosis {

/// One pair as it is looked at, with all that is seen of it.
class PairLook {
  public:
    /// All must outlive the object.
    PairLook(const Observations& observations, const Pair& looked, Findings& findings)
        : seen(observations), pair(looked), traffic(observations, looked), findings_(findings) {}

    std::optional<std::int64_t> LaptopState() const {
        return pair.laptop != nullptr ? std::optional(pair.laptop->facts.syncState) : std::nullopt;
    }
    std::optional<std::int64_t> RowState() const {
        return pair.row != nullptr ? std::optional(pair.row->syncState) : std::nullopt;
    }
    std::string MainName() const { return pair.main != nullptr ? pair.main->facts.name : "main"; }

    /// A trouble of the kinds whose places are the two companies and the Sync folder.
    void Tell(const TroubleKind& kind, const std::string& text) {
        findings_.Add(kind, pair.name, text, pair.laptop != nullptr ? pair.laptop->file : "ROAMING.psd",
                      pair.main != nullptr ? pair.main->file : "MAIN.psd", seen.syncFolder);
    }
    void TellOfFile(const TroubleKind& kind, const std::string& text, const std::string& path) {
        findings_.Add(kind, pair.name, text, path);
    }

    const Observations& seen;
    const Pair& pair;
    const Traffic traffic;

  private:
    Findings& findings_;
};

/// The numbers of the two ends and the files between them, in normal running.
void DiagnoseSequences(PairLook& look);
/// What a workstation alone can tell: main answers what it takes in the same pass.
void DiagnoseConfirmations(PairLook& look);

} // namespace qndr::diagnosis
