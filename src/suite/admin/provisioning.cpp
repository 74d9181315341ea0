#include "suite/admin/provisioning.h"

#include "services/failure.h"
#include "suite/admin/company_creation.h"
#include "text/letter_case.h"

namespace qndr::suite {

namespace {

using services::Failure;

constexpr int HighestReferenceCode = 255;

void RequireType(const sql::Connection& company, int type) {
    if (company.Number("SELECT CompanyType FROM Company") != type) {
        throw Failure("'" + company.Path() + "' is not the database of a " +
                      (type == MainCompanyType ? "main company" : "Roaming Workstation company"));
    }
}

std::string CompanyText(const sql::Connection& company, const std::string& column) {
    return company.Value("SELECT " + column + " FROM Company").value_or("");
}

/// Whether a row with this value stands in RoamingWorkstations; of UniqueIDs letter case counts for nothing.
template <typename Value>
bool WorkstationExists(const sql::Connection& main, const std::string& column, const Value& value) {
    sql::Statement query = main.Prepare("SELECT 1 FROM RoamingWorkstations WHERE " + column + " = ?");
    query.Bind(1, value);
    return query.Step();
}

std::int64_t FreeReferenceCode(const sql::Connection& main, std::optional<int> wanted) {
    if (wanted) {
        // 0 cannot travel: a descriptor without a code reads as 0.
        if (*wanted < 1 || *wanted > HighestReferenceCode) {
            throw Failure("a reference code is a number from 1 to 255");
        }
        if (WorkstationExists(main, "ReferenceCode", std::int64_t{*wanted})) {
            throw Failure("the reference code " + std::to_string(*wanted) + " is in use");
        }
        return *wanted;
    }
    for (std::int64_t code = 1; code <= HighestReferenceCode; ++code) {
        if (!WorkstationExists(main, "ReferenceCode", code)) {
            return code;
        }
    }
    throw Failure("all 255 reference codes are in use");
}

void RequirePairable(const sql::Connection& main, const sql::Connection& roaming) {
    if (WorkstationExists(main, "UniqueID", std::string_view(CompanyText(roaming, "UniqueID")))) {
        throw Failure("the main company knows this workstation already");
    }
    const std::string mainUniqueID = CompanyText(roaming, "MainUniqueID");
    if (mainUniqueID.empty()) {
        if (roaming.Number("SELECT EXISTS (SELECT 1 FROM AuditLog)") != 0) {
            throw Failure("the workstation's audit log is not empty, and all of it would be sent to main; make a "
                          "new company for the workstation");
        }
    } else if (!text::EqualsWithoutCase(mainUniqueID, CompanyText(main, "UniqueID"))) {
        throw Failure("the workstation belongs to another main company");
    }
}

/// The option that tells what stood in the Company row when a reset was asked for.
constexpr const char* RoamingSection = "Roaming Workstations";
constexpr const char* ResetRequestedAt = "ResetRequestedAt";

/// The counters that a request which leaves sets to 0 or moves.
std::string CountersText(const sql::Connection& roaming) {
    return roaming
        .Value("SELECT NextSequenceToMain || ' ' || NextSequenceFromMain || ' ' || LastAuditID FROM Company")
        .value_or("");
}

void SetCompanySyncState(const sql::Connection& company, std::int64_t state) {
    sql::Statement update = company.Prepare("UPDATE Company SET SyncState = ?");
    update.Bind(1, state);
    update.Step();
}

} // namespace

std::uint8_t AddWorkstation(const sql::Connection& main, const sql::Connection& roaming,
                            std::optional<int> referenceCode) {
    // Before any lock is taken: the two may be one and the same database.
    RequireType(main, MainCompanyType);
    RequireType(roaming, RoamingCompanyType);
    sql::Transaction onMain(main, sql::Transaction::Kind::Write);
    sql::Transaction onRoaming(roaming, sql::Transaction::Kind::Write);
    RequirePairable(main, roaming);
    const std::int64_t code = FreeReferenceCode(main, referenceCode);
    sql::Statement insert =
        main.Prepare("INSERT INTO RoamingWorkstations (UniqueID, Name, ReferenceCode) VALUES (?, ?, ?)");
    insert.Bind(1, CompanyText(roaming, "UniqueID"));
    insert.Bind(2, CompanyText(roaming, "Name"));
    insert.Bind(3, code);
    insert.Step();
    SetCompanySyncState(roaming, SyncStateInitialSyncRequired);
    // Main first: a request from a workstation that main does not know would lie in the Sync folder unheard.
    onMain.Commit();
    onRoaming.Commit();
    return static_cast<std::uint8_t>(code);
}

bool RequestInitialSync(const sql::Connection& roaming) {
    sql::Transaction transaction(roaming, sql::Transaction::Kind::Write);
    RequireType(roaming, RoamingCompanyType);
    SetCompanySyncState(roaming, SyncStateInitialSyncRequired);
    const bool hasRunBefore = !CompanyText(roaming, "MainUniqueID").empty();
    transaction.Commit();
    return hasRunBefore;
}

void ResetCountersOf(const sql::Connection& main, const std::string& workstationUniqueID) {
    sql::Transaction transaction(main, sql::Transaction::Kind::Write);
    RequireType(main, MainCompanyType);
    if (!WorkstationExists(main, "UniqueID", std::string_view(workstationUniqueID))) {
        throw Failure("the main company knows no workstation " + workstationUniqueID);
    }
    sql::Statement update = main.Prepare(
        WithNumbers("UPDATE RoamingWorkstations SET NextSequenceToRoaming = 0, NextSequenceFromRoaming = 0,"
                    " SyncState = CASE WHEN SyncState IN ({Ready}, {ResetRequested}, {ResetPending}) THEN 0 ELSE "
                    "SyncState END WHERE UniqueID = ?"));
    update.Bind(1, workstationUniqueID);
    update.Step();
    transaction.Commit();
}

void RequestReset(const sql::Connection& roaming) {
    sql::Transaction transaction(roaming, sql::Transaction::Kind::Write);
    RequireType(roaming, RoamingCompanyType);
    const std::int64_t state = roaming.Number("SELECT SyncState FROM Company");
    if (state != SyncStateReady && state != SyncStateResetPending) {
        throw Failure(
            "a reset can be asked for only by a workstation that is ready or waits for one; its state is " +
            std::to_string(state));
    }
    SetCompanyOption(roaming, RoamingSection, ResetRequestedAt,
                     std::to_string(state) + " " + CountersText(roaming));
    SetCompanySyncState(roaming, SyncStateResetRequested);
    transaction.Commit();
}

void CancelReset(const sql::Connection& roaming) {
    sql::Transaction transaction(roaming, sql::Transaction::Kind::Write);
    RequireType(roaming, RoamingCompanyType);
    const std::int64_t state = roaming.Number("SELECT SyncState FROM Company");
    if (state != SyncStateResetRequested) {
        throw Failure(state == SyncStateResetPending ? "the request has left: the reset takes its course"
                                                     : "no reset is asked for");
    }
    const std::string before = GetCompanyOption(roaming, RoamingSection, ResetRequestedAt).value_or("");
    for (const std::int64_t earlier : {SyncStateReady, SyncStateResetPending}) {
        if (before == std::to_string(earlier) + " " + CountersText(roaming)) {
            SetCompanySyncState(roaming, earlier);
            transaction.Commit();
            return;
        }
    }
    throw Failure("it is not known what stood here before this request: the reset takes its course");
}

std::optional<std::string> GetCompanyOption(const sql::Connection& company, const std::string& section,
                                            const std::string& key, const std::string& profile) {
    sql::Statement query =
        company.Prepare("SELECT Value FROM CompanyOptions WHERE Profile IN (?1, ?2) AND Section = ?3 AND"
                        " OptionKey = ?4 AND Value <> '' ORDER BY Profile = ?1 DESC");
    query.Bind(1, profile);
    query.Bind(2, DefaultProfile);
    query.Bind(3, section);
    query.Bind(4, key);
    if (!query.Step()) {
        return std::nullopt;
    }
    return std::string(query.Text(0));
}

void SetCompanyOption(const sql::Connection& company, const std::string& section, const std::string& key,
                      const std::string& value, const std::string& profile) {
    sql::Statement insert =
        company.Prepare("INSERT INTO CompanyOptions (Profile, Section, OptionKey, Value) VALUES (?, ?, ?, ?)"
                        " ON CONFLICT DO UPDATE SET Value = excluded.Value");
    insert.Bind(1, profile);
    insert.Bind(2, section);
    insert.Bind(3, key);
    insert.Bind(4, value);
    insert.Step();
}

} // namespace qndr::suite
