#include "agent/agent_test.h"
#include "agent/scheduler.h"
#include "agent/stop_request.h"

namespace qndr::testing {
namespace {

/// Notes what the scheduler asks of its window.
class NotingView : public AgentView {
  public:
    void FillLabels() override { Note("labels"); }
    void ShowFrequency(std::int32_t minutes) override { Note("frequency " + std::to_string(minutes)); }
    void ShowActivity(const std::string& text) override { Note(text); }
    void RefreshStatus() override { Note("refresh"); }
    void StopTimers() override { Note("stop timers"); }
    void Unload() override { Note("unload"); }
    Lines Take() { return std::exchange(asked_, {}); }

    bool broken = false;

  private:
    void Note(const std::string& what) {
        asked_.push_back(what);
        if (broken) {
            Break();
        }
    }
    Lines asked_;
};

class SchedulerTest : public AgentTest {
  protected:
    std::string Now(std::int64_t minutes = 0) { return FormatGeneralDate(time.Now().AddMinutes(minutes)); }

    NotingView view;
    AgentScheduler scheduler{context, view, activity};
};

constexpr const char* kTitle = "QNDR 5.0 Roaming Workstation Sync";

TEST_F(SchedulerTest, LoadTakesUpTheScheduleAndClearsTheSignals) {
    SetNumber(settings::StopSync, 1);
    SetNumber(settings::SyncHeartbeat, 2);
    SetText(settings::RootKey, settings::NextSync, "soon");
    scheduler.Load();
    EXPECT_EQ(view.Take(), (Lines{"labels", "frequency 5", "refresh"}));
    EXPECT_EQ(activity.Text(), kTitle);
    EXPECT_EQ(ReadNumber(settings::StopSync), 0);
    EXPECT_EQ(ReadNumber(settings::SyncHeartbeat), 0);
    EXPECT_EQ(ReadSetting(settings::NextSync), Now(1));

    // A real date stands, also one that has passed: the first tick then runs a pass.
    const std::string past = Now(-600);
    SetText(settings::RootKey, settings::NextSync, past);
    SetNumber(settings::SyncFrequency, 12);
    context.Profile = "Field";
    scheduler.Load();
    EXPECT_EQ(view.Take(), (Lines{"labels", "frequency 12", "refresh"}));
    EXPECT_EQ(activity.Text(), std::string(kTitle) + " - Field");
    EXPECT_EQ(ReadSetting(settings::NextSync), past);
    scheduler.TickSync();
    EXPECT_EQ(ReadSetting(settings::NextSync), Now(12));
}

TEST_F(SchedulerTest, NextPassIsCountedFromTheEndOfThisOne) {
    scheduler.Load();
    scheduler.TickSync();
    EXPECT_EQ(TakeLog(), Lines{});
    time.Advance(60000);
    gate.Before(calls::PathTools::FindFiles, [this] { time.Advance(9 * 60000); });
    view.Take();
    activity.texts = {kTitle};
    scheduler.TickSync();
    EXPECT_EQ(TakeLog(), (Lines{"Starting Sync", "Stopping Sync"}));
    EXPECT_EQ(activity.texts,
              (Lines{kTitle, "Starting sync", "Stopping sync", kTitle, "Checking heartbeat...", kTitle}));
    EXPECT_EQ(ReadSetting(settings::LastSync), Now());
    EXPECT_EQ(ReadSetting(settings::NextSync), Now(5));
    EXPECT_EQ(view.Take(), Lines{"refresh"});

    time.Advance(4 * 60000);
    scheduler.TickSync();
    EXPECT_EQ(TakeLog(), Lines{}) << "one minute early";
    scheduler.SyncNow();
    EXPECT_EQ(ReadSetting(settings::NextSync), Now());
    scheduler.TickSync();
    EXPECT_EQ(TakeLog().size(), 2U);
}

TEST_F(SchedulerTest, HeartbeatBelongsToThePassAndTakesTheSchedulersFrequency) {
    MakeRoamingComputer();
    AddCompany("field", suite::RoamingCompanyType);
    SetNumber(settings::SyncFrequency, 7);
    scheduler.Load();
    const auto heartbeatAfter = [&](int minutes) {
        time.SetNow(time.Now().AddMinutes(minutes));
        scheduler.SyncNow();
        scheduler.TickSync();
        return ReadNumber(settings::SyncHeartbeat);
    };
    gate.Before(calls::FileTools::CopyFile, [&] {
        EXPECT_EQ(activity.Text(), "Checking heartbeat...");
        EXPECT_FALSE(scheduler.MayClose());
        EXPECT_EQ(ReadSetting(settings::LastSync), "");
    });
    EXPECT_EQ(heartbeatAfter(1), 0);
    EXPECT_EQ(gate.Count(calls::FileTools::CopyFile), 1);
    EXPECT_EQ(heartbeatAfter(13), 0);
    EXPECT_EQ(heartbeatAfter(1), 2);
    EXPECT_EQ(activity.Text(), kTitle);
}

TEST_F(SchedulerTest, TicksInsideAPassLeaveThePassAndTheExitAlone) {
    scheduler.Load();
    time.Advance(60000);
    view.Take();
    gate.Before(calls::PathTools::FindFiles, [this] {
        RequestStopSync(context);
        scheduler.TickSync();
        scheduler.TickExit();
        EXPECT_FALSE(scheduler.MayClose());
    });
    scheduler.TickSync();
    EXPECT_EQ(gate.Count(calls::PathTools::FindFiles), 1);
    EXPECT_EQ(view.Take(), (Lines{"refresh", "Starting sync", "refresh"}));
    EXPECT_TRUE(scheduler.MayClose());

    // An exit tick inside an exit tick ends the agent once, and the log takes it although it is off.
    SetNumber(settings::DebugSyncAgent, 0);
    TakeLog();
    bool nested = false;
    gate.Before(calls::MessagePump::ProcessMessages, [&] {
        if (!std::exchange(nested, true)) {
            scheduler.TickExit();
        }
    });
    scheduler.TickExit();
    EXPECT_EQ(view.Take(), (Lines{"Idle", "Idle", "stop timers", "unload"}));
    EXPECT_EQ(TakeLog(), Lines{"StopSync found. Application will exit."});
}

TEST_F(SchedulerTest, NoFailureOfTheOutsideLeavesTheScheduler) {
    view.broken = true;
    scheduler.Load();
    EXPECT_EQ(view.Take(), (Lines{"labels", "frequency 5", "refresh"}));
    time.Advance(60000);
    scheduler.TickSync();
    EXPECT_EQ(ReadSetting(settings::LastSync), Now());
    EXPECT_TRUE(scheduler.MayClose());
    scheduler.SyncNow();
    EXPECT_EQ(view.Take(), (Lines{"refresh", "refresh"}));

    activity.SetText("Copying");
    gate.Refuse(calls::RegistryTools::GetLong, 1);
    gate.Refuse(calls::MessagePump::ProcessMessages, 1);
    scheduler.TickExit();
    EXPECT_EQ(view.Take(), Lines{"Copying"}) << "a request that cannot be read ends no agent";
    activity.SetText(kTitle);
    RequestStopSync(context);
    scheduler.TickExit();
    EXPECT_EQ(view.Take(), (Lines{"Idle", "stop timers", "unload"}));
}

} // namespace
} // namespace qndr::testing
