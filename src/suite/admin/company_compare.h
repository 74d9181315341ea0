#pragma once

#include "suite/sql/connection.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace qndr::suite {

enum class Scope {
    Exchanged, ///< the tables of a full export, and of each the rows that a full export carries now
    All,       ///< every audited table, whole
    /// Every audited table, but of a main company and a workstation: rows that main alone has and that full data
    /// does not carry are left out, for nothing tells whether the workstation should have them.
    Held,
};

struct TableComparison {
    std::string table;
    std::int64_t same = 0;
    std::int64_t differing = 0; ///< on both sides, with at least one other value
    std::int64_t onlyLeft = 0;
    std::int64_t onlyRight = 0;
    std::int64_t leftOut = 0; ///< of Scope::Held, counted nowhere else

    bool Alike() const { return differing == 0 && onlyLeft == 0 && onlyRight == 0; }
};

/// A row that is not alike on both sides.
struct RowDifference {
    std::string table;
    std::string uniqueID;
    enum class Kind { Differing, OnlyLeft, OnlyRight, LeftOut } kind = Kind::Differing;
    std::vector<std::string> columns; ///< of Differing: those that differ
};
using DifferenceSink = std::function<void(const RowDifference&)>;

/// Compares two company databases table by table over the columns that travel. Rows belong together by UniqueID
/// without regard to case; the local ID counts for nothing. The time limit of Scope::Exchanged is taken once, from
/// the left connection's clock. Reads each database in one transaction of its own, so neither connection may have
/// one open. Each row that is not alike goes to `tell`, if there is one. Raises services::Failure when a database
/// cannot be read.
std::vector<TableComparison> CompareCompanies(const sql::Connection& left, const sql::Connection& right,
                                              Scope scope, const DifferenceSink& tell = {});

} // namespace qndr::suite
