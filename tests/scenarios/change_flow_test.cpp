#include "support/dealer.h"

namespace qndr::testing {
namespace {

/// Main and two laptops in normal running, without a row.
class ChangeFlow : public ::testing::Test {
  protected:
    ChangeFlow() {
        // The files on disk bear the real clock's date, and the clean-ups must not find them old.
        dealer.Time().SetNow(*ParseDate("2020-11-22 14:00:00"));
        dealer.SetUp(0);
        dealer.KeepOpen();
        dealer.RunRound();
        dealer.RunRound();
    }

    void ExpectAgreement() {
        EXPECT_TRUE(dealer.ComeToRest());
        EXPECT_EQ(dealer.FilesInSyncFolder(), 0U);
        for (const DealerComputer* laptop : {&one, &two}) {
            EXPECT_EQ(dealer.Differences(*laptop, suite::Scope::All), std::vector<std::string>{});
        }
        for (const DealerComputer* computer : dealer.All()) {
            EXPECT_EQ(computer->TemporaryFiles(), 0U) << computer->Name();
            EXPECT_EQ(computer->Number("SELECT COUNT(*) FROM ImportConflicts"), 0) << computer->Name();
        }
    }

    test::TemporaryFolder folder{test::QuickPlace()};
    Dealer dealer{folder.Path(), 2};
    const DealerComputer& main = dealer.Main();
    const DealerComputer& one = dealer.Laptop(0);
    const DealerComputer& two = dealer.Laptop(1);
};

TEST_F(ChangeFlow, EveryChangeReachesTheOthersAndNothingGoesRoundForEver) {
    for (const DealerComputer* computer : dealer.All()) {
        computer->Put("Customers", computer->Name(), "LastName", "new on " + computer->Name());
    }
    one.Execute("INSERT INTO Attachments (UniqueID, FileName, AttachmentType, Content) "
                "VALUES ('A', 'plan.bin', 2, X'00FF0D0A3C265D5D3E1A80')");
    ExpectAgreement();
    EXPECT_EQ(two.Number("SELECT COUNT(*) FROM Customers WHERE LastName = 'new on ' || UniqueID"), 3);
    EXPECT_EQ(two.Value("SELECT hex(Content) FROM Attachments"), "00FF0D0A3C265D5D3E1A80");

    one.Put("Customers", "main", "LastName", "edited");
    two.Delete("Customers", "laptop-1");
    main.Delete("Attachments", "A");
    ExpectAgreement();
    EXPECT_EQ(main.Get("Customers", "main", "LastName"), "edited");
    EXPECT_EQ(one.Number("SELECT (SELECT COUNT(*) FROM Customers) * 10 + COUNT(*) FROM Attachments"), 20);
}

TEST_F(ChangeFlow, AnOrderTravelsWithItsLinesAndItsNumberThroughOnePassOfEach) {
    one.Execute("INSERT INTO Orders (UniqueID, OrderNumber, ReferenceNumber, State) VALUES ('O', 1001, 7, 1)");
    one.Execute(
        "INSERT INTO OrderItems (UniqueID, OrderUniqueID, LineNumber) VALUES ('O1', 'O', 1), ('O2', 'O', 2)");
    // Whatever comes in is taken before anything goes out.
    for (const DealerComputer* computer : {&one, &main, &two}) {
        computer->RunPass();
    }
    EXPECT_EQ(two.Number("SELECT COUNT(*) FROM OrderItems WHERE OrderUniqueID = 'O'"), 2);
    EXPECT_EQ(two.Value("SELECT group_concat(State || OrderUniqueID || ReferenceNumber || OrderNumber) FROM "
                        "OrderNumberSync"),
              "1O71001");
    ExpectAgreement();
}

// A sender's files are listed in the order in which they were sent.
TEST_F(ChangeFlow, AllWaitingFilesAreTakenInOnePass) {
    for (const auto& [sender, receiver] : {std::pair(&main, &one), std::pair(&one, &main)}) {
        for (char name = 'a'; name <= 'l'; ++name) {
            sender->Put("Groups", "G", "Name", sender->Name() + name);
            sender->RunPass();
        }
        receiver->RunPass();
        EXPECT_EQ(receiver->Get("Groups", "G", "Name"), sender->Name() + "l");
    }
}

} // namespace
} // namespace qndr::testing
