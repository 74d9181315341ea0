#include "suite/objects/company_manager.h"

#include "services/failure.h"
#include "suite/schema/company_versions.h"
#include "suite/sql/connection.h"
#include "suite/sql/connection_string.h"

#include <utility>

namespace qndr::suite {

bool IsCompany(const sql::Connection& connection) {
    try {
        sql::Statement company = connection.Prepare("SELECT CompanyType, UniqueID FROM Company");
        return company.Step() && !company.Text(0).empty() && !company.Text(1).empty() && !company.Step();
    } catch (const services::Failure&) {
        return false;
    }
}

bool CompanyManager::IsUpToDate(const sql::Connection& connection) const {
    try {
        BringUpToDate(connection, clock_);
        return true;
    } catch (const services::Failure& failure) {
        // Once: an agent comes by every few minutes.
        sql::Statement tell = connection.Prepare(
            "INSERT INTO CompanyEvents (OccurredOn, EventText) SELECT GETUTCDATE(), ?1 WHERE NOT EXISTS (SELECT 1 "
            "FROM "
            "(SELECT EventText FROM CompanyEvents ORDER BY ID DESC LIMIT 1) WHERE EventText = ?1)");
        tell.Bind(1, std::string("The company is left alone: ") + failure.what());
        tell.Step();
        return false;
    }
}

bool CompanyManager::CanOpenCompany(const std::string& path) {
    mark_.reset();
    PsdFile psd(iniTools_);
    if (!psd.Load(path)) {
        return false;
    }
    try {
        const std::unique_ptr<sql::Connection> connection =
            sql::Open(sql::SqliteFileOf(psd.ConnectionString()), clock_, sql::Missing::Refuse);
        CompanyMarks::Mark mark = IsCompany(*connection) ? marks_.Take(*connection) : nullptr;
        if (!mark || !IsUpToDate(*connection)) {
            return false;
        }
        mark_ = std::move(mark);
        return true;
    } catch (const services::Failure&) {
        return false;
    }
}

} // namespace qndr::suite
