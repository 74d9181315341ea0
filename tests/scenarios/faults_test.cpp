#include "support/dealer.h"

#include <array>
#include <sys/wait.h>
#include <unistd.h>

namespace qndr::testing {
namespace {

/// Fails one call out of all that an agent makes in a pass, or ends the process at it.
class FailingCall : public services::CallGate {
  public:
    enum class Way { None, Refuse, Raise, Die };

    FailingCall(Way way, long number) : way_(way), number_(number) {}

    bool Admits(std::string_view call) override {
        names_.emplace_back(call);
        if (static_cast<long>(names_.size()) != number_) {
            return true;
        }
        if (way_ == Way::Raise) {
            throw services::Failure("fault injected into " + names_.back());
        }
        if (way_ == Way::Die) {
            _exit(0);
        }
        return way_ == Way::None;
    }

    const std::vector<std::string>& Names() const { return names_; }

  private:
    Way way_;
    long number_;
    std::vector<std::string> names_;
};

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

bool IsOneOf(const std::string& call, std::initializer_list<const char*> names) {
    return std::find(names.begin(), names.end(), call) != names.end();
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
        return IsOneOf(call,
                       {"Engine.ImportFile", "Engine.Initialize", "Engine.AddToExport",
                        "ObjectFactory.CreateZipArchive", "ZipArchive.OpenZip", "ZipArchive.GetEntryByName"});
    case Outcome::Unexplained:
        break;
    }
    return false;
}

/// One laptop's first exchange as four passes, kept as it stood before each of them.
class Faults : public ::testing::TestWithParam<int> {
  protected:
    static constexpr int Passes = 4;
    static constexpr int Shards = 8;

    Faults() {
        // Without a root folder what is retired goes to a folder below the present one.
        std::filesystem::current_path(folder.Path());
        dealer.SetUp(60);
        for (int pass = 0; pass < Passes; ++pass) {
            std::filesystem::copy(Live(), Kept(pass), std::filesystem::copy_options::recursive);
            FailingCall counting(FailingCall::Way::None, 0);
            RunPass(pass, &counting);
            calls[pass] = counting.Names();
        }
    }
    ~Faults() override { std::filesystem::current_path(std::filesystem::temp_directory_path()); }

    std::string Live() const { return folder.Path() + "/live"; }
    std::string Kept(int pass) const { return folder.Path() + "/before-" + std::to_string(pass); }
    void GoBackTo(int pass) const {
        std::filesystem::remove_all(Live());
        std::filesystem::copy(Kept(pass), Live(), std::filesystem::copy_options::recursive);
    }
    void RunPass(int pass, services::CallGate* gate = nullptr) const {
        (pass % 2 == 0 ? dealer.Laptop() : dealer.Main()).RunPass(gate);
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

    /// Lets the exchange go on behind the pass with the fault, and at most two rounds further.
    Outcome Recover(int faultyPass) {
        for (int pass = faultyPass + 1; pass < Passes; ++pass) {
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

    /// Calls `test(pass, number)` for this shard's calls that are `wanted`, given their place in the pass.
    template <typename Wanted, typename Test> void ForEachCall(Wanted wanted, Test test) {
        std::size_t turn = 0;
        for (int pass = 0; pass < Passes; ++pass) {
            for (std::size_t place = 0; place < calls[pass].size() && !HasFatalFailure(); ++place) {
                if (wanted(calls[pass], place) && turn++ % Shards == static_cast<std::size_t>(GetParam())) {
                    GoBackTo(pass);
                    test(pass, static_cast<long>(place) + 1);
                }
            }
        }
        ASSERT_GT(turn, 30U);
    }

    test::TemporaryFolder folder{test::QuickPlace()};
    Dealer dealer{Live(), 1};
    std::array<std::vector<std::string>, Passes> calls;
};

// A call without a result that could say no raises when it is refused.
TEST_P(Faults, ARefusedCallComesToAnEndThatTheProtocolKnows) {
    // Of the 53 entries of the export list the first stands for all.
    const auto wanted = [](const std::vector<std::string>& names, std::size_t place) {
        return names[place] != "Engine.AddToExport" || names[place - 1] != names[place];
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
    const auto hasResult = [](const std::vector<std::string>& names, std::size_t place) {
        return IsOneOf(names[place], {"FileTools.FileExists",
                                      "FileTools.CopyFile",
                                      "FileTools.DeleteFile",
                                      "FileTools.MoveFile",
                                      "FileTools.CreateTemporaryFile",
                                      "Engine.DoExport",
                                      "Engine.ImportFile",
                                      "ZipArchive.NewZip",
                                      "ZipArchive.AppendFiles",
                                      "ZipArchive.WriteZipAndClose",
                                      "ZipArchive.OpenZip",
                                      "ZipArchive.GetEntryByName",
                                      "ZipEntry.Extract",
                                      "PathTools.FolderExists",
                                      "PathTools.FindFiles",
                                      "PathTools.CreateTemporaryFolder",
                                      "PathTools.CreateNestedFolder",
                                      "PathTools.DeleteFolder",
                                      "Database.ExecuteNonQuery",
                                      "Database.ExecuteRead",
                                      "PsdFile.Load",
                                      "CompanyManager.CanOpenCompany",
                                      "ObjectFactory.CreateSharedCodeLibrary",
                                      "ObjectFactory.CreateEngine",
                                      "Options.UserFileLocation"});
    };
    ForEachCall(hasResult, [&](int pass, long number) {
        FailingCall gate(FailingCall::Way::Raise, number);
        RunPass(pass, &gate);
        if (Recover(pass) != Outcome::Complete) {
            ASSERT_EQ(AskAnew(), Outcome::Complete)
                << "call " << number << " of pass " << pass << ", " << gate.Names().at(number - 1);
        }
    });
}

// The child dies as a killed process does: nothing is unwound, and what was not made durable is gone. Between two
// calls of which neither changes anything a death is like one before the first.
TEST_P(Faults, AProcessMayDieAroundEveryCallThatChangesSomething) {
    const auto changes = [](const std::vector<std::string>& names, std::size_t place) {
        const auto isChange = [](const std::string& name) {
            return IsOneOf(name,
                           {"FileTools.CopyFile", "FileTools.DeleteFile", "FileTools.MoveFile", "Engine.DoExport",
                            "Engine.ImportFile", "ZipArchive.WriteZipAndClose", "Database.ExecuteNonQuery"});
        };
        return isChange(names[place]) || (place > 0 && isChange(names[place - 1]));
    };
    ForEachCall(changes, [&](int pass, long number) {
        const pid_t child = fork();
        ASSERT_NE(child, -1);
        if (child == 0) {
            FailingCall gate(FailingCall::Way::Die, number);
            RunPass(pass, &gate);
            _exit(1); // the call was never made
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child ended otherwise than by its gate";
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
