#include "shared/paths2.h"

#include <limits>

namespace qndr {

using services::DirectoryEntry;

std::int32_t Paths2::GetFolderSize(const std::string& folder, bool recurse) {
    std::int32_t sum = 0;
    AddFileSizes(ExpandNetworkDrive(folder), recurse, sum);
    return sum;
}

void Paths2::AddFileSizes(const std::string& path, bool recurse, std::int32_t& sum) {
    const std::string folder = ToWalk(path);
    VisitEntries(folder, "*.*", [&](const DirectoryEntry& entry) {
        if (entry.name.starts_with('.')) {
            return true;
        }
        if (!entry.IsDirectory()) {
            const std::int64_t total = std::int64_t{sum} + entry.sizeLow;
            if (total <= std::numeric_limits<std::int32_t>::max()) {
                sum = static_cast<std::int32_t>(total);
            }
        } else if (recurse) {
            AddFileSizes(folder + entry.name, recurse, sum);
        }
        return true;
    });
}

std::int32_t Paths2::GetFolderFileCount(const std::string& folder, bool recurse, const std::string& pattern) {
    std::int32_t count = 0;
    CountFiles(ExpandNetworkDrive(folder), recurse, pattern, std::nullopt, count);
    return count;
}

std::int32_t Paths2::GetFolderFileCountEx(const std::string& folder, bool recurse, const std::string& pattern,
                                          std::uint32_t attributes) {
    std::int32_t count = 0;
    CountFiles(ExpandNetworkDrive(folder), recurse, pattern, attributes, count);
    return count;
}

void Paths2::CountFiles(const std::string& path, bool recurse, const std::string& pattern,
                        std::optional<std::uint32_t> attributes, std::int32_t& count) {
    const std::string folder = ToWalk(path);
    VisitEntries(folder, pattern, [&](const DirectoryEntry& entry) {
        if (entry.name.starts_with('.')) {
            return true;
        }
        if (!entry.IsDirectory()) {
            if (!attributes || (entry.attributes & *attributes) != 0) {
                ++count;
            }
        } else if (recurse) {
            CountFiles(folder + entry.name, recurse, pattern, attributes, count);
        }
        return true;
    });
}

std::int32_t Paths2::GetFolderFolderCount(const std::string& folder, bool recurse) {
    std::int32_t count = 0;
    CountFolders(ExpandNetworkDrive(folder), recurse, count);
    return count;
}

void Paths2::CountFolders(const std::string& path, bool recurse, std::int32_t& count) {
    const std::string folder = ToWalk(path);
    VisitEntries(folder, "*.*", [&](const DirectoryEntry& entry) {
        if (entry.IsDirectory() && !entry.name.starts_with('.')) {
            ++count;
            if (recurse) {
                CountFolders(folder + entry.name, recurse, count);
            }
        }
        return true;
    });
}

} // namespace qndr
