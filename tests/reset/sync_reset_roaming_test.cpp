#include "reset/sync_reset_roaming.h"
#include "support/agent_bench.h"
#include "syncfiles/packaging.h"

namespace qndr::testing {
namespace {

class SyncResetRoamingTest : public AgentBench {
  protected:
    SyncResetRoamingTest() { OpenCompany(2); }

    void AskForReset() {
        Sql("UPDATE Company SET SyncState = 5, LastAuditID = 1, NextSequenceToMain = 8, NextSequenceFromMain = 7");
    }
    /// State, LastAuditID and the two sequences.
    std::string Numbers() {
        return Value("SELECT SyncState || ',' || LastAuditID || ',' || NextSequenceToMain || ',' || "
                     "NextSequenceFromMain FROM Company");
    }
};

TEST_F(SyncResetRoamingTest, OnlyTheStateOfAResetActs) {
    DropSyncFile(RoamingID + "~t~x.zip", "Sequence=7\r\nFrom=" + MainID + "\r\n");
    AskForReset();
    for (const int state : {0, 1, 2, 3, 4, 6}) {
        Sql("UPDATE Company SET SyncState = " + std::to_string(state));
        EXPECT_EQ(Run(SendSyncResetToMain), Lines{});
        EXPECT_EQ(Numbers(), std::to_string(state) + ",1,8,7");
    }
    EXPECT_EQ(FilesBelow("Sync").size(), 1U);

    AskForReset();
    SendSyncResetToMain(context, nullptr);
    EXPECT_EQ(Numbers(), "6,0,0,0") << "an empty log counts as 0";
    EXPECT_EQ(FilesBelow("Sync"), Lines{"Sync/MAIN~TOKEN~20261122T190855.zip"})
        << "main has no name here, and what waited is gone";
}

TEST_F(SyncResetRoamingTest, ResetDateComesFromTheOptionOrIsAFortnightAgo) {
    const auto dateOf = [&](const std::string& option) {
        Sql("DELETE FROM CompanyOptions");
        if (option != "missing") {
            Sql("INSERT INTO CompanyOptions (Profile, Section, OptionKey, Value) VALUES ('Default', 'Roaming "
                "Workstations', 'ResetSyncDate', '" +
                option + "')");
        }
        AskForReset();
        SendSyncResetToMain(context, nullptr);
        FoundSyncFile entry;
        entry.FilePath = Path("Sync/" + folder.Names("Sync").at(0));
        ReadSyncFile(context, entry);
        std::filesystem::remove(entry.FilePath);
        return FormatGeneralDate(entry.ResetDate);
    };
    EXPECT_EQ(dateOf("2026-10-01 07:30:00"), "2026-10-01 07:30:00");
    EXPECT_EQ(dateOf("soon"), "1900-01-01 00:00:00");
    time.SetNow(*ParseDate("2026-11-14 20:00:00"));
    EXPECT_EQ(dateOf("missing"), "2026-11-01 01:00:00");
    time.SetNow(*ParseDate("2026-11-15 02:00:00"));
    time.SetTimeZone({.state = 2, .bias = -330, .standardBias = 0, .daylightBias = -60});
    EXPECT_EQ(dateOf(""), "2026-10-31 19:30:00");
}

} // namespace
} // namespace qndr::testing
