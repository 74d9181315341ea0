#include "suite/objects/company_library.h"

#include "services/failure.h"
#include "suite/admin/provisioning.h"
#include "suite/computer/ticks.h"
#include "suite/engine/given_up_changes.h"
#include "suite/files/sync_folder_mark.h"
#include "suite/objects/company_database.h"
#include "suite/schema/company_events.h"
#include "suite/schema/vocabulary.h"
#include "suite/sql/connection_string.h"

namespace qndr::suite {
namespace {

using services::CurrentUserHive;

constexpr const char* kRoleName = "RoamingWorkstation";
constexpr const char* kLocationPrefix = "UFL:";
constexpr const char* kAgentKey = R"(Software\Velmoran\Ordergrove Suite\5.0)";
constexpr const char* kStopName = "StopSync";
constexpr const char* kNotCleared = "The tables could not be cleared for a reset, which waits: ";

std::string ProfileKey(const std::string& profile) {
    return R"(Software\Velmoran\Ordergrove Suite\5.0\Settings ()" + profile + ")";
}

class LibraryProfiles : public services::Profiles {
  public:
    void SetProfile(const std::string& name) override { current_ = name.empty() ? DefaultProfile : name; }
    const std::string& Current() const { return current_; }

  private:
    std::string current_ = DefaultProfile;
};

class LibrarySecurity : public services::Security {
  public:
    LibrarySecurity(services::RegistryTools& registry, const LibraryProfiles& profiles)
        : registry_(registry), profiles_(profiles) {}

    bool IsRoamingWorkstation() const override {
        try {
            return Role(profiles_.Current(), Role(DefaultProfile, 0)) != 0;
        } catch (const services::Failure&) {
            return false;
        }
    }

  private:
    std::int32_t Role(const std::string& profile, std::int32_t fallback) const {
        return registry_.GetLong(CurrentUserHive, ProfileKey(profile), kRoleName, fallback);
    }

    services::RegistryTools& registry_;
    const LibraryProfiles& profiles_;
};

class LibraryOptions : public services::Options {
  public:
    LibraryOptions(services::RegistryTools& registry, const LibraryProfiles& profiles, CompanyDatabase& database,
                   const ComputerTrouble& trouble)
        : registry_(registry), profiles_(profiles), database_(database), trouble_(trouble) {}

    Variant GetCompanyOption(const std::string& section, const std::string& key,
                             const Variant& fallback) override {
        // An empty value counts as missing, so it hides nothing of the default profile either.
        const auto value = suite::GetCompanyOption(database_.Connection(), section, key, profiles_.Current());
        return value ? Variant(*value) : fallback;
    }

    /// A Sync folder that is not the one that was set up cannot be identified: it is none.
    std::string UserFileLocation(const std::string& name) override {
        if (trouble_.Stands()) {
            return "";
        }
        const std::string& current = profiles_.Current();
        const std::string profile = Value(current, kLocationPrefix + name).empty() ? DefaultProfile : current;
        const std::string folder = Value(profile, kLocationPrefix + name);
        const bool isThere =
            name != "Sync" || folder.empty() || IsMarkedAs(folder, Value(profile, SyncFolderIdentity));
        return isThere ? folder : "";
    }

  private:
    std::string Value(const std::string& profile, const std::string& name) {
        return registry_.GetString(CurrentUserHive, ProfileKey(profile), name, "");
    }

    services::RegistryTools& registry_;
    const LibraryProfiles& profiles_;
    CompanyDatabase& database_;
    const ComputerTrouble& trouble_;
};

/// The connection for the clearing of a reset. It works on the company's own one: for a second one the database
/// would be locked. A statement runs only when the changes that the reset gives up are kept; else it is refused.
class LibrarySql : public services::SqlConnection {
  public:
    LibrarySql(CompanyDatabase& database, ComputerTrouble& trouble) : database_(database), trouble_(trouble) {}

    std::int32_t ExecuteNonQuery(const services::Statement& statement) override {
        if (trouble_.Refuses()) {
            return -1;
        }
        try {
            const sql::Connection& connection = database_.Connection();
            sql::Transaction transaction(connection, sql::Transaction::Kind::Write);
            KeepBeforeClearing(connection);
            const std::int32_t rows = database_.ExecuteNonQuery(statement);
            if (rows < 0) {
                throw services::Failure(database_.LastSQLErrorDescription());
            }
            PassOverAuditSoFar(connection);
            transaction.Commit();
            return rows;
        } catch (const services::Failure& failure) {
            trouble_.Note(std::string(kNotCleared) + failure.what());
            return -1;
        }
    }
    /// The connection stays open for the library.
    void PreTerminate() override {}

  private:
    CompanyDatabase& database_;
    ComputerTrouble& trouble_;
};

} // namespace

struct CompanyLibrary::State {
    State(services::RegistryTools& registry, const services::Clock& clock, ComputerTrouble& itsTrouble,
          sql::LockWait* wait, const CompanyMarks* theMarks)
        : trouble(itsTrouble), marks(theMarks), database(clock, trouble, wait), security(registry, profiles),
          options(registry, profiles, database, trouble), sql(database, trouble) {}

    ComputerTrouble& trouble;
    std::string psdFile;
    std::int16_t operatingMode = 0;
    const CompanyMarks* marks;
    CompanyMarks::Mark mark; ///< in front of the database, so that it goes after it
    CompanyDatabase database;
    LibraryProfiles profiles;
    LibrarySecurity security;
    LibraryOptions options;
    LibrarySql sql;
};

CompanyLibrary::CompanyLibrary(services::RegistryTools& registry, const services::Clock& clock,
                               ComputerTrouble& trouble, sql::LockWait* wait, const CompanyMarks* marks)
    : state_(std::make_unique<State>(registry, clock, trouble, wait, marks)) {
    sql::StatementLimits limits;
    // A signal becomes StopSync when the agent lets messages through, which it does not within a statement.
    limits.isStopping = [&registry] {
        return EndRequestWaits() || registry.GetLong(CurrentUserHive, kAgentKey, kStopName, 0) != 0;
    };
    state_->database.SetLimits(std::move(limits));
}

CompanyLibrary::~CompanyLibrary() = default;

void CompanyLibrary::SetConnectionString(const std::string& text) {
    // Closed first: after a connection string that is refused nothing may reach the company before it.
    state_->database.Close();
    state_->mark.reset();
    state_->trouble.Clear();
    const std::string file = sql::SqliteFileOf(text);
    state_->mark = state_->marks != nullptr ? state_->marks->Find(file) : nullptr;
    state_->database.Use(file);
    if (state_->trouble.LacksFirstData(state_->database.Path())) {
        AwaitFirstData();
    }
}

void CompanyLibrary::SetPSDFile(const std::string& path) {
    state_->psdFile = path;
}

void CompanyLibrary::SetOperatingMode(std::int16_t mode) {
    state_->operatingMode = mode;
}

std::int16_t CompanyLibrary::OperatingMode() const {
    return state_->operatingMode;
}

services::Profiles& CompanyLibrary::Profiles() {
    return state_->profiles;
}

services::Security& CompanyLibrary::Security() {
    return state_->security;
}

services::Options& CompanyLibrary::Options() {
    return state_->options;
}

services::Database& CompanyLibrary::Database() {
    return state_->database;
}

services::SqlConnection* CompanyLibrary::QNDRSQL() {
    if (!state_->database.HasFile() || state_->trouble.Refuses()) {
        return nullptr;
    }
    try {
        const sql::Connection& connection = Connection();
        sql::Transaction transaction(connection, sql::Transaction::Kind::Write);
        KeepBeforeClearing(connection);
        transaction.Commit();
    } catch (const services::Failure& failure) {
        state_->trouble.Note(std::string(kNotCleared) + failure.what());
        return nullptr;
    }
    return &state_->sql;
}

void CompanyLibrary::RecordEvent(const std::string& text, std::optional<std::int32_t> number) {
    if (state_->trouble.Stands()) {
        // What is told now may not have happened.
        throw services::Failure("the event is not recorded: " + state_->trouble.Text());
    }
    Record(text, number);
}

void CompanyLibrary::Record(const std::string& text, std::optional<std::int32_t> number) {
    sql::Statement statement = Connection().Prepare(
        "INSERT INTO CompanyEvents (OccurredOn, EventText, EventNumber) VALUES (GETUTCDATE(), ?1, ?2)");
    statement.Bind(1, text);
    if (number) {
        statement.Bind(2, std::int64_t{*number});
    } else {
        statement.BindNull(2);
    }
    statement.Step();
}

void CompanyLibrary::TellOfTrouble() {
    const ComputerTrouble& trouble = state_->trouble;
    if (!trouble.Stands() && !trouble.HasStored()) {
        return;
    }
    try {
        sql::Statement newest =
            Connection().Prepare("SELECT EventNumber, EventText FROM CompanyEvents WHERE EventNumber IS NOT 5"
                                 " ORDER BY ID DESC LIMIT 1");
        const bool stood = newest.Step() && newest.Integer(0) == ComputerTroubleEvent;
        const bool isTold = stood && newest.Text(1) == trouble.Text();
        newest.Reset();
        if (trouble.Stands() && !isTold) {
            Record(trouble.Text(), ComputerTroubleEvent);
        } else if (stood && !trouble.Stands()) {
            Record("The database can be used again.", std::nullopt);
        }
    } catch (const services::Failure&) {
        // A full or locked event list changes nothing: what could not be stored is tried again.
    }
}

/// A workstation may find two files of the first exchange, take the one and fail with the other. Ready, it would
/// take the one that was kept back for a file of changes.
void CompanyLibrary::AwaitFirstData() {
    ComputerTrouble& trouble = state_->trouble;
    try {
        Connection().Execute(WithNumbers("UPDATE Company SET SyncState = {InitialSyncRequested} WHERE CompanyType "
                                         "= {Roaming} AND SyncState = {Ready}"));
        trouble.SetLacksFirstData(state_->database.Path(), false);
    } catch (const services::Failure& failure) {
        trouble.Note(std::string("The state of the first exchange could not be stored, and all waits: ") +
                     failure.what());
        trouble.SetLacksFirstData(state_->database.Path(), true);
    }
}

void CompanyLibrary::PreTerminate() {
    if (state_->database.HasFile()) {
        TellOfTrouble();
        if (state_->trouble.HasKeptBack()) {
            AwaitFirstData();
        }
    }
    state_->database.Close();
    state_->mark.reset();
    state_->trouble.Clear();
}

sql::Connection& CompanyLibrary::Connection() {
    return state_->database.Connection();
}

const std::string& CompanyLibrary::PSDFile() const {
    return state_->psdFile;
}

} // namespace qndr::suite
