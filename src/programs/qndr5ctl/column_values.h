#pragma once

#include "programs/qndr5ctl/control_context.h"
#include "suite/admin/row_editing.h"
#include "text/json.h"

#include <string>
#include <string_view>

namespace qndr::control {

using text::Json;

/// An audited table, without regard to letter case. Raises services::Failure when there is none of this name.
const suite::Table& TableNamed(const std::string& name);

/// "COLUMN=VALUE" in its two parts. Raises services::Failure without a "=".
struct Assignment {
    explicit Assignment(const std::string& text);

    std::string column;
    std::string value;
};

/// The typed value of a column that is exchanged. An empty text is the empty text in a column of text and NULL in
/// all others; bytes come from the file named behind "@". Raises services::Failure for an unknown column and for a
/// text that is no value of the column.
suite::ColumnValue ParseColumnValue(const ControlContext& context, const suite::Table& table,
                                    const Assignment& assignment);

/// A UniqueID as a new row carries it. Raises services::Failure for any text but a GUID.
std::string ParseUniqueID(std::string_view text);

/// The value for a person and for a machine, which differ for bytes alone: their number and their base64 text.
Json CellForPeople(const suite::ColumnValue& value);
Json CellForMachines(const suite::ColumnValue& value);

} // namespace qndr::control
