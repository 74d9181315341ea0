#include "services/failure.h"
#include "suite/computer/computer.h"
#include "suite/computer/system_clock.h"
#include "suite/computer/virtual_time.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <sys/wait.h>
#include <unistd.h>

namespace qndr::suite {
namespace {

const Date kStart = *ParseDate("2026-11-22 19:08:52");

class Loop : public testing::Test {
  protected:
    std::int64_t Seconds() const { return time.Now().SecondsSince(kStart); }
    void Note(const std::string& text) { events.push_back(std::to_string(Seconds()) + " " + text); }

    VirtualTime time{kStart};
    std::vector<std::string> events;
};

using Events = std::vector<std::string>;

TEST_F(Loop, TimersOfOneNameAreOne) {
    const auto outer = time.Create("Timer");
    outer->Set(-10'000'000 * 5, -1);
    {
        const auto inner = time.Create("Timer");
        EXPECT_TRUE(inner->AlreadyExists() && !outer->AlreadyExists());
        inner->Set(-10'000'000 * 9, -1);
        EXPECT_TRUE(inner->WaitForMessages());
    }
    EXPECT_TRUE(outer->WaitForMessages());
    EXPECT_EQ(Seconds(), 9);
    outer->Set(0, -100);
    EXPECT_TRUE(outer->WaitForMessages());
    EXPECT_EQ(Seconds(), 9 + 42949) << "100 times 2 to the power of 32 units of 100 nanoseconds";
    EXPECT_THROW(outer->Set(1, 0), services::Failure);
    EXPECT_THROW(time.Create("unset")->WaitForMessages(), services::Failure);
}

TEST_F(Loop, RunEndsByQuitOrByARequestFromOutside) {
    time.Loop().AddTick("tick", 1'000, [&] {
        Note("tick");
        if (Seconds() == 2) {
            time.Loop().Quit();
        } else if (Seconds() == 4) {
            time.RequestEnd();
        }
    });
    time.Loop().Run();
    EXPECT_EQ(Seconds(), 2);
    time.Loop().Run();
    EXPECT_EQ(Seconds(), 4);
    time.Loop().OnEndRequest([&] { Note("end"); });
    time.RequestEnd();
    EXPECT_FALSE(time.Create("Timer")->WaitForMessages());
    time.ProcessMessages();
    time.ProcessMessages();
    EXPECT_EQ(events, (Events{"1 tick", "2 tick", "3 tick", "4 tick", "4 end"}));
    time.Loop().RemoveTick("tick");
    EXPECT_THROW(time.Loop().Run(), services::Failure);
}

/// A time that passes only by the test's hand.
struct HandTicks : Ticks {
    std::int64_t Now() const override { return now; }
    void SleepUntil(std::optional<std::int64_t>) override { FAIL() << "nothing should sleep here"; }
    bool TakeEndRequest() override { return false; }
    std::int64_t now = 0;
};

TEST(LoopTable, MissedTicksComeAsOneAndKeepTheirTimes) {
    HandTicks ticks;
    HeadlessLoop loop(ticks);
    std::string seen;
    loop.AddTick("slow", 10, [&] {
        seen += 's';
        ticks.now += 30; // a long statement: what falls due meanwhile waits for the next call
    });
    loop.AddTick("fast", 3, [&] { seen += 'f'; });
    ticks.now = 35;
    loop.ProcessMessages();
    EXPECT_EQ(seen, "fs");
    EXPECT_EQ(loop.NextTick(), 36);
    loop.RemoveTick("slow");
    loop.ProcessMessages();
    loop.ProcessMessages();
    EXPECT_EQ(seen, "fsf");
    EXPECT_EQ(loop.NextTick(), 66);

    // A handler that fails tells whoever let the messages through, and keeps nothing back.
    loop.AddTick("bad", 1, [&] {
        loop.RemoveTick("bad");
        throw services::Failure("bad");
    });
    ticks.now = 66;
    EXPECT_THROW(loop.ProcessMessages(), services::Failure);
    EXPECT_EQ(seen, "fsff");
    loop.ProcessMessages();
    EXPECT_EQ(seen, "fsff");
    EXPECT_THROW(loop.AddTick("never", 0, [] {}), services::Failure);
}

TEST(SystemTicks, TurnSignalsIntoOneRequest) {
    std::signal(SIGINT, SIG_IGN);
    {
        SystemTicks ignoring;
        std::raise(SIGINT);
        EXPECT_FALSE(ignoring.TakeEndRequest());
    }
    std::signal(SIGINT, SIG_DFL);
    SystemTicks ticks;
    HeadlessLoop loop(ticks);
    const pid_t child = fork();
    if (child == 0) {
        sigset_t blocked;
        pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
        _exit(sigismember(&blocked, SIGTERM));
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << "whoever is started from here is ended as ever";
    EXPECT_FALSE(ticks.TakeEndRequest());
    std::raise(SIGTERM);
    std::raise(SIGINT);
    ticks.SleepUntil(std::nullopt);
    EXPECT_TRUE(EndRequestWaits());
    int requests = 0;
    loop.OnEndRequest([&] { ++requests; });
    loop.ProcessMessages();
    loop.ProcessMessages();
    EXPECT_EQ(requests, 1);
    EXPECT_FALSE(EndRequestWaits());
}

TEST(SystemClock, TellsTheBiasAsMinutesToUtc) {
    const char* before = std::getenv("TZ");
    const std::string kept = before == nullptr ? "" : before;
    const SystemClock clock;
    const auto utc = [] { return *ParseDate("1970-01-01 00:00:00"); };
    // North and south: whatever the season of the day on which this runs, both states are met.
    for (const char* zone : {"CET-1CEST,M3.5.0,M10.5.0/3", "AEST-10AEDT,M10.1.0,M4.1.0/3", "<+0530>-5:30"}) {
        setenv("TZ", zone, 1);
        const services::TimeZoneInformation info = clock.GetTimeZoneInformation();
        EXPECT_TRUE(info.state == 1 || info.state == 2);
        const int bias = info.bias + (info.state == 2 ? info.daylightBias : info.standardBias);
        const std::int64_t shown = clock.Now().AddMinutes(bias).SecondsSince(utc());
        EXPECT_LE(std::abs(shown - static_cast<std::int64_t>(std::time(nullptr))), 5) << zone;
        const bool daylight = std::string(zone).find(',') != std::string::npos;
        EXPECT_EQ(info.daylightBias, daylight ? -60 : 0) << zone;
    }
    EXPECT_EQ(clock.GetTimeZoneInformation().state, 1);
    before == nullptr ? unsetenv("TZ") : setenv("TZ", kept.c_str(), 1);
    tzset();
}

TEST(Computer, StandsWhereTheEnvironmentSays) {
    const auto set = [](const char* name, const char* value) { setenv(name, value, 1); };
    for (const char* name : {"QNDR_HOME", "QNDR_COMPUTER_NAME", "XDG_DATA_HOME"}) {
        unsetenv(name);
    }
    const std::string home = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
    set("HOME", "/home/dealer");
    set("XDG_CONFIG_HOME", "relative/is/ignored");
    set("TMPDIR", "/var/tmp/");
    const Computer usual = Computer::FromEnvironment();
    EXPECT_EQ(usual.registryFile, "/home/dealer/.config/velmoran/ordergrove-5.0/registry.db");
    EXPECT_EQ(usual.commonApplicationData, "/home/dealer/.local/share");
    EXPECT_EQ(usual.localRoot, "/home/dealer/.local/share/Velmoran/Ordergrove Suite");
    EXPECT_TRUE(usual.temporaryFolder.starts_with("/var/tmp/qndr5-"));
    EXPECT_FALSE(usual.name.empty());
    set("QNDR_HOME", "/srv/one");
    set("QNDR_COMPUTER_NAME", "NB-1");
    const Computer one = Computer::FromEnvironment();
    EXPECT_EQ(one.name, "NB-1");
    EXPECT_EQ(one.localRoot, "/srv/one/Local");
    for (const char* name : {"QNDR_HOME", "QNDR_COMPUTER_NAME", "XDG_CONFIG_HOME", "TMPDIR"}) {
        unsetenv(name);
    }
    set("HOME", home.c_str());
}

/// A program file of one section that holds nothing but a version resource.
std::string ProgramWithVersion() {
    std::string bytes(0x400, '\0');
    const auto put = [&](std::size_t at, std::uint32_t value, int count = 4) {
        for (int i = 0; i < count; ++i) {
            bytes[at + static_cast<std::size_t>(i)] = static_cast<char>(value >> (8 * i));
        }
    };
    put(0, 0x5A4D, 2);
    put(0x3C, 0x80);
    put(0x80, 0x4550);
    put(0x80 + 6, 1, 2);          // sections
    put(0x80 + 20, 240, 2);       // size of the optional header
    put(0x98, 0x20B, 2);          // 64 bits
    put(0x98 + 112 + 16, 0x5000); // address of the resources
    const std::size_t section = 0x98 + 240;
    put(section + 12, 0x5000);
    put(section + 16, 0x200);
    put(section + 20, 0x200);
    const auto folder = [&](std::size_t at, std::uint32_t number, std::uint32_t entry) {
        put(0x200 + at + 14, 1, 2);
        put(0x200 + at + 16, number);
        put(0x200 + at + 20, entry);
    };
    folder(0, 16, 0x80000018);
    folder(0x18, 1, 0x80000030);
    folder(0x30, 1033, 0x48);
    put(0x248, 0x5060);
    put(0x260 + 40, 0xFEEF04BD);
    put(0x260 + 48, 5U << 16);
    put(0x260 + 52, 12U << 16 | 40'000);
    return bytes;
}

TEST(ProgramFileVersions, AreReadFromTheResourceAndNeverFromDamage) {
    const test::TemporaryFolder folder;
    ProgramFileVersions versions;
    const std::string good = ProgramWithVersion();
    const auto version = versions.GetFileVersion(folder.Write("a.exe", good));
    ASSERT_TRUE(version);
    EXPECT_EQ(version->high, 5U << 16);
    EXPECT_EQ(version->low, 12U << 16 | 40'000);
    EXPECT_FALSE(versions.GetFileVersion(folder.Path()));
    EXPECT_FALSE(versions.GetFileVersion(folder / "absent"));
    for (std::size_t i = 0; i < 0x260 + 48; i += 3) {
        EXPECT_FALSE(versions.GetFileVersion(folder.Write("a.exe", good.substr(0, i)))) << i;
        std::string bytes = good;
        bytes[i] = '\xFF';
        const auto read = versions.GetFileVersion(folder.Write("a.exe", bytes));
        EXPECT_TRUE(!read || (read->high == version->high && read->low == version->low)) << i;
    }
}

} // namespace
} // namespace qndr::suite
