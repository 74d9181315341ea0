#pragma once

#include "services/platform.h"
#include "services/standing.h"
#include "suite/computer/computer.h"
#include "suite/computer/computer_trouble.h"
#include "suite/files/archive_shelf.h"

#include <string>
#include <vector>

namespace qndr::suite {

class CompanyLibrary;

/// The standing of one open company (suite/standing/).
class CompanyStanding : public services::Standing {
  public:
    /// All of them must outlive the object.
    CompanyStanding(const Computer& computer, const services::Clock& clock, const ComputerTrouble& trouble,
                    ArchiveShelf& archives)
        : computer_(computer), clock_(clock), trouble_(trouble), archives_(archives) {}

    /// Raises services::Failure for a library of another make.
    void Initialize(services::SharedCodeLibrary& library) override;
    /// Does nothing while this computer's trouble stands, and without a Sync folder. What was done is an event,
    /// too. Raises services::Failure when the database does not work.
    std::vector<std::string> Exchange(const services::StandingSettings& settings) override;
    void PreTerminate() override { library_ = nullptr; }

  private:
    const Computer& computer_;
    const services::Clock& clock_;
    const ComputerTrouble& trouble_;
    ArchiveShelf& archives_;
    CompanyLibrary* library_ = nullptr;
};

} // namespace qndr::suite
