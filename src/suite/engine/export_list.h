#pragma once

#include "services/exchange_statements.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qndr::suite {

/// The entries of an export in the order in which they were added. A range of audited changes has a million that
/// differ in nothing but the ID of their row: what they have in common is kept once, and an entry takes 16 bytes.
class ExportList {
  public:
    struct Kind {
        std::string table;
        std::string statement; ///< with ?1 in the place of the ID, unless it asks for many rows
        services::ExportRequest::Kind asksFor = services::ExportRequest::Kind::Rows;

        bool IsDeletion() const { return asksFor == services::ExportRequest::Kind::Deletion; }
        bool HasID() const { return asksFor != services::ExportRequest::Kind::Rows; }
    };
    struct Entry {
        std::uint32_t kind = 0; ///< index in Kinds
        std::int64_t id = 0;    ///< for ?1; 0 otherwise
    };

    /// Raises services::Failure for a statement that RecognizeExport does not understand.
    void Add(std::string_view table, std::string_view statement, bool deletion);

    /// Whether some entry asks for more than one row, as those of full data do.
    bool HoldsWholeTables() const;

    const std::vector<Kind>& Kinds() const { return kinds_; }
    const std::deque<Entry>& Entries() const { return entries_; }

  private:
    std::vector<Kind> kinds_;
    std::unordered_map<std::string, std::uint32_t> indexes_;
    std::deque<Entry> entries_;
    std::string key_; ///< used again and again, so that adding an entry allocates nothing
};

} // namespace qndr::suite
