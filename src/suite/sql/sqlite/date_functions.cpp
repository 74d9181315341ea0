#include "suite/sql/sqlite/date_functions.h"

#include "services/failure.h"
#include "suite/sql/sql_date.h"

#include <exception>
#include <string>
#include <string_view>

namespace qndr::sql {
namespace {

void ReturnDate(sqlite3_context* context, const Date& date) {
    const std::string text = FormatDatabaseDate(date);
    sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

std::string_view TextArgument(sqlite3_value* value) {
    const unsigned char* text = sqlite3_value_text(value);
    if (text == nullptr) {
        return {};
    }
    return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

// The two functions are called from C code, through which nothing may be thrown.

void CallGetUtcDate(sqlite3_context* context, int, sqlite3_value**) {
    try {
        ReturnDate(context, UtcNow(*static_cast<const services::Clock*>(sqlite3_user_data(context))));
    } catch (const std::exception& failure) {
        sqlite3_result_error(context, failure.what(), -1);
    } catch (...) {
        sqlite3_result_error(context, "the clock could not be read", -1);
    }
}

void CallDateAdd(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[1]) == SQLITE_NULL || sqlite3_value_type(arguments[2]) == SQLITE_NULL) {
        sqlite3_result_null(context);
        return;
    }
    try {
        ReturnDate(context, DateAdd(TextArgument(arguments[0]), sqlite3_value_int64(arguments[1]),
                                    TextArgument(arguments[2])));
    } catch (const std::exception& failure) {
        sqlite3_result_error(context, failure.what(), -1);
    }
}

} // namespace

void AddDateFunctions(sqlite3* connection, const services::Clock& clock) {
    // Deterministic also for GETUTCDATE: the moment stands still within one run of a statement, and a condition on
    // it is worked out once and not for each row.
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    auto* context = const_cast<void*>(static_cast<const void*>(&clock));
    if (sqlite3_create_function_v2(connection, "GETUTCDATE", 0, flags, context, &CallGetUtcDate, nullptr, nullptr,
                                   nullptr) != SQLITE_OK ||
        sqlite3_create_function_v2(connection, "DATEADD", 3, flags, nullptr, &CallDateAdd, nullptr, nullptr,
                                   nullptr) != SQLITE_OK) {
        throw services::Failure(sqlite3_errmsg(connection));
    }
}

} // namespace qndr::sql
