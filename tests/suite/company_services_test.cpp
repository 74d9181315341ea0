#include "services/failure.h"
#include "suite/admin/company_creation.h"
#include "suite/admin/provisioning.h"
#include "suite/company_fixture.h"
#include "suite/computer/operating_system.h"
#include "suite/computer/system_facts.h"
#include "suite/files/ini_files.h"
#include "suite/objects/company_library.h"
#include "suite/objects/company_manager.h"
#include "suite/objects/file_manager.h"
#include "suite/schema/company_schema.h"
#include "suite/settings/registry_store.h"
#include "suite/sql/connection_string.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace qndr::suite {
namespace {

using services::CurrentUserHive;
using services::Failure;

/// One company with its .psd file and its database beside it.
class CompanyServicesTest : public testing::Test {
  protected:
    CompanyServicesTest() {
        CreateCompany({.psdFile = psd_, .name = "Dealer", .type = MainCompanyType, .connectionString = ""},
                      iniTools_, systemTools_, clock_);
    }

    void Open() {
        ASSERT_TRUE(manager_.PSD().Load(psd_));
        library_.SetConnectionString(manager_.PSD().ConnectionString());
        library_.SetPSDFile(psd_);
    }
    void SetOption(const std::string& profile, const std::string& key, const std::string& value) {
        SetCompanyOption(library_.Connection(), "Roaming Workstations", key, value, profile);
    }
    std::string Option(const std::string& key) {
        return library_.Options().GetCompanyOption("roaming workstations", key, "default").ToText();
    }
    static std::string Key(const std::string& profile) {
        return R"(Software\Velmoran\Ordergrove Suite\5.0\Settings ()" + profile + ")";
    }
    std::string WritePsd(const std::string& connectionString) {
        const std::string path = folder_.Path("other.psd");
        WriteFile(path, "[Company]\nName=Other\nCONNECTIONSTRING=" + connectionString + "\n");
        return path;
    }

    TestFolder folder_;
    StandingClock clock_;
    std::string psd_ = folder_.Path("Déaler.psd");
    Computer computer_ = Computer::InFolder(folder_.Path("computer"), "main");
    DiskIniTools iniTools_;
    ComputerSystemTools systemTools_{computer_};
    RegistryStore registry_{computer_.registryFile, clock_};
    CompanyMarks marks_{"main"};
    CompanyManager manager_{iniTools_, clock_, marks_};
    ComputerTrouble trouble_;
    CompanyLibrary library_{registry_, clock_, trouble_, nullptr, &marks_};
};

TEST_F(CompanyServicesTest, OpensACompanyAndNothingElse) {
    EXPECT_TRUE(manager_.CanOpenCompany(psd_));
    EXPECT_EQ(manager_.PSD().ConnectionString(), "") << "only Load fills it";
    EXPECT_TRUE(manager_.PSD().Load(psd_));
    EXPECT_FALSE(manager_.PSD().Load(folder_.Path("absent.psd")));
    EXPECT_EQ(manager_.PSD().ConnectionString(), "");

    WriteFile(folder_.Path("unnamed.psd"), "[COMPANY]\nName=Other\n");
    EXPECT_FALSE(manager_.PSD().Load(folder_.Path("unnamed.psd")));
    EXPECT_FALSE(manager_.CanOpenCompany(folder_.Path("unnamed.psd")));

    const std::string other = WritePsd("Provider=SQLite;Data Source=absent.db");
    EXPECT_TRUE(manager_.PSD().Load(other));
    EXPECT_FALSE(manager_.CanOpenCompany(other));
    EXPECT_FALSE(manager_.CanOpenCompany(WritePsd("Driver=PostgreSQL;Database=dealer")));
}

TEST_F(CompanyServicesTest, TakesADatabaseForACompanyByItsOneRow) {
    const std::string psd = WritePsd(" data source = sub/../any.db ; PROVIDER = sqlite;");
    std::filesystem::create_directory(folder_.Path("sub"));
    const sql::SqliteConnection any(folder_.Path("any.db"), clock_, sql::Missing::Create);
    for (const auto& [change, opens] : std::vector<std::pair<std::string, bool>>{
             {"CREATE TABLE SchemaVersion AS SELECT " + std::to_string(CompanySchemaVersion) + " AS Version",
              false},
             {"CREATE TABLE Company (CompanyType INTEGER, UniqueID TEXT)", false},
             {"INSERT INTO Company VALUES (NULL, 'A')", false},
             {"UPDATE Company SET CompanyType = 2, UniqueID = ''", false},
             {"UPDATE Company SET UniqueID = 'A'", true},
             {"INSERT INTO Company VALUES (2, 'B')", false}}) {
        any.Execute(change);
        EXPECT_EQ(manager_.CanOpenCompany(psd), opens) << change;
    }
}

TEST_F(CompanyServicesTest, OneAgentAtATimeWorksOnACompany) {
    CompanyMarks otherMarks("other");
    std::vector<std::string> told;
    otherMarks.OnLeftAlone([&](const std::string& line) { told.push_back(line); });
    CompanyManager other(iniTools_, clock_, otherMarks);
    const std::string database = folder_.Path("Déaler.db");
    const std::string linked = WritePsd("Provider=SQLite;Data Source=link.db");
    std::filesystem::create_symlink(database, folder_.Path("link.db"));
    const auto events = [&] {
        return sql::SqliteConnection(database, clock_, sql::Missing::Refuse)
            .Value("SELECT group_concat(EventNumber || EventText, '|') FROM CompanyEvents")
            .value_or("");
    };

    Open();
    EXPECT_TRUE(other.CanOpenCompany(psd_)) << "whoever only looks at a company is no agent";
    other.PreTerminate();
    ASSERT_TRUE(manager_.CanOpenCompany(psd_));
    Open();
    manager_.PreTerminate();
    EXPECT_FALSE(other.CanOpenCompany(psd_));
    EXPECT_FALSE(other.CanOpenCompany(linked));
    EXPECT_TRUE(manager_.CanOpenCompany(linked)) << "the same agent";
    manager_.PreTerminate();
    EXPECT_EQ(told, std::vector<std::string>{"the company of '" + database +
                                             "' was left alone: another agent is at work on it"});
    EXPECT_EQ(events(), "5The company was left alone by the agent of " + UserName() +
                            " on other: another agent is at work on it.");
    library_.PreTerminate();
    EXPECT_TRUE(other.CanOpenCompany(linked));
    EXPECT_FALSE(manager_.CanOpenCompany(psd_));
    other.PreTerminate();

    // Whoever may write the database may take the mark.
    const std::string mark = database + ".agent";
    std::filesystem::permissions(database, std::filesystem::perms(0660));
    EXPECT_TRUE(manager_.CanOpenCompany(psd_));
    EXPECT_EQ(std::filesystem::status(mark).permissions(), std::filesystem::perms(0660));
    manager_.PreTerminate();
    std::filesystem::remove(mark);
    std::filesystem::create_directory(mark);
    EXPECT_FALSE(other.CanOpenCompany(psd_));
    EXPECT_NE(told.back().find("closed to this user"), std::string::npos) << told.back();
}

TEST(ConnectionString, NamesAnSqliteFileOrIsRefused) {
    EXPECT_EQ(sql::SqliteFileOf("Data Source=/a b/c=d.db;Version=3;;provider=SQLITE"), "/a b/c=d.db");
    EXPECT_EQ(sql::SqliteFileOf("Provider=SQLite;Data Source='/a;''b''.db' ; "), "/a;'b'.db");
    EXPECT_EQ(sql::ResolveConnectionString("Provider=SQLite;Data Source=b.db", "/a"),
              "Provider=SQLite;Data Source=/a/b.db");
    for (const char* other : {"", "Provider=SQLite", "Provider=SQLite;Data Source=", "Data Source=/a.db",
                              "Provider=MSDASQL;Data Source=/a.db", "no connection string", "Provider=\"SQLite"}) {
        EXPECT_THROW(sql::SqliteFileOf(other), Failure) << other;
    }
}

TEST_F(CompanyServicesTest, ServesTheDatabaseOnlyBetweenConnectionStringAndPreTerminate) {
    const auto expectNoDatabase = [&] {
        EXPECT_THROW(library_.Database().ExecuteScaler("SELECT 1", "", ""), Failure);
        EXPECT_THROW(library_.Options().GetCompanyOption("a", "b", "c"), Failure);
        EXPECT_THROW(library_.RecordEvent("text", 2), Failure);
        EXPECT_EQ(library_.QNDRSQL(), nullptr);
    };
    expectNoDatabase();
    Open();
    ASSERT_NE(library_.QNDRSQL(), nullptr);
    library_.QNDRSQL()->PreTerminate();
    EXPECT_EQ(library_.QNDRSQL()->ExecuteNonQuery("UPDATE Company SET SyncState = 0"), 1);
    library_.RecordEvent("It's here", std::nullopt);
    library_.RecordEvent("A reset", 2);
    EXPECT_EQ(library_.Connection().Value(
                  "SELECT group_concat(OccurredOn || EventText || ifnull(EventNumber, '-')) FROM CompanyEvents"),
              "20261122 19:08:52It's here-,20261122 19:08:52A reset2");

    EXPECT_THROW(library_.SetConnectionString("Driver=PostgreSQL"), Failure);
    expectNoDatabase();
    Open();
    library_.PreTerminate();
    expectNoDatabase();
}

TEST_F(CompanyServicesTest, FallsBackOnTheDefaultProfile) {
    Open();
    EXPECT_EQ(Option("EnableSync"), "default");
    SetOption("Default", "EnableSync", "o'clock");
    SetOption("default", "ENABLESYNC", "1");
    SetOption("Default", "SyncComputerName", "main");
    SetOption("North", "SyncComputerName", "");
    SetOption("North", "EnableSync", "0");
    EXPECT_EQ(Option("EnableSync"), "1");
    library_.Profiles().SetProfile("north");
    EXPECT_EQ(Option("EnableSync"), "0");
    EXPECT_EQ(Option("SyncComputerName"), "main") << "an empty value counts as missing";
    library_.Profiles().SetProfile("");
    EXPECT_EQ(Option("enablesync"), "1");
    EXPECT_TRUE(library_.Options().GetCompanyOption("Roaming Workstations", "ResetSyncDate", {}).IsEmpty());
}

TEST_F(CompanyServicesTest, ReadsRoleAndLocationsOfTheProfileWithoutACompany) {
    EXPECT_FALSE(library_.Security().IsRoamingWorkstation());
    EXPECT_EQ(library_.Options().UserFileLocation("Sync"), "");
    registry_.SetLong(CurrentUserHive, Key("Default"), "RoamingWorkstation", 1);
    registry_.SetString(CurrentUserHive, Key("Default"), "UFL:Sync", "/default");
    registry_.SetString(CurrentUserHive, Key("North"), "UFL:Companies", "/north");
    EXPECT_TRUE(library_.Security().IsRoamingWorkstation());
    library_.Profiles().SetProfile("North");
    EXPECT_TRUE(library_.Security().IsRoamingWorkstation());
    EXPECT_EQ(library_.Options().UserFileLocation("Sync"), "/default");
    EXPECT_EQ(library_.Options().UserFileLocation("Companies"), "/north");
    registry_.SetLong(CurrentUserHive, Key("North"), "RoamingWorkstation", 0);
    EXPECT_FALSE(library_.Security().IsRoamingWorkstation());
    registry_.SetString(CurrentUserHive, Key("North"), "RoamingWorkstation", "perhaps");
    EXPECT_FALSE(library_.Security().IsRoamingWorkstation());
}

TEST_F(CompanyServicesTest, GivesEachCompanyALocalFolder) {
    bool flag = false;
    FileManager files(computer_);
    EXPECT_EQ(files.GetRootFolderPath(flag), "") << "no library yet";
    library_.SetPSDFile(psd_);
    files.Initialize(library_);
    EXPECT_EQ(files.GetRootFolderPath(flag), computer_.localRoot + "/Déaler");
    EXPECT_TRUE(std::filesystem::is_directory(computer_.localRoot + "/Déaler"));

    library_.SetPSDFile(folder_.Path("...psd"));
    files.Initialize(library_);
    EXPECT_EQ(files.GetRootFolderPath(flag), computer_.localRoot + "/...psd");
    WriteFile(computer_.localRoot + "/taken", "a file");
    library_.SetPSDFile(folder_.Path("taken.psd"));
    files.Initialize(library_);
    EXPECT_EQ(files.GetRootFolderPath(flag), computer_.localRoot + "/taken") << "an empty one would be relative";
}

} // namespace
} // namespace qndr::suite
