#include "suite/exchange/import_bounds.h"

#include <algorithm>
#include <array>

namespace qndr::suite {
namespace {

/// All that have a meaning in an exchange file.
constexpr std::array<std::string_view, 12> KnownAttributes = {"Encoding", "Null",    "OriginID",  "Origin",
                                                              "Name",     "Deleted", "Version",   "From",
                                                              "Seen",     "FileID",  "CreatedOn", "Refused"};

} // namespace

bool StrangeNames::Admit(std::string_view name) {
    if (names_.contains(name)) {
        return true;
    }
    if (names_.size() >= bounds::MostStrangeNames || name.size() > bounds::LongestName) {
        return false;
    }
    names_.emplace(name);
    return true;
}

bool StrangeNames::AdmitAttributes(const char** attributes) {
    bool admitted = true;
    for (; admitted && *attributes != nullptr; attributes += 2) {
        const std::string_view name = *attributes;
        admitted = std::find(KnownAttributes.begin(), KnownAttributes.end(), name) != KnownAttributes.end() ||
                   Admit(name);
    }
    return admitted;
}

} // namespace qndr::suite
