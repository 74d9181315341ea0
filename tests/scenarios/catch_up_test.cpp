#include "support/dealer.h"

namespace qndr::testing {
namespace {

constexpr int Waiting = 30;

/// Thirty files that waited are taken in one pass: a sender's files are listed in the order in which they were
/// sent.
TEST(CatchUp, TakesAllWaitingFilesInOnePass) {
    const test::TemporaryFolder folder(test::QuickPlace());
    std::filesystem::current_path(folder.Path());
    Dealer dealer(folder.Path() + "/live", 1);
    dealer.SetUp(0);
    ASSERT_TRUE(dealer.ComeToRest());
    const std::string id = "11111111-0000-4000-8000-000000000001";
    for (const bool fromMain : {true, false}) {
        const DealerComputer& sender = fromMain ? dealer.Main() : dealer.Laptop();
        const DealerComputer& receiver = fromMain ? dealer.Laptop() : dealer.Main();
        for (int file = 1; file <= Waiting; ++file) {
            sender.Put("Customers", id, "LastName", "Name " + std::to_string(file) + (fromMain ? "" : " again"));
            sender.RunPass();
        }
        receiver.RunPass();
        EXPECT_EQ(receiver.Get("Customers", id, "LastName"), fromMain ? "Name 30" : "Name 30 again");
    }
    std::filesystem::current_path(std::filesystem::temp_directory_path());
}

} // namespace
} // namespace qndr::testing
