#include "support/dealer.h"

#include <iostream>
#include <random>
#include <set>

namespace qndr::testing {
namespace {

namespace fs = std::filesystem;

struct Place {
    const char* table;
    const char* column;
};

/// Few rows, so that collisions are frequent.
constexpr Place Places[] = {{"Groups", "Name"},  {"Customers", "LastName"},     {"Customers", "Notes"},
                            {"Orders", "Notes"}, {"OrderItems", "Description"}, {"EmailTemplates", "Body"}};
constexpr const char* Rows[] = {"R1", "R2"};

/// Main and two laptops on which anything may happen in any order, and the values that nobody may lose.
class RandomExchange {
  public:
    explicit RandomExchange(unsigned seed) : random_(seed) {
        fs::create_directory(away_);
        dealer_.SetUp(0);
        dealer_.KeepOpen();
        for (const DealerComputer* computer : computers_) {
            computer->SetNumber(settings::BackupOrderData, 0);
        }
        dealer_.RunRound();
        dealer_.RunRound();
    }

    void DoSomething() {
        const DealerComputer& computer = *computers_[Below(3)];
        const int action = Below(40);
        if (action < 24) {
            Put(computer);
        } else if (action < 28) {
            Delete(computer);
        } else if (action < 36) {
            steps_ += computer.Name() + " runs a pass\n";
            computer.RunPass();
        } else if (action < 38) {
            Move(dealer_.SyncFolder(), away_);
        } else {
            Move(away_, dealer_.SyncFolder());
        }
    }

    /// Lets all files arrive and demands what must then hold.
    void ComeToRest() {
        while (Move(away_, dealer_.SyncFolder())) {
        }
        ASSERT_TRUE(dealer_.ComeToRest()) << dealer_.Position();
        for (std::size_t laptop = 0; laptop < 2; ++laptop) {
            ASSERT_EQ(dealer_.Differences(dealer_.Laptop(laptop), suite::Scope::All), std::vector<std::string>{})
                << dealer_.Laptop(laptop).Name();
        }
        ASSERT_EQ(dealer_.FilesInSyncFolder(), 0U);
        ExpectAllValuesKept();
        steps_.clear();
    }

    const std::string& Steps() const { return steps_; }

  private:
    int Below(int limit) { return std::uniform_int_distribution<>(0, limit - 1)(random_); }

    void Put(const DealerComputer& computer) {
        const Place& place = Places[Below(std::size(Places))];
        const std::string row = Rows[Below(std::size(Rows))];
        const std::string value = "value " + std::to_string(++written_) + ".";
        steps_.append(computer.Name()).append(" puts ").append(value).append(" into ");
        steps_.append(place.table).append(" ").append(row).append(" ").append(place.column).append("\n");
        // Whoever writes over a value has seen it.
        values_.erase(computer.Get(place.table, row, place.column));
        computer.Put(place.table, row, place.column, value);
        values_.insert(value);
    }

    void Delete(const DealerComputer& computer) {
        const Place& chosen = Places[Below(std::size(Places))];
        const std::string row = Rows[Below(std::size(Rows))];
        steps_.append(computer.Name())
            .append(" deletes ")
            .append(chosen.table)
            .append(" ")
            .append(row)
            .append("\n");
        for (const Place& place : Places) {
            if (std::string(place.table) == chosen.table) {
                values_.erase(computer.Get(place.table, row, place.column));
            }
        }
        computer.Delete(chosen.table, row);
    }

    /// Any one file. False when there is none.
    bool Move(const std::string& from, const std::string& to) {
        std::vector<fs::path> files;
        for (const auto& file : fs::directory_iterator(from)) {
            files.push_back(file.path());
        }
        if (files.empty()) {
            return false;
        }
        // The names are random, the times are not.
        std::sort(files.begin(), files.end(), [](const fs::path& left, const fs::path& right) {
            return fs::last_write_time(left) < fs::last_write_time(right);
        });
        const fs::path& file = files[Below(static_cast<int>(files.size()))];
        steps_ += file.filename().string() + (to == away_ ? " is held up\n" : " comes at last\n");
        fs::rename(file, fs::path(to) / file.filename());
        return true;
    }

    /// A value is a row's, or a conflict's, or somebody wrote over it who had it. What is safe in a conflict need
    /// not be looked after any more.
    void ExpectAllValuesKept() {
        std::string rows;
        for (const Place& place : Places) {
            rows +=
                dealer_.Main().Value("SELECT group_concat(" + std::string(place.column) + ") FROM " + place.table);
        }
        std::string conflicts;
        for (const DealerComputer* computer : computers_) {
            conflicts += computer->Conflicts();
            computer->Execute("DELETE FROM ImportConflicts");
        }
        for (auto value = values_.begin(); value != values_.end();) {
            const bool stands = rows.find(*value) != std::string::npos;
            ASSERT_TRUE(stands || conflicts.find(*value) != std::string::npos) << *value << " is lost";
            value = stands ? std::next(value) : values_.erase(value);
        }
    }

    std::mt19937 random_;
    test::TemporaryFolder folder_{test::QuickPlace()};
    std::string away_ = folder_.Path() + "/away";
    Dealer dealer_{folder_.Path(), 2};
    std::vector<const DealerComputer*> computers_ = dealer_.All();
    int written_ = 0;
    std::set<std::string> values_; ///< that must stand in a row or in a conflict when all is quiet
    std::string steps_;            ///< since all was quiet
};

unsigned Seed() {
    const char* seed = std::getenv("QNDR_SEED");
    return seed != nullptr ? static_cast<unsigned>(std::stoul(seed)) : std::random_device()();
}

class ChangeProperty : public ::testing::TestWithParam<int> {};

TEST_P(ChangeProperty, AfterAnyExchangeAllCompaniesAreAlikeAndNoValueIsLost) {
    const unsigned seed = Seed() + static_cast<unsigned>(GetParam());
    RandomExchange exchange(seed);
    for (int quietTimes = 0; quietTimes < 12 && !HasFatalFailure(); ++quietTimes) {
        for (int step = 0; step < 60; ++step) {
            exchange.DoSomething();
        }
        exchange.ComeToRest();
    }
    if (HasFatalFailure()) {
        std::cerr << "QNDR_SEED=" << seed - static_cast<unsigned>(GetParam()) << ", since all was quiet:\n"
                  << exchange.Steps();
    }
}

INSTANTIATE_TEST_SUITE_P(Random, ChangeProperty, ::testing::Range(0, 4));

} // namespace
} // namespace qndr::testing
