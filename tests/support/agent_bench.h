#pragma once

#include "composition/computer_services.h"
#include "services/gated/company_services.h"
#include "shared/activity.h"
#include "shared/agent_context.h"
#include "shared/settings.h"
#include "suite/computer/virtual_time.h"
#include "suite/files/zip_archive.h"
#include "suite/objects/company_database.h"
#include "suite/schema/company_schema.h"
#include "suite/settings/registry_store.h"
#include "suite/sql/connection_string.h"
#include "suite/sql/sqlite/sqlite_connection.h"
#include "support/scripted_gate.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <utility>

namespace qndr::testing {

using Lines = std::vector<std::string>;

inline const std::string MainID = "AAAAAAAA-0000-4000-8000-000000000001";
inline const std::string RoamingID = "BBBBBBBB-0000-4000-8000-000000000002";
inline const std::string OtherID = "CCCCCCCC-0000-4000-8000-000000000003";

/// A step of a pipeline.
using Step = void (*)(AgentContext&, ActivityTarget*);

inline std::string ReadText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

/// Puts "TOKEN" in the place of every text of that length between the two others.
inline void HideRandom(std::string& text, const std::string& before, std::size_t length,
                       const std::string& behind) {
    for (auto place = text.find(before); place != std::string::npos; place = text.find(before, place + 1)) {
        const auto start = place + before.size();
        if (text.compare(std::min(start + length, text.size()), behind.size(), behind) == 0) {
            text.replace(start, length, "TOKEN");
        }
    }
}

/// The content of a company database without a row. Making one takes longer than a whole test.
inline std::string MakeEmptyDatabase(const services::Clock& clock) {
    const test::TemporaryFolder folder;
    const std::string file = folder / "empty.db";
    sql::SqliteConnection(file, clock, sql::Missing::Create)
        .ExecuteScript("BEGIN;" + suite::CompanySchemaScript() + "COMMIT;");
    return ReadText(file);
}

/// Takes the log's messages, without their times.
struct LogLines : services::TextAppender {
    void Append(const std::string&, const std::string& text) override {
        lines.push_back(text.substr(25, text.size() - 27));
    }
    Lines lines;
};

struct ActivityLines : ActivityTarget {
    std::string Text() const override { return texts.empty() ? "" : texts.back(); }
    void SetText(const std::string& text) override { texts.push_back(text); }
    Lines texts;
};

/// Notes what it is asked for and answers as it is told.
struct NotingEngine : services::Engine {
    void Initialize(services::SharedCodeLibrary&) override {}
    void SetVerbose(bool) override {}
    void SetIgnoreUnknownTables(bool) override {}
    void ClearExports() override { exports.clear(); }
    void AddToExport(const std::string& table, const std::string& statement, bool deletion) override {
        exports.emplace_back(deletion ? table + " deleted" : table, statement);
    }
    bool DoExport(const std::string& path) override {
        exported.push_back(exports);
        duringExport();
        if (exportSucceeds) {
            WriteText(path, "<Exchange/>");
        }
        return exportSucceeds;
    }
    bool ImportFile(const std::string& path) override {
        imports.push_back(ReadText(path));
        duringImport();
        return importSucceeds;
    }
    bool ExportOrder(std::int32_t id, const std::string& path) override {
        orders.push_back(id);
        orderFile = std::filesystem::path(path).filename();
        exports.emplace_back("order", "left pending");
        WriteText(path, "<Order/>");
        return true;
    }
    void PreTerminate() override {}

    using Entries = std::vector<std::pair<std::string, std::string>>;
    Entries exports;               ///< what is pending
    std::vector<Entries> exported; ///< what was pending at each DoExport
    std::vector<std::int32_t> orders;
    std::string orderFile; ///< name of the last order's file
    Lines imports;
    std::function<void()> duringExport = [] {};
    std::function<void()> duringImport = [] {};
    bool exportSucceeds = true;
    bool importSucceeds = true;
};

/// The services with another log and other timers, and with what else is given.
inline services::AgentServices
Replacing(const services::AgentServices& all, services::TextAppender& log, services::WaitableTimers& timers,
          services::Processes* processes = nullptr, services::RegistryTools* registryTools = nullptr,
          services::PathTools* pathTools = nullptr, services::FileVersions* fileVersions = nullptr) {
    return {all.objects,
            all.commandLineTools,
            registryTools == nullptr ? all.registryTools : *registryTools,
            all.fileTools,
            pathTools == nullptr ? all.pathTools : *pathTools,
            all.iniTools,
            all.textFileTools,
            all.stringArrayTools,
            all.arrayTools,
            all.systemTools,
            all.specialFolderTools,
            all.clock,
            all.messages,
            timers,
            fileVersions == nullptr ? all.fileVersions : *fileVersions,
            log,
            all.program,
            processes == nullptr ? all.processes : *processes};
}

/// One computer in a folder of its own, in virtual time, with one company open on it: real files, archives,
/// settings and databases, each call behind `gate`, and an engine that only notes. It is 22 November 2026,
/// 14:08:52 local time, 19:08:52 UTC; the log is on.
class AgentBench : public ::testing::Test {
  public:
    AgentBench() {
        time.SetTimeZone({.state = 1, .bias = 300, .standardBias = 0, .daylightBias = -60});
        std::filesystem::create_directory(Path("Sync"));
        SetNumber(settings::DebugSyncAgent, 1);
        SetSyncFolder(Path("Sync"));
    }

    std::string Path(const std::string& name) const { return folder.Path() + "/" + name; }

    void SetNumber(const std::string& name, std::int32_t value) {
        registry.SetLong(services::CurrentUserHive, settings::RootKey, name, value);
    }
    void SetSyncFolder(const std::string& path) {
        registry.SetString(services::CurrentUserHive, settings::DefaultProfileKey, "UFL:Sync", path);
    }

    /// Makes a company, 1 main or 2 Roaming Workstation, and opens it.
    void OpenCompany(int type) {
        const std::string file = Path("Acme.db");
        static const std::string emptyDatabase = MakeEmptyDatabase(time);
        WriteText(file, emptyDatabase);
        context.Library = context.services.objects.CreateSharedCodeLibrary();
        context.Library->SetConnectionString(sql::SqliteConnectionString(file));
        context.Library->SetPSDFile(Path("Acme.psd"));
        database_ = &context.Library->Implementation().Database();
        Sql("INSERT INTO Company (ID, UniqueID, CompanyType, DatabaseVersion) VALUES (1, '" +
            (type == 1 ? MainID : RoamingID) + "', " + std::to_string(type) + ", '5.0.1')");
        auto noting = std::make_unique<NotingEngine>();
        engine = noting.get();
        context.Engine = std::make_unique<services::EngineWrapper>(std::move(noting), &gate);
    }
    /// A row of a workstation in that state, with the ID 1 for the first.
    void AddWorkstation(const std::string& uniqueId, int state, int referenceCode = 7) {
        Sql("INSERT INTO RoamingWorkstations (UniqueID, Name, ReferenceCode, SyncState) VALUES ('" + uniqueId +
            "', 'Laptop', " + std::to_string(referenceCode) + ", " + std::to_string(state) + ")");
    }
    void Audit(const std::string& table, int recordId, int type, const std::string& data = "") {
        Sql("INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData) VALUES ('" +
            table + "', " + std::to_string(recordId) + ", " + std::to_string(type) + ", '20261122 10:00:00', 'U" +
            std::to_string(recordId) + "', '" + data + "')");
    }
    /// The company's events and their numbers.
    std::string Events() {
        return Value("SELECT group_concat(EventText || coalesce('/' || EventNumber, ''), '|') FROM CompanyEvents");
    }
    /// What a step logs.
    Lines Run(Step step) {
        TakeLog();
        step(context, &activity);
        return TakeLog();
    }
    /// Its database, beside the gate.
    services::Database& Company() { return *database_; }
    /// As it is to everybody but the agent.
    sql::Connection& Connection() { return dynamic_cast<suite::CompanyDatabase&>(*database_).Connection(); }
    void Sql(const std::string& statement) { Connection().Execute(statement); }
    std::string Value(const std::string& statement) { return Connection().Value(statement).value_or(""); }

    /// Packs the files, given as name and content, into an archive at the path. The same files are packed once.
    void Pack(const std::string& path, const std::vector<std::pair<std::string, std::string>>& files) {
        static std::map<std::vector<std::pair<std::string, std::string>>, std::string> packed;
        if (const auto found = packed.find(files); found != packed.end()) {
            WriteText(path, found->second);
            return;
        }
        const std::string from = Path("pack/");
        std::filesystem::create_directory(from);
        for (const auto& [name, content] : files) {
            WriteText(from + name, content);
        }
        suite::LibZipArchive zip;
        ASSERT_TRUE(zip.NewZip(path) == 1 && zip.AppendFiles(from + "*.*", 1) == 1 && zip.WriteZipAndClose() == 1);
        std::filesystem::remove_all(from);
        packed[files] = ReadText(path);
    }
    /// Drops a sync file with these keys of its descriptor into the Sync folder.
    std::string DropSyncFile(const std::string& name, const std::string& keys) {
        Pack(Path("Sync/" + name), {{"id.dat", "[GENERAL]\r\n" + keys}, {"data.xml", "data of " + name}});
        return Path("Sync/" + name);
    }
    /// Names of all files below the folder, sorted, tidied like the log.
    Lines FilesBelow(const std::string& name) const {
        Lines found;
        if (std::filesystem::is_directory(Path(name))) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(Path(name))) {
                if (entry.is_regular_file()) {
                    found.push_back(Tidy(entry.path()));
                }
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    /// Without the bench's own folder and with "TOKEN" for what is random.
    std::string Tidy(std::string text) const {
        for (auto place = text.find(folder.Path() + "/"); place != std::string::npos;
             place = text.find(folder.Path() + "/")) {
            text.erase(place, folder.Path().size() + 1);
        }
        HideRandom(text, "~", 32, "~");
        HideRandom(text, "suz", 16, ".zip");
        HideRandom(text, "suz", 16, ".xml");
        return text;
    }
    /// The messages that were logged since the last call, tidied.
    Lines TakeLog() {
        Lines taken;
        for (const std::string& line : std::exchange(log.lines, {})) {
            taken.push_back(Tidy(line));
        }
        return taken;
    }

    test::TemporaryFolder folder{test::QuickPlace()};
    suite::Computer computer = suite::Computer::InFolder(folder.Path(), "MAINPC");
    ScriptedGate gate;
    suite::VirtualTime time{*ParseDate("2026-11-22 14:08:52")};
    suite::RegistryStore registry{computer.registryFile, time};
    ComputerServices outside{computer, {time, time, time}, "qndr5rwsync", {}, &gate};
    LogLines log;
    AgentContext context{Replacing(outside.Services(), log, outside.Services().timers)};
    NotingEngine* engine = nullptr;
    ActivityLines activity;

  private:
    services::Database* database_ = nullptr;
};

/// What a gate does to make a call raise.
inline void Break() {
    throw services::Failure("broken");
}

} // namespace qndr::testing
