#include "programs/qndr5ctl/opened_company.h"

#include "programs/qndr5ctl/sync_words.h"
#include "services/company_numbers.h"
#include "services/failure.h"

namespace qndr::control {

using services::Failure;

std::string OpenedCompany::Text(const std::string& column) const {
    return Database().Value("SELECT " + column + " FROM Company").value_or("");
}

std::int64_t OpenedCompany::Number(const std::string& column) const {
    return Database().Number("SELECT " + column + " FROM Company");
}

void OpenedCompany::DemandMain() const {
    if (!IsMain()) {
        throw Failure("'" + File() + "' is no main company");
    }
}

void OpenedCompany::DemandRoaming() const {
    if (!IsRoaming()) {
        throw Failure("'" + File() + "' is no Roaming Workstation company");
    }
}

void OpenedCompany::DemandThatChangesTravel() const {
    const std::int64_t state = Number("SyncState");
    if (IsRoaming() && state != SyncStateReady) {
        throw Failure("this workstation's state is " + NumberInWords(state, WordsForCompanyState(state)) +
                      ": a change can be made here when it is ready, or on main");
    }
}

Json StoredDate(const std::string& stored) {
    const auto date = ParseDate(stored);
    return date ? Json(text::UtcMoment{FormatGeneralDate(*date)}) : stored.empty() ? Json() : Json(stored);
}

} // namespace qndr::control
