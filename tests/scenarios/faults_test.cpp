#include "scenarios/recorded_passes.h"

#include <ostream>

namespace qndr::testing {
namespace {

/// What a first exchange can come to. All but the first are ends that the protocol allows: nobody is told, and a
/// person who sees them asks for the initial sync anew.
enum class Outcome {
    Complete,
    RequestLost,       ///< the request was taken but the row was not moved: 2 here, 0 there
    AcknowledgeLost,   ///< taken in, but the acknowledge or the own move failed: 2 here, 3 or 4 there
    AcknowledgeMissed, ///< the acknowledge was taken but the row was not moved: 4 here, 3 there
    FileLeft,          ///< a file that nobody takes lies in the folder: 2 here, or 4 with the data
    DataRefused, ///< the archive or the engine refused the file on the laptop: 4 at both ends, without the data
    Unexplained,
};

std::ostream& operator<<(std::ostream& out, Outcome outcome) {
    constexpr const char* names[] = {"Complete", "RequestLost", "AcknowledgeLost", "AcknowledgeMissed",
                                     "FileLeft", "DataRefused", "Unexplained"};
    return out << names[static_cast<int>(outcome)];
}

/// Whether a refused call of that name can end so.
bool Explains(const std::string& call, Outcome outcome) {
    // No write of a descriptor is examined, and a descriptor that cannot be read whole counts as it stands: the
    // file then is nobody's, or its row is not found.
    const bool spoilsDescriptor =
        IsOneOf(call, {"IniTools.SetValue", "IniTools.GetValue", "PathTools.FixPath", "Database.ExecuteScaler"});
    switch (outcome) {
    case Outcome::Complete:
        return true;
    case Outcome::RequestLost:
    case Outcome::AcknowledgeMissed:
        // The UPDATE behind a file that is retired all the same.
        return spoilsDescriptor || call == "Database.ExecuteNonQuery";
    case Outcome::AcknowledgeLost:
        // Whatever the acknowledge is built of and sent with.
        return call != "Engine.ImportFile" && call != "Process.Death";
    case Outcome::FileLeft:
        // Also a request that could not be retired, or a row that was not moved behind the copy.
        return spoilsDescriptor || IsOneOf(call, {"FileTools.FileExists", "FileTools.DeleteFile",
                                                  "Database.ExecuteNonQuery", "Process.Death"});
    case Outcome::DataRefused:
        return IsOneOf(call, {"Engine.ImportFile", "Engine.AddToExport", "ObjectFactory.CreateZipArchive",
                              "ZipArchive.OpenZip", "ZipArchive.GetEntryByName"});
    case Outcome::Unexplained:
        break;
    }
    return false;
}

/// One laptop's first exchange as four passes.
class Faults : public RecordedPasses {
  protected:
    Faults() : RecordedPasses(8) {
        dealer.SetUp(60);
        Record(4);
    }

    static bool Alike(const suite::SqliteConnection& main, const suite::SqliteConnection& laptop) {
        const auto tables = suite::CompareCompanies(main, laptop, suite::Scope::Exchanged);
        return std::all_of(tables.begin(), tables.end(), [](const auto& table) { return table.Alike(); });
    }

    Outcome Judge() const {
        const auto laptop = dealer.Laptop().Open();
        const auto main = dealer.Main().Open();
        const std::int64_t here = laptop->Number("SELECT SyncState FROM Company");
        const std::int64_t there = main->Number("SELECT SyncState FROM RoamingWorkstations");
        const std::size_t files = dealer.FilesInSyncFolder();
        const bool alike = here == 4 && Alike(*main, *laptop);
        if (files != 0) {
            return files == 1 && (here == 2 || alike) ? Outcome::FileLeft : Outcome::Unexplained;
        }
        if (here == 4 && there == 4) {
            return alike ? Outcome::Complete : Outcome::DataRefused;
        }
        if (here == 2 && there == 0) {
            return Outcome::RequestLost;
        }
        if (here == 2 && (there == 3 || there == 4)) {
            return Outcome::AcknowledgeLost;
        }
        return here == 4 && there == 3 && alike ? Outcome::AcknowledgeMissed : Outcome::Unexplained;
    }

    /// Each computer opens its company in its first pass as in its second.
    bool IsNew(const std::vector<std::string>& names, std::size_t place) const {
        return &names == &calls[0] || &names == &calls[1] || IsBehindTheOpening(names, place);
    }

    /// Lets the exchange go on behind the pass with the fault, and at most two rounds further.
    Outcome Recover(int faultyPass) {
        dealer.KeepOpen();
        for (int pass = faultyPass + 1; pass < Passes(); ++pass) {
            RunPass(pass);
        }
        Outcome outcome = Judge();
        for (int round = 0; round < 2 && outcome != Outcome::Complete; ++round) {
            dealer.RunRound();
            outcome = Judge();
        }
        return outcome;
    }

    /// What a person does who finds a laptop not ready or without its data: clears the Sync folder and asks anew.
    Outcome AskAnew() {
        for (const auto& file : std::filesystem::directory_iterator(dealer.SyncFolder())) {
            std::filesystem::remove(file);
        }
        suite::RequestInitialSync(*dealer.Laptop().Open());
        suite::ResetCountersOf(*dealer.Main().Open(), dealer.Laptop().UniqueID());
        dealer.RunRound();
        dealer.RunRound();
        return Judge();
    }
};

// A call without a result that could say no raises when it is refused.
TEST_P(Faults, ARefusedCallComesToAnEndThatTheProtocolKnows) {
    // Of the 53 entries of the export list the first stands for all.
    const auto wanted = [this](const std::vector<std::string>& names, std::size_t place) {
        return IsNew(names, place) && StandsForItself(names[place]) &&
               (names[place] != "Engine.AddToExport" || names[place - 1] != names[place]);
    };
    ForEachCall(wanted, [&](int pass, long number) {
        FailingCall gate(FailingCall::Way::Refuse, number);
        RunPass(pass, &gate);
        const std::string call = gate.Names().at(number - 1);
        const Outcome outcome = Recover(pass);
        ASSERT_TRUE(Explains(call, outcome))
            << "call " << number << " of pass " << pass << ", " << call << ", came to " << outcome
            << ": laptop at " << dealer.Laptop().SyncState() << ", row at " << dealer.RowState(dealer.Laptop())
            << ", " << dealer.FilesInSyncFolder() << " files left";
        if (outcome != Outcome::Complete) {
            ASSERT_EQ(AskAnew(), Outcome::Complete) << "call " << number << " of pass " << pass << ", " << call;
        }
    });
}

// A service that raises where its result should have said no breaks its contract, and the failure rule then takes
// the failure for success. The agent must still come through, with sound databases.
TEST_P(Faults, AServiceThatRaisesInATestIsSurvived) {
    const auto wanted = [this](const std::vector<std::string>& names, std::size_t place) {
        return IsNew(names, place) && HasResult(names, place);
    };
    ForEachCall(wanted, [&](int pass, long number) {
        FailingCall gate(FailingCall::Way::Raise, number);
        RunPass(pass, &gate);
        if (Recover(pass) != Outcome::Complete) {
            ASSERT_EQ(AskAnew(), Outcome::Complete)
                << "call " << number << " of pass " << pass << ", " << gate.Names().at(number - 1);
        }
    });
}

TEST_P(Faults, AProcessMayDieAroundEveryCallThatChangesSomething) {
    ForEachCall(StandsBesideAChange, [&](int pass, long number) {
        ASSERT_TRUE(DieInPass(Runner(pass), number)) << "the child ended otherwise than by its gate";
        const Outcome outcome = Recover(pass);
        ASSERT_TRUE(Explains("Process.Death", outcome))
            << "death before call " << number << " of pass " << pass << " came to " << outcome;
        if (outcome != Outcome::Complete) {
            ASSERT_EQ(AskAnew(), Outcome::Complete) << "death before call " << number << " of pass " << pass;
        }
    });
}

INSTANTIATE_TEST_SUITE_P(EveryCall, Faults, ::testing::Range(0, 8));

} // namespace
} // namespace qndr::testing
