#pragma once

#include "diagnosis/pair.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qndr::diagnosis {

/// What the Sync folder holds between a workstation and its main company.
class Traffic {
  public:
    /// The observations must outlive the object.
    Traffic(const Observations& seen, const Pair& pair);

    bool HasInitialRequest() const;
    bool HasInitialData() const;
    bool HasAcknowledge() const;
    bool HasResetRequest() const;
    bool HasResetData() const;
    /// Whether something lies there that may be of the two and cannot be read, or lies under a wrong name or in a
    /// wrong folder. Nothing can then be said to be missing; it is told by itself.
    bool HasUncertain() const;
    /// Change files, by sequence.
    std::multimap<std::int64_t, FoundSyncFile> SequencesToMain() const;
    std::multimap<std::int64_t, FoundSyncFile> SequencesToLaptop() const;

  private:
    using Test = std::function<bool(const FoundSyncFile&)>;

    bool IsForLaptop(const FoundSyncFile& file) const;
    bool IsForMain(const FoundSyncFile& file) const;
    bool IsToMain(const FoundSyncFile& file) const;
    bool Any(const Test& test) const;
    std::multimap<std::int64_t, FoundSyncFile> Sequences(const Test& test) const;

    const std::vector<ListedFile>& files_;
    const std::vector<ListedFile>& former_;
    std::string laptop_;
    std::string main_;
};

} // namespace qndr::diagnosis
