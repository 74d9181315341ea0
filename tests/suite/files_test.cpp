#include "services/failure.h"
#include "suite/computer/file_calls.h"
#include "suite/files/arrays.h"
#include "suite/files/disk_files.h"
#include "suite/files/text_files.h"
#include "suite/full_disk.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qndr::suite {
namespace {

using test::FullDisk;
using test::TemporaryFolder;
using Names = std::vector<std::string>;
namespace fs = std::filesystem;

TEST(DiskFiles, TellOnlyOfFiles) {
    const TemporaryFolder folder;
    DiskFileTools files(folder / "Temp");
    const std::string path = folder.Write("a.b.zip", "12345");
    EXPECT_TRUE(files.FileExists(path) && files.FileIsPresent(path));
    EXPECT_EQ(files.GetFileSize(path), 5);
    for (const std::string& none : {folder.Path(), folder / "absent", std::string()}) {
        EXPECT_FALSE(files.FileExists(none));
        EXPECT_THROW(files.GetFileSize(none), services::Failure);
        EXPECT_FALSE(files.DeleteFile(none));
    }
    EXPECT_THROW(files.GetFileDate(folder / "absent"), services::Failure);
    EXPECT_THROW(files.GetFileDate(""), services::Failure);
    EXPECT_TRUE(fs::is_directory(folder.Path()));
    EXPECT_EQ(files.GetFileName("/x/y\\z.tar.gz"), "y\\z.tar.gz");
    EXPECT_EQ(files.GetFileBaseName("/x.y/z.tar.gz"), "z.tar");
    EXPECT_EQ(files.GetFileBaseName("/x.y/z"), "z");
    EXPECT_EQ(files.ToFileToken("{A~B:C}\\/*?\"<>|\n"), "{A-B-C}---------");
    fs::create_directory(folder / ".hidden");
    EXPECT_TRUE(files.FileHasAttribute(folder / ".hidden/", 2));
    EXPECT_FALSE(files.FileHasAttribute(folder / ".hidden", 4));
    EXPECT_FALSE(files.FileHasAttribute(folder / ".absent", 2));
    EXPECT_FALSE(files.FileHasAttribute(path, 2));
}

TEST(DiskFiles, DatesAreLocalTimeOfTheFilesOwnSeason) {
    const TemporaryFolder folder;
    DiskFileTools files(folder / "Temp");
    const std::string path = folder.Write("a", "");
    const std::string before = getenv("TZ") == nullptr ? "" : getenv("TZ");
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    const auto dateOf = [&](std::int64_t moment) {
        const timespec times[2] = {{moment, 0}, {moment, 999'000'000}};
        utimensat(AT_FDCWD, path.c_str(), times, 0);
        utimensat(AT_FDCWD, folder.Path().c_str(), times, 0);
        EXPECT_EQ(files.GetFileDate(folder.Path()), files.GetFileDate(path));
        EXPECT_EQ(files.GetFileDate(folder.Path() + "/"), files.GetFileDate(path));
        return FormatGeneralDate(files.GetFileDate(path));
    };
    EXPECT_EQ(dateOf(1'795'370'932), "2026-11-22 19:08:52");
    EXPECT_EQ(dateOf(1'783'101'600), "2026-07-03 20:00:00");
    before.empty() ? unsetenv("TZ") : setenv("TZ", before.c_str(), 1);
    tzset();
}

TEST(DiskFiles, TemporaryFilesArePrivateAndNew) {
    const TemporaryFolder folder;
    DiskFileTools files(folder / "deep/Temp");
    const std::string first = files.CreateTemporaryFile("", "suz", ".zip");
    EXPECT_TRUE(first.starts_with(folder / "deep/Temp/suz")) << first;
    EXPECT_TRUE(first.ends_with(".zip"));
    EXPECT_NE(first, files.CreateTemporaryFile("", "suz", ".zip"));
    EXPECT_EQ(fs::status(first).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(folder / "deep/Temp").permissions(), fs::perms(0700));

    fs::remove_all(folder / "deep/Temp");
    EXPECT_NE(files.CreateTemporaryFile("", "suz", ".zip"), "");
    EXPECT_EQ(files.CreateTemporaryFile(folder / "absent", "suz", ".zip"), "");

    // Somebody else was there first, with a folder of his or with a link to one: the next place is taken.
    fs::create_directory(folder / "stranger");
    const bool isForeign = chown((folder / "stranger").c_str(), 65534, 65534) == 0;
    fs::create_directory_symlink(folder / "stranger", folder / "link");
    Computer computer = Computer::InFolder(folder / "computer", "main");
    for (const char* usual : {"link", "stranger"}) {
        computer.temporaryFolder = folder / (isForeign ? usual : "link");
        computer.otherTemporaryFolders = {folder / "link", folder / "run/qndr5"};
        const TemporaryPlaces places(computer);
        EXPECT_EQ(places.Obstacle(), "it belongs to another user, or is no folder");
        EXPECT_TRUE(
            DiskFileTools(places).CreateTemporaryFile("", "suz", ".zip").starts_with(folder / "run/qndr5/suz"));
        EXPECT_EQ(DiskFileTools(computer.temporaryFolder).CreateTemporaryFile("", "suz", ".zip"), "");
        EXPECT_TRUE(folder.Names("stranger").empty());
    }
}

TEST(DiskFiles, ACopyIsWholeOrNotThere) {
    const TemporaryFolder folder;
    DiskFileTools files(folder / "Temp");
    const std::string content = std::string(300'000, 'x') + "end";
    const std::string source = folder.Write("source", content);
    fs::create_directory(folder / "Sync");

    EXPECT_TRUE(files.CopyFile(source, folder / "Sync/a~b.zip", false));
    EXPECT_EQ(folder.Read("Sync/a~b.zip"), content);
    folder.Write("source", "new");
    EXPECT_FALSE(files.CopyFile(source, folder / "Sync/a~b.zip", false));
    EXPECT_EQ(folder.Read("Sync/a~b.zip"), content);
    EXPECT_TRUE(files.CopyFile(source, folder / "Sync/a~b.zip", true));
    EXPECT_EQ(folder.Read("Sync/a~b.zip"), "new");

    for (const char c : std::string("\\:*?\"<>|\n\x1B")) {
        EXPECT_FALSE(files.CopyFile(source, folder / ("Sync/a" + std::string(1, c) + ".zip"), false)) << c;
    }
    fs::create_directory(folder / "Sync/folder");
    mkfifo((folder / "pipe").c_str(), 0600);
    for (const auto& [from, to] : {std::pair("source", "Sync/"),
                                   {"source", "Sync/folder"},
                                   {"source", "pipe"},
                                   {"source", "absent/a.zip"},
                                   {"absent", "Sync/c.zip"},
                                   {"Sync", "Sync/c.zip"},
                                   {"pipe", "Sync/c.zip"}}) {
        for (const bool overwrite : {false, true}) {
            EXPECT_FALSE(files.CopyFile(folder / from, folder / to, overwrite)) << from << " to " << to;
        }
    }
    folder.Write("source", content);
    {
        const FullDisk full(100'000);
        EXPECT_FALSE(files.CopyFile(source, folder / "Sync/d.zip", false));
        EXPECT_FALSE(files.CopyFile(source, folder / "Sync/a~b.zip", true));
    }
    EXPECT_EQ(folder.Read("Sync/a~b.zip"), "new");
    EXPECT_EQ(folder.Names("Sync"), (Names{"a~b.zip", "folder"}));
}

// The copying process is killed by the system in the middle of 50 MB.
TEST(DiskFiles, AKilledCopyLeavesNoPartUnderItsName) {
    const TemporaryFolder folder;
    const std::string source = folder.Write("source", std::string(50'000'000, 'x'));
    fs::create_directory(folder / "Sync");
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_DFL);
        const rlimit limit{20'000'000, 20'000'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        DiskFileTools files(folder / "Temp");
        files.CopyFile(source, folder / "Sync/a~b.zip", false);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ) << "the copy was not killed";
    const Names left = folder.Names("Sync");
    ASSERT_EQ(left.size(), 1U);
    EXPECT_TRUE(left[0].starts_with("~$") && left[0].ends_with(".tmp")) << left[0];
}

TEST(DiskFiles, MovingKeepsTheSourceUnlessItSucceeds) {
    const TemporaryFolder folder;
    DiskFileTools files(folder / "Temp");
    const std::string source = folder.Write("source", "moved");
    folder.Write("taken", "old");
    EXPECT_FALSE(files.MoveFile(source, folder / "taken", false));
    EXPECT_FALSE(files.MoveFile(source, folder / "absent/x", false));
    EXPECT_FALSE(files.MoveFile(folder / "absent", folder / "taken", true));
    EXPECT_EQ(folder.Read("source") + folder.Read("taken"), "movedold");
    const timespec longAgo[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    utimensat(AT_FDCWD, source.c_str(), longAgo, 0);
    EXPECT_TRUE(files.MoveFile(source, folder / "taken", true));
    EXPECT_GT(files.GetFileDate(folder / "taken"), *ParseDate("2002-01-01")) << "it ages from now on";
    EXPECT_EQ(folder.Names(), Names{"taken"});
    EXPECT_EQ(folder.Read("taken"), "moved");
}

TEST(DiskFiles, MovingToAnotherFileSystemKeepsTheSourceUnlessItSucceeds) {
    const TemporaryFolder folder;
    const TemporaryFolder far(test::QuickPlace());
    DiskFileTools files(folder / "Temp");
    const std::string source = folder.Write("source", "moved");
    bool moved = false; // there may be but one file system
    {
        const FullDisk full(2);
        moved = files.MoveFile(source, far / "there", false);
    }
    EXPECT_EQ(folder.Names(), moved ? Names{} : Names{"source"});
    EXPECT_EQ(far.Names(), moved ? Names{"there"} : Names{});
    EXPECT_TRUE(moved || files.MoveFile(source, far / "there", false));
    EXPECT_TRUE(folder.Names().empty());
    EXPECT_EQ(far.Read("there"), "moved");
}

TEST(TextFiles, AreWrittenWholeAndAppended) {
    const TemporaryFolder folder;
    DiskTextFileTools files;
    EXPECT_EQ(files.WriteTextFile(folder / "a", "data.xml\r\nä", "UTF-8", 0), 1);
    EXPECT_EQ(folder.Read("a"), "data.xml\r\nä");
    EXPECT_NE(files.WriteTextFile(folder / "a", "b", "utf-16", 0), 1);
    EXPECT_NE(files.WriteTextFile(folder / "absent/a", "b", "utf-8", 0), 1);
    {
        const FullDisk full(10);
        EXPECT_NE(files.WriteTextFile(folder / "a", std::string(100, 'x'), "utf-8", 0), 1);
    }
    EXPECT_EQ(folder.Read("a"), "data.xml\r\nä");

    chmod((folder / "a").c_str(), 0600);
    EXPECT_EQ(files.WriteTextFile(folder / "a", "private", "utf-8", 0), 1);
    EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms(0600));

    DiskTextAppender log;
    log.Append(folder / "log", "one\r\n");
    log.Append(folder / "log", "two\r\n");
    EXPECT_EQ(folder.Read("log"), "one\r\ntwo\r\n");
    EXPECT_THROW(log.Append(folder / "absent/log", "x"), services::Failure);
    EXPECT_THROW(log.Append("/dev/full", "x"), services::Failure);
    EXPECT_THROW(log.Append("", "x"), services::Failure);
    EXPECT_EQ(folder.Names(), (Names{"a", "log"}));
}

TEST(Arrays, SearchAndGrow) {
    PlainStringArrayTools texts;
    Names list{""};
    for (const auto& [text, unique] :
         {std::pair("History", false), {"Orders", false}, {"Orders", true}, {"orders", true}}) {
        texts.AddString(text, list, unique);
    }
    EXPECT_EQ(list, (Names{"History", "Orders", "orders"}));
    EXPECT_EQ(texts.FindString("ORDERS", list, false, false), 1);
    EXPECT_EQ(texts.FindString("orders", list, true, false), 2);
    EXPECT_EQ(texts.FindString("STOR", list, false, true), 0);
    EXPECT_LT(texts.FindString("order", list, false, false), 0);

    PlainArrayTools numbers;
    std::vector<std::int32_t> ids;
    for (const auto& [number, unique] : {std::pair(7, true), {0, false}, {7, true}, {7, false}}) {
        numbers.AddLong(number, ids, unique);
    }
    EXPECT_EQ(ids, (std::vector<std::int32_t>{7, 0, 7}));
    EXPECT_TRUE(numbers.FindLong(0, ids) == 1 && numbers.FindLong(8, ids) < 0);
}

} // namespace
} // namespace qndr::suite
