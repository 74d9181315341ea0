#include "suite/objects/company_standing.h"

#include "services/failure.h"
#include "suite/files/path_text.h"
#include "suite/objects/company_library.h"
#include "suite/schema/company_events.h"
#include "suite/standing/standing_exchange.h"

namespace qndr::suite {

void CompanyStanding::Initialize(services::SharedCodeLibrary& library) {
    library_ = dynamic_cast<CompanyLibrary*>(&library.Implementation());
    if (library_ == nullptr) {
        throw services::Failure("standing cannot work with a library of another make");
    }
}

std::vector<std::string> CompanyStanding::Exchange(const services::StandingSettings& settings) {
    if (library_ == nullptr || trouble_.Stands() || settings.syncFolder.empty()) {
        return {};
    }
    StandingReport report =
        ExchangeStanding(library_->Connection(), {.clock = clock_,
                                                  .archives = archives_,
                                                  .syncFolder = WithSeparator(settings.syncFolder),
                                                  .computer = computer_.name,
                                                  .program = settings.program,
                                                  .frequency = settings.frequency,
                                                  .proofHours = settings.proofHours,
                                                  .mendMinutes = settings.mendMinutes});
    for (const std::string& event : report.events) {
        library_->RecordEvent(event, StandingEvent);
    }
    return std::move(report.lines);
}

} // namespace qndr::suite
