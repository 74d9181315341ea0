#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::standing {

/// 128 bits that stand for a row's values, or for those of several rows as the sum of theirs.
struct Digest {
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    /// Modulo 2^128, so that the order of rows counts for nothing.
    Digest& operator+=(const Digest& other);
    bool operator==(const Digest&) const = default;
};

/// Rows of a table that share the beginning of their identity's hash.
struct Bucket {
    std::int64_t rows = 0;
    Digest sum;

    bool operator==(const Bucket&) const = default;
};

/// The rows of one table. The number of buckets is a power of two.
struct TableDigests {
    std::string table;
    std::vector<Bucket> buckets;
};

/// A row that a side holds; the digest is zero for one that it does not hold.
struct RowDigest {
    std::string uniqueID;
    Digest digest;
    std::int64_t ownChange = 0; ///< the AuditLog.ID of its newest change at that side; 0 for none

    bool IsThere() const { return digest != Digest(); }
};

/// All rows of one bucket that a side holds; of a table of which full data carries only a part, where `buckets` is
/// 0, all rows of the table.
struct RowList {
    std::string table;
    std::size_t buckets = 0;
    std::size_t bucket = 0;
    std::vector<RowDigest> rows;
};

/// What a file of the Sync folder may hold of each.
inline constexpr std::size_t MostBuckets = 1U << 16;
inline constexpr std::size_t MostRows = 50'000;

std::string ToText(const std::vector<TableDigests>& tables);
/// Nothing for what is not such a text, or is beyond the bounds.
std::optional<std::vector<TableDigests>> ReadTableDigests(std::string_view text);

/// Rows whose identity cannot stand in a line are left out.
std::string ToText(const std::vector<RowList>& lists);
std::optional<std::vector<RowList>> ReadRowLists(std::string_view text);

/// How many buckets a table of so many rows has: about 256 rows in each.
std::size_t BucketsFor(std::int64_t rows);

} // namespace qndr::standing
