#include "shared/agent_context.h"
#include "shared/outside.h"
#include "shared/sync_log.h"
#include "support/scripted_gate.h"

#include <gtest/gtest.h>

namespace qndr::testing {
namespace {

const std::string kLog = "C:\\Data\\Velmoran\\Logs\\qndr5rwsync 1126.log";
const std::string kTime = "2026-11-14 18:10:00      ";

struct SyncLogTest : ::testing::Test, Outside {
    std::string& Setting(const std::string& name, const std::string& key = settings::RootKey) {
        return registry.values[{key, name}];
    }
    std::string& Switch() { return Setting(settings::DebugSyncAgent); }
    std::string& StartDate() { return Setting(settings::DebugSyncAgentStartDate); }
};

TEST_F(SyncLogTest, WritesWhenTheSwitchBelowTheKeyIsExactlyOne) {
    for (const char* off : {"0", "2", "-1", "no number"}) {
        Switch() = off;
        WriteLog(services, "lost");
    }
    EXPECT_TRUE(files.files.empty());

    Switch() = "1";
    WriteLog(services, "Starting Sync");
    WriteLog(services, "other", "lost");
    Setting(settings::DebugSyncAgent, "other") = "1";
    WriteLog(services, "other", "Stopping Sync");
    EXPECT_EQ(files.files[kLog], kTime + "Starting Sync\r\n" + kTime + "Stopping Sync\r\n");
}

TEST_F(SyncLogTest, EntriesAreWrittenWhateverTheSwitchSaysAndEachMonthInAFileOfItsOwn) {
    WriteLogEntry(services, "one", 0, "");
    WriteLogEntry(services, "two", 5, "  it broke ");
    WriteLogEntry(services, "three", 7, "");
    clock.now = *ParseDate("2030-01-02 03:04:05");
    WriteLogEntry(services, "four", 0, "why");
    EXPECT_EQ(files.files[kLog], kTime + "one\r\n" + kTime + "two\r\n" + kTime + "it broke (5)\r\n" + kTime +
                                     "three\r\n" + kTime + "(7)\r\n");
    EXPECT_EQ(files.files["C:\\Data\\Velmoran\\Logs\\qndr5rwsync 0130.log"],
              "2030-01-02 03:04:05      four\r\n2030-01-02 03:04:05      why (0)\r\n");
}

TEST_F(SyncLogTest, MessageIsOneLineThatNothingObeys) {
    WriteLogEntry(services, "a\r\nb\tc\x1B[2J\x7F \u0085\u009B\u2028\u2029 \x9B", 1, "why\n");
    WriteLogEntry(services, "größe 会社 \U0001F600 \xE9 \xE2\x80", 0, "");
    EXPECT_EQ(files.files[kLog],
              kTime + R"(a\x0D\x0Ab\x09c\x1B[2J\x7F \xC2\x85\xC2\x9B\xE2\x80\xA8\xE2\x80\xA9 \x9B)" + "\r\n" +
                  kTime + "why\\x0A (1)\r\n" + kTime + "größe 会社 \U0001F600 \xE9 \xE2\\x80\r\n");
}

TEST_F(SyncLogTest, RotatesAFileThatHasGrownBeyondTheLimit) {
    clock.now = *ParseDate("2026-03-04 05:06:07");
    const std::string march = "C:\\Data\\Velmoran\\Logs\\qndr5rwsync 0326.log";
    const std::string rotated = "C:\\Data\\Velmoran\\Logs\\qndr5rwsync 0326 (3-4-2026 0506).log";
    const std::string line = "2026-03-04 05:06:07      x\r\n";
    const std::string full(131072, '.');
    files.files[march] = full;
    WriteLogEntry(services, "x", 0, "");
    EXPECT_EQ(files.files[march], full + line) << "at the limit";
    EXPECT_FALSE(files.files.contains(rotated));

    WriteLogEntry(services, "x", 0, "");
    EXPECT_EQ(files.files[rotated], full + line);
    EXPECT_EQ(files.files[march], line);

    // A second rotation in the same minute finds its name taken: nothing is overwritten and the line is kept.
    files.files[march] = full + ".";
    WriteLogEntry(services, "x", 0, "");
    EXPECT_EQ(files.files[rotated], full + line);
    EXPECT_EQ(files.files[march], full + "." + line);
}

TEST_F(SyncLogTest, WithoutItsFolderTheMessageIsLost) {
    directories.all.clear();
    EXPECT_EQ(GetLogFilePath(services), "");
    EXPECT_NO_THROW(WriteLogEntry(services, "x", 0, ""));
    EXPECT_TRUE(files.files.empty());
}

TEST_F(SyncLogTest, LogEndsAfterSevenDays) {
    struct Case {
        const char* start;
        const char* expectedSwitch;
        const char* expectedStart;
    };
    for (const Case& each :
         {Case{"", "1", "2026-11-14 18:10:00"}, Case{"yesterday", "1", "2026-11-14 18:10:00"},
          Case{"2026-11-07 18:10:00", "1", "2026-11-07 18:10:00"},
          Case{"2026-11-07 18:09:59", "0", "2026-11-07 18:09:59"}, Case{"11/7/2026", "0", "11/7/2026"}}) {
        Switch() = "1";
        StartDate() = each.start;
        ReadDebugSetting(services);
        EXPECT_EQ(Switch(), each.expectedSwitch) << each.start;
        EXPECT_EQ(StartDate(), each.expectedStart) << each.start;
    }
    Switch() = "2";
    StartDate() = "yesterday";
    ReadDebugSetting(services);
    EXPECT_EQ(Switch() + StartDate(), "2yesterday");
}

TEST_F(SyncLogTest, NoFailureOfTheOutsideLeavesTheLog) {
    for (const char* call :
         {"RegistryTools.GetLong", "RegistryTools.SetLong", "Clock.Now", "FileTools.FileExists",
          "FileTools.GetFileSize", "FileTools.MoveFile", "PathTools.FixPath", "PathTools.SplitPath",
          "PathTools.FolderExists", "PathTools.CreateNestedFolder", "SpecialFolderTools.GetFolderPath",
          "ProgramFacts.ExecutableName", "TextAppender.Append"}) {
        ScriptedGate gate;
        gate.Before(call, [] { throw services::Failure("broken"); });
        services::RegistryToolsWrapper registryTools(registry, &gate);
        services::FileToolsWrapper fileTools(files, &gate);
        services::PathToolsWrapper pathTools(paths, &gate);
        services::SpecialFolderToolsWrapper specialFolders(facts, &gate);
        services::ClockWrapper gatedClock(clock, &gate);
        services::TextAppenderWrapper appender(files, &gate);
        services::ProgramFactsWrapper program(facts, &gate);
        const AgentContext context(services::AgentServices{
            objects, switches, registryTools, fileTools, pathTools, iniFiles, textFiles, stringArrays, arrays,
            facts, specialFolders, gatedClock, messages, timers, facts, appender, program, processes});
        Switch() = "1";
        StartDate() = "2026-11-01";
        files.files[kLog] = std::string(131073, '.');
        EXPECT_NO_THROW(WriteLog(context, "x")) << call;
        EXPECT_NO_THROW(ReadDebugSetting(context)) << call;
        EXPECT_GT(gate.Count(call), 0) << call;
    }
}

} // namespace
} // namespace qndr::testing
