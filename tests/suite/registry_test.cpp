#include "services/failure.h"
#include "suite/computer/system_clock.h"
#include "suite/computer/system_facts.h"
#include "suite/settings/registry_store.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace qndr::suite {
namespace {

using services::CurrentUserHive;
using services::Failure;
using test::TemporaryFolder;
namespace fs = std::filesystem;

constexpr const char* kKey = R"(Software\Velmoran\Ordergrove Suite\5.0)";

class Registry : public testing::Test {
  protected:
    std::int32_t Long(RegistryStore& store, const std::string& name) {
        return store.GetLong(CurrentUserHive, kKey, name, -7);
    }
    std::string Text(RegistryStore& store, const std::string& name) {
        return store.GetString(CurrentUserHive, kKey, name, "none");
    }

    TemporaryFolder folder;
    SystemClock clock;
    std::string file = folder / "config/suite/registry.db";
};

/// Runs `work` in a process of its own, which ends with 0 when it succeeds there.
template <typename Work> pid_t StartProcess(Work work) {
    const pid_t child = fork();
    if (child == 0) {
        int result = 1;
        try {
            result = work() ? 0 : 1;
        } catch (const std::exception& error) {
            fprintf(stderr, "%s\n", error.what());
        }
        _exit(result);
    }
    return child;
}

bool Succeeded(pid_t child) {
    int status = 1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(Registry, KeepsValuesByHiveKeyAndNameWithoutCase) {
    RegistryStore store(file, clock);
    EXPECT_EQ(Long(store, "StopSync"), -7);
    EXPECT_EQ(Text(store, "StopSync"), "none");
    EXPECT_TRUE(store.List("").empty());
    EXPECT_TRUE(folder.Names().empty()) << "a read must not make anything";

    store.SetLong(CurrentUserHive, kKey, "StopSync", -1);
    store.SetString(CurrentUserHive, kKey, "nextsync", "");
    store.SetString(CurrentUserHive, std::string(kKey) + "\\Settings (Default)", "UFL:Sync", "/srv/'sync' ü");
    store.SetLong(1, kKey, "StopSync", 5);
    EXPECT_EQ(store.GetLong(CurrentUserHive, R"(SOFTWARE\velmoran\ordergrove suite\5.0)", "STOPSYNC", 0), -1);
    EXPECT_EQ(Text(store, "NextSync"), "");
    EXPECT_EQ(Text(store, "StopSync"), "-1");
    EXPECT_EQ(store.Kind(CurrentUserHive, kKey, "StopSync"), RegistryKind::Number);
    EXPECT_EQ(store.Kind(CurrentUserHive, kKey, "NextSync"), RegistryKind::Text);
    for (const char* text : {"", "1.5", "2147483648", " 1", "1x"}) {
        store.SetString(CurrentUserHive, kKey, "Number", text);
        EXPECT_THROW(Long(store, "Number"), Failure) << text;
    }
    store.SetString(CurrentUserHive, kKey, "Number", "12");
    EXPECT_EQ(Long(store, "Number"), 12);

    const std::vector<RegistryValue> listed = store.List(R"(software\VELMORAN\Ordergrove Suite\5.0\S)");
    ASSERT_EQ(listed.size(), 1U);
    EXPECT_EQ(listed[0].text, "/srv/'sync' ü");
    EXPECT_EQ(store.List("").size(), 5U);
}

TEST_F(Registry, IsSharedWithOtherProcessesAndSurvivesItsFile) {
    RegistryStore store(file, clock);
    const auto writeElsewhere = [&](std::int32_t value) {
        return Succeeded(StartProcess([&] {
            RegistryStore other(file, clock);
            other.SetLong(CurrentUserHive, kKey, "StopSync", value);
            return Long(other, "StopSync") == value;
        }));
    };
    for (const int value : {1, 2}) {
        ASSERT_TRUE(writeElsewhere(value));
        EXPECT_EQ(Long(store, "StopSync"), value);
    }
    store.SetLong(CurrentUserHive, kKey, "StopSync", 3);
    fs::remove_all(folder / "config");
    ASSERT_TRUE(writeElsewhere(4));
    EXPECT_EQ(Long(store, "StopSync"), 4);
}

TEST_F(Registry, LosesNothingWhenManyWriteAtOnceFromTheStart) {
    constexpr int kWriters = 6;
    constexpr int kValues = 20;
    std::vector<pid_t> children;
    for (int writer = 0; writer < kWriters; ++writer) {
        children.push_back(StartProcess([&] {
            RegistryStore store(file, clock);
            for (int i = 0; i < kValues; ++i) {
                store.SetLong(CurrentUserHive, kKey, std::to_string(writer * kValues + i), i);
            }
            return true;
        }));
    }
    for (const pid_t child : children) {
        EXPECT_TRUE(Succeeded(child));
    }
    EXPECT_EQ(RegistryStore(file, clock).List(kKey).size(), static_cast<std::size_t>(kWriters * kValues));
}

TEST_F(Registry, SaysWhenItIsDamaged) {
    const std::string damaged = folder.Write("damaged.db", std::string(5000, 'x'));
    folder.Write("blocked", "a file where a folder should be");
    for (const std::string& path : {damaged, folder.Path(), folder / "blocked/registry.db"}) {
        RegistryStore store(path, clock);
        EXPECT_EQ(Text(store, "NextSync"), "none") << path;
        EXPECT_THROW(store.SetLong(CurrentUserHive, kKey, "StopSync", 1), Failure) << path;
        EXPECT_THROW(store.SetString(CurrentUserHive, kKey, "NextSync", ""), Failure) << path;
    }
    EXPECT_THROW(RegistryStore(damaged, clock).List(""), Failure);
    EXPECT_EQ(folder.Read("damaged.db"), std::string(5000, 'x'));

    // The first moment of another process's first write.
    const std::string empty = folder.Write("empty.db", "");
    RegistryStore beginning(empty, clock);
    beginning.SetLong(CurrentUserHive, kKey, "StopSync", 1);
    EXPECT_EQ(Long(beginning, "StopSync"), 1);
}

TEST_F(Registry, OnlyOneCopyOfAProgramRuns) {
    const Computer computer = Computer::InFolder(folder / "computer/", "NB-1");
    EXPECT_EQ(computer.registryFile, folder / "computer/registry.db");
    EXPECT_EQ(computer.temporaryFolder, folder / "computer/Temp");
    const auto othersSee = [&](const std::string& name) {
        return Succeeded(StartProcess([&] { return RunningProgram(computer, name).AnotherCopyIsRunning(); }));
    };
    {
        RunningProgram agent(computer, "qndr5rwsync");
        EXPECT_FALSE(othersSee("qndr5rwsync")) << "a copy that never asked does not count";
        EXPECT_FALSE(agent.AnotherCopyIsRunning());
        EXPECT_FALSE(agent.AnotherCopyIsRunning());
        EXPECT_TRUE(othersSee("qndr5rwsync"));
        EXPECT_FALSE(othersSee("another"));
        EXPECT_EQ(agent.Version(), "5.0.169");
        EXPECT_EQ(agent.Folder(), fs::read_symlink("/proc/self/exe").parent_path());
    }
    EXPECT_FALSE(othersSee("qndr5rwsync"));
    {
        auto first = std::make_unique<RunningProgram>(computer, "qndr5rwsync");
        EXPECT_FALSE(first->AnotherCopyIsRunning());
        RunningProgram second(computer, "qndr5rwsync");
        EXPECT_TRUE(second.AnotherCopyIsRunning());
        first.reset();
        EXPECT_TRUE(second.AnotherCopyIsRunning()) << "the same question has the same answer";
        EXPECT_TRUE(othersSee("qndr5rwsync")) << "a copy that was let run outlives the first";
    }
    EXPECT_FALSE(othersSee("qndr5rwsync"));

    ComputerSpecialFolders folders(computer);
    EXPECT_EQ(folders.GetFolderPath(35), folder / "computer/CommonAppData");
    EXPECT_TRUE(fs::is_directory(folder / "computer/CommonAppData"));
    EXPECT_EQ(folders.GetFolderPath(36), "");
    folder.Write("blocked", "");
    ComputerSpecialFolders blocked(Computer::InFolder(folder / "blocked", ""));
    EXPECT_EQ(blocked.GetFolderPath(35), "");

    // Each sorts behind the one before, also when the clock is put back.
    std::uint64_t moment = 0x019A00000000;
    ComputerSystemTools tools(computer, [&] { return moment; });
    const std::string id = tools.GetIdentifierText();
    EXPECT_EQ(id.substr(0, 13), "019A0000-0000");
    std::string before = id;
    for (const std::int64_t step : {0, -3600000, 2, 1}) {
        moment += static_cast<std::uint64_t>(step);
        EXPECT_LT(before, tools.GetIdentifierText());
        before = tools.GetIdentifierText();
    }
    EXPECT_EQ(id.size(), 36U);
    EXPECT_EQ(id.find_first_not_of("0123456789ABCDEF-"), std::string::npos);
    EXPECT_EQ(id[14], '7');
    EXPECT_NE(std::string("89AB").find(id[19]), std::string::npos);
}

} // namespace
} // namespace qndr::suite
