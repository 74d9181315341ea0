#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "programs/qndr5ctl/sync_words.h"
#include "services/company_numbers.h"
#include "services/failure.h"
#include "shared/dates.h"
#include "suite/admin/company_creation.h"
#include "suite/admin/provisioning.h"
#include "suite/admin/sample_data.h"
#include "suite/engine/given_up_changes.h"
#include "text/whole_number.h"

namespace qndr::control {

namespace {

constexpr const char* RoamingSection = "Roaming Workstations";

struct CreateArguments {
    std::string file;
    std::string type;
    std::string name;
    std::string database;
    std::int64_t sampleRows = 0;
    std::uint32_t seed = 1;
};

struct ShowArguments {
    std::string file;
    bool json = false;
};

void Create(const ControlContext& context, const CreateArguments& arguments) {
    suite::NewCompany company;
    company.psdFile = arguments.file;
    company.name = arguments.name;
    company.type = arguments.type == "main" ? suite::MainCompanyType : suite::RoamingCompanyType;
    company.connectionString = arguments.database;
    if (company.type == suite::RoamingCompanyType && arguments.sampleRows > 0) {
        throw services::Failure(
            "a workstation gets its rows from its main company: --sample is for a main company");
    }
    suite::CreateCompany(company, context.services.iniTools, context.services.systemTools, context.services.clock);
    const OpenedCompany created(context, arguments.file);
    if (arguments.sampleRows > 0) {
        suite::FillWithSampleData(created.Database(), arguments.sampleRows, arguments.seed);
    }
    context.out << "Created the " << WordsForCompanyType(company.type) << " '" << arguments.name << "', unique id "
                << created.Text("UniqueID") << ".\n";
}

void AddState(Facts& facts, std::int64_t state, const std::string& words) {
    facts.Add("State", "", NumberInWords(state, words));
    facts.Add("", "state", state);
    facts.Add("", "stateText", words);
}

/// The workstations whose reset is under way, each with how far it has come.
void AddResets(const OpenedCompany& company, const ControlContext& context, Facts& facts) {
    const Date now = LocalToUtc(context.services, context.services.clock.Now());
    auto row = company.Database().Prepare(
        suite::WithNumbers("SELECT Name, SyncState, LastReceivedFrom FROM RoamingWorkstations WHERE SyncState IN "
                           "({ResetRequested}, {ResetPending})"
                           " ORDER BY Name, ID"));
    Listing listing({{"", "name"}, {"", "stateText"}});
    while (row.Step()) {
        const std::string words = WordsForWorkstation(row.Integer(1), std::string(row.Text(2)), now);
        facts.Add("Reset", "", std::string(row.Text(0)) + ": " + words);
        listing.Add({row.Text(0), words});
    }
    facts.Add("", "resets", listing.ToJson());
}

void AddMainFacts(const OpenedCompany& company, const ControlContext& context, Facts& facts) {
    const auto option = [&](const char* key) -> Json {
        const auto value = suite::GetCompanyOption(company.Database(), RoamingSection, key);
        const auto number = text::ParseWholeNumber(value.value_or(""));
        return number ? Json(*number) : value ? Json(*value) : Json();
    };
    facts.Add("Workstations", "workstations",
              company.Database().Number("SELECT COUNT(*) FROM RoamingWorkstations"));
    facts.Add("Newest change", "newestAuditID", company.Database().Number("SELECT MAX(ID) FROM AuditLog"));
    facts.Add("EnableSync", "enableSync", option("EnableSync"));
    facts.Add("SyncComputerName", "syncComputerName", option("SyncComputerName"));
    facts.Add("This computer", "thisComputer", context.services.systemTools.GetComputerName());
    AddResets(company, context, facts);
}

void AddRoamingFacts(const OpenedCompany& company, Facts& facts) {
    const std::int64_t lastAuditID = company.Number("LastAuditID");
    const std::string mainUniqueID = company.Text("MainUniqueID");
    facts.Add("Main company's id", "mainUniqueID", mainUniqueID.empty() ? Json() : Json(mainUniqueID));
    facts.Add("Reference code", "referenceCode", company.Number("ReferenceCode"));
    facts.Add("Next sequence to main", "nextSequenceToMain", company.Number("NextSequenceToMain"));
    facts.Add("Next sequence from main", "nextSequenceFromMain", company.Number("NextSequenceFromMain"));
    facts.Add("Last change sent", "lastAuditID", lastAuditID);
    facts.Add(
        "Waiting changes", "waitingChanges",
        company.Database().Number("SELECT COUNT(*) FROM AuditLog WHERE ID > " + std::to_string(lastAuditID)));
    const std::int64_t state = company.Number("SyncState");
    if (state == SyncStateResetRequested || state == SyncStateResetPending) {
        const auto kept = static_cast<std::int64_t>(suite::FindChangesAtStake(company.Database()).size());
        facts.Add("Given up by the reset", "", Counted(kept, "change") + ", kept ('conflicts list' names them)");
        facts.Add("", "givenUpChanges", kept);
    }
}

void Show(const ControlContext& context, const ShowArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    const std::int64_t type = company.Number("CompanyType");
    const std::int64_t state = company.Number("SyncState");
    Facts facts;
    facts.Add("Company", "name", company.Text("Name"));
    facts.Add("Role", "", NumberInWords(type, WordsForCompanyType(type)));
    facts.Add("", "companyType", type);
    facts.Add("", "role", WordsForCompanyType(type));
    facts.Add("Unique id", "uniqueID", company.Text("UniqueID"));
    AddState(facts, state, WordsForCompanyState(state));
    if (company.IsMain()) {
        AddMainFacts(company, context, facts);
    } else {
        AddRoamingFacts(company, facts);
    }
    facts.Add("Heartbeat", "heartbeat", HeartbeatInWords(context.services.registryTools));
    facts.Add("Database", "database", company.Database().Path());
    facts.Add("Database version", "databaseVersion", company.Text("DatabaseVersion"));
    if (arguments.json) {
        context.out << facts.ToJson().ToText() << '\n';
    } else {
        facts.Print(context.out);
    }
}

} // namespace

void AddCompanyCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group = program.AddGroup("company", "Make companies, look at them, compare them");

    const auto create = AddCommand<CreateArguments>(group, context, "create", "Make an empty company", Create);
    create.app.Add("FILE", create.arguments.file, "The .psd file to be written").Required();
    create.app.Add("--type", create.arguments.type, "What the company is").Required().OneOf({"main", "roaming"});
    create.app.Add("--name", create.arguments.name, "The company's name").Required();
    create.app.Add("--database", create.arguments.database,
                   "The connection string \"Provider=SQLite;Data Source=PATH\"; a database beside FILE "
                   "when it is not given");
    const Option sample = create.app.Add("--sample", create.arguments.sampleRows,
                                         "Fill a main company with this many rows of sample data");
    sample.Between(1, 100'000'000);
    create.app.Add("--seed", create.arguments.seed, "The same seed gives the same sample data")
        .ShowDefault()
        .Needs(sample);

    const auto show =
        AddCommand<ShowArguments>(group, context, "show", "How far a company's exchange has come", Show);
    show.app.Add("FILE", show.arguments.file, "The company's .psd file").Required();
    show.app.AddJsonFlag(show.arguments.json);

    AddCompareCommand(group, context);
}

} // namespace qndr::control
