#include "agent/agent_test.h"
#include "programs/agent_program/pass_report.h"
#include "programs/qndr5rwsyncd/headless_agent.h"
#include "suite/files/command_line.h"

#include <sstream>

namespace qndr::testing {
namespace {

class HeadlessAgentTest : public AgentTest {
  protected:
    std::ostringstream terminal;
    HeadlessAgent agent{context, time.Loop(), &terminal};
};

TEST_F(HeadlessAgentTest, EndRequestBecomesAStopRequestAndEndsTheAgentAtItsExitTick) {
    // The first pass, one minute from now, is asked to end while it runs.
    gate.Before(calls::PathTools::FindFiles, [this] { time.RequestEnd(); });
    agent.Run();
    EXPECT_EQ(TakeLog(), (Lines{"Starting Sync", "Stopping Sync", "StopSync found. Application will exit."}));
    EXPECT_EQ(ReadNumber(settings::StopSync), 1);
    EXPECT_EQ(terminal.str(), "QNDR 5.0 Roaming Workstation Sync\nStarting sync\nStopping sync\n"
                              "QNDR 5.0 Roaming Workstation Sync\nChecking heartbeat...\n"
                              "QNDR 5.0 Roaming Workstation Sync\n");
}

TEST_F(HeadlessAgentTest, EndRequestThatCannotBeStoredStillEndsTheAgent) {
    gate.Before(calls::PathTools::FindFiles, [this] {
        gate.Refuse(calls::RegistryTools::SetLong);
        time.RequestEnd();
    });
    agent.Run();
    EXPECT_EQ(TakeLog(), (Lines{"Starting Sync", "Stopping Sync"}));
    EXPECT_NE(ReadSetting(settings::LastSync), "");
}

TEST_F(HeadlessAgentTest, PassesRunAtOnceUntilTheStopRequest) {
    SetText(settings::RootKey, settings::NextSync, "2030-01-01 00:00:00");
    agent.RunPasses(2);
    EXPECT_EQ(gate.Count(calls::PathTools::FindFiles), 2);
    EXPECT_EQ(time.Now(), *ParseDate("2026-11-22 14:08:52"));

    gate.Before(calls::PathTools::FindFiles, [this] { SetNumber(settings::StopSync, 1); });
    agent.RunPasses(2);
    EXPECT_EQ(gate.Count(calls::PathTools::FindFiles), 3);
}

TEST_F(HeadlessAgentTest, ScheduleFromAWrongClockIsDueAtTheNextTick) {
    SetText(settings::RootKey, settings::NextSync, "2026-11-22 15:20:00");
    gate.Before(calls::PathTools::FindFiles, [this] { time.RequestEnd(); });
    agent.Run();
    EXPECT_LT(time.Now(), *ParseDate("2026-11-22 14:20:00")) << "not in an hour";
}

TEST_F(HeadlessAgentTest, TroublesAreToldOnceAndThePassesEndWithAStatusOfTheirOwn) {
    std::ostringstream told;
    PassReport report("agent", told);
    context.services.reports = &report;
    agent.RunPasses(2);
    EXPECT_EQ(report.Status(), PassReport::NoPassMade);
    EXPECT_EQ(told.str(), "agent: no pass was made: there is no company in the Companies folder\n");

    told.str("");
    const std::string path = AddMain("Dealer");
    SetText(settings::DefaultProfileKey, "UFL:Sync", "");
    agent.RunPasses(1);
    EXPECT_EQ(report.Status(), PassReport::WithErrors) << "it has no Sync folder";
    const std::string once =
        "agent: Error: No sync files could be found because no sync folder has been identified.\n";
    EXPECT_EQ(told.str(), once);
    agent.RunPasses(1);
    EXPECT_EQ(told.str(), once);
    SetText(settings::DefaultProfileKey, "UFL:Sync", Path("Sync"));
    agent.RunPasses(1);
    SetText(settings::DefaultProfileKey, "UFL:Sync", "");
    agent.RunPasses(1);
    EXPECT_EQ(told.str(), once + once) << "it was away for a pass";
    SetOption(path, "SyncComputerName", "elsewhere");
    agent.RunPasses(1);
    EXPECT_NE(told.str().find("is not the one designated"), std::string::npos);
}

TEST(HeadlessProgramTest, ExitStatusTellsAScriptWhetherItRan) {
    const auto statusOf = [](std::vector<std::string> words, const std::function<int(const Options&)>& run) {
        std::vector<char*> arguments;
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        return RunAgentProgram(HeadlessProgram(), static_cast<int>(arguments.size()), arguments.data(), run);
    };
    EXPECT_EQ(statusOf({"qndr5rwsyncd", "--once"}, [](const Options&) { return 0; }), 0);
    EXPECT_EQ(statusOf({"qndr5rwsyncd"}, [](const Options&) -> int { throw services::Failure("no home"); }), 1);
    EXPECT_EQ(statusOf({"qndr5rwsyncd", "--onec"}, [](const Options&) { return 0; }), 2);
}

TEST(HeadlessOptionsTest, WordsAreTakenOrRefused) {
    const auto read = [](const Lines& words) { return ReadOptions(HeadlessProgram().switches, words); };
    const auto passes = [&](const Lines& words) { return read(words).passes; };
    EXPECT_EQ(passes({}), std::nullopt);
    EXPECT_EQ(passes({"--ONCE", "/Companies", "/srv/companies"}), 1);
    EXPECT_EQ(passes({"-passes:3", "--Profile=--once"}), 3);
    EXPECT_EQ(read({"/Companies", "/srv/our companies"}).commandLine, R"(/Companies "/srv/our companies")");

    std::istringstream refused("--onec|stray|\"\"|-|--once yes|--once=0|--Companies --onec|--Companies /a /b|"
                               "--passes|--passes 0|--show|--passes 1.5|--passes 1e9|--once --passes 2");
    for (std::string words; std::getline(refused, words, '|');) {
        EXPECT_THROW(read(suite::SplitCommandLine(words)), services::Failure) << words;
    }
}

} // namespace
} // namespace qndr::testing
