#include "diagnosis/company_facts.h"

#include "shared/records.h"

#include <algorithm>

namespace qndr::diagnosis {

std::string NameOf(const std::string& identity, const std::vector<CompanyFacts>& companies) {
    const std::string wanted = NormalizeUniqueID(identity);
    const auto isMeant = [&](const auto& party) {
        return !party.name.empty() && NormalizeUniqueID(party.uniqueID) == wanted;
    };
    const auto company = std::find_if(companies.begin(), companies.end(), isMeant);
    if (company != companies.end()) {
        return company->name;
    }
    for (const CompanyFacts& main : companies) {
        const auto row = std::find_if(main.workstations.begin(), main.workstations.end(), isMeant);
        if (row != main.workstations.end()) {
            return row->name;
        }
    }
    return identity;
}

} // namespace qndr::diagnosis
