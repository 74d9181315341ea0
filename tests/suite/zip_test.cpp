#include "services/failure.h"
#include "suite/company_fixture.h"
#include "suite/files/ini_files.h"
#include "suite/files/zip_archive.h"
#include "suite/full_disk.h"
#include "support/temporary_folder.h"
#include "text/wildcards.h"

#include <gtest/gtest.h>

#include <utility>

namespace qndr::suite {
namespace {

using test::FullDisk;
using test::TemporaryFolder;
using Names = std::vector<std::string>;
namespace fs = std::filesystem;

/// Packs a folder as a step does; empty on success, otherwise the archive's text.
std::string Pack(const std::string& folder, const std::string& archive, const std::string& wildcard = "*.*") {
    LibZipArchive zip;
    const bool done = zip.NewZip(archive) == 1 && zip.AppendFiles(folder + "/" + wildcard, 1) == 1 &&
                      zip.WriteZipAndClose() == 1;
    EXPECT_EQ(zip.LastErrorText().empty(), done);
    return zip.LastErrorText();
}

/// Takes one entry out of an archive; empty on success, otherwise the archive's text.
std::string Unpack(const std::string& archive, const std::string& name, const std::string& folder) {
    LibZipArchive zip;
    if (zip.OpenZip(archive) != 0) {
        const auto entry = zip.GetEntryByName(name);
        if (entry && entry->Extract(folder) == 1) {
            return "";
        }
    }
    EXPECT_NE(zip.LastErrorText(), "");
    return zip.LastErrorText();
}

class ZipArchive : public testing::Test {
  protected:
    ZipArchive() { fs::create_directory(folder / "out"); }

    /// An archive of one entry with this content.
    std::string OneEntry(const std::string& name, const std::string& content) {
        fs::remove_all(folder / "in");
        folder.Write("in/" + name, content);
        EXPECT_EQ(Pack(folder / "in", folder / "one.zip"), "");
        return folder.Read("one.zip");
    }
    /// Nothing comes out of an archive of these bytes, and a text tells why.
    void ExpectRefused(const std::string& bytes, const std::string& name) {
        EXPECT_NE(Unpack(folder.Write("bad.zip", bytes), name, folder / "out"), "");
        EXPECT_TRUE(folder.Names("out").empty());
    }

    TemporaryFolder folder;
};

/// Bytes that no packing makes smaller.
std::string Noise(std::size_t size) {
    std::string noise;
    for (std::uint32_t i = 1; noise.size() < size; i = i * 1664525U + 1013904223U) {
        noise += static_cast<char>(i >> 24);
    }
    return noise;
}

TEST_F(ZipArchive, GivesBackWhatWasPacked) {
    const std::string large(300'000, 'x');
    folder.Write("in/id.dat", "[GENERAL]\r\n");
    folder.Write("in/data.xml", large);
    folder.Write("in/Größe ü.txt", "");
    folder.Write("in/sub/deep.txt", "deep");
    folder.Write("archive.zip", "what an earlier failure left");
    fs::permissions(folder / "archive.zip", fs::perms(0600));
    ASSERT_EQ(Pack(folder / "in", folder / "archive.zip"), "");
    EXPECT_EQ(fs::status(folder / "archive.zip").permissions(), fs::perms(0600));
    EXPECT_LT(fs::file_size(folder / "archive.zip"), 3000U);

    const std::string archive = folder / "archive.zip";
    for (const char* name : {"id.dat", "data.xml", "Größe ü.txt"}) {
        ASSERT_EQ(Unpack(archive, name, folder / "out"), "") << name;
        EXPECT_EQ(folder.Read(std::string("out/") + name), folder.Read(std::string("in/") + name));
        EXPECT_EQ(fs::status(folder / ("out/" + std::string(name))).permissions(), fs::perms(0600));
    }
    for (const char* name : {"ID.DAT", "deep.txt", "sub/deep.txt", "", "."}) {
        EXPECT_NE(Unpack(archive, name, folder / "out"), "") << name;
    }
    EXPECT_NE(Unpack(archive, "id.dat", folder / "out"), "") << "an existing file must not be replaced";
    EXPECT_EQ(folder.Names("out").size(), 3U);

    LibZipArchive zip;
    ASSERT_NE(zip.OpenZip(archive), 0);
    const auto entry = zip.GetEntryByName("id.dat");
    zip.CloseZip();
    EXPECT_NE(entry->Extract(folder / "out"), 1);
}

TEST_F(ZipArchive, TakesOnlyWhatTheWildcardNames) {
    folder.Write("in/a.XML", "a");
    folder.Write("in/noextension", "c");
    for (const auto& [wildcard, takesBoth] : {std::pair("*.xml", false), {"*.*", true}}) {
        const std::string archive = folder / (takesBoth ? "all.zip" : "some.zip");
        ASSERT_EQ(Pack(folder / "in", archive, wildcard), "");
        fs::remove(folder / "out/a.XML");
        EXPECT_EQ(Unpack(archive, "a.XML", folder / "out"), "");
        EXPECT_EQ(Unpack(archive, "noextension", folder / "out").empty(), takesBoth);
    }
    EXPECT_TRUE(text::MatchesWildcard("suz12.TMP", "s?z*.tmp") && text::MatchesWildcard("a.b.c", "*.c"));
    EXPECT_FALSE(text::MatchesWildcard("a.b.cd", "*.c") || text::MatchesWildcard("", "?") ||
                 text::MatchesWildcard("ab", "a"));
}

TEST_F(ZipArchive, LeavesNothingWhenItCannotBeWritten) {
    folder.Write("in/data.xml", Noise(200'000));
    folder.Write("archive.zip", "before");
    {
        const FullDisk full(50'000);
        EXPECT_NE(Pack(folder / "in", folder / "archive.zip"), "");
        EXPECT_NE(Pack(folder / "in", folder / "new.zip"), "");
    }
    EXPECT_EQ(folder.Read("archive.zip"), "before");
    EXPECT_NE(Pack(folder / "absent", folder / "new.zip"), "");
    EXPECT_NE(Pack(folder / "in", folder / "absent/new.zip"), "");
    EXPECT_NE(Pack(folder / "in", folder / "out"), "");
    {
        LibZipArchive abandoned;
        ASSERT_EQ(abandoned.NewZip(folder / "new.zip"), 1);
        ASSERT_EQ(abandoned.AppendFiles(folder / "in/*.*", 1), 1);
        fs::remove(folder / "in/data.xml");
        EXPECT_NE(abandoned.WriteZipAndClose(), 1);
    }
    EXPECT_EQ(folder.Names(), (Names{"archive.zip", "in", "out"}));

    OneEntry("data.xml", Noise(200'000));
    const FullDisk full(50'000);
    EXPECT_NE(Unpack(folder / "one.zip", "data.xml", folder / "out"), "");
    EXPECT_TRUE(folder.Names("out").empty());
}

TEST_F(ZipArchive, RefusesWhatIsCutShortChangedOrForged) {
    const std::string good = OneEntry("data.xml", std::string(10'000, 'x'));
    ExpectRefused(good.substr(0, good.size() / 2), "data.xml");
    const std::size_t directory = good.find("PK\1\2");
    constexpr std::size_t kSizeInDirectory = 24;
    for (const auto& [place, value] : {std::pair(good.find("data.xml") + 10, '\xAA'), // guarded by the checksum
                                       {directory + kSizeInDirectory, '\1'},
                                       {directory + kSizeInDirectory + 2, '\1'},
                                       {directory + kSizeInDirectory + 2, '\x7F'}}) {
        std::string changed = good;
        changed[place] = value;
        ExpectRefused(changed, "data.xml");
    }
    std::string elsewhere = OneEntry("___id.dat", "x");
    for (std::size_t at = 0; (at = elsewhere.find("___id.dat", at)) != std::string::npos; ++at) {
        elsewhere.replace(at, 3, "../");
    }
    ExpectRefused(elsewhere, "../id.dat");
    ExpectRefused(elsewhere, "id.dat");
    EXPECT_FALSE(fs::exists(folder / "id.dat"));
}

TEST_F(ZipArchive, TakesNoMoreThanItsBounds) {
    OneEntry("id.dat", std::string(16 * 1024, 'x'));
    EXPECT_EQ(Unpack(folder / "one.zip", "id.dat", folder / "out"), "");
    fs::remove(folder / "out/id.dat");
    ExpectRefused(OneEntry("id.dat", std::string(16 * 1024 + 1, 'x')), "id.dat");

    // 80 MiB of one character pack to about one part in 1,030 at best.
    folder.Write("in/data.xml", "");
    fs::resize_file(folder / "in/data.xml", 80 * 1024 * 1024);
    zip_t* bomb = zip_open((folder / "bomb.zip").c_str(), ZIP_CREATE, nullptr);
    zip_file_add(bomb, "data.xml", zip_source_file(bomb, (folder / "in/data.xml").c_str(), 0, -1), 0);
    zip_set_file_compression(bomb, 0, ZIP_CM_DEFLATE, 9);
    ASSERT_EQ(zip_close(bomb), 0);
    const std::string words = Unpack(folder / "bomb.zip", "data.xml", folder / "out");
    EXPECT_NE(words.find("1,000"), std::string::npos) << words;
    EXPECT_TRUE(folder.Names("out").empty());

    // An archive of 98 bytes that claims a hundred million entries, for which libzip would make room.
    const std::string claim("\0\xE1\xF5\5\0\0\0\0", 8);
    const std::string longEnd = std::string("PK\6\6\x2C\0\0\0\0\0\0\0\x2D\0\x2D\0", 16) + std::string(8, '\0') +
                                claim + claim + std::string(16, '\0');
    const std::string ends = std::string("PK\6\7", 4) + std::string(12, '\0') + std::string("\1\0\0\0", 4) +
                             std::string("PK\5\6", 4) + std::string(16, '\xFF') + std::string(2, '\0');
    EXPECT_NE(Unpack(folder.Write("bad.zip", longEnd + ends), "id.dat", folder / "out").find("too large"),
              std::string::npos);

    // Names of 30 KB make the directory large.
    zip_t* large = zip_open((folder / "large.zip").c_str(), ZIP_CREATE, nullptr);
    for (int i = 0; i < 40; ++i) {
        const std::string name = std::string(30'000, 'n') + std::to_string(i);
        zip_file_add(large, name.c_str(), zip_source_buffer(large, "", 0, 0), 0);
    }
    ASSERT_EQ(zip_close(large), 0);
    EXPECT_NE(Unpack(folder / "large.zip", "id.dat", folder / "out").find("too large"), std::string::npos);
}

/// A share: counts the calls that reach it, and lets those from `first` on, `count` of them, fail.
struct Share : FileReads {
    std::error_code Next() {
        const int call = calls++;
        return call >= first && call < first + count ? std::error_code(EIO, std::generic_category())
                                                     : std::error_code();
    }
    std::error_code Facts(const std::string& path, FileFacts& facts) override {
        const std::error_code error = Next();
        return error ? error : FileReads::Facts(path, facts);
    }
    std::error_code Open(const std::string& path, OpenFile& file) override {
        const std::error_code error = Next();
        return error ? error : FileReads::Open(path, file);
    }
    std::error_code ReadAt(OpenFile& file, std::uint64_t at, std::span<char> to, std::size_t& read) override {
        const std::error_code error = Next();
        return error ? error : FileReads::ReadAt(file, at, to, read);
    }
    int calls = 0;
    int first = 0;
    int count = 0;
};

struct CountingPatience : Patience {
    bool Wait(std::int32_t seconds) override {
        waited += seconds;
        return true;
    }
    int waited = 0;
};

class ArchiveOnAShare : public ZipArchive {
  protected:
    ArchiveOnAShare() {
        folder.Write("in/id.dat", "[GENERAL]\r\nSequence=5\r\n");
        folder.Write("in/data.xml", noise);
        EXPECT_EQ(Pack(folder / "in", archive), "");
    }
    /// What a receiving step does: the names of the entries that it got. True in `opened` unless the file counts
    /// as none.
    Names Receive(ArchiveShelf& shelf) {
        fs::remove_all(folder / "out");
        fs::create_directory(folder / "out");
        for (const char* name : {"id.dat", "data.xml"}) {
            LibZipArchive zip(shelf);
            opened = zip.OpenZip(archive) != 0;
            const auto entry = opened ? zip.GetEntryByName(name) : nullptr;
            opened = opened && entry != nullptr;
            if (entry && entry->Extract(folder / "out") != 1) {
                EXPECT_NE(zip.LastErrorText(), "");
            }
        }
        return folder.Names("out");
    }

    const std::string noise = Noise(200'000);
    const std::string archive = folder / "archive.zip";
    const Names all{"data.xml", "id.dat"};
    Share share;
    CountingPatience patience;
    StandingClock clock;
    bool opened = false;
};

TEST_F(ArchiveOnAShare, AReadErrorIsWaitedOutAndNeverMakesItABrokenOne) {
    {
        ArchiveShelf shelf(share);
        ASSERT_EQ(Receive(shelf), all);
    }
    const int healthy = std::exchange(share.calls, 0);
    ASSERT_GT(healthy, 8);
    for (int call = 0; call < healthy; ++call) {
        SCOPED_TRACE(call);
        for (const int count : {1, 1'000'000}) {
            share = {};
            share.first = call;
            share.count = count;
            patience.waited = 0;
            ArchiveShelf shelf(share, &patience, &clock);
            const Names got = Receive(shelf);
            EXPECT_TRUE(opened) << "the file must stay";
            if (count == 1) {
                EXPECT_EQ(got, all);
                EXPECT_EQ(folder.Read("out/data.xml"), noise);
            } else {
                EXPECT_LT(got.size(), 2U);
                EXPECT_TRUE(got.empty() || got == Names{"id.dat"}) << "nothing else without its descriptor";
                EXPECT_LE(patience.waited, 6);
                share.count = 0;
                EXPECT_EQ(Receive(shelf), all) << "an error is not remembered";
            }
        }
    }
}

TEST_F(ArchiveOnAShare, EachFileIsReadOnceUntilItChanges) {
    ArchiveShelf shelf(share, nullptr, nullptr, 0);
    const std::string strange = folder.Write("strange.zip", "this is no archive");
    const auto extract = [&](const std::string& path) {
        fs::remove(folder / "out/id.dat");
        share.calls = 0;
        LibZipArchive zip(shelf);
        const bool open = zip.OpenZip(path) != 0;
        const auto entry = open ? zip.GetEntryByName("id.dat") : nullptr;
        return entry && entry->Extract(folder / "out") == 1 ? folder.Read("out/id.dat") : "none";
    };
    for (const auto& [path, content] : {std::pair(archive, folder.Read("in/id.dat")), {strange, "none"}}) {
        EXPECT_EQ(extract(path), content);
        EXPECT_EQ(extract(path), content);
        EXPECT_EQ(share.calls, 1) << "of which file it is, and no more: " << path;
    }
    OneEntry("id.dat", "changed");
    fs::copy(folder / "one.zip", strange, fs::copy_options::overwrite_existing);
    EXPECT_EQ(extract(strange), "changed");
}

TEST_F(ArchiveOnAShare, NoFolderIsPackedWithAFileThatWasWrittenByHalf) {
    ArchiveShelf shelf(share);
    DiskIniTools ini(&shelf.Unwritten());
    {
        const FullDisk full(10);
        EXPECT_THROW(ini.SetValue("GENERAL", "Sequence", "5", folder / "in/id.dat"), services::Failure);
    }
    ini.SetValue("GENERAL", "From", "me", folder / "in/id.dat");
    for (const bool again : {false, true}) {
        LibZipArchive zip(shelf);
        ASSERT_EQ(zip.NewZip(folder / "new.zip"), 1);
        EXPECT_EQ(zip.AppendFiles(folder / "in/*.*", 1) == 1, again);
    }
}

} // namespace
} // namespace qndr::suite
