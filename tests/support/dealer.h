#pragma once

#include "agent/run_sync.h"
#include "composition/computer_services.h"
#include "shared/settings.h"
#include "suite/admin/company_compare.h"
#include "suite/admin/company_creation.h"
#include "suite/admin/provisioning.h"
#include "suite/admin/sample_data.h"
#include "suite/computer/virtual_time.h"
#include "suite/settings/registry_store.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace qndr::testing {

/// A computer of the dealer with one company on it: real files, settings, archives and database.
class DealerComputer {
  public:
    DealerComputer(const std::string& folder, const std::string& name, suite::VirtualTime& time)
        : name_(name), folder_(folder + "/" + name), computer_(suite::Computer::InFolder(folder_, name)),
          time_(time) {}

    const std::string& Name() const { return name_; }
    std::string Companies() const { return folder_ + "/Companies"; }
    const std::string& UniqueID() const { return uniqueId_; }
    std::string Psd() const { return Companies() + "/dealer.psd"; }
    const suite::Computer& Computer() const { return computer_; }
    std::string TemporaryFolder() const { return computer_.temporaryFolder; }
    std::string LogFolder() const { return computer_.commonApplicationData; }
    /// A folder that the agent keeps for the company, "History" for instance.
    std::string KeptFolder(const std::string& name) const {
        return computer_.localRoot + "/dealer/Sync Local/" + name;
    }

    /// Makes the company and sets the computer up for its role.
    void SetUp(int type, const std::string& syncFolder) {
        std::filesystem::create_directories(Companies());
        const ComputerServices outside(computer_, {time_, time_, time_}, "setup", {});
        const services::AgentServices& all = outside.Services();
        suite::CreateCompany({.psdFile = Psd(), .name = name_, .type = type, .connectionString = ""}, all.iniTools,
                             all.systemTools, time_);
        const std::string key = R"(Software\Velmoran\Ordergrove Suite\5.0\Settings (Default))";
        all.registryTools.SetString(services::CurrentUserHive, key, "UFL:Sync", syncFolder);
        all.registryTools.SetLong(services::CurrentUserHive, key, "RoamingWorkstation", type == 2 ? 1 : 0);
        uniqueId_ = Value("SELECT UniqueID FROM Company");
        if (type == 1) {
            suite::SetCompanyOption(*Open(), "Roaming Workstations", "EnableSync", "1");
            suite::SetCompanyOption(*Open(), "Roaming Workstations", "SyncComputerName", name_);
        }
    }

    /// One pass of a newly started agent. The gate, if there is one, stands in front of all that it asks of the
    /// outside.
    void RunPass(services::CallGate* gate = nullptr) const {
        const ComputerServices outside(computer_, {time_, time_, time_}, "qndr5rwsync", {}, gate);
        AgentContext context(outside.Services());
        context.CompaniesFolder = Companies();
        RunSync(context, nullptr);
    }

    /// Opening the database takes longer than most of what is done with it. A test can keep it open as long as it
    /// does not exchange its files.
    void KeepOpen() { kept_ = Open(); }
    void LetGo() { kept_.reset(); }
    std::shared_ptr<sql::Connection> Open() const {
        return kept_ != nullptr ? kept_
                                : std::shared_ptr<sql::Connection>(
                                      sql::Open(Companies() + "/dealer.db", time_, sql::Missing::Refuse));
    }
    std::int64_t Number(const std::string& statement) const { return Open()->Number(statement, -1); }
    std::string Value(const std::string& statement) const { return Open()->Value(statement).value_or(""); }
    std::int64_t SyncState() const { return Number("SELECT SyncState FROM Company"); }

    // What the application around the database does. The triggers audit it, so it travels.
    void Execute(const std::string& statement) const { Open()->Execute(statement); }
    /// Inserts the row with this one value, or edits it.
    void Put(const std::string& table, const std::string& id, const std::string& column,
             const std::string& value) const {
        Execute("INSERT INTO " + table + " (UniqueID, " + column + ") VALUES ('" + id + "', '" + value +
                "') ON CONFLICT (UniqueID) DO UPDATE SET " + column + " = excluded." + column);
    }
    void Delete(const std::string& table, const std::string& id) const {
        Execute("DELETE FROM " + table + " WHERE UniqueID = '" + id + "'");
    }
    /// Empty when there is no such row.
    std::string Get(const std::string& table, const std::string& id, const std::string& column) const {
        return Value("SELECT " + column + " FROM " + table + " WHERE UniqueID = '" + id + "'");
    }

    /// The values that lost here, in the form in which they are kept, one line each.
    std::string Conflicts() const {
        return Value(
            "SELECT group_concat(TableName || ' ' || RowUniqueID || ' ' || ifnull(LosingValues, 'deleted'), "
            "char(10)) FROM ImportConflicts");
    }
    /// Gives the virtual moment to every file and folder that bears a later one, as whatever is made or changed
    /// does: the disk goes by the real clock. Only for a virtual time that lies far in the past; a pass takes what
    /// it made itself for young.
    void StampNewFiles() const {
        const auto now = VirtualFileTime();
        for (const std::string& place :
             {computer_.temporaryFolder, KeptFolder(""), computer_.commonApplicationData}) {
            if (std::filesystem::exists(place)) {
                for (const auto& entry : std::filesystem::recursive_directory_iterator(place)) {
                    if (entry.last_write_time() > now) {
                        std::filesystem::last_write_time(entry, now);
                    }
                }
            }
        }
    }
    /// The virtual moment, that many days ago, as the date of a file.
    std::filesystem::file_time_type VirtualFileTime(int daysAgo = 0) const {
        constexpr double unixEpoch = 25569;
        const auto seconds = std::llround((time_.Now().Days() - unixEpoch - daysAgo) * 86400);
        return std::chrono::file_clock::from_sys(std::chrono::sys_seconds(std::chrono::seconds(seconds)));
    }
    std::size_t TemporaryFiles() const {
        const std::filesystem::directory_iterator left(TemporaryFolder());
        return static_cast<std::size_t>(std::distance(begin(left), end(left)));
    }
    void SetNumber(const std::string& setting, std::int32_t value) const {
        suite::RegistryStore(computer_.registryFile, time_)
            .SetLong(services::CurrentUserHive, settings::RootKey, setting, value);
    }
    std::int32_t GetNumber(const std::string& setting) const {
        return suite::RegistryStore(computer_.registryFile, time_)
            .GetLong(services::CurrentUserHive, settings::RootKey, setting, -1);
    }

  private:
    std::string name_;
    std::string folder_;
    suite::Computer computer_;
    std::string uniqueId_;
    suite::VirtualTime& time_;
    std::shared_ptr<sql::Connection> kept_;
};

/// A dealer: a main computer, laptops and their Sync folder below one folder, in one virtual time.
class Dealer {
  public:
    Dealer(const std::string& folder, int laptops) : folder_(folder), main_(folder, "main", time_) {
        for (int number = 1; number <= laptops; ++number) {
            laptops_.push_back(
                std::make_unique<DealerComputer>(folder, "laptop-" + std::to_string(number), time_));
        }
    }

    /// Makes the companies, fills main with that many rows and registers the laptops, which then have to ask for
    /// their initial sync.
    void SetUp(std::int64_t rows) {
        std::filesystem::create_directories(SyncFolder());
        main_.SetUp(suite::MainCompanyType, SyncFolder());
        if (rows > 0) {
            suite::FillWithSampleData(*main_.Open(), rows, 1);
        }
        for (const auto& laptop : laptops_) {
            laptop->SetUp(suite::RoamingCompanyType, SyncFolder());
            suite::AddWorkstation(*main_.Open(), *laptop->Open());
        }
    }

    const DealerComputer& Main() const { return main_; }
    const DealerComputer& Laptop(std::size_t index = 0) const { return *laptops_.at(index); }
    /// Main and then the laptops.
    std::vector<const DealerComputer*> All() const {
        std::vector<const DealerComputer*> all{&main_};
        for (const auto& laptop : laptops_) {
            all.push_back(laptop.get());
        }
        return all;
    }
    suite::VirtualTime& Time() { return time_; }
    void KeepOpen() {
        main_.KeepOpen();
        for (const auto& laptop : laptops_) {
            laptop->KeepOpen();
        }
    }
    void LetGo() {
        main_.LetGo();
        for (const auto& laptop : laptops_) {
            laptop->LetGo();
        }
    }

    std::string SyncFolder() const { return folder_ + "/sync"; }
    std::size_t FilesInSyncFolder() const { return SyncFiles().size(); }

    /// Full paths, in order; all but what the partners tell of their standing.
    std::vector<std::string> SyncFiles() const {
        std::vector<std::string> paths;
        for (const auto& file : std::filesystem::directory_iterator(SyncFolder())) {
            if (file.path().extension() != ".rsf") {
                paths.push_back(file.path().string());
            }
        }
        std::sort(paths.begin(), paths.end());
        return paths;
    }

    /// Every laptop and then main runs a pass.
    void RunRound() {
        for (const auto& laptop : laptops_) {
            laptop->RunPass();
        }
        main_.RunPass();
    }

    /// How far everything has come: the counters, the audit logs and the files that are under way.
    std::string Position() const {
        std::string position;
        for (const DealerComputer* computer : All()) {
            position += computer->Value(
                "SELECT LastAuditID || ' ' || NextSequenceToMain || ' ' || NextSequenceFromMain || ' ' || ifnull("
                "(SELECT MAX(ID) FROM AuditLog), 0) || ' ' || ifnull((SELECT group_concat(LastAuditID || ' ' || "
                "NextSequenceToRoaming || ' ' || NextSequenceFromRoaming) FROM RoamingWorkstations), '') FROM "
                "Company");
            position += "; ";
        }
        for (const std::string& path : SyncFiles()) {
            position += path.substr(SyncFolder().size());
        }
        return position;
    }
    /// Runs rounds until one of them moves nothing. False when that does not come.
    bool ComeToRest(int rounds = 15) {
        std::string before = Position();
        for (int round = 0; round < rounds; ++round) {
            RunRound();
            const std::string now = Position();
            if (now == before) {
                return true;
            }
            before = now;
        }
        return false;
    }

    /// Runs rounds more than five minutes apart, which end the drain of a reset, until every pairing is ready.
    /// False when one of them does not come to that.
    bool FinishResets() {
        const auto isReady = [&](const auto& laptop) {
            return laptop->SyncState() == 4 && RowState(*laptop) == 4;
        };
        for (int round = 0; round < 8; ++round) {
            if (std::all_of(laptops_.begin(), laptops_.end(), isReady)) {
                return true;
            }
            time_.Advance(6 * 60 * 1000);
            RunRound();
        }
        return false;
    }

    /// State of a laptop's row on main.
    std::int64_t RowState(const DealerComputer& laptop) const {
        return main_.Number("SELECT SyncState FROM RoamingWorkstations WHERE UniqueID = '" + laptop.UniqueID() +
                            "'");
    }

    /// Names of the tables in which a laptop differs from main.
    std::vector<std::string> Differences(const DealerComputer& laptop,
                                         suite::Scope scope = suite::Scope::Exchanged) const {
        std::vector<std::string> tables;
        for (const auto& table : suite::CompareCompanies(*main_.Open(), *laptop.Open(), scope)) {
            if (!table.Alike()) {
                tables.push_back(table.table);
            }
        }
        return tables;
    }

  private:
    std::string folder_;
    suite::VirtualTime time_{*ParseDate("2026-11-22 14:00:00")};
    DealerComputer main_;
    std::vector<std::unique_ptr<DealerComputer>> laptops_;
};

} // namespace qndr::testing
