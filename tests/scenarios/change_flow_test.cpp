#include "support/dealer.h"

namespace qndr::testing {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

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
        for (const DealerComputer* laptop : {&one, &two}) {
            EXPECT_EQ(dealer.Differences(*laptop, suite::Scope::All), Texts{}) << laptop->Name();
            EXPECT_EQ(laptop->Number("SELECT NextSequenceToMain FROM Company"),
                      CounterOnMain("NextSequenceFromRoaming", *laptop));
            EXPECT_EQ(laptop->Number("SELECT NextSequenceFromMain FROM Company"),
                      CounterOnMain("NextSequenceToRoaming", *laptop));
        }
        for (const DealerComputer* computer : dealer.All()) {
            EXPECT_EQ(computer->TemporaryFiles(), 0U) << computer->Name();
            EXPECT_EQ(computer->Number("SELECT COUNT(*) FROM ImportProblems"), 0) << computer->Name();
        }
    }
    std::int64_t CounterOnMain(const std::string& column, const DealerComputer& laptop) const {
        return main.Number("SELECT " + column + " FROM RoamingWorkstations WHERE UniqueID = '" +
                           laptop.UniqueID() + "'");
    }
    static void Name(const DealerComputer& computer, const std::string& name) {
        computer.Put("Groups", "G", "Name", name);
    }
    static std::string NameOn(const DealerComputer& computer) { return computer.Get("Groups", "G", "Name"); }

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
    for (int round = 0; round < 3; ++round) {
        dealer.RunRound();
    }
    for (const DealerComputer* computer : dealer.All()) {
        EXPECT_EQ(computer->Number("SELECT COUNT(*) FROM Customers WHERE LastName = 'new on ' || UniqueID"), 3);
        EXPECT_EQ(computer->Value("SELECT hex(Content) FROM Attachments"), "00FF0D0A3C265D5D3E1A80");
        EXPECT_EQ(computer->Conflicts(), "") << computer->Name();
    }
    const std::string position = dealer.Position();
    dealer.RunRound();
    dealer.RunRound();
    EXPECT_EQ(dealer.Position(), position);

    one.Put("Customers", "main", "LastName", "edited");
    two.Delete("Customers", "laptop-1");
    main.Delete("Attachments", "A");
    ExpectAgreement();
    EXPECT_EQ(main.Get("Customers", "main", "LastName"), "edited");
    EXPECT_EQ(two.Number("SELECT COUNT(*) FROM Customers"), 2);
    EXPECT_EQ(one.Number("SELECT COUNT(*) FROM Attachments"), 0);
    EXPECT_EQ(dealer.FilesInSyncFolder(), 0U);
}

TEST_F(ChangeFlow, AnOrderTravelsWithItsLinesItsNumberAndABackup) {
    one.Execute("INSERT INTO Orders (UniqueID, OrderNumber, ReferenceNumber, State) VALUES ('O', 1001, 7, 1)");
    one.Execute(
        "INSERT INTO OrderItems (UniqueID, OrderUniqueID, LineNumber) VALUES ('O1', 'O', 1), ('O2', 'O', 2)");
    one.Execute("UPDATE Orders SET Notes = 'twice in one range'");
    ExpectAgreement();
    for (const DealerComputer* computer : dealer.All()) {
        EXPECT_EQ(computer->Number("SELECT COUNT(*) FROM OrderItems WHERE OrderUniqueID = 'O'"), 2);
        EXPECT_EQ(computer->Value("SELECT State || OrderUniqueID || ReferenceNumber || OrderNumber FROM "
                                  "OrderNumberSync"),
                  "1O71001");
        EXPECT_EQ(computer->Number("SELECT COUNT(*) FROM OrderNumberSync"), 1);
    }
    ASSERT_EQ(one.OrderBackups().size(), 1U);
    EXPECT_EQ(one.OrderBackups().front().rfind("2020/11/ODR1001~", 0), 0U) << one.OrderBackups().front();
    EXPECT_EQ(main.OrderBackups().size(), 2U) << "one for each workstation";
    EXPECT_EQ(two.OrderBackups(), Texts{});

    // A number that no file name can carry costs the backup and not the change.
    one.Execute("UPDATE Orders SET OrderNumber = 'A?7'");
    ExpectAgreement();
    EXPECT_EQ(two.Get("Orders", "O", "OrderNumber"), "A?7");
    EXPECT_EQ(one.OrderBackups().size(), 1U);

    for (const DealerComputer* computer : dealer.All()) {
        computer->SetNumber(settings::BackupOrderData, 0);
    }
    one.Execute("UPDATE Orders SET OrderNumber = 1002");
    ExpectAgreement();
    EXPECT_EQ(two.Get("Orders", "O", "OrderNumber"), "1002");
    EXPECT_EQ(one.OrderBackups().size() + main.OrderBackups().size(), 3U);
}

TEST_F(ChangeFlow, FilesThatComeEarlyTwiceOrInDisorderAreTakenOnceInTheirOrder) {
    Texts files;
    for (const std::string name : {"first", "second", "third"}) {
        Name(one, name);
        one.RunPass();
        for (const std::string& file : dealer.SyncFiles()) {
            if (std::find(files.begin(), files.end(), file) == files.end()) {
                files.push_back(file);
            }
        }
    }
    ASSERT_EQ(files.size(), 3U);
    const std::string away = folder.Path() + "/away.zip";
    fs::rename(files[0], away);
    main.RunPass();
    main.RunPass();
    EXPECT_EQ(CounterOnMain("NextSequenceFromRoaming", one), 0);
    EXPECT_EQ(dealer.SyncFiles().size(), 2U) << "an early file stays";

    fs::copy(away, dealer.SyncFolder() + "/" + main.UniqueID() + "~COPY~20261122T140000.zip");
    fs::rename(away, files[0]);
    for (const std::int64_t atLeast : {1, 2, 3}) {
        main.RunPass(); // the order of the listing decides how many
        EXPECT_GE(CounterOnMain("NextSequenceFromRoaming", one), atLeast);
    }
    EXPECT_EQ(NameOn(main), "third");
    ExpectAgreement();
    EXPECT_EQ(NameOn(two), "third");
    EXPECT_EQ(dealer.SyncFiles().size(), 1U) << "the late copy stays, for good";
    EXPECT_EQ(main.Number("SELECT COUNT(*) FROM AuditLog WHERE TableName = 'Groups'"), 3);
}

TEST_F(ChangeFlow, ADestroyedFileFromMainIsLostAndTheNextOnesGoOn) {
    Name(main, "lost");
    main.RunPass();
    for (const std::string& file : dealer.SyncFiles()) {
        if (file.find(one.UniqueID()) != std::string::npos) {
            fs::resize_file(file, fs::file_size(file) / 2);
        }
    }
    // A descriptor that cannot be read has the sequence 0, which is the one that is expected.
    one.RunPass();
    EXPECT_EQ(one.Number("SELECT NextSequenceFromMain FROM Company"), 1);
    two.RunPass();
    EXPECT_EQ(NameOn(two), "lost");
    EXPECT_EQ(dealer.FilesInSyncFolder(), 0U);
    EXPECT_EQ(dealer.Differences(one), Texts{"Groups"});

    Name(main, "next");
    ExpectAgreement();
}

TEST_F(ChangeFlow, ADestroyedFileToMainStaysAndTheOnesBehindItWaitForAGoodCopy) {
    Name(one, "first");
    one.RunPass();
    const std::string file = dealer.SyncFiles().at(0);
    const std::string good = folder.Path() + "/good.zip";
    fs::copy(file, good);
    fs::resize_file(file, fs::file_size(file) / 2);
    Name(one, "second");
    one.RunPass();
    main.RunPass();
    main.RunPass();
    EXPECT_EQ(CounterOnMain("NextSequenceFromRoaming", one), 0);
    EXPECT_EQ(dealer.FilesInSyncFolder(), 2U);

    fs::copy(good, file, fs::copy_options::overwrite_existing);
    ExpectAgreement();
    EXPECT_EQ(NameOn(two), "second");
    EXPECT_EQ(dealer.FilesInSyncFolder(), 0U);
}

} // namespace
} // namespace qndr::testing
