#pragma once

#include "suite/exchange/import_batch.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qndr::suite {

/// Keeps, inside the import's transaction, what an import could not take or had to overwrite, so that a person can
/// get at it. What stands there already is not entered again, for a file may be imported twice; but a conflict
/// that a person has settled is no reason to hide one like it.
class ImportLedger {
  public:
    explicit ImportLedger(const sql::Connection& connection);

    /// A record that was put aside. Those of one file beyond the bounds are counted only, for a file of broken
    /// records must not fill the disk; NoteUnkept tells of them in one entry.
    void AddProblem(const ImportBatch& batch, const ImportRecord& record, const std::string& reason);

    void NoteUnkept();

    struct Conflict {
        std::string_view table;
        std::string_view uniqueID;
        std::string losingOrigin;
        std::string winningOrigin;
        std::optional<std::string> losingValues; ///< nothing when the losing version is a deletion
        bool isRepair = false;                   ///< kept, and no person is asked
    };
    /// Raises FileRefused beyond the bounds: what would not be kept must not be overwritten.
    void AddConflict(const Conflict& conflict);

    std::int64_t Problems() const { return problems_; }
    std::int64_t Conflicts() const { return conflicts_; }

  private:
    void EnterProblem(std::string_view table, std::string_view uniqueID, const std::string& reason,
                      const std::string& recordXml);

    sql::Statement problem_;
    sql::Statement conflict_;
    std::int64_t problems_ = 0;
    std::int64_t conflicts_ = 0;
    std::int64_t kept_ = 0; ///< those and the versions that repairs replaced
    std::int64_t unkept_ = 0;
    std::size_t problemBytes_ = 0;
    std::size_t conflictBytes_ = 0;
    std::string_view lastTable_;
};

} // namespace qndr::suite
