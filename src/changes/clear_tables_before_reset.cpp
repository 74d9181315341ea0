#include "changes/clear_tables_before_reset.h"

#include "shared/failure_rule.h"

namespace qndr {
namespace {

/// In this order: `AuditLog` last, for it takes in the deletions before it.
constexpr const char* kStatements[] = {
    "DELETE FROM FieldMeasureCriteria",
    "DELETE FROM RequireDepositCriteria",
    "DELETE FROM CompanySetup",
    "DELETE FROM CompanyFeatures",
    "DELETE FROM OptionDetailSettings",
    "DELETE FROM OptionDefaults",
    "DELETE FROM OptionCallouts",
    "DELETE FROM Discounts",
    "DELETE FROM ProductTags",
    "DELETE FROM EmployeeSecurityRoles",
    "DELETE FROM Reports",
    "DELETE FROM SetupOptions",
    "DELETE FROM AdditionalCharges",
    "DELETE FROM EmailTemplates",
    "DELETE FROM SecurityRoleAccess",
    "DELETE FROM EmailLabels",
    "DELETE FROM PhoneLabels",
    "DELETE FROM cacheProductStyles",
    "DELETE FROM AuditLog",
};

} // namespace

void ClearTablesBeforeReset(AgentContext& context, const FoundSyncFile& /*entry*/) {
    services::SqlConnection* connection = nullptr;
    Attempt([&] { connection = context.CurrentLibrary().QNDRSQL(); });
    if (connection == nullptr) {
        return;
    }
    for (const char* statement : kStatements) {
        Attempt([&] { connection->ExecuteNonQuery(statement); });
    }
    Attempt([&] { connection->PreTerminate(); });
}

} // namespace qndr
