#pragma once

#include <cstdint>
#include <string>

namespace qndr::simulation {

/// The disk as SQLite finds it, with so much room and no more. From the first use on it stands between the library
/// and all files of this process.
class DatabaseDisk {
  public:
    static constexpr std::int64_t Endless = INT64_MAX;

    /// The databases in that folder, with their logs, may grow by so many bytes together. What has its place
    /// already can be written over.
    static void SetRoom(const std::string& folder, std::int64_t bytes);
    /// How often a write had no room there.
    static std::int64_t Refusals(const std::string& folder);
};

} // namespace qndr::simulation
