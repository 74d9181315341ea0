#include "agent/scheduler.h"
#include "support/dealer.h"

#include <fstream>
#include <map>

namespace qndr::testing {
namespace {

namespace fs = std::filesystem;

/// An agent that runs as long as this object lives, without a window.
class RunningAgent : private AgentView, private ActivityTarget {
  public:
    explicit RunningAgent(const DealerComputer& computer, suite::VirtualTime& time)
        : outside_(computer.Computer(), {time, time, time}, "qndr5rwsync", {}) {
        context_.CompaniesFolder = computer.Companies();
        scheduler_.Load();
    }
    void Tick() { scheduler_.TickSync(); }

  private:
    void FillLabels() override {}
    void ShowFrequency(std::int32_t) override {}
    void ShowActivity(const std::string&) override {}
    void RefreshStatus() override {}
    void StopTimers() override {}
    void Unload() override {}
    std::string Text() const override { return tray_; }
    void SetText(const std::string& text) override { tray_ = text; }

    std::string tray_;
    ComputerServices outside_;
    AgentContext context_{outside_.Services()};
    AgentScheduler scheduler_{context_, *this, *this};
};

/// Main and two laptops in normal running, whose agents run all the time once they are started.
class RunningDealer : public ::testing::Test {
  protected:
    RunningDealer() {
        dealer.Time().SetNow(*ParseDate("2020-11-22 14:00:00"));
        dealer.SetUp(0);
        dealer.KeepOpen();
        dealer.RunRound();
        dealer.RunRound();
    }
    void Start(const DealerComputer& computer) {
        agents[&computer] = std::make_unique<RunningAgent>(computer, dealer.Time());
    }
    void Run(int ticks, int minutes) {
        for (int tick = 0; tick < ticks; ++tick) {
            dealer.Time().Advance(minutes * std::int64_t{60'000});
            for (const DealerComputer* computer : dealer.All()) {
                if (agents.contains(computer)) {
                    agents[computer]->Tick();
                    computer->StampNewFiles();
                }
            }
            for (std::size_t laptop = 0; laptop < 2; ++laptop) {
                ASSERT_LE(Heartbeats(dealer.Laptop(laptop)), 1);
            }
        }
    }
    std::ptrdiff_t Heartbeats(const DealerComputer& laptop) const {
        const auto files = dealer.SyncFiles();
        return std::count_if(files.begin(), files.end(), [&](const std::string& file) {
            return file.ends_with(".rhb") && file.find("/" + laptop.UniqueID()) != std::string::npos;
        });
    }

    test::TemporaryFolder folder{test::QuickPlace()};
    Dealer dealer{folder.Path(), 2};
    std::map<const DealerComputer*, std::unique_ptr<RunningAgent>> agents;
};

TEST_F(RunningDealer, LaptopsSeeWhetherMainIsAlive) {
    const auto statuses = [this] {
        return std::vector<std::int32_t>{dealer.Laptop(0).GetNumber(settings::SyncHeartbeat),
                                         dealer.Laptop(1).GetNumber(settings::SyncHeartbeat)};
    };
    using Statuses = std::vector<std::int32_t>;
    Start(dealer.Laptop(0));
    Start(dealer.Laptop(1));
    Run(8, 1);
    EXPECT_EQ(statuses(), (Statuses{0, 0}));
    Start(dealer.Main());
    Run(15, 1);
    EXPECT_EQ(statuses(), (Statuses{1, 1}));
    EXPECT_EQ(dealer.Main().GetNumber(settings::SyncHeartbeat), 1);

    agents.erase(&dealer.Main());
    Run(3, 1);
    EXPECT_EQ(statuses(), (Statuses{1, 1})) << "less than twice the frequency";
    Run(17, 1);
    EXPECT_EQ(statuses(), (Statuses{2, 2}));
    EXPECT_EQ(Heartbeats(dealer.Laptop(0)) + Heartbeats(dealer.Laptop(1)), 2);

    Start(dealer.Main());
    Run(8, 1);
    EXPECT_EQ(statuses(), (Statuses{1, 1}));
}

void WriteLeftOver(const std::string& path) {
    std::ofstream(path) << "left";
}

struct Use {
    std::size_t files = 0;
    std::uintmax_t bytes = 0;
};

Use UseOf(const std::string& place) {
    Use use;
    if (fs::exists(place)) {
        for (const auto& entry : fs::recursive_directory_iterator(place)) {
            use.files += entry.is_regular_file() ? 1 : 0;
            use.bytes += entry.is_regular_file() ? entry.file_size() : 0;
        }
    }
    return use;
}

TEST_F(RunningDealer, ThreeWeeksFillNoDisk) {
    for (const DealerComputer* computer : dealer.All()) {
        computer->SetNumber(settings::KeepSyncFiles, 1);
        computer->SetNumber(settings::DebugSyncAgent, 1);
        computer->SetNumber(settings::SyncFrequency, 720);
        // What a process that died has left.
        fs::create_directories(computer->TemporaryFolder() + "/~suz1");
        WriteLeftOver(computer->TemporaryFolder() + "/suz1.zip");
        WriteLeftOver(computer->TemporaryFolder() + "/~suz1/data.xml");
        computer->StampNewFiles();
        Start(*computer);
    }
    // The most files of a week and the bytes of the log at its end, by computer and place.
    std::map<std::string, std::size_t> most[3];
    std::map<std::string, std::uintmax_t> logged[3];
    for (int day = 0; day < 21; ++day) {
        for (const DealerComputer* computer : dealer.All()) {
            const std::string number = std::to_string(day);
            computer->Put("Customers", computer->Name(), "Notes", "day " + number);
            computer->Put("Orders", computer->Name() + number, "OrderNumber", std::to_string(1000 + day));
        }
        Run(4, 360);
        for (const DealerComputer* computer : dealer.All()) {
            for (const std::string place : {"History", "Orders", "Deleted"}) {
                std::size_t& peak = most[day / 7][computer->Name() + " " + place];
                peak = std::max(peak, UseOf(computer->KeptFolder(place)).files);
            }
            logged[day / 7][computer->Name()] = UseOf(computer->LogFolder()).bytes;
        }
    }
    Run(9, 360); // the last day's orders arrive
    for (const DealerComputer* computer : dealer.All()) {
        for (const std::string place : {"History", "Orders", "Deleted"}) {
            const std::string key = computer->Name() + " " + place;
            EXPECT_GE(most[0][key], 3U) << key;
            EXPECT_LE(most[2][key], most[1][key]) << key;
        }
        EXPECT_GT(logged[0][computer->Name()], 0U);
        EXPECT_EQ(logged[2][computer->Name()], logged[1][computer->Name()])
            << "the log was not switched off after a week";
        EXPECT_EQ(computer->TemporaryFiles(), 0U) << computer->Name();
        EXPECT_EQ(computer->Number("SELECT COUNT(*) FROM Orders"), 63) << computer->Name();
    }
    EXPECT_LE(dealer.FilesInSyncFolder(), 6U);
}

} // namespace
} // namespace qndr::testing
