#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qndr::control {

struct ArchiveEntry {
    std::string name;
    std::int64_t size = 0;
    std::int64_t packedSize = 0;
};

/// The records of one table in a data file; deletions of the table are counted on their own.
struct TableCount {
    std::string table;
    bool deletion = false;
    std::int64_t records = 0;
};

/// What a sync file holds.
struct ArchiveContents {
    std::vector<ArchiveEntry> entries;
    /// The keys and values of id.dat, in its order; nothing without an id.dat.
    std::optional<std::vector<std::pair<std::string, std::string>>> descriptor;
    /// The data of an order backup, whose one entry has a name of its own in every archive; empty in a sync file.
    std::string backupEntry;
    /// In the order of their first record; nothing when the archive holds neither a data.xml nor a backup's data.
    std::optional<std::vector<TableCount>> tables;
};

/// Reads the archive where it lies; memory does not grow with the data. Raises services::Failure when it is no ZIP
/// archive, is damaged, or its data is no well-formed exchange document.
ArchiveContents ReadArchiveContents(const std::string& path);

} // namespace qndr::control
