#include "shared/sync_log.h"
#include "support/agent_bench.h"

namespace qndr::testing {
namespace {

const std::string Time = "2026-11-22 14:08:52      ";

class SyncLogTest : public AgentBench {
  protected:
    SyncLogTest() { WriteLogEntry(services, "first", 0, ""); } // makes the folder

    std::string Log(const std::string& name = "1126") { return ReadText(LogPath(name)); }
    std::string LogPath(const std::string& name = "1126") {
        return Path("CommonAppData/Velmoran/Logs/qndr5rwsync " + name + ".log");
    }
    /// Lines of one moment.
    static std::string Lined(const Lines& lines, const std::string& moment = Time) {
        std::string text;
        for (const std::string& line : lines) {
            text += moment + line + "\r\n";
        }
        return text;
    }
    void Set(const std::string& name, const std::string& value, const std::string& key = settings::RootKey) {
        registry.SetString(services::CurrentUserHive, key, name, value);
    }
    std::string Get(const std::string& name) {
        return registry.GetString(services::CurrentUserHive, settings::RootKey, name, "");
    }

    const services::AgentServices& services = outside.Services();
};

TEST_F(SyncLogTest, WritesWhenTheSwitchBelowTheKeyIsExactlyOne) {
    for (const char* off : {"0", "2", "-1", "no number"}) {
        Set(settings::DebugSyncAgent, off);
        WriteLog(services, "lost");
    }
    Set(settings::DebugSyncAgent, "1");
    WriteLog(services, "Starting Sync");
    WriteLog(services, "other", "lost");
    Set(settings::DebugSyncAgent, "1", "other");
    WriteLog(services, "other", "Stopping Sync");
    EXPECT_EQ(Log(), Lined({"first", "Starting Sync", "Stopping Sync"}));
}

TEST_F(SyncLogTest, EntriesAreWrittenWhateverTheSwitchSaysAndEachMonthInAFileOfItsOwn) {
    SetNumber(settings::DebugSyncAgent, 0);
    WriteLogEntry(services, "two", 5, "  it broke ");
    WriteLogEntry(services, "three", 7, "");
    time.SetNow(*ParseDate("2030-01-02 03:04:05"));
    WriteLogEntry(services, "four", 0, "why");
    EXPECT_EQ(Log(), Lined({"first", "two", "it broke (5)", "three", "(7)"}));
    EXPECT_EQ(Log("0130"), Lined({"four", "why (0)"}, "2030-01-02 03:04:05      "));
}

TEST_F(SyncLogTest, MessageIsOneLineThatNothingObeys) {
    WriteLogEntry(services, "a\r\nb\tc\x1B[2J\x7F \u0085\u009B\u2028\u2029 \x9B", 1, "why\n");
    WriteLogEntry(services, "größe 会社 \U0001F600 \xE9 \xE2\x80", 0, "");
    EXPECT_EQ(Log(), Lined({"first", R"(a\x0D\x0Ab\x09c\x1B[2J\x7F \xC2\x85\xC2\x9B\xE2\x80\xA8\xE2\x80\xA9 \x9B)",
                            "why\\x0A (1)", "größe 会社 \U0001F600 \xE9 \xE2\\x80"}));
}

TEST_F(SyncLogTest, RotatesAFileThatHasGrownBeyondTheLimit) {
    time.SetNow(*ParseDate("2026-03-04 05:06:07"));
    const std::string rotated = "0326 (3-4-2026 0506)";
    const std::string line = "2026-03-04 05:06:07      x\r\n";
    const std::string full(131072, '.');
    WriteText(LogPath("0326"), full);
    WriteLogEntry(services, "x", 0, "");
    EXPECT_EQ(Log("0326"), full + line) << "at the limit";
    WriteLogEntry(services, "x", 0, "");
    EXPECT_EQ(Log(rotated), full + line);
    EXPECT_EQ(Log("0326"), line);

    // A second rotation in the same minute finds its name taken: nothing is overwritten and the line is kept.
    WriteText(LogPath("0326"), full + ".");
    WriteLogEntry(services, "x", 0, "");
    EXPECT_EQ(Log(rotated), full + line);
    EXPECT_EQ(Log("0326"), full + "." + line);
}

TEST_F(SyncLogTest, LogEndsAfterSevenDays) {
    const std::string now = "2026-11-22 14:08:52";
    for (const auto& [start, expectedSwitch, expectedStart] :
         {std::tuple<std::string, int, std::string>{"", 1, now},
          {"yesterday", 1, now},
          {"2026-11-15 14:08:52", 1, "2026-11-15 14:08:52"},
          {"2026-11-15 14:08:51", 0, "2026-11-15 14:08:51"},
          {"11/7/2026", 0, "11/7/2026"}}) {
        SetNumber(settings::DebugSyncAgent, 1);
        Set(settings::DebugSyncAgentStartDate, start);
        ReadDebugSetting(services);
        EXPECT_EQ(Get(settings::DebugSyncAgent), std::to_string(expectedSwitch)) << start;
        EXPECT_EQ(Get(settings::DebugSyncAgentStartDate), expectedStart) << start;
    }
    SetNumber(settings::DebugSyncAgent, 2);
    Set(settings::DebugSyncAgentStartDate, "yesterday");
    ReadDebugSetting(services);
    EXPECT_EQ(Get(settings::DebugSyncAgentStartDate), "yesterday");
}

TEST_F(SyncLogTest, NoFailureOfTheOutsideLeavesTheLog) {
    std::filesystem::current_path(folder.Path()); // where the log goes whose path cannot be split
    for (const Call call :
         {calls::RegistryTools::GetLong, calls::RegistryTools::SetLong, calls::Clock::Now,
          calls::FileTools::FileExists, calls::FileTools::GetFileSize, calls::FileTools::MoveFile,
          calls::PathTools::FixPath, calls::PathTools::SplitPath, calls::PathTools::FolderExists,
          calls::PathTools::CreateNestedFolder, calls::SpecialFolderTools::GetFolderPath,
          calls::ProgramFacts::ExecutableName, calls::TextAppender::Append}) {
        SetNumber(settings::DebugSyncAgent, 1);
        Set(settings::DebugSyncAgentStartDate, "2026-11-01");
        WriteText(LogPath(), std::string(131073, '.'));
        const auto before = gate.Count(call);
        gate.Before(call, Break);
        EXPECT_NO_THROW(WriteLog(services, "x")) << call.Name();
        EXPECT_NO_THROW(ReadDebugSetting(services)) << call.Name();
        EXPECT_GT(gate.Count(call), before) << call.Name();
        gate.Before(call, [] {});
    }
    gate.Refuse(calls::PathTools::FolderExists, 1);
    EXPECT_EQ(GetLogFilePath(services), "");
    std::filesystem::current_path(std::filesystem::temp_directory_path());
}

} // namespace
} // namespace qndr::testing
