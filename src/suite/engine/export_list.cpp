#include "suite/engine/export_list.h"

#include <algorithm>

namespace qndr::suite {

void ExportList::Add(std::string_view table, std::string_view statement, bool deletion) {
    const services::ExportRequest request = services::RecognizeExport(table, statement, deletion);
    const bool hasID = request.kind != services::ExportRequest::Kind::Rows;
    const std::string_view shape = hasID ? statement.substr(0, request.idStarts) : statement;
    key_.assign(1, static_cast<char>('0' + static_cast<int>(request.kind)));
    key_.append(table).append(1, '\0').append(shape);
    const auto [place, added] = indexes_.try_emplace(key_, static_cast<std::uint32_t>(kinds_.size()));
    if (added) {
        kinds_.push_back({std::string(table), std::string(shape).append(hasID ? "?1" : ""), request.kind});
    }
    entries_.push_back({place->second, request.id});
}

bool ExportList::HoldsWholeTables() const {
    return std::any_of(kinds_.begin(), kinds_.end(), [](const Kind& kind) { return !kind.HasID(); });
}

} // namespace qndr::suite
