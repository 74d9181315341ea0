#include "agent/agent_test.h"
#include "agent/run_sync.h"

namespace qndr::testing {
namespace {

using RunSyncTest = AgentTest;

std::vector<std::string> Between(const std::vector<std::string>& lines) {
    std::vector<std::string> pass{"Starting Sync"};
    pass.insert(pass.end(), lines.begin(), lines.end());
    pass.push_back("Stopping Sync");
    return pass;
}

TEST_F(RunSyncTest, WithoutCompaniesThePassEndsNormally) {
    RunSync(context, &activity);
    EXPECT_EQ(TakePassLog(), Between({}));
    EXPECT_EQ(activity.texts, (Lines{"Starting sync", "Stopping sync"}));

    context.CompaniesFolder += "x";
    RunSync(context, nullptr);
    EXPECT_EQ(TakePassLog(),
              Between({"Error: Syncing will not be performed because the companies folder 'Companiesx' does not "
                       "exist."}));

    context.CompaniesFolder = "";
    RunSync(context, nullptr);
    EXPECT_EQ(TakePassLog(), Between({"Error: Syncing will not be performed becuase no Companies folder has been "
                                      "specified."}));
}

TEST_F(RunSyncTest, FileWhoseLibraryCannotBeMadeIsPassedOver) {
    const Lines paths = AddMains(2);
    gate.Refuse("ObjectFactory.CreateSharedCodeLibrary", 1);
    RunSync(context, nullptr);
    EXPECT_EQ(TakePassLog(),
              Between({"Processing file " + paths[0], "Processing file " + paths[1], "OperatingMode set to 1",
                       "Begin syncing as main", "Finish syncing as main"}));
}

TEST_F(RunSyncTest, CompanyThatCannotBeOpenedIsReportedAndReleased) {
    const std::string a = AddMain("a");
    const auto expect = [&](const std::string& why) {
        RunSync(context, nullptr);
        EXPECT_EQ(TakePassLog(), Between({"Processing file " + a, "OperatingMode set to 1", why,
                                          "Error: Unable to open the company referenced in '" + a + "'."}));
        EXPECT_EQ(context.Library, nullptr);
    };
    gate.Refuse("ObjectFactory.CreateCompanyManager", 1);
    expect("Error: Unable to access the QNDR 5 Company Manager library.");
    EXPECT_EQ(gate.Count("CompanyManager.PreTerminate"), 0);

    gate.Refuse("PsdFile.Load", 1);
    expect("Error: The .psd file '" + a + "' cannot be loaded.");

    std::filesystem::remove(DatabaseOf(a));
    expect("Error: The company database referenced in .psd '" + a + "' cannot be opened.");
    EXPECT_EQ(gate.Count("CompanyManager.PreTerminate"), 2);
    EXPECT_EQ(gate.Count("SharedCodeLibrary.PreTerminate"), 3);
    EXPECT_EQ(gate.Count("ObjectFactory.CreateEngine"), 0);
}

TEST_F(RunSyncTest, WithoutAnEngineTheLibraryIsReleasedAndTheWalkGoesOn) {
    const Lines paths = AddMains(2);
    gate.Refuse("ObjectFactory.CreateEngine", 1);
    RunSync(context, nullptr);
    EXPECT_EQ(TakePassLog(),
              Between({"Processing file " + paths[0], "OperatingMode set to 1",
                       "Error: Unable to access the QNDR 5 Import/Export engine.", "Processing file " + paths[1],
                       "OperatingMode set to 1", "Begin syncing as main", "Finish syncing as main"}));
    EXPECT_EQ(gate.CallsOf({"Engine.PreTerminate", "SharedCodeLibrary.PreTerminate"}),
              (Lines{"SharedCodeLibrary.PreTerminate", "Engine.PreTerminate", "SharedCodeLibrary.PreTerminate"}));
    EXPECT_EQ(context.Engine, nullptr);
    EXPECT_EQ(context.Library, nullptr);
}

TEST_F(RunSyncTest, OneCompanyThatQualifiesLetsAllLaterOnesThrough) {
    const std::string notEnabled =
        "This file will not be processed becuase Syncing is not enabled for this company.";
    const Lines paths = AddMains(3);
    SetOption(paths[0], "EnableSync", "0");
    SetOption(paths[2], "EnableSync", "0");
    RunSync(context, nullptr);
    EXPECT_EQ(TakePassLog(),
              Between({"Processing file " + paths[0], "OperatingMode set to 1", notEnabled,
                       "Processing file " + paths[1], "OperatingMode set to 1", "Begin syncing as main",
                       "Finish syncing as main", "Processing file " + paths[2], "OperatingMode set to 1",
                       notEnabled, "Begin syncing as main", "Finish syncing as main"}));
    EXPECT_EQ(gate.Count("ObjectFactory.CreateEngine"), 2);

    // The next pass begins anew.
    RunSync(context, nullptr);
    EXPECT_EQ(gate.Count("ObjectFactory.CreateEngine"), 4);
}

TEST_F(RunSyncTest, WrongComputerAsksForTheExitAndWalksOn) {
    const Lines paths = AddMains(3);
    SetOption(paths[0], "SyncComputerName", "  OtherPC ");
    SetOption(paths[1], "SyncComputerName", " mainpc ");
    SetOption(paths[2], "SyncComputerName", "OtherPC");
    RunSync(context, nullptr);
    const std::string wrong = "This file will not be processed because this computer, 'mainpc', is not the one "
                              "designated for syncing this company - 'otherpc'.";
    const Lines whole = log.lines;
    EXPECT_EQ(TakePassLog(),
              Between({"Processing file " + paths[0], "OperatingMode set to 1", wrong,
                       "Processing file " + paths[1], "OperatingMode set to 1", "Begin syncing as main",
                       "Finish syncing as main", "Processing file " + paths[2], "OperatingMode set to 1", wrong,
                       "Begin syncing as main", "Finish syncing as main"}));
    EXPECT_EQ(ReadNumber(settings::StopSync), 1);
    // Each pipeline came as far as the test behind its first step.
    EXPECT_EQ(std::ranges::count(whole, "Start receiveing initial sync requests."), 2);
    EXPECT_EQ(std::ranges::count(whole, "Start receiveing initial sync acknowledges."), 0);
}

TEST_F(RunSyncTest, RoleComesFromTheCompanyAndModeFromTheComputer) {
    MakeRoamingComputer();
    const Lines paths = AddMains(2);
    SetOption(paths[0], "EnableSync", "0");
    SetType(paths[1], 0);
    const std::string qualifies = "This company will be processed because this is a Roaming Workstation.";
    context.Profile = "Field";
    SetText(R"(Software\Velmoran\Ordergrove Suite\5.0\Settings (Field))", "UFL:Sync", Path("Field"));
    RunSync(context, nullptr);
    EXPECT_EQ(TakePassLog(),
              Between({"Processing file " + paths[0], "Profile 'Field' will be used.", "OperatingMode set to 2",
                       qualifies, "Begin syncing as main", "Finish syncing as main", "Processing file " + paths[1],
                       "Profile 'Field' will be used.", "OperatingMode set to 2", qualifies,
                       "Start syncing as roaming", "Finish syncing as roaming"}));
    EXPECT_EQ(context.OperatingMode, 2);
    EXPECT_EQ(context.SyncFolder, Path("Field"));
    EXPECT_EQ(context.RoamingUniqueID, "");
    EXPECT_EQ(ReadNumber(settings::StopSync), 0);
}

TEST_F(RunSyncTest, FailedTestsCountAsPassedAndFailedStatementsAreSkipped) {
    const std::string a = AddMain("a");
    SetOption(a, "SyncComputerName", "OtherPC");
    gate.Refuse("Security.IsRoamingWorkstation", 1);
    gate.Refuse("SharedCodeLibrary.OperatingMode", 1);
    gate.Refuse("SystemTools.GetComputerName", 1);
    gate.Refuse("Engine.Initialize", 1);
    RunSync(context, nullptr);
    // No line about the mode; the comparison of the computers passed.
    EXPECT_EQ(TakePassLog(), Between({"Processing file " + a, "Begin syncing as main", "Finish syncing as main"}));
    EXPECT_EQ(context.OperatingMode, 2);
    EXPECT_EQ(ReadNumber(settings::StopSync), 0);
    EXPECT_EQ(gate.Count("Engine.SetIgnoreUnknownTables"), 1);

    // A type that cannot be read leads into the main branch, also for a roaming company.
    std::filesystem::remove(Path(a));
    AddCompany("b", 2);
    MakeRoamingComputer();
    gate.Refuse("Database.ExecuteScaler", 1);
    RunSync(context, nullptr);
    EXPECT_EQ(TakePassLog().at(4), "Begin syncing as main");
}

} // namespace
} // namespace qndr::testing
