#pragma once

#include "suite/admin/company_creation.h"
#include "suite/admin/provisioning.h"
#include "suite/computer/system_facts.h"
#include "suite/files/ini_files.h"
#include "suite/sql/sqlite/sqlite_connection.h"
#include "support/agent_bench.h"

#include <string>

namespace qndr::testing {

/// A computer MAINPC with an empty Companies folder and an empty Sync folder.
class AgentTest : public AgentBench {
  protected:
    AgentTest() {
        std::filesystem::create_directory(Path("Companies"));
        context.CompaniesFolder = Path("Companies");
    }

    /// Makes a company, 1 main or 2 Roaming Workstation, and gives its path as the log shows it.
    std::string AddCompany(const std::string& name, int type) {
        const std::string path = "Companies/" + name + ".psd";
        suite::ComputerSystemTools systemTools(computer);
        suite::CreateCompany({.psdFile = Path(path), .name = name, .type = type, .connectionString = {}}, ini_,
                             systemTools, time);
        return path;
    }
    void SetType(const std::string& path, int type) {
        sql::SqliteConnection(DatabaseOf(path), time, sql::Missing::Refuse)
            .Execute("UPDATE Company SET CompanyType = " + std::to_string(type));
    }
    /// Makes a main company that this computer syncs.
    std::string AddMain(const std::string& name) {
        const std::string path = AddCompany(name, suite::MainCompanyType);
        SetOption(path, "EnableSync", "1");
        SetOption(path, "SyncComputerName", "MAINPC");
        return path;
    }
    /// Makes that many of them and gives their paths in the order in which a pass walks them.
    Lines AddMains(int count) {
        for (int i = 0; i < count; ++i) {
            AddMain(std::string(1, static_cast<char>('a' + i)));
        }
        Lines paths;
        for (const std::string& path : context.services.pathTools.FindFiles(Path("Companies"), "*.psd", false)) {
            paths.push_back(Tidy(path));
        }
        return paths;
    }
    void SetOption(const std::string& path, const std::string& key, const std::string& value) {
        suite::SetCompanyOption(sql::SqliteConnection(DatabaseOf(path), time, sql::Missing::Refuse),
                                "Roaming Workstations", key, value);
    }
    /// The database beside a .psd file.
    std::string DatabaseOf(const std::string& path) const { return Path(path.substr(0, path.size() - 4) + ".db"); }

    /// The log without what the steps of the pipelines wrote.
    Lines TakePassLog() {
        Lines kept;
        bool inPipeline = false;
        for (const std::string& line : TakeLog()) {
            inPipeline = inPipeline && !line.starts_with("Finish syncing");
            if (!inPipeline) {
                kept.push_back(line);
            }
            inPipeline = inPipeline || line.starts_with("Begin syncing") || line.starts_with("Start syncing");
        }
        return kept;
    }

    std::int32_t ReadNumber(const char* name) {
        return registry.GetLong(services::CurrentUserHive, settings::RootKey, name, 0);
    }
    std::string ReadSetting(const char* name) {
        return registry.GetString(services::CurrentUserHive, settings::RootKey, name, "");
    }
    void SetText(const std::string& key, const std::string& name, const std::string& value) {
        registry.SetString(services::CurrentUserHive, key, name, value);
    }
    void MakeRoamingComputer() {
        registry.SetLong(services::CurrentUserHive, settings::DefaultProfileKey, "RoamingWorkstation", 1);
    }

  private:
    suite::DiskIniTools ini_;
};

} // namespace qndr::testing
