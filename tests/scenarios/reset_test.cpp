#include "support/dealer.h"

namespace qndr::testing {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

/// Main and two laptops in normal running with some rows, of which the first laptop has lost a file from main:
/// what comes behind it waits for ever.
class Reset : public ::testing::Test {
  protected:
    Reset() {
        dealer.SetUp(60);
        dealer.KeepOpen();
        dealer.RunRound();
        dealer.RunRound();
        main.Put("Groups", "LOST", "Name", "lost");
        main.RunPass();
        for (const std::string& file : FilesTo(one)) {
            fs::remove(file);
        }
        main.Put("Groups", "BEHIND", "Name", "behind");
        EXPECT_TRUE(dealer.ComeToRest());
        EXPECT_EQ(one.Get("Groups", "BEHIND", "Name"), "");
        EXPECT_EQ(FilesTo(one).size(), 1U);
    }

    void Ask(const DealerComputer& laptop) const { suite::RequestReset(*laptop.Open()); }
    void Advance(int minutes) { dealer.Time().Advance(minutes * std::int64_t{60'000}); }
    Texts FilesTo(const DealerComputer& computer) const {
        Texts files;
        for (const std::string& file : dealer.SyncFiles()) {
            if (fs::path(file).filename().string().rfind(computer.UniqueID(), 0) == 0) {
                files.push_back(file);
            }
        }
        return files;
    }
    std::string Row(const DealerComputer& laptop) const {
        return main.Value(
            "SELECT SyncState || ' ' || NextSequenceToRoaming || ' ' || NextSequenceFromRoaming FROM "
            "RoamingWorkstations WHERE UniqueID = '" +
            laptop.UniqueID() + "'");
    }
    /// State, next sequence to main and next from main.
    static std::string Here(const DealerComputer& laptop) {
        return laptop.Value(
            "SELECT SyncState || ' ' || NextSequenceToMain || ' ' || NextSequenceFromMain FROM Company");
    }
    static std::int64_t Events(const DealerComputer& computer, const std::string& text) {
        return computer.Number("SELECT COUNT(*) FROM CompanyEvents WHERE EventText LIKE '" + text + "'");
    }
    /// All three companies hold the same rows, and a change from each reaches the others.
    void ExpectNormalRunning() {
        for (const DealerComputer* computer : dealer.All()) {
            computer->Put("Customers", computer->Name(), "LastName", "new");
        }
        EXPECT_TRUE(dealer.ComeToRest());
        EXPECT_EQ(dealer.FilesInSyncFolder(), 0U);
        for (const DealerComputer* laptop : {&one, &two}) {
            EXPECT_EQ(laptop->Number("SELECT COUNT(*) FROM Customers WHERE LastName = 'new'"), 3);
            EXPECT_EQ(dealer.Differences(*laptop), Texts{}) << laptop->Name();
            EXPECT_EQ(Here(*laptop).substr(0, 1), "4");
            EXPECT_EQ(laptop->Conflicts(), "") << laptop->Name();
        }
        for (const DealerComputer* computer : dealer.All()) {
            EXPECT_EQ(computer->TemporaryFiles(), 0U) << computer->Name();
        }
    }

    test::TemporaryFolder folder{test::QuickPlace()};
    Dealer dealer{folder.Path(), 2};
    const DealerComputer& main = dealer.Main();
    const DealerComputer& one = dealer.Laptop(0);
    const DealerComputer& two = dealer.Laptop(1);
};

TEST_F(Reset, BringsALaptopBackAndLeavesTheOtherOneAlone) {
    const std::string otherBefore = Row(two);
    Ask(one);
    one.RunPass();
    EXPECT_EQ(Here(one), "6 0 0");
    EXPECT_EQ(FilesTo(one), Texts{}) << "what main had sent goes unread";
    ASSERT_EQ(FilesTo(main).size(), 1U);

    main.RunPass();
    EXPECT_EQ(Row(one), "6 0 0");
    EXPECT_EQ(FilesTo(main), Texts{});
    EXPECT_EQ(Events(main, "A sync reset was received from Roaming Workstation laptop-1"), 1);
    EXPECT_EQ(Row(two), otherBefore);

    // The drain holds up neither main nor the other laptop; this one is sent nothing.
    two.Put("Groups", "DURING", "Name", "of two");
    two.RunPass();
    main.Put("Groups", "DURING2", "Name", "of main");
    Advance(4);
    main.RunPass();
    two.RunPass();
    EXPECT_EQ(main.Get("Groups", "DURING", "Name"), "of two");
    EXPECT_EQ(two.Get("Groups", "DURING2", "Name"), "of main");
    EXPECT_EQ(Row(one), "6 0 0");
    EXPECT_EQ(FilesTo(one), Texts{});

    Advance(2);
    main.RunPass();
    EXPECT_EQ(Row(one), "4 1 0");
    EXPECT_EQ(FilesTo(one).size(), 1U);
    EXPECT_EQ(main.Number("SELECT LastAuditID FROM RoamingWorkstations WHERE UniqueID = '" + one.UniqueID() + "'"),
              main.Number("SELECT MAX(ID) FROM AuditLog"));
    one.RunPass();
    EXPECT_EQ(Here(one), "4 0 1");
    EXPECT_EQ(Events(one, "Sync reset complete."), 1);
    EXPECT_EQ(one.Get("Groups", "LOST", "Name"), "lost");
    EXPECT_EQ(dealer.Differences(one), Texts{});
    EXPECT_EQ(one.Number("SELECT COUNT(*) FROM AuditLog WHERE ID > (SELECT LastAuditID FROM Company)"), 0)
        << "what came with the reset would go back to main";
    ExpectNormalRunning();
    EXPECT_EQ(Events(two, "Sync reset complete."), 0);
}

// Orders are no part of the full data: the laptop goes on with the version that it has.
TEST_F(Reset, KeepsMainsChangeOfAnOrderThatTheLaptopNeverGot) {
    Ask(one);
    ASSERT_TRUE(dealer.FinishResets());
    main.Put("Orders", "O", "Notes", "seen by both");
    ASSERT_TRUE(dealer.ComeToRest());
    main.Put("Orders", "O", "Notes", "of main");
    main.RunPass();
    Ask(one); // throws away unread what is on its way
    ASSERT_TRUE(dealer.FinishResets());
    ASSERT_EQ(one.Get("Orders", "O", "Notes"), "seen by both");

    one.Put("Orders", "O", "Notes", "of the laptop");
    ASSERT_TRUE(dealer.ComeToRest());
    EXPECT_EQ(main.Get("Orders", "O", "Notes"), "of the laptop");
    EXPECT_NE(main.Conflicts().find(R"("Notes":"of main")"), std::string::npos) << main.Conflicts();

    main.Put("Orders", "O", "Notes", "of main again");
    ASSERT_TRUE(dealer.ComeToRest());
    one.Put("Orders", "O", "Notes", "seen and changed");
    ASSERT_TRUE(dealer.ComeToRest());
    EXPECT_EQ(main.Number("SELECT COUNT(*) FROM ImportConflicts"), 1) << "what the laptop saw is no loss";
}

} // namespace
} // namespace qndr::testing
