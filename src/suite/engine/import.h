#pragma once

#include "suite/engine/origin_rules.h"
#include "suite/exchange/import_reader.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <string>

namespace qndr::suite {

struct ImportResult {
    std::int64_t records = 0;   ///< those of tables that are known here
    std::int64_t problems = 0;  ///< records that were put aside
    std::int64_t conflicts = 0; ///< versions that lost and were kept
    std::int64_t givenUp = 0;   ///< while a reset is pending: changes that it gave up and that main does not have
};

/// Takes a whole exchange file into a company database. Durable when it returns. With nothing changed it raises
/// FileRefused when something is wrong with the file, and any other std::exception when this computer could not
/// read or store it.
ImportResult Import(const sql::Connection& connection, const std::string& path,
                    ImportReader::UnknownTables unknownTables, Arrival arrival = Arrival::InTurn);

} // namespace qndr::suite
