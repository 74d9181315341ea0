#include "simulation/simulated_computer.h"

#include "composition/computer_services.h"
#include "shared/settings.h"
#include "suite/admin/company_creation.h"
#include "suite/admin/provisioning.h"
#include "suite/settings/registry_store.h"

#include <chrono>
#include <cmath>
#include <filesystem>
#include <iterator>

namespace qndr::simulation {
namespace {

namespace fs = std::filesystem;

/// Far in the past: whatever the real clock has stamped counts as younger than anything in the simulation.
const Date Start = *ParseDate("2020-03-02 08:00:00");
constexpr double UnixEpochDays = 25569;

class SeededIdentifiers : public services::SystemTools {
  public:
    SeededIdentifiers(SeededRandom& random, std::string name) : random_(random), name_(std::move(name)) {}
    std::string GetIdentifierText() override { return random_.Identifier(); }
    std::string GetComputerName() override { return name_; }

  private:
    SeededRandom& random_;
    std::string name_;
};

} // namespace

SimulatedComputer::SimulatedComputer(const std::string& folder, const std::string& name)
    : name_(name), folder_(folder + "/" + name), places_(suite::Computer::InFolder(folder_, name)), time_(Start) {
}

void SimulatedComputer::SetUp(int type, const std::string& syncFolder, std::int32_t frequency,
                              SeededRandom& random) {
    fs::create_directories(Companies());
    isMain_ = type == suite::MainCompanyType;
    syncFolder_ = syncFolder;
    const ComputerServices outside(places_, {time_, time_, time_}, "setup", {});
    const services::AgentServices& all = outside.Services();
    SeededIdentifiers identifiers(random, name_);
    suite::CreateCompany(
        {.psdFile = Companies() + "/dealer.psd", .name = name_, .type = type, .connectionString = ""},
        all.iniTools, identifiers, time_);
    all.registryTools.SetString(services::CurrentUserHive, settings::DefaultProfileKey, "UFL:Sync", syncFolder);
    all.registryTools.SetString(services::CurrentUserHive, settings::DefaultProfileKey, "UFL:Companies",
                                Companies());
    all.registryTools.SetLong(services::CurrentUserHive, settings::DefaultProfileKey, "RoamingWorkstation",
                              isMain_ ? 0 : 1);
    SetSetting(settings::SyncFrequency, frequency);
    OpenCompany();
    uniqueId_ = Value("SELECT UniqueID FROM Company");
    if (isMain_) {
        suite::SetCompanyOption(*company_, "Roaming Workstations", "EnableSync", "1");
        suite::SetCompanyOption(*company_, "Roaming Workstations", "SyncComputerName", name_);
    }
}

void SimulatedComputer::OpenCompany() {
    company_ = sql::Open(DatabaseFile(), time_, sql::Missing::Refuse);
}

void SimulatedComputer::MoveTo(std::int64_t minute) {
    if (minute > minute_) {
        time_.Advance((minute - minute_) * 60'000);
        minute_ = minute;
    }
    time_.SetNow(Start.AddMinutes(minute_ + clockError_));
}

void SimulatedComputer::TakeBackup() {
    fs::remove(BackupFile());
    company_->ExecuteScript("VACUUM INTO '" + BackupFile() + "'");
    hasBackup_ = true;
}

void SimulatedComputer::RestoreBackup() {
    company_.reset();
    for (const char* suffix : {"", "-wal", "-shm"}) {
        fs::remove(DatabaseFile() + suffix);
    }
    fs::copy_file(BackupFile(), DatabaseFile());
    OpenCompany();
}

void SimulatedComputer::SetSetting(const std::string& name, std::int32_t value) const {
    suite::RegistryStore(places_.registryFile, time_)
        .SetLong(services::CurrentUserHive, settings::RootKey, name, value);
}

std::size_t SimulatedComputer::TemporaryFiles() const {
    if (!fs::exists(places_.temporaryFolder)) {
        return 0;
    }
    const fs::directory_iterator left(places_.temporaryFolder);
    return static_cast<std::size_t>(std::distance(begin(left), end(left)));
}

void SimulatedComputer::EmptyTemporaryFolder() const {
    fs::remove_all(places_.temporaryFolder);
}

void SimulatedComputer::StampNewFiles() const {
    const auto seconds = std::llround((time_.Now().Days() - UnixEpochDays) * 86400);
    const auto now = std::chrono::file_clock::from_sys(std::chrono::sys_seconds(std::chrono::seconds(seconds)));
    for (const std::string& place : {places_.temporaryFolder, places_.localRoot, places_.commonApplicationData}) {
        if (fs::exists(place)) {
            for (const auto& entry : fs::recursive_directory_iterator(place)) {
                if (entry.last_write_time() > now) {
                    fs::last_write_time(entry, now);
                }
            }
        }
    }
}

} // namespace qndr::simulation
