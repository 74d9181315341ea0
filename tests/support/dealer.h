#pragma once

#include "agent/run_sync.h"
#include "composition/computer_services.h"
#include "suite/company/company_compare.h"
#include "suite/company/company_creation.h"
#include "suite/company/provisioning.h"
#include "suite/company/sample_data.h"
#include "suite/computer/virtual_time.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

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
    std::string TemporaryFolder() const { return computer_.temporaryFolder; }

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

    std::unique_ptr<suite::SqliteConnection> Open() const {
        return std::make_unique<suite::SqliteConnection>(Companies() + "/dealer.db", time_,
                                                         suite::SqliteConnection::Missing::Refuse);
    }
    std::int64_t Number(const std::string& statement) const { return Open()->Number(statement, -1); }
    std::string Value(const std::string& statement) const { return Open()->Value(statement).value_or(""); }
    std::int64_t SyncState() const { return Number("SELECT SyncState FROM Company"); }

  private:
    std::string name_;
    std::string folder_;
    suite::Computer computer_;
    std::string uniqueId_;
    suite::VirtualTime& time_;
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

    /// Makes the companies, fills main and registers the laptops, which then have to ask for their initial sync.
    void SetUp(std::int64_t rows) {
        std::filesystem::create_directories(SyncFolder());
        main_.SetUp(suite::MainCompanyType, SyncFolder());
        suite::FillWithSampleData(*main_.Open(), rows, 1);
        for (const auto& laptop : laptops_) {
            laptop->SetUp(suite::RoamingCompanyType, SyncFolder());
            suite::AddWorkstation(*main_.Open(), *laptop->Open());
        }
    }

    const DealerComputer& Main() const { return main_; }
    const DealerComputer& Laptop(std::size_t index = 0) const { return *laptops_.at(index); }
    suite::VirtualTime& Time() { return time_; }

    std::string SyncFolder() const { return folder_ + "/sync"; }
    std::size_t FilesInSyncFolder() const {
        const std::filesystem::directory_iterator files(SyncFolder());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    /// Every laptop and then main runs a pass.
    void RunRound() {
        for (const auto& laptop : laptops_) {
            laptop->RunPass();
        }
        main_.RunPass();
    }

    /// State of a laptop's row on main.
    std::int64_t RowState(const DealerComputer& laptop) const {
        return main_.Number("SELECT SyncState FROM RoamingWorkstations WHERE UniqueID = '" + laptop.UniqueID() +
                            "'");
    }

    /// Names of the exchanged tables in which a laptop differs from main.
    std::vector<std::string> Differences(const DealerComputer& laptop) const {
        std::vector<std::string> tables;
        for (const auto& table : suite::CompareCompanies(*main_.Open(), *laptop.Open(), suite::Scope::Exchanged)) {
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
