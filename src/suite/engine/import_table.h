#pragma once

#include "suite/exchange/import_batch.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qndr::suite {

/// Writes the records of one table into the company database. Rows are found by their UniqueID, without regard to
/// letter case; a row that holds the record's values already is not written.
class ImportTable {
  public:
    ImportTable(const sql::Connection& connection, const Table& table);

    /// Whether this database has the table.
    bool Exists() const { return exists_; }

    struct Outcome {
        bool changed = false;
        std::string refusal; ///< why the database does not want this record; empty when it took it
    };

    /// Inserts, updates or deletes. Raises services::Failure when the database as a whole does not work.
    Outcome Apply(const ImportBatch& batch, const ImportRecord& record);

    /// The row as it stands, all but the local columns, as JSON; nothing when there is none.
    std::optional<std::string> RowJson(std::string_view uniqueID);

  private:
    sql::Statement& UpsertFor(std::uint64_t columns);
    std::string UpsertSql(std::uint64_t columns) const;
    sql::Statement& DeleteStatement();
    void BindValue(sql::Statement& statement, const ImportBatch& batch, const ImportRecord& record,
                   const ImportValue& value) const;
    Outcome Run(sql::Statement& statement) const;

    const sql::Connection& connection_;
    const Table& table_;
    bool exists_ = false;
    std::uint64_t known_ = 0; ///< the columns that this database has
    std::vector<std::pair<std::uint64_t, sql::Statement>> upserts_;
    std::size_t lastUpsert_ = 0;
    std::optional<sql::Statement> delete_;
    std::optional<sql::Statement> row_;
};

} // namespace qndr::suite
