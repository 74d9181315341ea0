#include "observation/observe_company.h"

#include "observation/company_facts.h"
#include "services/failure.h"
#include "shared/formatting.h"
#include "suite/admin/conflicts.h"
#include "suite/admin/provisioning.h"
#include "suite/schema/company_events.h"

namespace qndr::observation {

using diagnosis::ObservedCompany;
using diagnosis::RefusedFile;
using services::Failure;

namespace {

std::vector<RefusedFile> RefusedHere(const sql::Connection& database, const std::string& mainUniqueID) {
    auto row = database.Prepare("SELECT Sender, Sequence, RefusedOn FROM RefusedFiles ORDER BY Sender, Sequence");
    std::vector<RefusedFile> files;
    while (row.Step()) {
        const std::string sender(row.Text(0));
        files.push_back({sender.empty() ? mainUniqueID : sender, row.Integer(1), std::string(row.Text(2))});
    }
    return files;
}

std::vector<RefusedFile> RefusedThere(const sql::Connection& database, const std::string& mainUniqueID) {
    auto row = database.Prepare(
        "SELECT Receiver, Sequence, ToldOn, ifnull((SELECT group_concat(Held, ', ') FROM (SELECT TableName || ' ' "
        "||"
        " COUNT(DISTINCT AuditUniqueID) AS Held FROM AuditLog WHERE Sequence >= 0 AND ID > FromID AND ID <= ToID"
        " GROUP BY TableName ORDER BY TableName)), '') FROM NotTakenFiles ORDER BY Receiver, Sequence");
    std::vector<RefusedFile> files;
    while (row.Step()) {
        const std::string receiver(row.Text(0));
        files.push_back({receiver.empty() ? mainUniqueID : receiver, row.Integer(1), std::string(row.Text(2)),
                         std::string(row.Text(3))});
    }
    return files;
}

} // namespace

std::string DamageOf(const sql::Connection& database) {
    try {
        const std::string words = database.Value("PRAGMA quick_check(1)").value_or("");
        return words == "ok" ? "" : words;
    } catch (const Failure& failure) {
        return failure.what();
    }
}

void ObserveCompany(ObservedCompany& company, const sql::Connection& database, const Date& nowUtc,
                    std::int64_t days) {
    company.syncComputerName =
        suite::GetCompanyOption(database, "Roaming Workstations", "SyncComputerName").value_or("");
    auto conflicts = database.Prepare("SELECT COUNT(*) FROM ImportConflicts WHERE State = ?1");
    conflicts.Bind(1, static_cast<std::int64_t>(suite::ConflictState::Open));
    conflicts.Step();
    company.openConflicts = conflicts.Integer(0);
    auto problems = database.Prepare("SELECT COUNT(*) FROM ImportProblems WHERE OccurredOn >= ?1");
    problems.Bind(1, FormatSQLDate(nowUtc.AddDays(-days), false));
    problems.Step();
    company.putAside = problems.Integer(0);
    const auto text = [&](const char* query) { return database.Value(query).value_or(""); };
    company.database = database.Path();
    company.newestChange = database.Number("SELECT MAX(ID) FROM AuditLog");
    company.changedOn = text("SELECT AddedOn FROM AuditLog ORDER BY ID DESC LIMIT 1");
    company.sentOn =
        text("SELECT AddedOn FROM AuditLog WHERE ID <= (SELECT LastAuditID FROM Company) ORDER BY ID DESC "
             "LIMIT 1");
    // The agent enters another event when it could store something again.
    auto newest = database.Prepare("SELECT EventText, EventNumber FROM CompanyEvents WHERE EventNumber IS NOT 5"
                                   " ORDER BY ID DESC LIMIT 1");
    if (newest.Step() && newest.Integer(1) == suite::ComputerTroubleEvent) {
        company.cannotStore = newest.Text(0);
    }
    auto another = database.Prepare("SELECT OccurredOn, EventText FROM CompanyEvents WHERE EventNumber = ?1"
                                    " AND OccurredOn >= ?2 ORDER BY ID DESC LIMIT 1");
    another.Bind(1, std::int64_t{suite::AnotherAgentEvent});
    another.Bind(2, FormatSQLDate(nowUtc.AddDays(-1), false));
    if (another.Step()) {
        const auto date = ParseDate(std::string(another.Text(0)));
        company.anotherAgent = (date ? FormatGeneralDate(*date) + " UTC: " : "") + std::string(another.Text(1));
    }
    company.facts = ReadCompanyFacts(database);
    company.refusedHere = RefusedHere(database, company.facts.mainUniqueID);
    company.refusedThere = RefusedThere(database, company.facts.mainUniqueID);
}

} // namespace qndr::observation
