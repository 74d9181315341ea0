#pragma once

#include "suite/sql/connection.h"

#include <string>
#include <string_view>
#include <vector>

namespace qndr::suite {

/// The row that the statement stands on, as a JSON object from column to text or null. Bytes, and text that JSON
/// does not carry whole (no UTF-8, or a null character in it), are {"base64": text}. Stored in databases: never
/// change.
std::string RowAsJson(const sql::Statement& row);

struct RowJsonValue {
    enum class Form { Null, Text, Base64 };

    std::string column;
    Form form = Form::Null;
    std::string content; ///< decoded
};

/// Reads what RowAsJson wrote, with the parser of the database. Raises services::Failure for any other text.
std::vector<RowJsonValue> ReadRowJson(const sql::Connection& connection, std::string_view json);

} // namespace qndr::suite
