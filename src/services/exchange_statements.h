#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qndr::services {

// The statements of the engine's export list. Whoever adds an entry builds its statement here, and the engine
// recognizes it here: what it does with the rows hangs on what the entry asks for.

/// The view that shows a table as it travels.
std::string ExportView(std::string_view table);

/// All rows of the table, or those that the condition keeps. A condition on the ID alone is none of this: see
/// ExportOfRow.
std::string ExportOfTable(std::string_view table, std::string_view condition = {});

/// The row with this ID as it stands when the export runs. The name may come from an audit row: "{1}" within it
/// becomes the number, as in any template.
std::string ExportOfRow(std::string_view table, std::int64_t id);

/// What is left of a deleted row: when it was deleted and which it was, of the audit row with this ID.
std::string ExportOfDeletion(std::int64_t auditID);

/// What an entry of the export list asks for.
struct ExportRequest {
    enum class Kind { Rows, Row, Deletion };

    Kind kind = Kind::Rows;
    std::int64_t id = 0;      ///< of the row or the audit row
    std::size_t idStarts = 0; ///< where it stands in the statement, up to its end
};

/// Tells what an entry asks for. Raises Failure for a statement that none of the above builds for such an entry.
ExportRequest RecognizeExport(std::string_view table, std::string_view statement, bool deletion);

} // namespace qndr::services
