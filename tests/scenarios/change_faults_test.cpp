#include "scenarios/recorded_passes.h"

namespace qndr::testing {
namespace {

/// A laptop in normal running.
void MakePair(Dealer& dealer) {
    dealer.SetUp(0);
    dealer.RunRound();
    dealer.RunRound();
}

bool CountersAgree(const sql::Connection& main, const sql::Connection& laptop) {
    const std::string rows = " FROM RoamingWorkstations";
    const std::string company = " FROM Company";
    return laptop.Number("SELECT NextSequenceToMain" + company) ==
               main.Number("SELECT NextSequenceFromRoaming" + rows) &&
           laptop.Number("SELECT NextSequenceFromMain" + company) ==
               main.Number("SELECT NextSequenceToRoaming" + rows);
}
/// Whether a version was taken in twice, or one that is nobody's rival was put aside.
bool TookSomethingTwice(const sql::Connection& main, const sql::Connection& laptop) {
    const auto putAside = [](const sql::Connection& company) {
        return company.Number("SELECT (SELECT COUNT(*) FROM ImportConflicts) + COUNT(*) FROM ImportProblems");
    };
    return main.Number("SELECT COUNT(*) FROM (SELECT 1 FROM AuditLog WHERE Origin IS NOT NULL GROUP BY TableName, "
                       "AuditUniqueID, Origin, OriginID HAVING COUNT(*) > 1)") != 0 ||
           putAside(main) + putAside(laptop) +
                   laptop.Number("SELECT COUNT(*) FROM AuditLog WHERE Origin IS NOT NULL") !=
               0;
}

/// A pair whose numbers are above 0, with a change on both sides and an order on the laptop.
class ChangeFaults : public RecordedPasses {
  protected:
    ChangeFaults()
        : RecordedPasses(
              4, 3,
              {// All arrived, and a file that is taken no more lies in the folder: an UPDATE behind a copy that
               // was not made, for want of its time too, sends the number again; a file whose existence is denied
               // is not retired.
               {"file left",
                {{calls::Database::ExecuteNonQuery, calls::Clock::Now, calls::FileTools::FileExists, Death}}},
               // All arrived but the number of the order, which was flagged as queued and was not.
               {"number lost", {{calls::Database::ExecuteNonQuery}}},
               // The number arrived twice: it was queued and could not be flagged, or not in time.
               {"number twice", {{calls::Database::ExecuteNonQuery}, false, {calls::Database::ExecuteNonQuery}}},
               // The archive or the engine refused data, which nobody sends again.
               {"data refused",
                {{calls::Engine::ImportFile, calls::Engine::AddToExport, calls::ObjectFactory::CreateZipArchive,
                  calls::ZipArchive::OpenZip, calls::ZipArchive::GetEntryByName}}},
               // A file went out with another number than the next: no write of a descriptor is examined, and a
               // number or an identity that cannot be read is 0 or empty. The pairing waits for a reset.
               {"misnumbered",
                {{calls::IniTools::SetValue, calls::PathTools::FixPath, calls::Database::ExecuteScaler}}}}) {
        MakePair(dealer);
        dealer.Main().Put("Groups", "A", "Name", "before");
        dealer.Laptop().Put("Groups", "B", "Name", "before");
        EXPECT_TRUE(dealer.ComeToRest());
        dealer.Main().Put("Groups", "A", "Name", "of main");
        dealer.Laptop().Put("Groups", "B", "Name", "of the laptop");
        dealer.Laptop().Execute("INSERT INTO Orders (UniqueID, OrderNumber, ReferenceNumber, State) VALUES "
                                "('O', 1001, 7, 1)");
        Record(3);
    }

    std::string Judge() const override {
        const auto laptop = dealer.Laptop().Open();
        const auto main = dealer.Main().Open();
        const std::string waiting = "SELECT COUNT(*) FROM AuditLog WHERE ID > (SELECT LastAuditID FROM ";
        if (laptop->Number(waiting + "Company)") != 0 || main->Number(waiting + "RoamingWorkstations)") != 0 ||
            TookSomethingTwice(*main, *laptop)) {
            return Unexplained;
        }
        if (!CountersAgree(*main, *laptop)) {
            return "misnumbered";
        }
        if (!dealer.Differences(dealer.Laptop(), suite::Scope::All).empty()) {
            return "data refused";
        }
        if (laptop->Value("SELECT group_concat(Name) FROM (SELECT Name FROM Groups ORDER BY UniqueID)") !=
                "of main,of the laptop" ||
            laptop->Number("SELECT COUNT(*) FROM Orders") != 1) {
            return Unexplained;
        }
        const std::int64_t numbers = main->Number("SELECT COUNT(*) FROM OrderNumberSync");
        if (numbers != 1) {
            return numbers == 0 ? "number lost" : "number twice";
        }
        return dealer.FilesInSyncFolder() == 0 ? Complete : "file left";
    }
    bool IsOfInterest(const CallList& names, std::size_t place) const override {
        return IsBehindTheOpening(names, place);
    }
    /// Asks for a reset of a pairing whose numbers are apart.
    bool ComesBackFrom(const std::string& ending) override {
        if (ending != "misnumbered") {
            return ending != Unexplained;
        }
        suite::RequestReset(*dealer.Laptop().Open());
        return dealer.FinishResets() && dealer.ComeToRest() &&
               CountersAgree(*dealer.Main().Open(), *dealer.Laptop().Open()) &&
               dealer.Differences(dealer.Laptop()).empty();
    }
};

TEST_P(ChangeFaults, ARefusedCallComesToAnEndThatTheProtocolKnows) {
    RefuseInTurn();
}
TEST_P(ChangeFaults, AProcessMayDieAroundEveryCallThatChangesSomething) {
    DieInTurn();
}

INSTANTIATE_TEST_SUITE_P(EveryCall, ChangeFaults, ::testing::Range(0, 4));

} // namespace
} // namespace qndr::testing
