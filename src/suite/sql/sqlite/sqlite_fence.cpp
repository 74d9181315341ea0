#include "suite/sql/sqlite/sqlite_fence.h"

#include "services/failure.h"
#include "suite/sql/sql_text.h"
#include "text/letter_case.h"

#include <utility>

namespace qndr::sql {

namespace {

/// A company that takes itself for another one, or for the other kind, writes into files that are not its own.
bool IsIdentity(std::string_view table, std::string_view column) {
    return text::EqualsWithoutCase(table, "Company") &&
           (text::EqualsWithoutCase(column, "CompanyType") || text::EqualsWithoutCase(column, "UniqueID"));
}

} // namespace

SqliteFence::SqliteFence(const Connection& connection, sqlite3* handle)
    : connection_(connection), handle_(handle) {
    sqlite3_set_authorizer(handle_, &SqliteFence::Judge, this);
}

SqliteFence::~SqliteFence() {
    sqlite3_set_authorizer(handle_, nullptr, nullptr);
}

Statement SqliteFence::Prepare(std::string_view sql, std::set<std::string> names) {
    names_ = std::move(names);
    isPreparing_ = true;
    struct End {
        bool& isPreparing;
        ~End() { isPreparing = false; }
    } const end{isPreparing_};
    Statement prepared = connection_.Prepare(sql);
    // The database reports what stands in a WITH as it reports the body of a view of that name.
    if (BareWords(sql).contains("with")) {
        throw services::Failure("the statement is refused: it makes tables of its own");
    }
    return prepared;
}

int SqliteFence::Judge(void* fence, int action, const char* first, const char* second, const char* /*database*/,
                       const char* inside) {
    const auto* const self = static_cast<const SqliteFence*>(fence);
    if (!self->isPreparing_ || action == SQLITE_SELECT) {
        return SQLITE_OK;
    }
    const char* named = nullptr;
    switch (action) {
    case SQLITE_UPDATE:
        if (IsIdentity(first, second)) {
            return SQLITE_DENY;
        }
        named = first;
        break;
    case SQLITE_READ:
    case SQLITE_INSERT:
    case SQLITE_DELETE:
        named = first;
        break;
    case SQLITE_FUNCTION:
        named = second;
        break;
    case SQLITE_RECURSIVE:
        break;
    default:
        return SQLITE_DENY;
    }
    // What a view or trigger does is the schema's own.
    const bool isAllowed =
        inside != nullptr || (named != nullptr && self->names_.contains(text::ToLowerCase(named)));
    return isAllowed ? SQLITE_OK : SQLITE_DENY;
}

} // namespace qndr::sql
