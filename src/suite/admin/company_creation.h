#pragma once

#include "services/ini_tools.h"
#include "services/platform.h"
#include "services/system_tools.h"
#include "suite/schema/vocabulary.h"

#include <string>

namespace qndr::suite {

struct NewCompany {
    std::string psdFile; ///< path of the .psd file to be written; its folder must exist
    std::string name;
    int type = MainCompanyType; ///< MainCompanyType or RoamingCompanyType
    /// "Provider=SQLite;Data Source=<path>". When empty, the database is made beside the .psd file, with its base
    /// name and the extension ".db", and the .psd names it relatively, so that the two can be moved together.
    std::string connectionString;
};

/// Makes an empty company: its database with the one Company row, and the .psd file that leads there. Nothing that
/// exists is touched: raises services::Failure when the .psd or the database file is there already, when a value
/// cannot be used or a file cannot be written, and then leaves nothing behind.
void CreateCompany(const NewCompany& company, services::IniTools& iniTools, services::SystemTools& systemTools,
                   const services::Clock& clock);

} // namespace qndr::suite
