#include "shared/paths2.h"
#include "suite/computer/posix/directory_calls.h"
#include "suite/computer/virtual_time.h"
#include "suite/files/disk_files.h"
#include "support/temporary_folder.h"
#include "text/wildcards.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace qndr::testing {
namespace {

namespace fs = std::filesystem;
using Paths = std::vector<std::string>;

struct Paths2PosixTest : ::testing::Test {
    std::string At(const std::string& name) const { return root + "/" + name; }
    void AddFile(const std::string& name, const std::string& content = "x") const { folder.Write(name, content); }
    Paths Sorted(Paths found) const {
        std::sort(found.begin(), found.end());
        return found;
    }
    static unsigned Mode(const std::string& path) {
        struct stat facts {};
        return stat(path.c_str(), &facts) == 0 ? facts.st_mode & 0777U : 0;
    }

    test::TemporaryFolder folder;
    std::string root = folder.Path();
    suite::PosixDirectoryCalls calls{root + "/tmp"};
    suite::DiskFileTools files{root + "/tmp"};
    suite::VirtualTime time{Date()};
    Paths2 paths{calls, files, time};
};

TEST_F(Paths2PosixTest, FolderIsWhatTheFileSystemCallsADirectory) {
    fs::create_directories(At("a:b\\c"));
    AddFile("file");
    for (const std::string& path : {std::string("/"), At("a:b\\c/")}) {
        EXPECT_TRUE(paths.FolderExists(path)) << path;
    }
    for (const std::string& path : {std::string(), At("file"), At("none"), root + std::string("\0/x", 3)}) {
        EXPECT_FALSE(paths.FolderExists(path)) << path;
    }
    EXPECT_EQ(paths.FixPath("/", false), "/");
    EXPECT_EQ(paths.FixPath(root, true), root + "/");
    EXPECT_EQ(paths.FindFiles("", "*.*", true), (Paths{""}));
    EXPECT_EQ(paths.CreateTemporaryFolder("", "no/parent", true), "");
}

TEST_F(Paths2PosixTest, CreatesNestedPrivateFolders) {
    EXPECT_TRUE(paths.CreateNestedFolder(At("Sync Local/History/")));
    EXPECT_TRUE(fs::is_directory(At("Sync Local/History")));
    EXPECT_EQ(Mode(At("Sync Local")), 0700U);
    EXPECT_TRUE(paths.CreateNestedFolder("/")) << "it is there";
    AddFile("file");
    EXPECT_FALSE(paths.CreateNestedFolder(At("file/x")));
    const std::string deep = At(std::string(200, 'd') + "/" + std::string(200, 'e'));
    EXPECT_TRUE(paths.CreateNestedFolder(deep)) << "no limit of 260 characters here";
    EXPECT_FALSE(paths.CreateNestedFolder(At(std::string(5000, 'x'))));
}

TEST_F(Paths2PosixTest, TemporaryFolderIsPrivateAndMadeAgain) {
    EXPECT_EQ(paths.CreateTemporaryFolder("", "~suz", true), At("tmp/~suz"));
    EXPECT_EQ(paths.CreateTemporaryFolder("", "~suz", true), At("tmp/~suz1"));
    EXPECT_EQ(Mode(At("tmp")) | Mode(At("tmp/~suz1")), 0700U);
    fs::remove_all(At("tmp"));
    EXPECT_EQ(paths.CreateTemporaryFolder("", "~suz", true), At("tmp/~suz"));

    fs::remove_all(At("tmp"));
    fs::create_directory(At("theirs"));
    fs::create_directory_symlink(At("theirs"), At("tmp"));
    EXPECT_EQ(paths.CreateTemporaryFolder("", "~suz", true), "") << "a link is not the agent's own folder";
    EXPECT_TRUE(fs::is_empty(At("theirs")));
}

TEST_F(Paths2PosixTest, FindsAndDeletesWithoutFollowingLinks) {
    AddFile("outside/keep.txt");
    AddFile("tree/sub/a.txt", "12345");
    AddFile("tree/.dot.txt");
    fs::create_directory_symlink(At("outside"), At("tree/link"));
    fs::create_symlink(At("nowhere"), At("tree/sub/dangling"));
    EXPECT_EQ(Sorted(paths.FindFiles(At("tree"), "*.*", true)),
              (Paths{At("tree/.dot.txt"), At("tree/link"), At("tree/sub/a.txt"), At("tree/sub/dangling")}));
    EXPECT_EQ(paths.FindFolders(At("tree")), (Paths{At("tree/sub")}));
    EXPECT_EQ(paths.GetFolderSize(At("tree"), true), 5);
    EXPECT_EQ(paths.GetFolderFileCountEx(At("tree"), false, ".*", services::HiddenAttribute), 0);

    EXPECT_TRUE(paths.DeleteFolder(At("tree"), true));
    EXPECT_FALSE(fs::exists(At("tree")));

    // The folder itself may be given by a link.
    fs::create_directory_symlink(At("outside"), At("link"));
    EXPECT_TRUE(paths.FolderExists(At("link/")));
    EXPECT_EQ(paths.FindFiles(At("link"), "*.txt", false), (Paths{At("link/keep.txt")}));
    EXPECT_TRUE(paths.DeleteFolder(At("link/"), true));
    EXPECT_FALSE(fs::is_symlink(At("link")));
    EXPECT_TRUE(fs::exists(At("outside/keep.txt")));
}

TEST_F(Paths2PosixTest, ListingDeliversDotsAndPassesOverWhatVanished) {
    AddFile("d/a.txt");
    AddFile("d/b.txt");
    const auto listing = calls.List(At("d/"), "*.*");
    ASSERT_NE(listing, nullptr);
    fs::remove(At("d/b.txt"));
    Paths names;
    while (const auto entry = listing->Next()) {
        EXPECT_EQ(entry->IsDirectory(), entry->name.starts_with('.'));
        names.push_back(entry->name);
    }
    EXPECT_EQ(Sorted(names), (Paths{".", "..", "a.txt"}));
    EXPECT_EQ(calls.List(At("none/"), "*.*"), nullptr);
    EXPECT_FALSE(calls.MakeDirectory(At("d"))) << "only this call's own folder counts";
}

TEST_F(Paths2PosixTest, LongPathsLoseTheirMiddle) {
    struct Device : services::DeviceContext {
        int TextWidth(const std::string& text) const override { return static_cast<int>(text.size()); }
    } device;
    EXPECT_EQ(calls.CompactPath(device, "/home/user/Sync", 15), "/home/user/Sync");
    EXPECT_EQ(calls.CompactPath(device, "/home/user/Sync", 14), "/home/...\x2FSync");
    EXPECT_EQ(calls.CompactPath(device, "/hömé/Sync", 10), "/h.../Sync");
    EXPECT_EQ(calls.CompactPath(device, "/home/user/Sync", 1), ".../Sync");
}

TEST(Wildcards, AreTheShells) {
    struct Case {
        const char* name;
        const char* patterns;
        bool matches;
    };
    for (const Case& each :
         {Case{"Readme", "*.*", true}, Case{"a.ZIP", "*.zip", true}, Case{"a.zip2", "*.zip", false},
          Case{"a.zip.tmp", "*.zip*", true}, Case{"a.txt", "*.zip; *.txt", true},
          Case{"a.dat", "*.zip;*.txt", false}, Case{"", "", true}, Case{"a", "", false},
          Case{"ö.psd", "?.psd", true}, Case{"öö.psd", "?.psd", false}, Case{"\xFF.psd", "?.psd", true},
          Case{"aXbXc", "a*X?", true}, Case{"abcd", "a*c", false}, Case{"a[1].txt", "a[1].txt", true},
          Case{"a", "*.*;", true}, Case{"x~y~z.zip", "*~*~*.zip", true}}) {
        EXPECT_EQ(text::MatchesAnyWildcard(each.name, each.patterns), each.matches)
            << each.name << " and " << each.patterns;
    }
}

} // namespace
} // namespace qndr::testing
