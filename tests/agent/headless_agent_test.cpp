#include "agent/agent_test.h"
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
    gate.Before("PathTools.FindFiles", [this] { time.RequestEnd(); });
    agent.Run();
    EXPECT_EQ(TakeLog(), (Lines{"Starting Sync", "Stopping Sync", "StopSync found. Application will exit."}));
    EXPECT_EQ(ReadNumber(settings::StopSync), 1);
    EXPECT_EQ(terminal.str(), "QNDR 5.0 Roaming Workstation Sync\nStarting sync\nStopping sync\n"
                              "QNDR 5.0 Roaming Workstation Sync\nChecking heartbeat...\n"
                              "QNDR 5.0 Roaming Workstation Sync\n");
}

TEST_F(HeadlessAgentTest, EndRequestThatCannotBeStoredStillEndsTheAgent) {
    gate.Before("PathTools.FindFiles", [this] {
        gate.Refuse("RegistryTools.SetLong");
        time.RequestEnd();
    });
    agent.Run();
    EXPECT_EQ(TakeLog(), (Lines{"Starting Sync", "Stopping Sync"}));
    EXPECT_NE(ReadSetting(settings::LastSync), "");
}

TEST_F(HeadlessAgentTest, PassesRunAtOnceUntilTheStopRequest) {
    SetText(settings::RootKey, settings::NextSync, "2030-01-01 00:00:00");
    agent.RunPasses(2);
    EXPECT_EQ(gate.Count("PathTools.FindFiles"), 2);
    EXPECT_EQ(time.Now(), *ParseDate("2026-11-22 14:08:52"));

    gate.Before("PathTools.FindFiles", [this] { SetNumber(settings::StopSync, 1); });
    agent.RunPasses(2);
    EXPECT_EQ(gate.Count("PathTools.FindFiles"), 3);
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
