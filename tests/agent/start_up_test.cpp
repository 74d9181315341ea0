#include "agent/agent_test.h"
#include "agent/start_up.h"

namespace qndr::testing {
namespace {

/// Agents that know the switches of the start-up, each like a process of its own.
class StartUpTest : public AgentTest {
  protected:
    const std::vector<std::string> switches{"AllowMany", "Profile", "Companies", "DVLP"};
    ComputerServices firstOutside{computer, {time, time, time}, "qndr5rwsync", switches, &gate};
    ComputerServices otherOutside{computer, {time, time, time}, "qndr5rwsync", switches};
    AgentContext first{Replacing(firstOutside.Services(), log, firstOutside.Services().timers)};
    AgentContext other{Replacing(otherOutside.Services(), log, otherOutside.Services().timers)};
};

TEST_F(StartUpTest, SwitchesFillProfileAndCompaniesFolder) {
    SetText(settings::DefaultProfileKey, settings::CompaniesLocation, "/registered");
    EXPECT_EQ(StartAgent(first, ""), StartUp::LoadAgent);
    EXPECT_EQ(first.Profile, "");
    EXPECT_EQ(first.CompaniesFolder, "/registered");

    // The folder of the switch counts, whether it exists or not.
    EXPECT_EQ(StartAgent(first, R"(/profile "Field 2" --companies=/no/such)"), StartUp::LoadAgent);
    EXPECT_EQ(first.Profile, "Field 2");
    EXPECT_EQ(first.CompaniesFolder, "/no/such");

    SetText(settings::DefaultProfileKey, settings::CompaniesLocation, "");
    EXPECT_EQ(StartAgent(first, ""), StartUp::LoadAgent);
    EXPECT_EQ(first.CompaniesFolder, "");
}

TEST_F(StartUpTest, SecondCopyEndsUnlessManyAreAllowed) {
    EXPECT_EQ(StartAgent(first, "/AllowMany"), StartUp::LoadAgent);
    // The first copy counts although it asked for many.
    EXPECT_EQ(StartAgent(other, "/Companies /x"), StartUp::AnotherCopyRuns);
    EXPECT_EQ(other.CompaniesFolder, "");
    EXPECT_EQ(StartAgent(other, "/AllowMany"), StartUp::LoadAgent);
    EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(StartUpTest, DeveloperRunWorksThroughItsTwoCompanies) {
    SetText(settings::DeveloperKey, "MainProfile", "One");
    SetText(settings::DeveloperKey, "MainCompany", Path(AddCompany("a", 1)));
    SetText(settings::DeveloperKey, "RoamingProfile", "Two");
    SetText(settings::DeveloperKey, "RoamingCompany", Path(AddCompany("b", 2)));
    EXPECT_EQ(StartAgent(first, "/DVLP /Companies /x"), StartUp::DeveloperRunDone);
    EXPECT_NE(first.MainUniqueID, "");
    EXPECT_NE(first.RoamingUniqueID, "");
    EXPECT_EQ(first.Profile, "Two");
    EXPECT_EQ(first.CompaniesFolder + first.SyncFolder, "");
    EXPECT_EQ(first.OperatingMode, 0);
    EXPECT_EQ(gate.Count(calls::SharedCodeLibrary::SetOperatingMode), 2);
    EXPECT_EQ(gate.CallsOf({calls::Engine::PreTerminate, calls::SharedCodeLibrary::PreTerminate}),
              (CallList{calls::Engine::PreTerminate, calls::SharedCodeLibrary::PreTerminate,
                        calls::Engine::PreTerminate, calls::SharedCodeLibrary::PreTerminate}));
    EXPECT_EQ(TakeLog().front(), "Start receiveing initial sync requests.") << "the run itself reports nothing";
}

TEST_F(StartUpTest, DeveloperSyncReleasesWhatItOpened) {
    const std::string path = Path(AddMain("a"));
    gate.Refuse(calls::ObjectFactory::CreateEngine, 1);
    int opened = 0;
    for (const std::string& file : {path, path + "x"}) {
        RunDeveloperSync(first, file, 1);
        EXPECT_EQ(first.Library, nullptr);
        EXPECT_EQ(gate.Count(calls::SharedCodeLibrary::PreTerminate), ++opened);
    }
    EXPECT_EQ(gate.Count(calls::SharedCodeLibrary::SetOperatingMode), 1);
    EXPECT_EQ(TakeLog(), Lines{"Error: The .psd file 'Companies/a.psdx' cannot be loaded."});
}

} // namespace
} // namespace qndr::testing
