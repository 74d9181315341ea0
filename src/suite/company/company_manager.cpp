#include "suite/company/company_manager.h"

#include "services/failure.h"
#include "suite/company/connection_string.h"
#include "suite/database/sqlite_connection.h"

namespace qndr::suite {

bool CompanyManager::CanOpenCompany(const std::string& path) {
    PsdFile psd(iniTools_);
    if (!psd.Load(path)) {
        return false;
    }
    try {
        const SqliteConnection connection(SqliteFileOf(psd.ConnectionString()), clock_,
                                          SqliteConnection::Missing::Refuse);
        SqliteStatement company = connection.Prepare("SELECT CompanyType, UniqueID FROM Company");
        return company.Step() && !company.Text(0).empty() && !company.Text(1).empty() && !company.Step();
    } catch (const services::Failure&) {
        return false;
    }
}

} // namespace qndr::suite
