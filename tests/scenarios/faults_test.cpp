#include "scenarios/recorded_passes.h"

namespace qndr::testing {
namespace {

/// One laptop's first exchange as four passes. All ends but the complete one are such that the protocol allows:
/// nobody is told, and a person who sees them asks for the initial sync anew.
class Faults : public RecordedPasses {
  protected:
    Faults()
        : RecordedPasses(
              4, 2,
              {// The request was taken but the row was not moved: 2 here, 0 there. No write of a descriptor is
               // examined, and one that cannot be read whole counts as it stands: its row is not found.
               {"request lost",
                {{calls::IniTools::SetValue, calls::IniTools::GetValue, calls::PathTools::FixPath,
                  calls::Database::ExecuteScaler, calls::Database::ExecuteNonQuery}}},
               // The acknowledge was taken but the row was not moved: 4 here, 3 there.
               {"acknowledge missed",
                {{calls::IniTools::SetValue, calls::IniTools::GetValue, calls::PathTools::FixPath,
                  calls::Database::ExecuteScaler, calls::Database::ExecuteNonQuery}}},
               // Taken in, but the acknowledge or the own move failed: 2 here, 3 or 4 there. Whatever the
               // acknowledge is built of and sent with.
               {"acknowledge lost", {{calls::Engine::ImportFile, Death}, true}},
               // A file that nobody takes lies in the folder: 2 here, or 4 with the data. Also a request that
               // could not be retired, or a row that was not moved behind the copy.
               {"file left",
                {{calls::IniTools::SetValue, calls::IniTools::GetValue, calls::PathTools::FixPath,
                  calls::Database::ExecuteScaler, calls::FileTools::FileExists, calls::FileTools::DeleteFile,
                  calls::Database::ExecuteNonQuery, Death}}},
               // The archive or the engine refused the file on the laptop: 4 at both ends, without the data.
               {"data refused",
                {{calls::Engine::ImportFile, calls::Engine::AddToExport, calls::ObjectFactory::CreateZipArchive,
                  calls::ZipArchive::OpenZip, calls::ZipArchive::GetEntryByName}}}}) {
        dealer.SetUp(60);
        Record(4);
    }

    std::string Judge() const override {
        const auto laptop = dealer.Laptop().Open();
        const auto main = dealer.Main().Open();
        const std::int64_t here = laptop->Number("SELECT SyncState FROM Company");
        const std::int64_t there = main->Number("SELECT SyncState FROM RoamingWorkstations");
        const std::size_t files = dealer.FilesInSyncFolder();
        const bool alike = here == 4 && dealer.Differences(dealer.Laptop()).empty();
        if (files != 0) {
            return files == 1 && (here == 2 || alike) ? "file left" : Unexplained;
        }
        if (here == 4 && there == 4) {
            return alike ? Complete : "data refused";
        }
        if (here == 2 && there == 0) {
            return "request lost";
        }
        if (here == 2 && (there == 3 || there == 4)) {
            return "acknowledge lost";
        }
        return here == 4 && there == 3 && alike ? "acknowledge missed" : Unexplained;
    }

    /// Each computer opens its company in its first pass as in its second.
    bool IsOfInterest(const CallList& names, std::size_t place) const override {
        return IsFirstPass(names) || IsBehindTheOpening(names, place);
    }

    /// Clears the Sync folder and asks anew.
    bool ComesBackFrom(const std::string& /*ending*/) override {
        for (const auto& file : std::filesystem::directory_iterator(dealer.SyncFolder())) {
            std::filesystem::remove(file);
        }
        suite::RequestInitialSync(*dealer.Laptop().Open());
        suite::ResetCountersOf(*dealer.Main().Open(), dealer.Laptop().UniqueID());
        dealer.RunRound();
        dealer.RunRound();
        return Judge() == Complete;
    }
};

TEST_P(Faults, ARefusedCallComesToAnEndThatTheProtocolKnows) {
    RefuseInTurn();
}
TEST_P(Faults, AProcessMayDieAroundEveryCallThatChangesSomething) {
    DieInTurn();
}

INSTANTIATE_TEST_SUITE_P(EveryCall, Faults, ::testing::Range(0, 4));

} // namespace
} // namespace qndr::testing
