#include "suite/engine/export_list.h"

#include <algorithm>
#include <charconv>

namespace qndr::suite {

namespace {

/// How the statements of audited changes end; the ID of the row or of the audit row follows.
constexpr std::string_view SingleRowEnd = " WHERE ID = ";

/// How much of the statement stands before the number of the one row that it asks for; 0 when it asks otherwise.
std::size_t SingleRowLength(std::string_view statement, std::int64_t& id) {
    const std::size_t at = statement.rfind(SingleRowEnd);
    if (at == std::string_view::npos) {
        return 0;
    }
    const std::size_t length = at + SingleRowEnd.size();
    const char* const end = statement.data() + statement.size();
    const auto [stop, error] = std::from_chars(statement.data() + length, end, id);
    return error == std::errc() && stop == end ? length : 0;
}

} // namespace

void ExportList::Add(std::string_view table, std::string_view statement, bool deletion) {
    Entry entry;
    const std::size_t length = SingleRowLength(statement, entry.id);
    const bool singleRow = length > 0;
    entry.id = singleRow ? entry.id : 0;
    const std::string_view shape = singleRow ? statement.substr(0, length) : statement;
    key_.assign(1, static_cast<char>('0' + (deletion ? 1 : 0) + (singleRow ? 2 : 0)));
    key_.append(table).append(1, '\0').append(shape);
    const auto [place, added] = indexes_.try_emplace(key_, static_cast<std::uint32_t>(kinds_.size()));
    if (added) {
        kinds_.push_back(
            {std::string(table), std::string(shape).append(singleRow ? "?1" : ""), deletion, singleRow});
    }
    entry.kind = place->second;
    entries_.push_back(entry);
}

bool ExportList::HoldsWholeTables() const {
    return std::any_of(kinds_.begin(), kinds_.end(), [](const Kind& kind) { return !kind.singleRow; });
}

} // namespace qndr::suite
