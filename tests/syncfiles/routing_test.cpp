#include "support/agent_bench.h"
#include "syncfiles/query_rows.h"
#include "syncfiles/routing.h"
#include "syncfiles/wait.h"

namespace qndr::testing {
namespace {

class RoutingTest : public AgentBench {
  protected:
    RoutingTest() {
        OpenCompany(2);
        WriteText(source, "archive");
        AddWorkstation("{Lap}", 4);
    }

    bool CopyToRoaming() {
        const QueryRows rows(context, "SELECT * FROM RoamingWorkstations");
        return CopySyncFileToRoaming(context, source, rows.Row(0).get());
    }

    const std::string source = Path("suz.zip");
    std::string heartbeatFile = "before";
};

TEST_F(RoutingTest, NamesTellTheAddresseeAndTheMomentAfterThePause) {
    Sql("UPDATE Company SET MainUniqueID = '{main}'");
    EXPECT_TRUE(CopySyncFileToMain(context, source));
    EXPECT_TRUE(CopyToRoaming());
    gate.Before("SystemTools.GetIdentifierText", Break);
    Sql("UPDATE Company SET MainUniqueID = NULL");
    EXPECT_TRUE(CopySyncFileToMain(context, source));
    EXPECT_EQ(TakeLog(), (Lines{"The sync file 'suz.zip' was copied for the main system as "
                                "'Sync/{main}~TOKEN~20261122T190855.zip'.",
                                "The sync file 'suz.zip' for the Roaming Workstation '{Lap}' was copied to "
                                "'Sync/{Lap}~TOKEN~20261122T190858.zip'.",
                                "The sync file 'suz.zip' was copied for the main system as "
                                "'Sync/MAIN~~20261122T190901.zip'."}));
    EXPECT_EQ(FilesBelow("Sync").size(), 3U);
    EXPECT_EQ(FilesBelow("Local"), Lines{}) << "nothing is kept unless the setting asks for it";
}

TEST_F(RoutingTest, FailedCopyIsReportedAndItsHistoryCopyStays) {
    SetNumber(settings::KeepSyncFiles, 1);
    gate.Before("FileTools.CopyFile",
                [&] { gate.Refuse("FileTools.CopyFile", gate.Count("FileTools.CopyFile") % 2 == 0); });
    EXPECT_FALSE(CopySyncFileToMain(context, source));
    time.SetNow(*ParseDate("2026-12-31 23:59:00"));
    EXPECT_FALSE(CopyToRoaming());
    EXPECT_EQ(TakeLog(), (Lines{"Error: Unable to copy a sync file 'suz.zip' for the main system as "
                                "'Sync/MAIN~TOKEN~20261122T190855.zip'.",
                                "Error: Unable to copy a sync file 'suz.zip' for the Roaming Workstation '{Lap}' "
                                "to 'Sync/{Lap}~TOKEN~20270101T045903.zip'."}));
    // The folder is that of the local month, the name that of the UTC moment.
    const Lines kept{"Local/Acme/Sync Local/History/2026/11/MAIN~TOKEN~20261122T190855.zip",
                     "Local/Acme/Sync Local/History/2026/12/{Lap}~TOKEN~20270101T045903.zip"};
    EXPECT_EQ(FilesBelow("Local"), kept);

    gate.Before("FileTools.CopyFile", [] {});
    gate.Refuse("FileTools.CopyFile", 0);
    gate.Refuse("PathTools.CreateNestedFolder", 1);
    EXPECT_TRUE(CopyToRoaming()) << "a History folder that cannot be made is passed over";
    EXPECT_EQ(FilesBelow("Local"), kept);
}

TEST_F(RoutingTest, NameNeverLeadsToAnotherFolder) {
    std::filesystem::create_directories(Path("Sync/x"));
    for (const std::string id : {"x/../../y", "x/y", "x\\y", "x\ny"}) {
        Sql("UPDATE Company SET MainUniqueID = '" + id + "'");
        Sql("UPDATE RoamingWorkstations SET UniqueID = '" + id + "'");
        context.SyncFolder = Path("Sync");
        context.RoamingUniqueID = id;
        EXPECT_FALSE(CopySyncFileToMain(context, source)) << id;
        EXPECT_FALSE(CopyToRoaming()) << id;
        EXPECT_FALSE(CopyHeartbeatFileToMain(context, source, heartbeatFile)) << id;
        const Lines lines = TakeLog();
        ASSERT_EQ(lines.size(), 3U);
        EXPECT_TRUE(lines[0].starts_with("Error: Unable to copy a sync file 'suz.zip' for the main system as "))
            << id;
    }
    for (const std::string& file : FilesBelow("")) {
        EXPECT_EQ(file.find('~'), std::string::npos) << file;
    }
}

TEST_F(RoutingTest, HeartbeatFileBearsItsSenderAndNothingGoesWithoutASyncFolder) {
    SetNumber(settings::KeepSyncFiles, 1);
    context.SyncFolder = Path("Sync");
    context.RoamingUniqueID = RoamingID;
    gate.Refuse("FileTools.CopyFile", 1);
    EXPECT_FALSE(CopyHeartbeatFileToMain(context, source, heartbeatFile));
    EXPECT_EQ(heartbeatFile, "before");
    EXPECT_TRUE(CopyHeartbeatFileToMain(context, source, heartbeatFile));
    const std::string target = "Sync/" + RoamingID + "~TOKEN~20261122T190852.rhb";
    EXPECT_EQ(Tidy(heartbeatFile), target);
    EXPECT_EQ(FilesBelow("Sync"), Lines{target});
    EXPECT_EQ(FilesBelow("Local"), Lines{});
    const std::string about = "roaming workstation heartbeat file 'suz.zip' ";
    EXPECT_EQ(TakeLog(), (Lines{"Error: Unable to copy a " + about + "for the main system as '" + target + "'.",
                                "The " + about + "was copied for the main system as '" + target + "'."}));

    context.SyncFolder = "";
    SetSyncFolder("");
    EXPECT_FALSE(CopySyncFileToMain(context, source));
    EXPECT_FALSE(CopyToRoaming());
    EXPECT_FALSE(CopyHeartbeatFileToMain(context, source, heartbeatFile));
    const std::string why = "because the 'SYNC' folder could not be identified.";
    EXPECT_EQ(TakeLog(),
              (Lines{"Error: Unable to copy a sync file 'suz.zip' for the main system " + why,
                     "Error: Unable to copy a sync file 'suz.zip' for the Roaming Workstation '{Lap}' " + why,
                     "Error: Unable to copy a " + about + "for the main system " + why}));
}

/// Notes how it is armed, is due at the third look.
struct NotingTimers : services::WaitableTimers {
    struct Timer : services::WaitableTimer {
        explicit Timer(NotingTimers& all) : notes(all) {}
        bool AlreadyExists() const override { return notes.exists; }
        void Set(std::int32_t low, std::int32_t high) override { notes.armed.emplace_back(low, high); }
        bool WaitForMessages() override { return ++notes.looks % 3 == 0; }
        NotingTimers& notes;
    };
    std::unique_ptr<services::WaitableTimer> Create(const std::string& wanted) override {
        EXPECT_EQ(wanted, "qndr5rwsyncTimer");
        return std::make_unique<Timer>(*this);
    }
    bool exists = false;
    int looks = 0;
    std::vector<std::pair<std::int32_t, std::int32_t>> armed;
};

TEST_F(RoutingTest, WaitArmsTheTimerAndLetsMessagesThrough) {
    NotingTimers noting;
    AgentContext waiting{Replacing(context.services, log, noting)};
    Wait(waiting, 3);
    EXPECT_EQ(gate.Count("MessagePump.ProcessMessages"), 3);
    noting.exists = true;
    Wait(waiting, 214);
    Wait(waiting, 215);
    EXPECT_EQ(noting.armed,
              (decltype(noting.armed){{-1, -1}, {-30000000, -1}, {-2140000000, -1}, {2144967296, -2}}));
    gate.Before("WaitableTimers.Create", Break);
    Wait(context, 3);
    EXPECT_EQ(gate.Count("MessagePump.ProcessMessages"), 9) << "without a timer there is no pause";
}

} // namespace
} // namespace qndr::testing
