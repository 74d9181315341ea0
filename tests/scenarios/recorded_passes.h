#pragma once

#include "support/dealer.h"
#include "support/scripted_gate.h"

#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

namespace qndr::testing {

inline bool IsOneOf(Call call, std::initializer_list<Call> names) {
    return std::find(names.begin(), names.end(), call) != names.end();
}

/// The place of the first call of a pass's clean-ups and the one behind their last; both the end without any.
inline std::pair<std::size_t, std::size_t> CallsOfTheCleanUps(const CallList& names) {
    const auto first = std::find(names.begin(), names.end(), calls::Processes::Names);
    const auto last = std::find(names.rbegin(), names.rend(), calls::PathTools::FolderContainsFiles);
    return first == names.end()
               ? std::pair{names.size(), names.size()}
               : std::pair<std::size_t, std::size_t>(first - names.begin(), last.base() - names.begin());
}

/// Passes of one laptop and main in turn, kept as it all stood before each of them, to be run again with a fault
/// at each of their calls. Each way in which that may end has a name.
class RecordedPasses : public ::testing::TestWithParam<int> {
  protected:
    using Way = ScriptedGate::Way;
    static constexpr const char* Complete = "complete";
    static constexpr const char* Unexplained = "unexplained";
    static constexpr Call Death{"the process's death"};

    /// The calls that can lead to an end when they are refused, or all but some, and those at which a death can.
    struct Ending {
        CallList causes;
        bool allBut = false;
        CallList deaths = {};
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
    virtual bool IsOfInterest(const CallList& names, std::size_t place) const = 0;

    void Record(int passes) {
        // What the exchange comes to by itself: nothing is proven and mended behind it.
        for (const DealerComputer* computer : dealer.All()) {
            computer->SetNumber(settings::ProofHours, 0);
            computer->SetNumber(settings::MendMinutes, 0);
        }
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
        std::set<std::tuple<const CallList*, std::optional<Call>, Call>> places;
        FailInTurn(Way::Refuse, [&](const CallList& names, std::size_t place) {
            return IsOfInterest(names, place) && StandsForItself(names[place]) &&
                   (names[place].Name().starts_with("Database.") ||
                    places
                        .emplace(&names, place == 0 ? std::nullopt : std::optional(names[place - 1]), names[place])
                        .second);
        });
    }
    void DieInTurn() { FailInTurn(Way::Die, StandsBesideAChange); }

    std::string Live() const { return folder.Path() + "/live"; }

    /// Whether these are the calls of the first pass of its computer.
    bool IsFirstPass(const CallList& names) const { return &names == &calls_[0] || &names == &calls_[1]; }
    /// Whether the company is open at that place. The calls that open it are alike in all passes of a computer.
    static bool IsBehindTheOpening(const CallList& names, std::size_t place) {
        const auto opened = std::find(names.begin(), names.end(), calls::Engine::Initialize);
        return opened <= names.begin() + static_cast<std::ptrdiff_t>(place);
    }
    /// What lies beneath the folder library is seen through its own calls, and the log's switch is read at every
    /// line.
    static bool StandsForItself(Call call) {
        return !call.Name().starts_with("Directory") && call != calls::RegistryTools::GetLong &&
               call != calls::MessagePump::ProcessMessages;
    }
    /// Between two calls of which neither changes anything a death is like one before the first.
    static bool StandsBesideAChange(const CallList& names, std::size_t place) {
        const auto isChange = [](Call name) {
            return IsOneOf(name, {calls::FileTools::CopyFile, calls::FileTools::DeleteFile,
                                  calls::FileTools::MoveFile, calls::Engine::DoExport, calls::Engine::ImportFile,
                                  calls::ZipArchive::WriteZipAndClose, calls::Database::ExecuteNonQuery});
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
                                 std::string(calls_[pass][place].Name()));
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
        const Call call = calls_[pass][place];
        const std::string ending = Recover(pass);
        ASSERT_TRUE(Explains(way, call, ending)) << "came to " << ending;
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
    bool Explains(Way way, Call call, const std::string& name) const {
        const auto found = endings_.find(name);
        if (name == Complete || found == endings_.end()) {
            return name == Complete;
        }
        const auto& [causes, allBut, deaths] = found->second;
        const bool isCause = std::ranges::count(causes, way == Way::Die ? Death : call) != 0;
        return isCause != allBut || (way == Way::Die && std::ranges::count(deaths, call) != 0);
    }
    /// Whether a refused call of that name may leave a temporary file behind. A half-made archive is left to the
    /// clean-up of the temporary folder.
    static bool LeavesTemporaryFile(Call call) {
        return IsOneOf(call, {calls::FileTools::DeleteFile, calls::PathTools::DeleteFolder,
                              calls::PathTools::FixPath, calls::ZipArchive::NewZip, calls::ZipArchive::AppendFiles,
                              calls::ZipArchive::WriteZipAndClose});
    }

    std::size_t shards_; ///< the parameter tells which of them this is
    int rounds_;         ///< in which all that can still come does come
    std::map<std::string, Ending> endings_;
    std::vector<CallList> calls_; ///< of each pass
};

} // namespace qndr::testing
