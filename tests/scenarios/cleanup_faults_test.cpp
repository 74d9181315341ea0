#include "scenarios/recorded_passes.h"

#include <fstream>

namespace qndr::testing {
namespace {

namespace fs = std::filesystem;

/// A main company's computer with files of every age in all the places that are cleaned up.
class CleanUpFaults : public ::testing::Test {
  protected:
    CleanUpFaults() {
        dealer.Time().SetNow(*ParseDate("2020-11-22 14:00:00"));
        dealer.SetUp(0);
        dealer.KeepOpen();
        fs::create_directories(main.TemporaryFolder());
        FillPlaces();
        ScriptedGate counting;
        main.RunPass(&counting);
        made = counting.Calls();
        ExpectOnlyYoungFiles("without a fault");
    }

    /// In each place a file at its limit and one behind it, and a folder with only a file at its limit. All
    /// folders are old: nothing but its files keeps one.
    void FillPlaces() {
        young.clear();
        old.clear();
        const std::pair<std::string, int> limits[] = {{main.TemporaryFolder(), 5},
                                                      {main.KeptFolder("History"), 30},
                                                      {main.KeptFolder("Orders"), 90},
                                                      {main.KeptFolder("Deleted"), 3}};
        for (const auto& [place, days] : limits) {
            const std::string below = place + "/2020";
            fs::create_directories(below);
            young.insert(young.end(), {place + "/young", below + "/young"});
            old.push_back(place + "/old");
            Write(place + "/young", days);
            Write(below + "/young", days);
            Write(place + "/old", days + 1);
            fs::last_write_time(below, main.VirtualFileTime(200));
            fs::last_write_time(place, main.VirtualFileTime(200));
        }
    }
    void Write(const std::string& path, int daysAgo) const {
        std::ofstream(path) << "kept";
        fs::last_write_time(path, main.VirtualFileTime(daysAgo));
    }
    void ExpectYoungFiles(const std::string& what) const {
        for (const std::string& file : young) {
            ASSERT_TRUE(fs::exists(file)) << file << " is gone, " << what;
        }
    }
    void ExpectOnlyYoungFiles(const std::string& what) const {
        ExpectYoungFiles(what);
        for (const std::string& file : old) {
            ASSERT_FALSE(fs::exists(file)) << file << " is left, " << what;
        }
    }

    test::TemporaryFolder folder{test::QuickPlace()};
    Dealer dealer{folder.Path(), 0};
    const DealerComputer& main = dealer.Main();
    CallList made;
    std::vector<std::string> young;
    std::vector<std::string> old;
};

TEST_F(CleanUpFaults, NoRefusedOrRaisingCallTakesAFileBeforeItsTime) {
    const auto [first, behind] = CallsOfTheCleanUps(made);
    ASSERT_GT(behind, first + 50);
    for (std::size_t place = first; place < behind; ++place) {
        if (made[place] == calls::MessagePump::ProcessMessages) {
            continue;
        }
        for (const auto way : {ScriptedGate::Way::Refuse, ScriptedGate::Way::Raise}) {
            const std::string what =
                "call " + std::to_string(place) + " of a pass, " + std::string(made[place].Name());
            FillPlaces();
            ScriptedGate gate;
            gate.FailAt(place + 1, way);
            main.RunPass(&gate);
            ASSERT_NO_FATAL_FAILURE(ExpectYoungFiles(what));
            if (std::any_of(old.begin(), old.end(), [](const auto& file) { return fs::exists(file); })) {
                main.RunPass();
                ASSERT_NO_FATAL_FAILURE(ExpectOnlyYoungFiles(what));
            }
        }
    }
}

} // namespace
} // namespace qndr::testing
