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
};

TEST_F(RoutingTest, HistoryIsKeptByTheLocalMonthWhenItIsAskedFor) {
    EXPECT_TRUE(CopyToRoaming());
    EXPECT_EQ(FilesBelow("Local"), Lines{});
    SetNumber(settings::KeepSyncFiles, -1);
    time.SetNow(*ParseDate("2026-12-31 23:59:00"));
    EXPECT_TRUE(CopyToRoaming());
    EXPECT_EQ(FilesBelow("Local"), Lines{"Local/Acme/Sync Local/History/2026/12/{Lap}~TOKEN~20270101T045903.zip"});
}

TEST_F(RoutingTest, NameNeverLeadsToAnotherFolder) {
    std::filesystem::create_directories(Path("Sync/x"));
    context.SyncFolder = Path("Sync");
    std::string heartbeatFile;
    for (const std::string id : {"x/../../y", "x/y", "x\\y", "x\ny"}) {
        Sql("UPDATE Company SET MainUniqueID = '" + id + "'");
        Sql("UPDATE RoamingWorkstations SET UniqueID = '" + id + "'");
        context.RoamingUniqueID = id;
        EXPECT_FALSE(CopySyncFileToMain(context, source)) << id;
        EXPECT_FALSE(CopyToRoaming()) << id;
        EXPECT_FALSE(CopyHeartbeatFileToMain(context, source, heartbeatFile)) << id;
    }
    for (const std::string& file : FilesBelow("")) {
        EXPECT_EQ(file.find('~'), std::string::npos) << file;
    }
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
    EXPECT_EQ(gate.Count(calls::MessagePump::ProcessMessages), 3);
    noting.exists = true;
    Wait(waiting, 214);
    Wait(waiting, 215);
    EXPECT_EQ(noting.armed,
              (decltype(noting.armed){{-1, -1}, {-30000000, -1}, {-2140000000, -1}, {2144967296, -2}}));
    gate.Before(calls::WaitableTimers::Create, Break);
    Wait(context, 3);
    EXPECT_EQ(gate.Count(calls::MessagePump::ProcessMessages), 9) << "without a timer there is no pause";
}

} // namespace
} // namespace qndr::testing
