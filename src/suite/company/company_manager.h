#pragma once

#include "services/company_services.h"
#include "services/ini_tools.h"
#include "services/platform.h"
#include "suite/company/psd_file.h"
#include "suite/database/sqlite_connection.h"

#include <string>

namespace qndr::suite {

/// The Company Manager. Its collaborators must outlive it.
class CompanyManager : public services::CompanyManager {
  public:
    CompanyManager(services::IniTools& iniTools, const services::Clock& clock)
        : iniTools_(iniTools), clock_(clock), psd_(iniTools) {}

    services::PsdFile& PSD() override { return psd_; }
    /// True when the database opens, holds exactly one Company row, with a CompanyType and a UniqueID, and is of
    /// this version: an older one is brought up to it first. What stands against that is entered in the company's
    /// events, once. Leaves PSD as it is.
    bool CanOpenCompany(const std::string& path) override;
    void PreTerminate() override {}

  private:
    bool IsUpToDate(const SqliteConnection& connection) const;

    services::IniTools& iniTools_;
    const services::Clock& clock_;
    PsdFile psd_;
};

} // namespace qndr::suite
