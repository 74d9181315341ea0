#pragma once

#include "services/directory_calls.h"
#include "suite/computer/temporary_places.h"

#include <string>
#include <utility>

namespace qndr::suite {

/// The directory calls where one tree of folders holds everything: no drive letters, no shares, separator "/".
class PosixDirectoryCalls : public services::DirectoryCalls {
  public:
    explicit PosixDirectoryCalls(TemporaryPlaces temporaryPlaces) : temporaryPlaces_(std::move(temporaryPlaces)) {}

    char Separator() const override { return '/'; }
    std::size_t MaximumPathLength() const override;
    /// The names are those of the moment of this call, so entries may be deleted while the listing is read.
    std::unique_ptr<services::DirectoryListing> List(const std::string& folder,
                                                     const std::string& pattern) override;
    std::optional<services::DirectoryEntry> Find(const std::string& path) override;
    bool MakeDirectory(const std::string& path) override;
    bool RemoveEmptyDirectory(const std::string& path) override;
    /// Never a link or a folder of another user.
    std::string TemporaryPath() override { return temporaryPlaces_.Usable(); }
    /// Always an error: there are no drives.
    services::NetworkConnection FindNetworkConnection(const std::string& drive) override;
    bool MatchesPattern(const std::string& name, const std::string& pattern) override;
    /// The last name is kept whole, however narrow the label.
    std::string CompactPath(const services::DeviceContext& device, const std::string& path, int width) override;

  private:
    TemporaryPlaces temporaryPlaces_;
};

} // namespace qndr::suite
