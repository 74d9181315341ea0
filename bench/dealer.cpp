#include "dealer.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include "agent/run_sync.h"
#include "suite/admin/company_creation.h"
#include "suite/admin/provisioning.h"
#include "suite/admin/sample_data.h"

#include <filesystem>

namespace qndr::bench {
namespace {

constexpr const char* kLocations = R"(Software\Velmoran\Ordergrove Suite\5.0\Settings (Default))";

} // namespace

DealerComputer::DealerComputer(const std::string& folder, const std::string& name)
    : folder_(folder), name_(name), computer_(suite::Computer::InFolder(folder + "/" + name, name)),
      time_(*ParseDate("2026-11-22 14:00:00")) {
}

void DealerComputer::SetUp(int type) {
    std::filesystem::create_directories(Companies());
    std::filesystem::create_directories(SyncFolder());
    const ComputerServices outside(computer_, Time(), "bench", {});
    const services::AgentServices& all = outside.Services();
    suite::CreateCompany(
        {.psdFile = Companies() + "/dealer.psd", .name = name_, .type = type, .connectionString = ""},
        all.iniTools, all.systemTools, time_);
    all.registryTools.SetLong(services::CurrentUserHive, kLocations, "RoamingWorkstation",
                              type == suite::RoamingCompanyType ? 1 : 0);
    if (type == suite::MainCompanyType) {
        const auto company = Open();
        suite::SetCompanyOption(*company, "Roaming Workstations", "EnableSync", "1");
        suite::SetCompanyOption(*company, "Roaming Workstations", "SyncComputerName", name_);
    }
}

void DealerComputer::RunPass(CallTimes* times, ActivityTarget* activity) {
    RunningAgent agent(*this, times);
    if (times != nullptr) {
        times->Start();
    }
    agent.Pass(activity);
    if (times != nullptr) {
        times->Stop();
    }
}

std::unique_ptr<sql::Connection> DealerComputer::Open() const {
    return std::make_unique<sql::SqliteConnection>(DatabaseFile(), time_, sql::Missing::Refuse);
}

RunningAgent::RunningAgent(DealerComputer& computer, services::CallGate* gate)
    : outside_(computer.Computer(), computer.Time(), "qndr5rwsync", {}, gate), context_(outside_.Services()) {
    context_.CompaniesFolder = computer.Companies();
    outside_.Services().registryTools.SetString(services::CurrentUserHive, kLocations, "UFL:Sync",
                                                computer.SyncFolder());
}

void RunningAgent::Pass(ActivityTarget* activity) {
    RunSync(context_, activity);
}

void Dealer::SetUp(std::int64_t exchangedRows) {
    main.SetUp(suite::MainCompanyType);
    laptop.SetUp(suite::RoamingCompanyType);
    // Orders and old activities stay at home: about a fifth of the sample rows.
    suite::FillWithSampleData(*main.Open(), exchangedRows * 5 / 4, 1);
    suite::AddWorkstation(*main.Open(), *laptop.Open());
}

} // namespace qndr::bench
