
#include "suite/full_disk.h"
#include "suite/schema/company_events.h"
#include "support/dealer.h"
#include <sqlite3.h>

#include <functional>
#include <map>
#include <optional>

namespace qndr::testing {
namespace {

namespace fs = std::filesystem;

/// Another program at work on a company's database, behind a cache of its own.
class Locker {
  public:
    explicit Locker(const std::string& database) {
        sqlite3_open_v2(database.c_str(), &handle_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_PRIVATECACHE, nullptr);
        EXPECT_EQ(sqlite3_exec(handle_, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    ~Locker() { sqlite3_close_v2(handle_); }
    Locker(const Locker&) = delete;
    Locker& operator=(const Locker&) = delete;

  private:
    sqlite3* handle_ = nullptr;
};

/// What happens to a computer: either a lock for some seconds, or no file grows by more than so many bytes beyond
/// what the company's log has.
struct Mishap {
    std::string name;
    std::int64_t lockSeconds = 0;
    rlim_t room = 0;
};

/// The mishap comes in front of one of the calls that write to the database, up to the retirement of the file that
/// was taken, or, with 0, in front of each call.
class MishapAt : public services::CallGate {
  public:
    MishapAt(const DealerComputer& computer, suite::VirtualTime& time, Mishap mishap, int number)
        : database_(computer.Companies() + "/dealer.db"), time_(time), mishap_(std::move(mishap)),
          number_(number) {}
    ~MishapAt() override { time_.Loop().RemoveTick("unlock"); }

    bool Admits(Call call) override {
        static const std::vector<Call> writing{calls::Database::ExecuteNonQuery, calls::Engine::ImportFile,
                                               calls::SharedCodeLibrary::QNDRSQL,
                                               calls::SqlConnection::ExecuteNonQuery};
        isOver_ = isOver_ || call == calls::FileTools::MoveFile;
        // The clearing is one thing as far as this goes, but for its beginning.
        const bool again = call == last_ && call == calls::SqlConnection::ExecuteNonQuery;
        const bool writes = !again && std::find(writing.begin(), writing.end(), call) != writing.end();
        if (writes && (number_ == 0 || (!isOver_ && ++count_ == number_))) {
            Begin();
        }
        last_ = call;
        return true;
    }
    bool HasCome() const { return count_ >= number_; }
    void End() {
        isOver_ = true;
        lock_.reset();
        disk_.reset();
    }

  private:
    void Begin() {
        if (mishap_.lockSeconds == 0) {
            const fs::path log = database_ + "-wal";
            disk_.emplace((fs::exists(log) ? fs::file_size(log) : 0) + mishap_.room);
            return;
        }
        lock_.emplace(database_);
        time_.Loop().AddTick("unlock", mishap_.lockSeconds * 1000, [this] { lock_.reset(); });
    }

    std::string database_;
    suite::VirtualTime& time_;
    Mishap mishap_;
    int number_;
    int count_ = 0;
    bool isOver_ = false;
    std::optional<Call> last_;
    std::optional<Locker> lock_;
    std::optional<test::FullDisk> disk_;
};

class ComputerTroubleTest : public ::testing::Test {
  protected:
    ComputerTroubleTest() {
        fs::current_path(folder_.Path());
        dealer_.SetUp(60);
    }
    ~ComputerTroubleTest() override { fs::current_path(fs::temp_directory_path()); }

    void Rounds(int count) {
        for (int round = 0; round < count; ++round) {
            dealer_.RunRound();
            dealer_.Time().Advance(6 * 60 * 1000); // main waits for five quiet minutes before it answers a reset
        }
    }
    void GetReady() {
        Rounds(3);
        ASSERT_EQ(dealer_.Laptop().SyncState(), 4);
    }
    static void EnterAnOrder(const DealerComputer& computer) {
        computer.Open()->ExecuteScript(
            "BEGIN; INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('ORDER', 77);"
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 40) INSERT INTO OrderItems "
            "(UniqueID, OrderUniqueID, LineNumber, Description) SELECT 'ITEM' || i, 'ORDER', i, "
            "printf('%.*c', 2000, 'x') FROM n; COMMIT");
    }

    /// Lets the mishap come at each write of the computer's next pass in turn.
    void ExpectThatNothingIsLost(const DealerComputer& computer, const Mishap& mishap) {
        copy(Live(), Kept());
        bool hasCome = true;
        for (int number = 1; hasCome; ++number) {
            SCOPED_TRACE(mishap.name + " at write " + std::to_string(number));
            dealer_.LetGo();
            fs::remove_all(Live());
            copy(Kept(), Live());
            {
                MishapAt gate(computer, dealer_.Time(), mishap, number);
                const ComputerServices process(computer.Computer(),
                                               {dealer_.Time(), dealer_.Time(), dealer_.Time()}, "qndr5rwsync", {},
                                               &gate);
                AgentContext context(process.Services());
                context.CompaniesFolder = computer.Companies();
                RunSync(context, nullptr);
                hasCome = gate.HasCome();
                gate.End();
                RunSync(context, nullptr);
                ASSERT_TRUE(hasCome || number > 2);
            }
            dealer_.KeepOpen();
            Rounds(4);
            // Both directions have to be open again, and no number to be ahead.
            dealer_.Main().Put("Terms", "MAIN", "Name", "later");
            dealer_.Laptop().Put("Terms", "LAPTOP", "Name", "later");
            Rounds(2);
            ASSERT_EQ(dealer_.Laptop().SyncState(), 4);
            ASSERT_EQ(dealer_.RowState(dealer_.Laptop()), 4);
            ASSERT_EQ(dealer_.Differences(dealer_.Laptop()), std::vector<std::string>{});
            ASSERT_EQ(dealer_.Main().Number("SELECT COUNT(*) FROM OrderItems WHERE OrderUniqueID = 'ORDER'"),
                      dealer_.Laptop().Number("SELECT COUNT(*) FROM OrderItems WHERE OrderUniqueID = 'ORDER'"));
            ASSERT_EQ(dealer_.FilesInSyncFolder(), 0U);
        }
        dealer_.LetGo();
    }
    void ExpectThatNothingIsLost(const DealerComputer& computer) {
        for (const Mishap& mishap : {Mishap{"a lock of 75 s", 75, 0}, Mishap{"a lock of 11 min", 660, 0},
                                     Mishap{"a full disk", 0, 0}, Mishap{"64 KiB left", 0, 64 * 1024}}) {
            ExpectThatNothingIsLost(computer, mishap);
            fs::remove_all(Live());
            fs::rename(Kept(), Live());
        }
    }

    static void copy(const std::string& from, const std::string& to) {
        fs::copy(from, to, fs::copy_options::recursive);
    }
    std::string Live() const { return folder_.Path() + "/live"; }
    std::string Kept() const { return folder_.Path() + "/kept"; }

    test::TemporaryFolder folder_{test::QuickPlace()};
    Dealer dealer_{Live(), 1};
};

TEST_F(ComputerTroubleTest, AFirstExchangeComesToItsEnd) {
    dealer_.Main().Execute("UPDATE Customers SET Notes = printf('%.*c', 9000, 'x')");
    dealer_.RunRound();
    const std::string file = dealer_.SyncFiles().at(0);
    ExpectThatNothingIsLost(dealer_.Laptop());
    // The laptop had asked twice.
    fs::copy_file(file, std::string(file).replace(file.find('~') + 1, 1, "X"));
    ExpectThatNothingIsLost(dealer_.Laptop(), {"a full disk", 0, 0});
}

TEST_F(ComputerTroubleTest, MainTakesWhatItCouldNotStore) {
    GetReady();
    EnterAnOrder(dealer_.Laptop());
    dealer_.Laptop().RunPass();
    ExpectThatNothingIsLost(dealer_.Main());
}

TEST_F(ComputerTroubleTest, ALaptopTakesWhatItCouldNotStore) {
    GetReady();
    EnterAnOrder(dealer_.Main());
    dealer_.Main().RunPass();
    ExpectThatNothingIsLost(dealer_.Laptop());
}

TEST_F(ComputerTroubleTest, AResetIsTriedAgainWhole) {
    GetReady();
    dealer_.Laptop().Execute("UPDATE Customers SET Notes = 'mine' WHERE ID = 1");
    suite::RequestReset(*dealer_.Laptop().Open());
    Rounds(2);
    ASSERT_EQ(dealer_.FilesInSyncFolder(), 1U);
    ExpectThatNothingIsLost(dealer_.Laptop());
}

TEST_F(ComputerTroubleTest, AShortLockIsWaitedForAtEveryWrite) {
    GetReady();
    EnterAnOrder(dealer_.Main());
    EnterAnOrder(dealer_.Laptop());
    for (const DealerComputer* computer : {&dealer_.Laptop(), &dealer_.Main(), &dealer_.Laptop()}) {
        MishapAt gate(*computer, dealer_.Time(), {"a lock of 50 s", 50, 0}, 0);
        computer->RunPass(&gate);
    }
    EXPECT_EQ(dealer_.FilesInSyncFolder(), 0U);
    EXPECT_EQ(dealer_.Differences(dealer_.Laptop()), std::vector<std::string>{});
}

TEST_F(ComputerTroubleTest, AnImportTellsWhatItWaitsForAndStopsWhenItIsAskedTo) {
    GetReady();
    EnterAnOrder(dealer_.Main());
    dealer_.Main().RunPass();
    suite::VirtualTime& time = dealer_.Time();
    const DealerComputer& laptop = dealer_.Laptop();
    MishapAt gate(laptop, time, {"a lock of 5 min", 300, 0}, 1);
    ComputerServices process(laptop.Computer(), {time, time, time}, "qndr5rwsync", {}, &gate);
    std::vector<std::string> told;
    process.TellWaitsTo([&](const std::string& text) { told.push_back(text); });
    AgentContext context(process.Services());
    context.CompaniesFolder = laptop.Companies();
    const Date start = time.Now();
    time.Loop().AddTick("stop", 30'000, [&] { laptop.SetNumber(settings::StopSync, 1); });
    RunSync(context, nullptr);
    time.Loop().RemoveTick("stop");
    EXPECT_LT((time.Now().Days() - start.Days()) * 86400, 120);
    EXPECT_EQ(told, (std::vector<std::string>{"Waiting for the database of dealer", ""}));
    EXPECT_EQ(dealer_.FilesInSyncFolder(), 1U);
    EXPECT_EQ(laptop.Number("SELECT NextSequenceFromMain FROM Company"), 0);
}

} // namespace
} // namespace qndr::testing
