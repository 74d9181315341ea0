#include "shared/paths2.h"
#include "shared/simulated_directories.h"

#include <gtest/gtest.h>

namespace qndr::testing {
namespace {

using Paths = std::vector<std::string>;

/// A computer with a drive C:.
struct Paths2WindowsTest : ::testing::Test, services::MessagePump {
    Paths2WindowsTest() {
        directories.AddFolder("C:\\Data");
        directories.AddFolder("C:\\Temp");
    }
    void ProcessMessages() override { ++timesProcessed; }

    SimulatedDirectories directories;
    SimulatedFiles files{directories};
    Paths2 paths{directories, files, *this};
    int timesProcessed = 0;
};

TEST_F(Paths2WindowsTest, PathTextFollowsTheRules) {
    for (const char* path : {" C:\\a ", " C:\\a\\ "}) {
        EXPECT_EQ(paths.FixPath(path, true) + paths.FixPath(path, false), "C:\\a\\C:\\a");
    }
    EXPECT_EQ(paths.FixPath("  ", true), "");
    EXPECT_EQ(paths.QualifyPath("C:\\a "), "C:\\a \\");
    EXPECT_EQ(paths.UnQualifyPath(" C:\\a\\\\ ") + paths.UnQualifyPath("\\"), "C:\\a\\");
    EXPECT_EQ(paths.FixForFileName("a\\b/c:d*e?f\"g>h<i|j k", "_", true), "a_b_c_d_e_f_g_h_i_j k");
    EXPECT_EQ(paths.FixForFileName("ä b*", "--", false), "ä--b--");
    EXPECT_FALSE(Paths2::CharacterIsAllowedForFileName("|"));
    EXPECT_TRUE(Paths2::CharacterIsAllowedForFileName("||"));
    std::string text("ab\0c\0", 5);
    Paths2::TrimNull(text);
    EXPECT_EQ(text, "ab");
}

TEST_F(Paths2WindowsTest, SplitsPaths) {
    struct Case {
        const char* path;
        Paths parts;
    };
    for (const Case& each :
         {Case{"C:\\a\\b.c.txt", {"C:\\a\\", "b.c", ".txt"}}, Case{"C:\\a\\b", {"C:\\a\\b", "", ""}},
          Case{" C:\\a\\b ", {" C:\\a\\b ", "", ""}}, Case{"C:\\a.x\\b", {"C:\\a.x\\", "b", ""}},
          Case{"b.txt", {"", "b", ".txt"}}, Case{"b", {"", "b", ""}}, Case{" C:\\.x", {"C:\\", "", ".x"}},
          Case{"", {"", "", ""}}}) {
        Paths parts{"old", "old", "old"};
        EXPECT_TRUE(paths.SplitPath(each.path, parts[0], parts[1], parts[2]));
        EXPECT_EQ(parts, each.parts) << each.path;
        std::string folder;
        std::string fileName;
        EXPECT_TRUE(paths.SplitPath2(each.path, folder, fileName));
        EXPECT_EQ(folder + "|" + fileName, parts[0] + "|" + parts[1] + parts[2]);
    }
}

TEST_F(Paths2WindowsTest, RootsAndSharesAreJudgedByTheirFirstEntry) {
    directories.AddFile("E:\\file.txt");
    directories.AddFolder("E:\\folder");
    directories.AddFolder("F:");
    directories.AddFolder("\\\\srv\\share\\folder");
    directories.AddFile("\\\\srv\\files\\a.txt");
    for (const char* folder : {"C:\\", "C:", "\\\\srv\\share", "\\\\srv\\share\\folder\\", " E:\\folder\\ "}) {
        EXPECT_TRUE(paths.FolderExists(folder)) << folder;
    }
    for (const char* other : {"E:\\", "F:\\", "\\\\srv\\files", "E:\\folder\\\\", "E:\\file.txt", "E:\\none"}) {
        EXPECT_FALSE(paths.FolderExists(other)) << other;
    }
}

TEST_F(Paths2WindowsTest, DrivesStandForTheirSharesAlsoWhenOnlyRemembered) {
    directories.AddFile("\\\\srv\\share\\folder\\a.txt");
    const auto connect = [&](std::int32_t result, std::string buffer) {
        directories.connections["S:"] = {result, std::move(buffer)};
        return paths.FolderExists("S:\\folder");
    };
    const std::string share(" \\\\srv\\share \0rest", 19);
    for (const std::int32_t result : {0, 1201, 2250}) {
        EXPECT_TRUE(connect(result, share)) << result;
    }
    EXPECT_FALSE(connect(1222, share));
    EXPECT_FALSE(connect(0, std::string("\0\\\\srv\\share", 13)));

    connect(1201, share);
    EXPECT_TRUE(paths.FolderExists("S:\\"));
    EXPECT_EQ(paths.FindFiles("S:\\", "*.txt", true), (Paths{"\\\\srv\\share\\folder\\a.txt"}));
    EXPECT_EQ(paths.FindFolders("S:\\"), (Paths{"\\\\srv\\share\\folder"}));
    EXPECT_TRUE(paths.CreateNestedFolder("S:\\folder\\x\\y"));
    EXPECT_EQ(directories.made, (Paths{"\\\\srv\\share\\folder\\x", "\\\\srv\\share\\folder\\x\\y"}));
    EXPECT_EQ(paths.CreateTemporaryFolder("S:\\folder", "~suz", true), "\\\\srv\\share\\folder\\~suz");
    EXPECT_TRUE(paths.DeleteFolder("S:\\folder\\x", true));
    EXPECT_FALSE(directories.Has("\\\\srv\\share\\folder\\x"));
}

/// One tree with every kind of leading dot.
struct Paths2TreeTest : Paths2WindowsTest {
    Paths2TreeTest() {
        directories.AddFolder("C:\\t\\.hidden\\deep");
        directories.AddFile("C:\\t\\.hidden\\h.txt");
        directories.AddFile("C:\\t\\.dot.txt", 10);
        directories.AddFolder("C:\\t\\sub.txt");
        directories.AddFile("C:\\t\\sub.txt\\B.TXT", 200);
        directories.AddFile("C:\\t\\sub.txt\\c.dat", 1000, services::HiddenAttribute | 4);
        directories.AddFolder("C:\\t\\other");
        directories.AddFile("C:\\t\\other\\d.txt", 5000);
        directories.AddFile("C:\\t\\a.txt", 30, services::HiddenAttribute);
    }
};

TEST_F(Paths2TreeTest, SearchesTakeFilesWithALeadingDotButEnterNoSuchFolder) {
    EXPECT_EQ(paths.FindFiles("C:\\t", "*.txt", true),
              (Paths{"C:\\t\\.dot.txt", "C:\\t\\sub.txt\\B.TXT", "C:\\t\\other\\d.txt", "C:\\t\\a.txt"}));
    EXPECT_EQ(paths.FindFiles("C:\\t\\", "a*;*.DOT.*", false), (Paths{"C:\\t\\.dot.txt", "C:\\t\\a.txt"}));
    EXPECT_EQ(paths.FindFiles("C:\\t", "*.zip", true), (Paths{""}));
    EXPECT_EQ(paths.FindFiles("C:\\none", "*.*", true), (Paths{""}));
    EXPECT_EQ(paths.FindFolders("C:\\t"), (Paths{"C:\\t\\sub.txt", "C:\\t\\other"}));
    EXPECT_EQ(paths.FindFolders("C:\\t\\other"), (Paths{""}));
    directories.AddFolder("C:\\t\\other\\x\\y");
    EXPECT_EQ(paths.FindFolders("C:\\t\\other"), (Paths{"C:\\t\\other\\x", "C:\\t\\other\\x\\y"}));

    EXPECT_TRUE(paths.FolderContainsFile("C:\\t", "b.txt", true));
    EXPECT_FALSE(paths.FolderContainsFile("C:\\t", "b.txt", false));
    EXPECT_FALSE(paths.FolderContainsFile("C:\\t", "h.txt", true));
}

TEST_F(Paths2TreeTest, TestsAndCountsPassOverEveryLeadingDot) {
    EXPECT_TRUE(paths.FolderContainsFiles("C:\\t", false));
    directories.Remove("C:\\t\\a.txt");
    EXPECT_FALSE(paths.FolderContainsFiles("C:\\t", false));
    EXPECT_TRUE(paths.FolderContainsFiles("C:\\t", true));
    EXPECT_TRUE(paths.FolderContainsFolders("C:\\t"));
    EXPECT_FALSE(paths.IsFolderEmpty("C:\\t"));
    EXPECT_FALSE(paths.FolderContainsFolders("C:\\t\\.hidden\\deep"));
    directories.AddFile("C:\\t\\.hidden\\deep\\.keep");
    EXPECT_TRUE(paths.IsFolderEmpty("C:\\t\\.hidden\\deep"));
    EXPECT_EQ(paths.GetFolderFolderCount("C:\\t", false), 2);
    directories.AddFolder("C:\\t\\other\\x");
    EXPECT_EQ(paths.GetFolderFolderCount("C:\\t", true), 3);

    EXPECT_EQ(paths.GetFolderFileCount("C:\\t", true, "*.*"), 3);
    EXPECT_EQ(paths.GetFolderFileCount("C:\\t", true, "*.txt"), 1) << "the folder 'other' does not match";
    EXPECT_EQ(paths.GetFolderFileCountEx("C:\\t", true, "*.*", services::HiddenAttribute), 1);
    EXPECT_EQ(paths.GetFolderFileCountEx("C:\\t", true, "*.*", 1 | 4), 1);
    EXPECT_EQ(paths.GetFolderFileCountEx("C:\\t", true, "*.*", 0), 0);
}

TEST_F(Paths2TreeTest, SizeLeavesOutAFileThatWouldOverflow) {
    EXPECT_EQ(paths.GetFolderSize("C:\\t", false), 30);
    EXPECT_EQ(paths.GetFolderSize("C:\\t", true), 6230);
    directories.AddFile("C:\\t\\big", 2'147'483'000U);
    directories.AddFile("C:\\t\\huge", 4'000'000'000U);
    directories.AddFile("C:\\t\\last", 5);
    EXPECT_EQ(paths.GetFolderSize("C:\\t", false), 2'147'483'035);
}

TEST_F(Paths2TreeTest, ProgressShowsEachFolderBeforeGoingIntoIt) {
    struct Label : ProgressLabel {
        int Width() const override { return 42; }
        void SetCaption(const std::string& text) override { captions.push_back(text); }
        Paths captions;
    } label;
    struct Device : services::DeviceContext {
        int TextWidth(const std::string&) const override { return 0; }
    } device;
    const Paths all = paths.FindFiles("C:\\t", "*.*", true);
    EXPECT_EQ(paths.FindFilesWithProgress("C:\\t", "*.*", true, &label, device), all);
    EXPECT_EQ(label.captions, (Paths{"42:C:\\t\\sub.txt", "42:C:\\t\\other"}));
    EXPECT_EQ(timesProcessed, 2);
    EXPECT_EQ(paths.FindFilesWithProgress("C:\\t", "*.*", true, nullptr, device), all);
    EXPECT_EQ(timesProcessed, 2);
}

TEST_F(Paths2TreeTest, SubfolderWithALeadingDotKeepsTheTree) {
    EXPECT_FALSE(paths.DeleteFolder("C:\\t", true));
    EXPECT_EQ(paths.FindFiles("C:\\t", "*.*", true), (Paths{""}));
    EXPECT_TRUE(directories.Has("C:\\t\\.hidden\\deep"));
    EXPECT_FALSE(paths.DeleteFolder("C:\\t", false));

    EXPECT_TRUE(paths.DeleteFolder("C:\\t\\.hidden", true)) << "asked for by itself";
    EXPECT_TRUE(paths.DeleteFolder("C:\\t", false)) << "empty by now";
    EXPECT_TRUE(paths.DeleteFolder("C:\\t", false)) << "not there";
    EXPECT_FALSE(paths.DeleteFolder("", true));
}

TEST_F(Paths2WindowsTest, CreatesFoldersOnDrivesAndShares) {
    EXPECT_FALSE(paths.CreateFolder("C:\\a\\b")) << "no parent";
    EXPECT_TRUE(paths.CreateNestedFolder("C:\\a\\b\\"));
    EXPECT_EQ(directories.made, (Paths{"C:\\a\\b", "C:\\a", "C:\\a\\b"}));
    EXPECT_TRUE(paths.CreateFolder("C:\\a\\b"));
    EXPECT_FALSE(paths.CreateNestedFolder("\\a")) << "no drive in front";
    directories.AddFile("C:\\a\\file");
    EXPECT_FALSE(paths.CreateNestedFolder("C:\\a\\file\\b"));

    directories.AddFolder("\\\\srv\\share\\folder");
    EXPECT_TRUE(paths.CreateNestedFolder("\\\\srv\\share\\x\\y"));
    EXPECT_FALSE(paths.CreateNestedFolder("\\\\srv\\share")) << "only three separators";
    EXPECT_TRUE(paths.CreateNestedFolder("\\\\srv\\share\\"));
    directories.AddFile("\\\\srv\\files\\a.txt");
    EXPECT_FALSE(paths.CreateNestedFolder("\\\\srv\\files\\x")) << "the share's root does not count as a folder";

    const std::string longest = "C:\\a\\" + std::string(255, 'x');
    EXPECT_TRUE(paths.CreateNestedFolder(longest));
    EXPECT_FALSE(paths.CreateFolder(longest + "x"));
    EXPECT_FALSE(paths.CreateNestedFolder(longest + "x"));
    EXPECT_FALSE(paths.DeleteFolder(longest + "x", true));
    EXPECT_FALSE(paths.CreateFolder(""));
    EXPECT_FALSE(paths.CreateNestedFolder(""));
}

TEST_F(Paths2WindowsTest, TemporaryFolderIsOneThatThisCallMade) {
    EXPECT_EQ(paths.GetTemporaryFolder(), "C:\\Temp\\");
    EXPECT_EQ(paths.CreateTemporaryFolder("", "~suz", true), "C:\\Temp\\~suz");
    EXPECT_EQ(paths.CreateTemporaryFolder("C:\\none", "~suz", true), "C:\\Temp\\~suz1");
    EXPECT_EQ(paths.CreateTemporaryFolder("", "~suz", false), "C:\\Temp\\~suz");
    directories.AddFile("C:\\Temp\\~suz2");
    directories.takenByAnother = {"C:\\Temp\\~suz3"};
    EXPECT_EQ(paths.CreateTemporaryFolder("", "~suz", true), "C:\\Temp\\~suz4");
    directories.takenByAnother = {"C:\\Data\\~new"};
    EXPECT_EQ(paths.CreateTemporaryFolder("C:\\Data", "~new", true), "C:\\Data\\~new1");
    EXPECT_EQ(paths.CreateTemporaryFolder("", "no\\parent", true), "");

    for (int number = 1; number <= 999; ++number) {
        directories.AddFolder("C:\\Data\\full" + std::to_string(number));
    }
    directories.AddFolder("C:\\Data\\full");
    EXPECT_EQ(paths.CreateTemporaryFolder("C:\\Data", "full", true), "");

    directories.temporaryPath = std::string("C:\\Temp\0rest", 12);
    EXPECT_EQ(paths.GetTemporaryFolder(), "C:\\Temp\\");
    directories.temporaryPath = "";
    directories.made.clear();
    EXPECT_EQ(paths.CreateTemporaryFolder("", "~suz", true), "");
    EXPECT_TRUE(directories.made.empty()) << "nothing is made below the current folder";
}

TEST_F(Paths2WindowsTest, WriteableFolderIsTriedOut) {
    EXPECT_TRUE(paths.IsFolderWriteable("C:\\Data"));
    EXPECT_EQ(paths.FindFiles("C:\\Data", "*.*", true), (Paths{""})) << "the trial file is gone";
    EXPECT_FALSE(paths.IsFolderWriteable("C:\\none"));
    files.isWriteable = false;
    EXPECT_FALSE(paths.IsFolderWriteable("C:\\Data"));
}

} // namespace
} // namespace qndr::testing
