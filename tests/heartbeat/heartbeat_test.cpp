#include "heartbeat/heartbeat.h"
#include "support/agent_bench.h"
#include "text/letter_case.h"

namespace qndr::testing {
namespace {

class HeartbeatTest : public AgentBench {
  protected:
    HeartbeatTest() {
        context.OperatingMode = 2;
        context.SyncFolder = Path("Sync");
        context.RoamingUniqueID = RoamingID;
    }
    std::int32_t Status() {
        return registry.GetLong(services::CurrentUserHive, settings::RootKey, settings::SyncHeartbeat, 0);
    }
    /// The status after one step.
    std::int32_t Step(std::int64_t secondsLater = 0, std::int32_t frequency = 5) {
        time.Advance(secondsLater * 1000);
        heartbeat->CheckHeartbeat(frequency);
        return Status();
    }
    /// The only file that waits for main.
    std::string Waiting() {
        const auto entries = folder.Names("Sync");
        EXPECT_EQ(entries.size(), 1U);
        return entries.empty() ? "" : Path("Sync/" + entries.front());
    }
    void Answer() { EXPECT_TRUE(std::filesystem::remove(Waiting())); }

    std::unique_ptr<Heartbeat> heartbeat = std::make_unique<Heartbeat>(context, activity);
};

TEST_F(HeartbeatTest, AnswerIsTheFilesDeletionWithinTwiceTheFrequency) {
    EXPECT_EQ(Step(), 0);
    const std::string first = Waiting();
    EXPECT_EQ(Step(599), 0);
    EXPECT_EQ(Step(1), 2);
    EXPECT_EQ(Step(3600), 2);
    EXPECT_EQ(Waiting(), first) << "one file, not one for each step";

    // A late answer counts at once, and the next file goes out in the same step.
    Answer();
    EXPECT_EQ(Step(), 1);
    EXPECT_NE(Waiting(), first);
    EXPECT_EQ(Step(599), 1) << "a status stands until there is news";
    EXPECT_EQ(Step(1, 6), 1);
    EXPECT_EQ(Step(120, 6), 2);
    EXPECT_EQ(activity.texts, Lines(8, "Checking heartbeat..."));
}

TEST_F(HeartbeatTest, FileIsAwaitedWhateverItsLetterCaseAndAlsoWhileTheFolderIsAway) {
    Step();
    const std::filesystem::path waiting = Waiting();
    std::filesystem::rename(waiting, Path("Away"));
    std::filesystem::remove(Path("Sync"));
    EXPECT_EQ(Step(6000), 0) << "everything is left as it was";
    std::filesystem::create_directory(Path("Sync"));
    std::filesystem::rename(Path("Away"), Path("Sync/" + text::ToUpperCase(waiting.filename().string())));
    EXPECT_EQ(Step(), 2);
    gate.Before(calls::PathTools::FindFiles, Break);
    EXPECT_EQ(Step(), 2) << "a folder that cannot be read says nothing of main";
    gate.Before(calls::PathTools::FindFiles, [] {});
    Answer();
    WriteText(Path("Sync/other~a~b.rhb"), "");
    EXPECT_EQ(Step(), 1) << "only the own file counts";
    EXPECT_EQ(folder.Names("Sync").size(), 2U);
}

TEST_F(HeartbeatTest, FileThatDoesNotGetThereIsTriedAgain) {
    gate.Refuse(calls::FileTools::CopyFile, 1);
    Step();
    EXPECT_EQ(Step(6000), 0) << "what never was there is no answer";
    Answer();
    EXPECT_EQ(Step(), 1);
}

TEST_F(HeartbeatTest, RestartedAgentAwaitsOnlyItsNewFile) {
    Step();
    const std::string orphan = Waiting();
    time.Advance(600'000);
    heartbeat = std::make_unique<Heartbeat>(context, activity);
    Step();
    std::filesystem::remove(orphan);
    EXPECT_EQ(Step(), 0);
    Answer();
    EXPECT_EQ(Step(), 1);
}

TEST_F(HeartbeatTest, NothingHappensWhenItIsOffOrHasNoRole) {
    SetNumber(settings::EnableHeartbeat, 0);
    Step();
    EXPECT_EQ(activity.texts, Lines{});
    SetNumber(settings::EnableHeartbeat, 1);
    context.OperatingMode = 0;
    Step();
    EXPECT_EQ(activity.texts, Lines{"Checking heartbeat..."});
    EXPECT_EQ(gate.Count(calls::ObjectFactory::CreateSharedCodeLibrary), 0);
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    context.OperatingMode = 1;
    context.Profile = "Field";
    EXPECT_EQ(Step(), 1);
    EXPECT_EQ(gate.Count(calls::Profiles::SetProfile), 1);
}

} // namespace
} // namespace qndr::testing
