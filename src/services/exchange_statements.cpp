#include "services/exchange_statements.h"

#include "services/failure.h"

#include <charconv>
#include <optional>

namespace qndr::services {
namespace {

constexpr std::string_view AllOf = "SELECT * FROM ";
constexpr std::string_view ViewPrefix = "vwExporting_";
constexpr std::string_view Where = " WHERE ";
constexpr std::string_view WhereID = " WHERE ID = ";
constexpr std::string_view DeletionOf =
    "SELECT AddedOn AS DeletedOn, AuditUniqueID AS UniqueID FROM AuditLog WHERE ID = ";
constexpr std::string_view NumberPlace = "{1}";

/// Takes the part off the front of the text, if it begins so.
bool Skip(std::string_view& text, std::string_view part) {
    const bool begins = text.starts_with(part);
    text.remove_prefix(begins ? part.size() : 0);
    return begins;
}

std::optional<std::int64_t> WholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && stop == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// What stands behind the table's view; nothing when the statement is about something else.
std::optional<std::string_view> BehindTheView(std::string_view table, std::string_view statement) {
    const bool isOfTable = Skip(statement, AllOf) && Skip(statement, ViewPrefix) && Skip(statement, table);
    return isOfTable ? std::optional(statement) : std::nullopt;
}

/// Whether it is the statement for a row of a table whose name holds the place of the number.
std::optional<std::int64_t> RowOfTemplateName(std::string_view table, std::string_view statement) {
    const std::size_t end = statement.rfind(WhereID);
    if (table.find(NumberPlace) == std::string_view::npos || end == std::string_view::npos) {
        return std::nullopt;
    }
    const auto id = WholeNumber(statement.substr(end + WhereID.size()));
    return id && ExportOfRow(table, *id) == statement ? id : std::nullopt;
}

} // namespace

std::string ExportView(std::string_view table) {
    return std::string(ViewPrefix).append(table);
}

std::string ExportOfTable(std::string_view table, std::string_view condition) {
    std::string statement = std::string(AllOf).append(ViewPrefix).append(table);
    return condition.empty() ? statement : statement.append(Where).append(condition);
}

std::string ExportOfRow(std::string_view table, std::int64_t id) {
    const std::string number = std::to_string(id);
    std::string statement = ExportOfTable(table);
    for (std::size_t at = 0; (at = statement.find(NumberPlace, at)) != std::string::npos; at += number.size()) {
        statement.replace(at, NumberPlace.size(), number);
    }
    return statement.append(WhereID).append(number);
}

std::string ExportOfDeletion(std::int64_t auditID) {
    return std::string(DeletionOf).append(std::to_string(auditID));
}

ExportRequest RecognizeExport(std::string_view table, std::string_view statement, bool deletion) {
    using Kind = ExportRequest::Kind;
    if (deletion) {
        std::string_view rest = statement;
        const auto id = Skip(rest, DeletionOf) ? WholeNumber(rest) : std::nullopt;
        if (id) {
            return {Kind::Deletion, *id, DeletionOf.size()};
        }
    } else if (auto rest = BehindTheView(table, statement)) {
        const std::size_t idStarts = statement.size() - rest->size() + WhereID.size();
        if (Skip(*rest, WhereID)) {
            if (const auto id = WholeNumber(*rest)) {
                return {Kind::Row, *id, idStarts};
            }
        } else if (rest->empty() || (Skip(*rest, Where) && !rest->empty() && !rest->starts_with("ID"))) {
            return {};
        }
    } else if (const auto id = RowOfTemplateName(table, statement)) {
        return {Kind::Row, *id, statement.rfind(WhereID) + WhereID.size()};
    }
    throw Failure("the export of '" + std::string(table) + "' is not understood: " + std::string(statement));
}

} // namespace qndr::services
