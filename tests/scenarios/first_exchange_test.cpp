#include "support/dealer.h"

namespace qndr::testing {
namespace {

TEST(FirstExchange, BringsTwoLaptopsToReadyWithMainsRows) {
    const test::TemporaryFolder folder(test::QuickPlace());
    Dealer dealer(folder.Path(), 2);
    dealer.SetUp(400);

    dealer.Laptop(0).RunPass();
    dealer.Laptop(1).RunPass();
    EXPECT_EQ(dealer.Laptop(0).SyncState(), 2);
    EXPECT_EQ(dealer.FilesInSyncFolder(), 2U);

    dealer.Main().RunPass();
    EXPECT_EQ(dealer.RowState(dealer.Laptop(0)), 3);
    EXPECT_EQ(dealer.RowState(dealer.Laptop(1)), 3);
    EXPECT_EQ(dealer.FilesInSyncFolder(), 2U);
    EXPECT_EQ(dealer.Main().Number("SELECT MIN(LastAuditID) FROM RoamingWorkstations"),
              dealer.Main().Number("SELECT MAX(ID) FROM AuditLog"));

    dealer.RunRound();
    const std::string mainId = dealer.Main().UniqueID();
    for (const std::size_t index : {0U, 1U}) {
        const DealerComputer& laptop = dealer.Laptop(index);
        EXPECT_EQ(laptop.SyncState(), 4);
        EXPECT_EQ(dealer.RowState(laptop), 4);
        EXPECT_EQ(dealer.Differences(laptop), std::vector<std::string>{});
        EXPECT_GT(laptop.Number("SELECT COUNT(*) FROM Customers"), 0);
        EXPECT_EQ(laptop.Number("SELECT COUNT(*) FROM Orders"), 0);
        EXPECT_EQ(laptop.Value("SELECT MainUniqueID FROM Company"), mainId);
        EXPECT_EQ(laptop.Number("SELECT ReferenceCode FROM Company"), static_cast<int>(index) + 1);
        EXPECT_EQ(laptop.Number("SELECT COUNT(*) FROM AuditLog"), 0) << "the import was audited";
        EXPECT_EQ(laptop.Number("SELECT COUNT(*) FROM ImportProblems"), 0);
        EXPECT_EQ(laptop.Number("SELECT COUNT(*) FROM ImportConflicts"), 0);
    }
    EXPECT_EQ(dealer.FilesInSyncFolder(), 0U);

    dealer.RunRound();
    EXPECT_EQ(dealer.FilesInSyncFolder(), 0U) << "a quiet pass sent something";
    EXPECT_EQ(dealer.Laptop(0).SyncState(), 4);
    for (const DealerComputer* computer : {&dealer.Main(), &dealer.Laptop(0), &dealer.Laptop(1)}) {
        const std::filesystem::directory_iterator left(computer->TemporaryFolder());
        EXPECT_EQ(std::distance(begin(left), end(left)), 0) << computer->Name();
    }
}

TEST(FirstExchange, WaitsWhileTheSyncFolderIsMissingAndGoesOnWhenItIsBack) {
    const test::TemporaryFolder folder(test::QuickPlace());
    Dealer dealer(folder.Path(), 1);
    dealer.SetUp(60);
    dealer.Laptop().RunPass();
    std::filesystem::rename(dealer.SyncFolder(), dealer.SyncFolder() + ".away");

    dealer.RunRound();
    EXPECT_EQ(dealer.Laptop().SyncState(), 2);
    EXPECT_EQ(dealer.RowState(dealer.Laptop()), 0);
    EXPECT_FALSE(std::filesystem::exists(dealer.SyncFolder()));

    std::filesystem::rename(dealer.SyncFolder() + ".away", dealer.SyncFolder());
    dealer.RunRound();
    dealer.RunRound();
    EXPECT_EQ(dealer.Laptop().SyncState(), 4);
    EXPECT_EQ(dealer.Differences(dealer.Laptop()), std::vector<std::string>{});
}

} // namespace
} // namespace qndr::testing
