#pragma once

#include "support/dealer.h"
#include "support/scripted_gate.h"

#include <initializer_list>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace qndr::testing {

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

/// Passes of one laptop and main in turn, kept as it all stood before each of them, to be run again with a fault
/// at each of their calls. Each way in which that may end has a name.
class RecordedPasses : public ::testing::TestWithParam<int> {
  protected:
    using Way = ScriptedGate::Way;
    using Calls = std::vector<std::string>;
    static constexpr const char* Complete = "complete";
    static constexpr const char* Unexplained = "unexplained";
    static constexpr const char* Death = "the process's death";

    /// The calls that can lead to an end when they are refused, or all but some.
    struct Ending {
        Calls causes;
        bool allBut = false;
    };

    // Without a root folder what is retired goes to a folder below the present one.
    RecordedPasses(std::size_t shards, int rounds, std::map<std::string, Ending> endings)
        : shards_(shards), rounds_(rounds), endings_(std::move(endings)) {
        std::filesystem::current_path(folder.Path());
    }
    ~RecordedPasses() override { std::filesystem::current_path(std::filesystem::temp_directory_path()); }

    /// The end that it all has come to by now.
    virtual std::string Judge() const = 0;
    /// What a person does about such an end, and whether all is well then.
    virtual bool ComesBackFrom(const std::string& ending) = 0;
    /// Whether a call belongs to what this is about.
    virtual bool IsOfInterest(const Calls& names, std::size_t place) const = 0;

    void Record(int passes) {
        for (int pass = 0; pass < passes; ++pass) {
            std::filesystem::copy(Live(), Kept(pass), std::filesystem::copy_options::recursive);
            dealer.KeepOpen(); // as behind: a database that is open has more files, and listings show them
            ScriptedGate counting;
            Runner(pass).RunPass(&counting);
            calls_.push_back(counting.Calls());
            dealer.LetGo();
        }
    }

    // A call without a result that could say no raises when it is refused. One behind the same other call is most
    // often at the same place of a routine that runs several times in a pass, and is refused there once.
    void RefuseInTurn() {
        std::set<std::tuple<const Calls*, std::string, std::string>> places;
        FailInTurn(Way::Refuse, [&](const Calls& names, std::size_t place) {
            return IsOfInterest(names, place) && StandsForItself(names[place]) &&
                   (names[place].starts_with("Database.") ||
                    places.emplace(&names, place == 0 ? "" : names[place - 1], names[place]).second);
        });
    }
    void DieInTurn() { FailInTurn(Way::Die, StandsBesideAChange); }

    std::string Live() const { return folder.Path() + "/live"; }

    /// Whether these are the calls of the first pass of its computer.
    bool IsFirstPass(const Calls& names) const { return &names == &calls_[0] || &names == &calls_[1]; }
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

  private:
    std::string Kept(int pass) const { return folder.Path() + "/before-" + std::to_string(pass); }
    const DealerComputer& Runner(std::size_t pass) const {
        return pass % 2 == 0 ? dealer.Laptop() : dealer.Main();
    }

    /// Lets this shard's wanted calls fail, each in a run of its own. Those of the clean-ups, which touch nothing
    /// of an exchange, are never among them.
    template <typename Wanted> void FailInTurn(Way way, Wanted wanted) {
        std::size_t turn = 0;
        for (std::size_t pass = 0; pass < calls_.size(); ++pass) {
            const auto [cleanUp, behind] = CallsOfTheCleanUps(calls_[pass]);
            for (std::size_t place = 0; place < calls_[pass].size() && !HasFatalFailure(); ++place) {
                if ((place < cleanUp || place >= behind) && wanted(calls_[pass], place) &&
                    turn++ % shards_ == static_cast<std::size_t>(GetParam())) {
                    SCOPED_TRACE("call " + std::to_string(place + 1) + " of pass " + std::to_string(pass) + ", " +
                                 calls_[pass][place]);
                    Fail(way, pass, place);
                }
            }
        }
        ASSERT_GT(turn, 30U);
    }
    void Fail(Way way, std::size_t pass, std::size_t place) {
        dealer.LetGo();
        std::filesystem::remove_all(Live());
        std::filesystem::copy(Kept(static_cast<int>(pass)), Live(), std::filesystem::copy_options::recursive);
        dealer.KeepOpen();
        ScriptedGate gate;
        gate.FailAt(place + 1, way);
        ASSERT_EQ(Survives(pass, gate), way != Way::Die);
        const std::string& call = calls_[pass][place];
        const std::string ending = Recover(pass);
        ASSERT_TRUE(Explains(way == Way::Die ? Death : call, ending) ||
                    (way == Way::Die && Explains(Death + (" at " + call), ending)))
            << "came to " << ending;
        ASSERT_TRUE(way != Way::Refuse || LeavesTemporaryFile(call) ||
                    dealer.Laptop().TemporaryFiles() + dealer.Main().TemporaryFiles() == 0);
        ASSERT_TRUE(ending == Complete || ComesBackFrom(ending)) << "came to " << ending;
    }
    bool Survives(std::size_t pass, ScriptedGate& gate) {
        try {
            Runner(pass).RunPass(&gate);
            return true;
        } catch (const ProcessDied&) {
            return false;
        }
    }
    /// Lets the exchange go on behind the pass with the fault, and some rounds further.
    std::string Recover(std::size_t faultyPass) {
        for (std::size_t pass = faultyPass + 1; pass < calls_.size(); ++pass) {
            Runner(pass).RunPass();
        }
        std::string ending = Judge();
        for (int round = 0; round < rounds_ && ending != Complete; ++round) {
            dealer.RunRound();
            ending = Judge();
        }
        return ending;
    }
    bool Explains(const std::string& call, const std::string& name) const {
        const auto ending = endings_.find(name);
        return name == Complete || (ending != endings_.end() && (std::ranges::count(ending->second.causes, call) !=
                                                                 0) != ending->second.allBut);
    }
    /// Whether a refused call of that name may leave a temporary file behind. A half-made archive is left to the
    /// clean-up of the temporary folder.
    static bool LeavesTemporaryFile(const std::string& call) {
        return IsOneOf(call, {"FileTools.DeleteFile", "PathTools.DeleteFolder", "PathTools.FixPath",
                              "ZipArchive.NewZip", "ZipArchive.AppendFiles", "ZipArchive.WriteZipAndClose"});
    }

    std::size_t shards_; ///< the parameter tells which of them this is
    int rounds_;         ///< in which all that can still come does come
    std::map<std::string, Ending> endings_;
    std::vector<Calls> calls_; ///< of each pass
};

} // namespace qndr::testing
