#include "support/dealer.h"

namespace qndr::testing {
namespace {

class Standing : public ::testing::Test {
  protected:
    void SetUp() override {
        dealer.SetUp(200);
        Rounds(4);
        ASSERT_EQ(Proven(dealer.Main()), Proven(dealer.Laptop()));
        ASSERT_NE(Proven(dealer.Main()), "");
    }

    void Rounds(int count) {
        for (int round = 0; round < count; ++round) {
            dealer.Time().Advance(6 * 60 * 1000);
            dealer.RunRound();
        }
    }
    static std::string Proven(const DealerComputer& computer) {
        return computer.Value("SELECT ProvenOn FROM PartnerStandings");
    }
    /// What somebody does to the database whom the triggers do not see.
    static void Behind(const DealerComputer& computer, const std::string& script) {
        const auto company = computer.Open();
        company->TurnTriggers(false);
        company->ExecuteScript(script);
        company->TurnTriggers(true);
    }
    void ExpectSame() {
        for (const auto& table :
             suite::CompareCompanies(*dealer.Main().Open(), *dealer.Laptop().Open(), suite::Scope::Held)) {
            EXPECT_TRUE(table.Alike()) << table.table;
        }
    }
    /// A day later, when the next proof is due.
    void ProveAnew(int rounds) {
        const std::string before = Proven(dealer.Main());
        dealer.Time().Advance(25LL * 60 * 60 * 1000);
        Rounds(rounds);
        EXPECT_GT(Proven(dealer.Main()), before);
        EXPECT_EQ(Proven(dealer.Main()), Proven(dealer.Laptop()));
    }

    const test::TemporaryFolder folder{test::QuickPlace()};
    Dealer dealer{folder.Path(), 1};
};

TEST_F(Standing, FindsWhatWasDoneBehindTheTriggersAndSendsOnlyThat) {
    Behind(dealer.Laptop(), "UPDATE Customers SET Notes = 'behind' WHERE ID = 1; DELETE FROM Terms WHERE ID = 1;"
                            "INSERT INTO Groups (UniqueID, Name) VALUES ('BEHIND-1', 'made');"
                            "UPDATE Products SET Notes = 'behind' WHERE ID = 2");
    Behind(dealer.Main(), "UPDATE Vendors SET Notes = 'main' WHERE ID = 1; DELETE FROM Locations WHERE ID = 1");
    const std::string location = dealer.Laptop().Value("SELECT UniqueID FROM Locations WHERE ID = 1");
    const std::int64_t before = dealer.Main().Number("SELECT MAX(ID) FROM AuditLog");
    ProveAnew(8);
    ExpectSame();
    EXPECT_EQ(dealer.Main().Get("Groups", "BEHIND-1", "Name"), "made");
    EXPECT_NE(dealer.Main().Get("Locations", location, "UniqueID"), "");
    EXPECT_EQ(dealer.Laptop().Value("SELECT Notes FROM Vendors WHERE ID = 1"), "main");
    EXPECT_EQ(dealer.Main().Number("SELECT MAX(ID) FROM AuditLog"), before + 6) << "six rows differed";
    // What somebody had written there is kept, and nobody is asked.
    EXPECT_EQ(dealer.Laptop().Value("SELECT group_concat(TableName || State || Reason, ' ') FROM (SELECT * FROM "
                                    "ImportConflicts WHERE LosingValues LIKE '%behind%' ORDER BY TableName)"),
              "Customers23 Products23");
}

TEST_F(Standing, DoesNotTakeForADifferenceWhatIsUnderWay) {
    for (int edit = 0; edit < 12; ++edit) {
        dealer.Laptop().Put("Customers", "C-" + std::to_string(edit % 5), "Notes",
                            "laptop " + std::to_string(edit));
        dealer.Laptop().RunPass();
        dealer.Main().Put("Customers", "C-" + std::to_string(edit % 3), "LastName",
                          "main " + std::to_string(edit));
        dealer.Time().Advance(5LL * 60 * 60 * 1000);
        dealer.Main().RunPass();
        dealer.Laptop().Put("Terms", "T-" + std::to_string(edit), "Name", "late");
    }
    ProveAnew(6);
    ExpectSame();
    for (const DealerComputer* computer : dealer.All()) {
        EXPECT_EQ(computer->Number("SELECT COUNT(*) FROM RepairAudits"), 0) << computer->Name();
        EXPECT_EQ(computer->Value("SELECT group_concat(EventText) FROM CompanyEvents WHERE EventNumber = 6"), "");
    }
}

TEST_F(Standing, MendsByItselfAndSendsAgainWhatNobodyElseTouched) {
    dealer.Laptop().Put("Customers", "LOST", "Notes", "mine");
    dealer.Laptop().Put("Customers", "TOUCHED", "Notes", "mine");
    dealer.Laptop().RunPass();
    for (const std::string& file : dealer.SyncFiles()) {
        if (file.ends_with(".zip")) {
            std::filesystem::remove(file);
        }
    }
    dealer.Main().Put("Customers", "TOUCHED", "Notes", "theirs");
    Rounds(5);
    EXPECT_EQ(dealer.Laptop().SyncState(), 4) << "not at once: it may only be late";
    Rounds(25);
    EXPECT_EQ(dealer.Laptop().SyncState(), 4);
    EXPECT_EQ(dealer.Main().Get("Customers", "LOST", "Notes"), "mine");
    EXPECT_EQ(dealer.Main().Get("Customers", "TOUCHED", "Notes"), "theirs");
    EXPECT_EQ(dealer.Laptop().Number("SELECT COUNT(*) FROM ImportConflicts WHERE State = 0 AND RowUniqueID = "
                                     "'TOUCHED'"),
              1)
        << "that one waits for a person";
    ExpectSame();
}

TEST_F(Standing, DisturbsNobodyWhoDoesNotKnowIt) {
    const auto forget = [&] {
        for (const auto& file : std::filesystem::directory_iterator(dealer.SyncFolder())) {
            if (file.path().filename().string().starts_with(dealer.Laptop().UniqueID())) {
                continue;
            }
            if (file.path().extension() == ".rsf") {
                std::filesystem::remove(file);
            }
        }
    };
    // A laptop that tells nothing: what it says is taken away before main can hear it.
    dealer.Laptop().Execute("DELETE FROM PartnerStandings");
    dealer.Main().Execute("DELETE FROM PartnerStandings");
    Behind(dealer.Laptop(), "UPDATE Customers SET Notes = 'behind' WHERE ID = 1");
    dealer.Main().Put("Customers", "NEW", "Notes", "new");
    for (int round = 0; round < 20; ++round) {
        dealer.Time().Advance(60LL * 60 * 1000);
        dealer.Laptop().RunPass();
        forget();
        dealer.Main().RunPass();
    }
    EXPECT_EQ(dealer.Laptop().Get("Customers", "NEW", "Notes"), "new");
    EXPECT_EQ(Proven(dealer.Main()), "");
    EXPECT_EQ(dealer.Main().Number("SELECT COUNT(*) FROM RepairAudits"), 0);
}

} // namespace
} // namespace qndr::testing
