#include "suite/sql/connection.h"

namespace qndr::sql {

void Connection::Execute(std::string_view sql) const {
    Statement statement = Prepare(sql);
    while (statement.Step()) {
    }
}

std::optional<std::string> Connection::Value(std::string_view sql) const {
    Statement statement = Prepare(sql);
    if (!statement.Step() || statement.IsNull(0)) {
        return std::nullopt;
    }
    return std::string(statement.Text(0));
}

std::int64_t Connection::Number(std::string_view sql, std::int64_t fallback) const {
    Statement statement = Prepare(sql);
    return statement.Step() && !statement.IsNull(0) ? statement.Integer(0) : fallback;
}

} // namespace qndr::sql
