#include "support/dealer.h"
#include "support/scripted_gate.h"

namespace qndr::testing {
namespace {

void RunUntilReady(Dealer& dealer) {
    for (int round = 0; round < 8 && dealer.Laptop().SyncState() != 4; ++round) {
        dealer.RunRound();
        dealer.Time().Advance(6 * 60 * 1000); // main waits for five quiet minutes
    }
    ASSERT_EQ(dealer.Laptop().SyncState(), 4);
}

TEST(GivenUp, NoFaultWhileTheDataIsTakenLosesAChangeOrKeepsItTwice) {
    const test::TemporaryFolder folder(test::QuickPlace());
    Dealer dealer(folder.Path() + "/live", 1);
    dealer.SetUp(60);
    RunUntilReady(dealer);
    const DealerComputer& laptop = dealer.Laptop();
    laptop.Open()->ExecuteScript("INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O1', 1);"
                                 "UPDATE Customers SET Notes = 'mine' WHERE ID = 1");
    suite::RequestReset(*laptop.Open());
    for (int round = 0; round < 2; ++round) {
        dealer.RunRound();
        dealer.Time().Advance(6 * 60 * 1000); // main waits for five quiet minutes
    }
    laptop.Open()->Execute("UPDATE CustomerTypes SET Name = 'mine' WHERE ID = 1");
    ASSERT_EQ(dealer.FilesInSyncFolder(), 1U);
    const auto copy = [](const std::string& from, const std::string& to) {
        std::filesystem::remove_all(to);
        std::filesystem::copy(from, to, std::filesystem::copy_options::recursive);
    };
    copy(folder.Path() + "/live", folder.Path() + "/before");
    ScriptedGate counting;
    laptop.RunPass(&counting);
    const auto clearing = static_cast<std::size_t>(
        std::ranges::find(counting.Calls(), calls::SharedCodeLibrary::QNDRSQL) - counting.Calls().begin() + 1);
    ASSERT_LT(clearing, counting.Calls().size());
    for (std::size_t number = clearing; number < clearing + 45; ++number) {
        SCOPED_TRACE(number);
        copy(folder.Path() + "/before", folder.Path() + "/live");
        ScriptedGate fault;
        fault.FailAt(number, number % 2 == 1 ? ScriptedGate::Way::Raise : ScriptedGate::Way::Refuse);
        laptop.RunPass(&fault);
        laptop.RunPass();
        ASSERT_EQ(
            laptop.Value("SELECT group_concat(TableName || ' ' || Reason, ', ') FROM (SELECT TableName, Reason "
                         "FROM ImportConflicts WHERE State = 0 ORDER BY TableName)"),
            "CustomerTypes 1, Customers 1, Orders 1");
    }
}

} // namespace
} // namespace qndr::testing
