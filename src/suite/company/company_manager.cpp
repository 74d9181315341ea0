#include "suite/company/company_manager.h"

#include "services/failure.h"
#include "suite/company/company_versions.h"
#include "suite/company/connection_string.h"
#include "suite/database/sqlite_connection.h"

namespace qndr::suite {

bool CompanyManager::IsUpToDate(const SqliteConnection& connection) const {
    try {
        BringUpToDate(connection, clock_);
        return true;
    } catch (const services::Failure& failure) {
        // Once: an agent comes by every few minutes.
        SqliteStatement tell = connection.Prepare(
            "INSERT INTO CompanyEvents (OccurredOn, EventText) SELECT GETUTCDATE(), ?1 WHERE NOT EXISTS (SELECT 1 "
            "FROM "
            "(SELECT EventText FROM CompanyEvents ORDER BY ID DESC LIMIT 1) WHERE EventText = ?1)");
        tell.Bind(1, std::string("The company is left alone: ") + failure.what());
        tell.Step();
        return false;
    }
}

bool CompanyManager::CanOpenCompany(const std::string& path) {
    PsdFile psd(iniTools_);
    if (!psd.Load(path)) {
        return false;
    }
    try {
        const SqliteConnection connection(SqliteFileOf(psd.ConnectionString()), clock_,
                                          SqliteConnection::Missing::Refuse);
        {
            SqliteStatement company = connection.Prepare("SELECT CompanyType, UniqueID FROM Company");
            if (!company.Step() || company.Text(0).empty() || company.Text(1).empty() || company.Step()) {
                return false;
            }
        }
        return IsUpToDate(connection);
    } catch (const services::Failure&) {
        return false;
    }
}

} // namespace qndr::suite
