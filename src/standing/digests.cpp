#include "standing/digests.h"

#include "text/letter_case.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace qndr::standing {

namespace {

constexpr std::int64_t RowsInBucket = 256;
constexpr std::size_t LongestName = 128;
constexpr std::size_t MostTables = 256;

std::string_view TakeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return line;
}

std::string_view TakeWord(std::string_view& line) {
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(line.size(), word.size() + 1));
    return word;
}

template <typename Number> bool Read(std::string_view text, Number& number, int base = 10) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && stop == end;
}

bool Read(std::string_view text, Digest& digest) {
    return text.size() == 32 && Read(text.substr(0, 16), digest.high, 16) && Read(text.substr(16), digest.low, 16);
}

std::string Hex(const Digest& digest) {
    char text[33];
    std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(digest.high),
                  static_cast<unsigned long long>(digest.low));
    return text;
}

bool FitsInLine(std::string_view name) {
    return !name.empty() && name.size() <= LongestName &&
           std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) >= ' '; });
}

/// "<index> <rows> <sum>"
bool ReadBucket(std::string_view line, std::vector<Bucket>& buckets) {
    std::size_t index = 0;
    if (!Read(TakeWord(line), index) || index >= buckets.size()) {
        return false;
    }
    Bucket& bucket = buckets[index];
    return Read(TakeWord(line), bucket.rows) && bucket.rows > 0 && Read(line, bucket.sum);
}

} // namespace

Digest& Digest::operator+=(const Digest& other) {
    low += other.low;
    high += other.high + (low < other.low ? 1 : 0);
    return *this;
}

std::string ToText(const std::vector<TableDigests>& tables) {
    std::string text;
    for (const TableDigests& table : tables) {
        text += "T " + table.table + " " + std::to_string(table.buckets.size()) + "\n";
        for (std::size_t index = 0; index < table.buckets.size(); ++index) {
            const Bucket& bucket = table.buckets[index];
            if (bucket.rows > 0) {
                text += std::to_string(index) + " " + std::to_string(bucket.rows) + " " + Hex(bucket.sum) + "\n";
            }
        }
    }
    return text;
}

std::optional<std::vector<TableDigests>> ReadTableDigests(std::string_view text) {
    std::vector<TableDigests> tables;
    std::size_t left = MostBuckets;
    while (!text.empty()) {
        std::string_view line = TakeLine(text);
        if (!line.starts_with("T ")) {
            if (tables.empty() || !ReadBucket(line, tables.back().buckets)) {
                return std::nullopt;
            }
            continue;
        }
        TakeWord(line);
        TableDigests table;
        table.table = TakeWord(line);
        std::size_t buckets = 0;
        if (!FitsInLine(table.table) || !Read(line, buckets) || buckets == 0 || buckets > left ||
            (buckets & (buckets - 1)) != 0) {
            return std::nullopt;
        }
        // A reader walks through all rows of each table that is named.
        const bool isNamedTwice = std::any_of(tables.begin(), tables.end(), [&](const TableDigests& other) {
            return text::EqualsWithoutCase(other.table, table.table);
        });
        if (isNamedTwice || tables.size() == MostTables) {
            return std::nullopt;
        }
        left -= buckets;
        table.buckets.resize(buckets);
        tables.push_back(std::move(table));
    }
    return tables;
}

std::string ToText(const std::vector<RowList>& lists) {
    std::string text;
    for (const RowList& list : lists) {
        text += "T " + list.table + " " + std::to_string(list.buckets) + " " + std::to_string(list.bucket) + "\n";
        for (const RowDigest& row : list.rows) {
            if (FitsInLine(row.uniqueID)) {
                text += "R " + Hex(row.digest) + " " + std::to_string(row.ownChange) + " " + row.uniqueID + "\n";
            }
        }
    }
    return text;
}

std::optional<std::vector<RowList>> ReadRowLists(std::string_view text) {
    std::vector<RowList> lists;
    std::size_t rows = 0;
    while (!text.empty()) {
        std::string_view line = TakeLine(text);
        const std::string_view kind = TakeWord(line);
        if (kind == "R" && !lists.empty() && ++rows <= MostRows) {
            RowDigest row;
            if (!Read(TakeWord(line), row.digest) || !Read(TakeWord(line), row.ownChange) || !FitsInLine(line)) {
                return std::nullopt;
            }
            row.uniqueID = line;
            lists.back().rows.push_back(std::move(row));
            continue;
        }
        RowList list;
        list.table = TakeWord(line);
        if (kind != "T" || !FitsInLine(list.table) || lists.size() == MostBuckets ||
            !Read(TakeWord(line), list.buckets) || list.buckets > MostBuckets || !Read(line, list.bucket)) {
            return std::nullopt;
        }
        lists.push_back(std::move(list));
    }
    return lists;
}

std::size_t BucketsFor(std::int64_t rows) {
    std::size_t buckets = 1;
    while (buckets < MostBuckets / 64 && static_cast<std::int64_t>(buckets) * RowsInBucket < rows) {
        buckets *= 2;
    }
    return buckets;
}

} // namespace qndr::standing
