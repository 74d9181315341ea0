#include "suite/files/wildcards.h"
#include "suite/files/zip_archive.h"
#include "suite/full_disk.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(folder.Read("out/id.dat"), "[GENERAL]\r\n");
    EXPECT_NE(Unpack(archive, "id.dat", folder / "absent"), "");
    EXPECT_EQ(folder.Names("out").size(), 3U);

    LibZipArchive zip;
    ASSERT_NE(zip.OpenZip(archive), 0);
    const auto entry = zip.GetEntryByName("id.dat");
    zip.CloseZip();
    zip.CloseZip();
    EXPECT_NE(entry->Extract(folder / "out"), 1);
}

TEST_F(ZipArchive, TakesOnlyWhatTheWildcardNames) {
    folder.Write("in/a.XML", "a");
    folder.Write("in/b.txt", "b");
    folder.Write("in/noextension", "c");
    ASSERT_EQ(Pack(folder / "in", folder / "some.zip", "*.xml"), "");
    EXPECT_EQ(Unpack(folder / "some.zip", "a.XML", folder / "out"), "");
    EXPECT_NE(Unpack(folder / "some.zip", "b.txt", folder / "out"), "");
    ASSERT_EQ(Pack(folder / "in", folder / "all.zip"), "");
    EXPECT_EQ(Unpack(folder / "all.zip", "noextension", folder / "out"), "");

    EXPECT_TRUE(MatchesWildcard("suz12.TMP", "s?z*.tmp") && MatchesWildcard("a.b.c", "*.c"));
    EXPECT_FALSE(MatchesWildcard("a.b.cd", "*.c") || MatchesWildcard("", "?") || MatchesWildcard("ab", "a"));
}

TEST_F(ZipArchive, IsValidWithoutFiles) {
    fs::create_directory(folder / "in");
    ASSERT_EQ(Pack(folder / "in", folder / "empty.zip"), "");
    EXPECT_EQ(fs::file_size(folder / "empty.zip"), 22U);
    LibZipArchive zip;
    EXPECT_NE(zip.OpenZip(folder / "empty.zip"), 0);
    EXPECT_EQ(zip.GetEntryByName("id.dat"), nullptr);
}

TEST_F(ZipArchive, LeavesNothingWhenItCannotBeWritten) {
    std::string noise;
    for (std::uint32_t i = 1; noise.size() < 200'000; i = i * 1664525U + 1013904223U) {
        noise += static_cast<char>(i >> 24);
    }
    folder.Write("in/data.xml", noise);
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
        EXPECT_NE(abandoned.OpenZip(folder / "archive.zip"), 1);
        ASSERT_EQ(abandoned.AppendFiles(folder / "in/*.*", 1), 1);
        fs::remove(folder / "in/data.xml");
        EXPECT_NE(abandoned.WriteZipAndClose(), 1);
        EXPECT_NE(abandoned.WriteZipAndClose(), 1);
    }
    EXPECT_EQ(folder.Names(), (Names{"archive.zip", "in", "out"}));

    folder.Write("in/data.xml", noise);
    ASSERT_EQ(Pack(folder / "in", folder / "whole.zip"), "");
    const FullDisk full(50'000);
    EXPECT_NE(Unpack(folder / "whole.zip", "data.xml", folder / "out"), "");
    EXPECT_TRUE(folder.Names("out").empty());
}

TEST_F(ZipArchive, RefusesDamageAtAnyByte) {
    const std::string good = OneEntry("id.dat", "[GENERAL]\r\nSequence=5\r\n");
    for (std::size_t length = 0; length < good.size(); ++length) {
        ExpectRefused(good.substr(0, length), "id.dat");
    }
    ExpectRefused("this is no archive", "id.dat");
    // Every single changed byte either does no harm or is noticed.
    for (std::size_t i = 0; i < good.size(); ++i) {
        std::string bytes = good;
        bytes[i] = static_cast<char>(bytes[i] ^ 0x55);
        if (Unpack(folder.Write("bad.zip", bytes), "id.dat", folder / "out").empty()) {
            EXPECT_EQ(folder.Read("out/id.dat"), "[GENERAL]\r\nSequence=5\r\n") << i;
            fs::remove(folder / "out/id.dat");
        }
        EXPECT_TRUE(folder.Names("out").empty()) << i;
    }
}

TEST_F(ZipArchive, RefusesNamesThatLeadElsewhere) {
    std::string bytes = OneEntry("___id.dat", "x");
    for (std::size_t at = 0; (at = bytes.find("___id.dat", at)) != std::string::npos; ++at) {
        bytes.replace(at, 3, "../");
    }
    ExpectRefused(bytes, "../id.dat");
    ExpectRefused(bytes, "id.dat");
    EXPECT_FALSE(fs::exists(folder / "id.dat"));
}

TEST_F(ZipArchive, RefusesForgedSizesAndBombs) {
    constexpr std::size_t kSizeInDirectory = 24;
    const std::string good = OneEntry("data.xml", std::string(10'000, 'x'));
    const std::size_t directory = good.find("PK\1\2");
    ASSERT_NE(directory, std::string::npos);
    for (const char high : {'\0', '\1', '\x7F'}) {
        std::string forged = good;
        forged[directory + kSizeInDirectory + 2] = high;
        forged[directory + kSizeInDirectory] = static_cast<char>(forged[directory + kSizeInDirectory] ^ 1);
        ExpectRefused(forged, "data.xml");
    }
    // 80 MiB of one character pack to about one part in 1,030 at best.
    fs::remove_all(folder / "in");
    fs::create_directory(folder / "in");
    std::ofstream(folder / "in/data.xml").close();
    fs::resize_file(folder / "in/data.xml", 80 * 1024 * 1024);
    zip_t* bomb = zip_open((folder / "bomb.zip").c_str(), ZIP_CREATE, nullptr);
    zip_source_t* source = zip_source_file(bomb, (folder / "in/data.xml").c_str(), 0, -1);
    zip_file_add(bomb, "data.xml", source, 0);
    zip_set_file_compression(bomb, 0, ZIP_CM_DEFLATE, 9);
    ASSERT_EQ(zip_close(bomb), 0);
    ASSERT_LT(fs::file_size(folder / "bomb.zip"), 83'000U);
    const std::string words = Unpack(folder / "bomb.zip", "data.xml", folder / "out");
    EXPECT_NE(words.find("1,000"), std::string::npos) << words;
    EXPECT_TRUE(folder.Names("out").empty());
}

} // namespace
} // namespace qndr::suite
