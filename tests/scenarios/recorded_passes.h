#pragma once

#include "support/dealer.h"

#include <initializer_list>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace qndr::testing {

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

inline bool IsOneOf(const std::string& call, std::initializer_list<const char*> names) {
    return std::find(names.begin(), names.end(), call) != names.end();
}

/// The place of the first call of a pass's clean-ups and the one behind their last; both the end without any.
inline std::pair<std::size_t, std::size_t> CallsOfTheCleanUps(const std::vector<std::string>& names) {
    const auto first = std::find(names.begin(), names.end(), "Processes.Names");
    const auto last = std::find(names.rbegin(), names.rend(), "PathTools.FolderContainsFiles");
    return first == names.end()
               ? std::pair{names.size(), names.size()}
               : std::pair<std::size_t, std::size_t>(first - names.begin(), last.base() - names.begin());
}

/// Runs a pass in a process of its own that ends as a killed one does at that call: nothing is unwound, but the
/// system keeps what was written. (That it has to be made durable too, the simulator sees.) False when the pass
/// ended otherwise.
inline bool DieInPass(const DealerComputer& computer, long number) {
    const pid_t child = fork();
    if (child == 0) {
        FailingCall gate(FailingCall::Way::Die, number);
        computer.RunPass(&gate);
        _exit(1); // the call was never made
    }
    int status = 0;
    return child != -1 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Passes of one laptop and main in turn, kept as it all stood before each of them, to be run again with a fault
/// at each of their calls.
class RecordedPasses : public ::testing::TestWithParam<int> {
  protected:
    // Without a root folder what is retired goes to a folder below the present one.
    explicit RecordedPasses(std::size_t shards) : shards_(shards) { std::filesystem::current_path(folder.Path()); }
    ~RecordedPasses() override { std::filesystem::current_path(std::filesystem::temp_directory_path()); }

    void Record(int passes) {
        for (int pass = 0; pass < passes; ++pass) {
            std::filesystem::copy(Live(), Kept(pass), std::filesystem::copy_options::recursive);
            FailingCall counting(FailingCall::Way::None, 0);
            RunPass(pass, &counting);
            calls.push_back(counting.Names());
        }
    }

    std::string Live() const { return folder.Path() + "/live"; }
    std::string Kept(int pass) const { return folder.Path() + "/before-" + std::to_string(pass); }
    void GoBackTo(int pass) {
        dealer.LetGo();
        std::filesystem::remove_all(Live());
        std::filesystem::copy(Kept(pass), Live(), std::filesystem::copy_options::recursive);
    }
    int Passes() const { return static_cast<int>(calls.size()); }
    const DealerComputer& Runner(int pass) const { return pass % 2 == 0 ? dealer.Laptop() : dealer.Main(); }
    void RunPass(int pass, services::CallGate* gate = nullptr) const { Runner(pass).RunPass(gate); }

    /// Calls `test(pass, number)` for this shard's calls that are `wanted`, given their place in the pass. The
    /// calls of the clean-ups, which touch nothing of an exchange, are never among them.
    template <typename Wanted, typename Test> void ForEachCall(Wanted wanted, Test test) {
        std::size_t turn = 0;
        for (int pass = 0; pass < Passes(); ++pass) {
            const auto [cleanUp, behind] = CallsOfTheCleanUps(calls[pass]);
            for (std::size_t place = 0; place < calls[pass].size() && !HasFatalFailure(); ++place) {
                if ((place < cleanUp || place >= behind) && wanted(calls[pass], place) &&
                    turn++ % shards_ == static_cast<std::size_t>(GetParam())) {
                    GoBackTo(pass);
                    test(pass, static_cast<long>(place) + 1);
                }
            }
        }
        ASSERT_GT(turn, 30U);
    }

    /// Whether the company is open at that place. The calls that open it are alike in all passes of a computer.
    static bool IsBehindTheOpening(const std::vector<std::string>& names, std::size_t place) {
        const auto opened = std::find(names.begin(), names.end(), "Engine.Initialize");
        return opened <= names.begin() + static_cast<std::ptrdiff_t>(place);
    }
    /// What lies beneath the folder library is seen through its own calls, and the log's switch is read at every
    /// line.
    static bool StandsForItself(const std::string& call) {
        return call.rfind("Directory", 0) != 0 && call != "RegistryTools.GetLong" &&
               call != "MessagePump.ProcessMessages";
    }
    /// A call whose result can say no: a service that raises there breaks its contract.
    static bool HasResult(const std::vector<std::string>& names, std::size_t place) {
        return IsOneOf(names[place], {"FileTools.FileExists",
                                      "FileTools.CopyFile",
                                      "FileTools.DeleteFile",
                                      "FileTools.MoveFile",
                                      "FileTools.CreateTemporaryFile",
                                      "Engine.DoExport",
                                      "Engine.ImportFile",
                                      "Engine.ExportOrder",
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
    }
    /// Between two calls of which neither changes anything a death is like one before the first.
    static bool StandsBesideAChange(const std::vector<std::string>& names, std::size_t place) {
        const auto isChange = [](const std::string& name) {
            return IsOneOf(name,
                           {"FileTools.CopyFile", "FileTools.DeleteFile", "FileTools.MoveFile", "Engine.DoExport",
                            "Engine.ImportFile", "ZipArchive.WriteZipAndClose", "Database.ExecuteNonQuery"});
        };
        return isChange(names[place]) || (place > 0 && isChange(names[place - 1]));
    }

    test::TemporaryFolder folder{test::QuickPlace()};
    Dealer dealer{Live(), 1};
    std::vector<std::vector<std::string>> calls;

  private:
    std::size_t shards_; ///< the parameter tells which of them this is
};

} // namespace qndr::testing
