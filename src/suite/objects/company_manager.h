#pragma once

#include "services/company_services.h"
#include "services/ini_tools.h"
#include "services/platform.h"
#include "suite/objects/company_marks.h"
#include "suite/objects/psd_file.h"
#include "suite/sql/connection.h"

#include <string>

namespace qndr::suite {

/// True when the database holds exactly one Company row, with a CompanyType and a UniqueID.
bool IsCompany(const sql::Connection& connection);

/// The Company Manager, as an agent asks it. Its collaborators must outlive it.
class CompanyManager : public services::CompanyManager {
  public:
    CompanyManager(services::IniTools& iniTools, const services::Clock& clock, CompanyMarks& marks)
        : iniTools_(iniTools), clock_(clock), marks_(marks), psd_(iniTools) {}

    services::PsdFile& PSD() override { return psd_; }
    /// True when the database opens and is a company, no other agent works on it, and it is of this version: an
    /// older one is brought up to it first. What stands against that is entered in the company's events, once. The
    /// company is then marked as this agent's until PreTerminate, or until the end of the library that has opened
    /// it by then. Leaves PSD as it is.
    bool CanOpenCompany(const std::string& path) override;
    void PreTerminate() override { mark_.reset(); }

  private:
    bool IsUpToDate(const sql::Connection& connection) const;

    services::IniTools& iniTools_;
    const services::Clock& clock_;
    CompanyMarks& marks_;
    CompanyMarks::Mark mark_;
    PsdFile psd_;
};

} // namespace qndr::suite
