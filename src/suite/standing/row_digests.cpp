#include "suite/standing/row_digests.h"

#include "suite/schema/company_ddl.h"
#include "text/letter_case.h"
#include "text/sql_name.h"

#include <xxhash.h>

namespace qndr::suite {

namespace {

using standing::Digest;

void AppendLowerCase(std::string& out, std::string_view text) {
    for (const char c : text) {
        out += text::ToLowerCase(c);
    }
}

/// Walks the rows of one table. Numbers count by their text, as they travel.
class DigestedRows {
  public:
    DigestedRows(const sql::Connection& connection, const Table& table)
        : rows_(connection.Prepare("SELECT " + ExchangedColumnList(table) + " FROM " +
                                   text::QuotedName("vwExporting_" + std::string(table.name)))) {
        isReference_.push_back(true); // the row's own identity
        for (const Column& column : table.columns) {
            if (!column.local) {
                isReference_.push_back(column.type == ColumnType::Reference);
            }
        }
    }

    bool Next() { return rows_.Step(); }
    std::string_view UniqueID() const { return rows_.Text(0); }

    Digest RowDigest() {
        values_.clear();
        for (std::size_t column = 0; column < isReference_.size(); ++column) {
            AppendColumn(static_cast<int>(column));
        }
        const XXH128_hash_t hash = XXH3_128bits(values_.data(), values_.size());
        return {hash.high64, hash.low64};
    }

  private:
    /// Its kind, its length and the value: no two rows that differ have the same text.
    void AppendColumn(int column) {
        const sql::ValueType type = rows_.Type(column);
        if (type == sql::ValueType::Null) {
            values_ += 'n';
            return;
        }
        const bool isBytes = type == sql::ValueType::Bytes;
        const std::string_view value = isBytes ? rows_.Bytes(column) : rows_.Text(column);
        const auto size = static_cast<std::uint32_t>(value.size());
        values_ += isBytes ? 'b' : 't';
        for (int shift = 0; shift < 32; shift += 8) {
            values_ += static_cast<char>(size >> shift);
        }
        if (isReference_[static_cast<std::size_t>(column)]) {
            AppendLowerCase(values_, value);
        } else {
            values_ += value;
        }
    }

    sql::Statement rows_;
    std::vector<bool> isReference_;
    std::string values_;
};

} // namespace

std::size_t BucketOf(std::string_view uniqueID, std::size_t buckets) {
    const std::string lower = text::ToLowerCase(uniqueID);
    return XXH3_64bits(lower.data(), lower.size()) & (buckets - 1);
}

standing::TableDigests DigestTable(const sql::Connection& connection, const Table& table, std::size_t buckets) {
    standing::TableDigests digests{std::string(table.name), std::vector<standing::Bucket>(buckets)};
    ForEachRow(connection, table, [&](std::string_view uniqueID, const Digest& digest) {
        standing::Bucket& bucket = digests.buckets[BucketOf(uniqueID, buckets)];
        ++bucket.rows;
        bucket.sum += digest;
    });
    return digests;
}

std::vector<standing::TableDigests> DigestTables(const sql::Connection& connection) {
    std::vector<standing::TableDigests> tables;
    for (const Table& table : AuditedTables()) {
        if (IsWhollyExported(table)) {
            const std::int64_t rows =
                connection.Number("SELECT COUNT(*) FROM " + text::QuotedName(std::string(table.name)));
            tables.push_back(DigestTable(connection, table, standing::BucketsFor(rows)));
        }
    }
    return tables;
}

void ForEachRow(const sql::Connection& connection, const Table& table,
                const std::function<void(std::string_view uniqueID, const Digest&)>& tell) {
    DigestedRows rows(connection, table);
    while (rows.Next()) {
        const Digest digest = rows.RowDigest();
        tell(rows.UniqueID(), digest);
    }
}

} // namespace qndr::suite
