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

    const std::string away = dealer.SyncFolder() + ".away";
    std::filesystem::rename(dealer.SyncFolder(), away);
    dealer.RunRound();
    EXPECT_FALSE(std::filesystem::exists(dealer.SyncFolder()));
    std::filesystem::rename(away, dealer.SyncFolder());

    dealer.Main().RunPass();
    EXPECT_EQ(dealer.RowState(dealer.Laptop(1)), 3);
    EXPECT_EQ(dealer.FilesInSyncFolder(), 2U);
    dealer.RunRound();
    for (const std::size_t index : {0U, 1U}) {
        const DealerComputer& laptop = dealer.Laptop(index);
        EXPECT_EQ(laptop.SyncState(), 4);
        EXPECT_EQ(dealer.RowState(laptop), 4);
        EXPECT_EQ(dealer.Differences(laptop), std::vector<std::string>{});
        EXPECT_GT(laptop.Number("SELECT COUNT(*) FROM Customers"), 0);
        EXPECT_EQ(laptop.Number("SELECT COUNT(*) FROM Orders"), 0);
        EXPECT_EQ(laptop.Value("SELECT MainUniqueID FROM Company"), dealer.Main().UniqueID());
        EXPECT_EQ(laptop.Number("SELECT ReferenceCode FROM Company"), static_cast<int>(index) + 1);
        EXPECT_EQ(laptop.Number("SELECT COUNT(*) FROM AuditLog"), 0) << "the import was audited";
        EXPECT_EQ(laptop.TemporaryFiles(), 0U);
    }
    dealer.RunRound();
    EXPECT_EQ(dealer.FilesInSyncFolder(), 0U) << "a quiet pass sent something";
}

} // namespace
} // namespace qndr::testing
