#include "support/dealer.h"
#include "support/scripted_gate.h"

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
    /// Every one of these names is the row's or somebody can get it back.
    void ExpectKept(const Texts& names) const {
        std::string kept = "\"" + main.Get("Groups", "G", "Name") + "\"";
        for (const DealerComputer* computer : dealer.All()) {
            kept += computer->Conflicts();
        }
        for (const std::string& name : names) {
            EXPECT_NE(kept.find("\"" + name + "\""), std::string::npos) << name << " is not in " << kept;
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

TEST_F(ChangeFlow, OneFileAPassAndNumbersWithoutAGap) {
    for (int number = 1; number <= 4; ++number) {
        Name(one, "of one " + std::to_string(number));
        one.RunPass();
        EXPECT_EQ(one.Number("SELECT NextSequenceToMain FROM Company"), number);
        main.RunPass();
        EXPECT_EQ(CounterOnMain("NextSequenceFromRoaming", one), number);
        EXPECT_EQ(CounterOnMain("NextSequenceToRoaming", two), number);
        two.RunPass();
        EXPECT_EQ(two.Number("SELECT NextSequenceFromMain FROM Company"), number);
        EXPECT_EQ(NameOn(two), "of one " + std::to_string(number));
    }
    ExpectAgreement();
}

TEST_F(ChangeFlow, TheSameRowEditedEverywhereAtOnceEndsAlikeAndKeepsEveryValue) {
    Name(main, "base");
    ExpectAgreement();
    Name(one, "one");
    Name(two, "two");
    Name(main, "main");
    ExpectAgreement();
    ExpectKept({"one", "two", "main"});
}

TEST_F(ChangeFlow, AnEditBeforeAnOlderOneIsSentTravelsAlone) {
    Name(one, "older");
    Name(one, "newer");
    ExpectAgreement();
    for (const DealerComputer* computer : dealer.All()) {
        EXPECT_EQ(NameOn(*computer), "newer");
        EXPECT_EQ(computer->Conflicts(), "");
    }
}

TEST_F(ChangeFlow, AnEditBehindAnOlderOneThatIsOnItsWayWins) {
    Name(one, "base");
    ExpectAgreement();
    Name(one, "older");
    one.RunPass();
    Name(one, "newer");
    main.RunPass(); // sends the older one back to its maker
    EXPECT_EQ(NameOn(main), "older");
    one.RunPass();
    EXPECT_EQ(NameOn(one), "newer") << "the own older version took the newer one's place";
    ExpectAgreement();
    EXPECT_EQ(NameOn(two), "newer");
    EXPECT_EQ(one.Conflicts() + main.Conflicts() + two.Conflicts(), "");
}

TEST_F(ChangeFlow, AnEditAgainstOneThatIsStillOnItsWayFromMainKeepsBoth) {
    Name(main, "base");
    ExpectAgreement();
    Name(main, "main");
    main.RunPass();
    const Texts files = dealer.SyncFiles();
    ASSERT_EQ(files.size(), 2U);
    for (const std::string& file : files) {
        fs::rename(file, folder.Path() + "/" + fs::path(file).filename().string());
    }
    Name(one, "one");
    one.RunPass();
    main.RunPass();
    EXPECT_EQ(NameOn(main), "one");
    for (const std::string& file : files) {
        fs::rename(folder.Path() + "/" + fs::path(file).filename().string(), file);
    }
    one.RunPass();
    EXPECT_EQ(NameOn(one), "one") << "main's older version took the place of one that main has taken";
    ExpectAgreement();
    ExpectKept({"main", "one"});
}

TEST_F(ChangeFlow, ADeletionAgainstAnEditKeepsTheEditEitherWay) {
    for (const bool mainDeletes : {true, false}) {
        Name(main, "base");
        ExpectAgreement();
        const DealerComputer& deleting = mainDeletes ? main : one;
        const DealerComputer& editing = mainDeletes ? one : main;
        deleting.Delete("Groups", "G");
        Name(editing, mainDeletes ? "edited on one" : "edited on main");
        ExpectAgreement();
        ExpectKept({mainDeletes ? "edited on one" : "edited on main"});
    }
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

TEST_F(ChangeFlow, DataThatTheEngineRefusesIsLostAndDoesNotBlockTheSequence) {
    Name(one, "lost");
    one.RunPass();
    class Refusing : public services::CallGate {
        bool Admits(std::string_view call) override { return call != "Engine.ImportFile"; }
    } gate;
    main.RunPass(&gate);
    EXPECT_EQ(CounterOnMain("NextSequenceFromRoaming", one), 1);
    EXPECT_EQ(dealer.FilesInSyncFolder(), 0U);
    one.Put("Groups", "H", "Name", "next");
    EXPECT_TRUE(dealer.ComeToRest());
    EXPECT_EQ(two.Get("Groups", "H", "Name"), "next");
    EXPECT_EQ(NameOn(main), "");
}

TEST_F(ChangeFlow, AFileWhoseNumberMainCouldNotStoreTakesNothingBackWhenItComesAgain) {
    Name(one, "of one");
    one.RunPass();
    ScriptedGate gate;
    gate.RefuseOnly("Database.ExecuteNonQuery", 1);
    main.RunPass(&gate);
    ASSERT_EQ(NameOn(main), "of one");
    ASSERT_EQ(CounterOnMain("NextSequenceFromRoaming", one), 0);
    Name(main, "later");
    ExpectAgreement();
    EXPECT_EQ(NameOn(main), "later");
    EXPECT_EQ(main.Conflicts(), "");
}

} // namespace
} // namespace qndr::testing
