#include "housekeeping/cleanup.h"
#include "support/agent_bench.h"

#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>

namespace qndr::testing {
namespace {

namespace fs = std::filesystem;

struct ListedProcesses : services::Processes {
    Lines Names() override { return names; }
    Lines names;
};

/// Changing what is in a folder gives it the computer's own date, so the folders are dated last.
class CleanupTest : public AgentBench {
  protected:
    CleanupTest() {
        OpenCompany(2);
        cleaning.Library = std::move(context.Library);
    }
    /// `date` is local time of the computer.
    void SetDate(const std::string& name, const std::string& date) {
        std::tm parts{};
        parts.tm_isdst = -1;
        ASSERT_NE(strptime(date.c_str(), "%Y-%m-%d %H:%M:%S", &parts), nullptr);
        const timespec times[2] = {{std::mktime(&parts), 0}, {std::mktime(&parts), 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, Path(name).c_str(), times, 0), 0) << name;
    }
    void MakeFile(const std::string& name, const std::string& date = Old) {
        fs::create_directories(fs::path(Path(name)).parent_path());
        WriteText(Path(name), "");
        SetDate(name, date);
    }
    void MakeFolder(const std::string& name) { fs::create_directories(Path(name)); }

    static inline const std::string Old = "2020-01-01 12:00:00";
    static inline const std::string Today = "2026-11-22 00:00:00";
    const std::string local = "Local/Acme/Sync Local/";
    struct Cleanup {
        void (*run)(AgentContext&, ActivityTarget*);
        std::string folder;
        int days;
    };
    const std::vector<Cleanup> cleanups{{CleanupTempFiles, "Temp/", 5},
                                        {CleanupSyncBackups, local + "History/", 30},
                                        {CleanupOrderBackups, local + "Orders/", 90},
                                        {CleanupDeletedSyncFiles, local + "Deleted/", 3}};
    ListedProcesses processes;
    AgentContext cleaning{Replacing(outside.Services(), log, outside.Services().timers, &processes)};
};

TEST_F(CleanupTest, FilesGoByCalendarDays) {
    const auto daysAgo = [](int days, const char* timeOfDay) {
        return FormatGeneralDate(ParseDate(Today)->AddDays(-days)).substr(0, 11) + timeOfDay;
    };
    for (const Cleanup& cleanup : cleanups) {
        for (const char* now : {"2026-11-22 00:00:00", "2026-11-22 23:59:59"}) {
            time.SetNow(*ParseDate(now));
            for (const std::string below : {"", "2026/"}) {
                MakeFile(cleanup.folder + below + "stays", daysAgo(cleanup.days, "00:00:00"));
                MakeFile(cleanup.folder + below + ".goes", daysAgo(cleanup.days + 1, "23:59:59"));
            }
            cleanup.run(cleaning, nullptr);
            EXPECT_EQ(FilesBelow(cleanup.folder), (Lines{cleanup.folder + "2026/stays", cleanup.folder + "stays"}))
                << now;
        }
    }
    EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(CleanupTest, FolderWithoutFilesOfItsOwnGoesWithWhateverIsBelow) {
    for (const Cleanup& cleanup : cleanups) {
        const std::string& base = cleanup.folder;
        MakeFile(base + "kept/young.zip", Today);
        MakeFile(base + "tree/below/young.zip", Today);
        MakeFile(base + "stays/below/young.zip", Today);
        MakeFolder(base + "month");
        for (const char* name : {"kept", "tree", "month"}) {
            SetDate(base + name, "2026-11-18 23:59:59");
        }
        SetDate(base + "stays/below", Today);
        SetDate(base + "stays", "2026-11-19 00:00:00");
        SetDate(base, "2026-11-19 00:00:00");
        cleanup.run(cleaning, nullptr);
        EXPECT_EQ(folder.Names(base), (Lines{"kept", "stays"}));
        EXPECT_EQ(FilesBelow(base), (Lines{base + "kept/young.zip", base + "stays/below/young.zip"}));

        SetDate(base, "2026-11-18 00:00:00");
        cleanup.run(cleaning, nullptr);
        EXPECT_FALSE(fs::exists(Path(base))) << "not even the base folder itself is spared";
    }
}

TEST_F(CleanupTest, ProtectedFoldersOfTheTemporaryTreeAreLeftAlone) {
    const Lines kept{"Temp/.hidden/old.zip", "Temp/History/old.zip", "Temp/My History 2/deep/old.zip",
                     "Temp/Temporary Internet Files/old.tmp", "Temp/xWebInstallerx/old.zip"};
    for (const std::string& name : kept) {
        MakeFile(name);
    }
    for (const std::string name : {"history", "HISTORY", "temporary internet files", "Webinstaller"}) {
        MakeFile("Temp/" + name + "/old.zip");
    }
    MakeFile("Temp/young.zip", Today);
    CleanupTempFiles(cleaning, nullptr);
    fs::remove(Path("Temp/young.zip"));
    EXPECT_EQ(FilesBelow("Temp"), kept);
    Lines list{"", Path("Temp/.hidden"), Path("Temp/.hidden/empty")};
    const auto asked = gate.Count(calls::FileTools::FileHasAttribute);
    ExcludeProtectedFolders(cleaning, list);
    EXPECT_EQ(gate.Count(calls::FileTools::FileHasAttribute) - asked, 6) << "system and hidden, of each of them";
    EXPECT_EQ(list, (Lines{"", "", Path("Temp/.hidden/empty")}));
}

TEST_F(CleanupTest, LinksAreNeverFollowed) {
    MakeFile("outside/old.zip");
    MakeFile("Temp/young.zip", Today);
    MakeFolder("Temp/tree/below");
    fs::create_directory_symlink(Path("outside"), Path("Temp/tree/below/folder"));
    fs::create_symlink(Path("outside/old.zip"), Path("Temp/file"));
    SetDate("outside", Old);
    SetDate("Temp/tree", Old);
    CleanupTempFiles(cleaning, nullptr);
    EXPECT_EQ(folder.Names("Temp"), Lines{"young.zip"}) << "a link is as old as what it leads to";

    // A temporary folder that somebody has led elsewhere is not this computer's.
    fs::remove_all(Path("Temp"));
    fs::create_directory_symlink(Path("outside"), Path("Temp"));
    CleanupTempFiles(cleaning, nullptr);
    EXPECT_EQ(FilesBelow("outside"), Lines{"outside/old.zip"});
}

TEST_F(CleanupTest, NothingIsDeletedOnAnAnswerThatDidNotCome) {
    // Whether a folder is protected, or has files, cannot be told: it stays.
    MakeFile("Temp/below/old");
    gate.Before(calls::FileTools::FileHasAttribute, Break);
    CleanupTempFiles(cleaning, nullptr);
    EXPECT_EQ(FilesBelow("Temp").size(), 1U);
    MakeFolder("Temp/empty");
    SetDate("Temp/empty", Old);
    gate.Before(calls::PathTools::FolderContainsFiles, [this] { gate.Refuse(calls::DirectoryCalls::List, 1); });
    DeleteOldEmptyFolders(cleaning, {Path("Temp/empty")}, 3);
    EXPECT_TRUE(fs::exists(Path("Temp/empty")));
    // Without a root the path would lead below the present folder.
    const auto searches = gate.Count(calls::PathTools::FindFiles);
    gate.Refuse(calls::ObjectFactory::CreateFileManager);
    CleanupDeletedSyncFiles(cleaning, nullptr);
    EXPECT_EQ(gate.Count(calls::PathTools::FindFiles), searches);
}

TEST_F(CleanupTest, MainApplicationKeepsTheTemporaryFolderFromBeingTouched) {
    for (const Cleanup& cleanup : cleanups) {
        MakeFile(cleanup.folder + "old");
    }
    processes.names = {"bash", "QNDR5.Exe"};
    for (const Cleanup& cleanup : cleanups) {
        cleanup.run(cleaning, &activity);
    }
    EXPECT_EQ(activity.texts, (Lines{"Cleaning up temp files...", "Cleaning up sync backups...",
                                     "Cleaning up order backups...", "Cleaning up delete sync files..."}));
    EXPECT_EQ(FilesBelow("Temp"), Lines{"Temp/old"});
    EXPECT_EQ(FilesBelow("Local"), Lines{}) << "what is kept locally ages all the same";
    processes.names = {"qndr5.exe.bak", "xqndr5.exe", "qndr5", ""};
    CleanupTempFiles(cleaning, nullptr);
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
}

TEST_F(CleanupTest, OutsideTheTemporaryTreeOnlyTemporaryFilesAreTakenUnlessAllAre) {
    for (const char* name :
         {"elsewhere/a.TMP", "elsewhere/b.tmp.zip", "elsewhere/below/c.tmp", "Temp/below/d.zip"}) {
        MakeFile(name);
    }
    const Lines list{"", Path("elsewhere"), Path("Temp/below"), Path("absent")};
    DeleteOldFiles(cleaning, list, false, 5);
    EXPECT_EQ(FilesBelow("elsewhere"), (Lines{"elsewhere/b.tmp.zip", "elsewhere/below/c.tmp"}));
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
    DeleteOldFiles(cleaning, list, true, 5);
    EXPECT_EQ(FilesBelow("elsewhere"), Lines{"elsewhere/below/c.tmp"});
}

} // namespace
} // namespace qndr::testing
