#include "agent/agent_test.h"
#include "agent/run_sync.h"

namespace qndr::testing {
namespace {

class RunSyncTest : public AgentTest {
  protected:
    /// Runs a pass and compares what it logged between its first line and its last; an element may hold several
    /// lines.
    void ExpectPass(const Lines& lines) {
        RunSync(context, &activity);
        std::string expected = "Starting Sync";
        for (const std::string& line : lines) {
            expected += "\n" + line;
        }
        std::string logged;
        for (const std::string& line : TakePassLog()) {
            logged += line + "\n";
        }
        EXPECT_EQ(logged, expected + "\nStopping Sync\n");
        EXPECT_TRUE(context.Engine == nullptr && context.Library == nullptr);
    }
    /// The lines of a company up to the mode.
    static std::string Taking(const std::string& path) {
        return "Processing file " + path + "\nOperatingMode set to 1";
    }

    const std::string synced = "Begin syncing as main\nFinish syncing as main";
};

TEST_F(RunSyncTest, WithoutCompaniesThePassEndsNormally) {
    ExpectPass({});
    EXPECT_EQ(activity.texts, (Lines{"Starting sync", "Stopping sync"}));
    context.CompaniesFolder += "x";
    ExpectPass({"Error: Syncing will not be performed because the companies folder 'Companiesx' does not exist."});
    context.CompaniesFolder = "";
    ExpectPass({"Error: Syncing will not be performed becuase no Companies folder has been specified."});
}

TEST_F(RunSyncTest, WithoutALibraryOrAnEngineTheWalkGoesOn) {
    const Lines paths = AddMains(3);
    gate.Refuse(calls::ObjectFactory::CreateSharedCodeLibrary, 1);
    gate.Refuse(calls::ObjectFactory::CreateEngine, 1);
    ExpectPass({"Processing file " + paths[0], Taking(paths[1]),
                "Error: Unable to access the QNDR 5 Import/Export engine.", Taking(paths[2]), synced});
    EXPECT_EQ(gate.CallsOf({calls::Engine::PreTerminate, calls::SharedCodeLibrary::PreTerminate}),
              (CallList{calls::SharedCodeLibrary::PreTerminate, calls::Engine::PreTerminate,
                        calls::SharedCodeLibrary::PreTerminate}));
}

TEST_F(RunSyncTest, CompanyThatCannotBeOpenedIsReportedAndReleased) {
    const std::string a = AddMain("a");
    const auto expect = [&](const std::string& why) {
        ExpectPass({Taking(a), why, "Error: Unable to open the company referenced in '" + a + "'."});
    };
    gate.Refuse(calls::ObjectFactory::CreateCompanyManager, 1);
    expect("Error: Unable to access the QNDR 5 Company Manager library.");
    EXPECT_EQ(gate.Count(calls::CompanyManager::PreTerminate), 0);
    gate.Refuse(calls::PsdFile::Load, 1);
    expect("Error: The .psd file '" + a + "' cannot be loaded.");
    std::filesystem::remove(DatabaseOf(a));
    expect("Error: The company database referenced in .psd '" + a + "' cannot be opened.");
    EXPECT_EQ(gate.Count(calls::CompanyManager::PreTerminate), 2);
    EXPECT_EQ(gate.Count(calls::SharedCodeLibrary::PreTerminate), 3);
}

TEST_F(RunSyncTest, OneCompanyThatQualifiesLetsAllLaterOnesOfThePassThrough) {
    const std::string notEnabled =
        "This file will not be processed becuase Syncing is not enabled for this company.";
    const std::string wrong = "This file will not be processed because this computer, 'mainpc', is not the one "
                              "designated for syncing this company - 'otherpc'.";
    const Lines paths = AddMains(5);
    SetOption(paths[0], "EnableSync", "0");
    SetOption(paths[1], "SyncComputerName", "  OtherPC ");
    SetOption(paths[2], "SyncComputerName", " mainpc ");
    SetOption(paths[3], "EnableSync", "0");
    SetOption(paths[4], "SyncComputerName", "OtherPC");
    ExpectPass({Taking(paths[0]), notEnabled, Taking(paths[1]), wrong, Taking(paths[2]), synced, Taking(paths[3]),
                notEnabled, synced, Taking(paths[4]), wrong, synced});
    EXPECT_EQ(ReadNumber(settings::StopSync), 1);
    // The next pass begins anew.
    RunSync(context, nullptr);
    EXPECT_EQ(gate.Count(calls::ObjectFactory::CreateEngine), 6);
}

TEST_F(RunSyncTest, RoleComesFromTheCompanyAndModeFromTheComputer) {
    MakeRoamingComputer();
    const Lines paths = AddMains(2);
    SetOption(paths[0], "EnableSync", "0");
    SetType(paths[1], 0);
    const std::string chosen = "\nProfile 'Field' will be used.\nOperatingMode set to 2\nThis company will be "
                               "processed because this is a Roaming Workstation.";
    context.Profile = "Field";
    SetText(R"(Software\Velmoran\Ordergrove Suite\5.0\Settings (Field))", "UFL:Sync", Path("Field"));
    ExpectPass({"Processing file " + paths[0] + chosen, synced, "Processing file " + paths[1] + chosen,
                "Start syncing as roaming\nFinish syncing as roaming"});
    EXPECT_EQ(context.OperatingMode, 2);
    EXPECT_EQ(context.SyncFolder, Path("Field"));
    EXPECT_EQ(context.RoamingUniqueID, "");
    EXPECT_EQ(ReadNumber(settings::StopSync), 0);
}

TEST_F(RunSyncTest, FailedTestsCountAsPassedAndFailedStatementsAreSkipped) {
    const std::string a = AddMain("a");
    SetOption(a, "SyncComputerName", "OtherPC");
    gate.Refuse(calls::Security::IsRoamingWorkstation, 1);
    gate.Refuse(calls::SharedCodeLibrary::OperatingMode, 1);
    gate.Refuse(calls::SystemTools::GetComputerName, 1);
    gate.Refuse(calls::Engine::Initialize, 1);
    // No line about the mode; the comparison of the computers passed.
    ExpectPass({"Processing file " + a, synced});
    EXPECT_EQ(context.OperatingMode, 2);
    EXPECT_EQ(ReadNumber(settings::StopSync), 0);
    EXPECT_EQ(gate.Count(calls::Engine::SetIgnoreUnknownTables), 1);

    // A type that cannot be read leads into the main branch, also for a roaming company.
    SetType(a, 2);
    MakeRoamingComputer();
    gate.Refuse(calls::Database::ExecuteScaler, 1);
    RunSync(context, nullptr);
    EXPECT_EQ(TakePassLog().at(4), "Begin syncing as main");
}

} // namespace
} // namespace qndr::testing
