#include "support/agent_bench.h"
#include "syncfiles/import.h"
#include "syncfiles/packaging.h"

namespace qndr::testing {
namespace {

/// Creating, reading and importing one sync file.
class SyncFileTest : public AgentBench {
  protected:
    SyncFileTest() { OpenCompany(2); }

    FoundSyncFile Read(const std::string& path) {
        FoundSyncFile entry;
        entry.FilePath = path;
        ReadSyncFile(context, entry);
        return entry;
    }
    bool Import(const std::string& path) {
        FoundSyncFile entry;
        entry.FilePath = path;
        return ImportSyncFileData(context, entry);
    }
    /// Refuses the service once and expects this line, with one of the ZIP component behind it if it says so.
    template <typename Call> void Expect(const std::string& service, const std::string& line, Call&& call) {
        TakeLog();
        gate.Refuse(service, 1);
        call();
        Lines lines = TakeLog();
        // Without the component there is no line of its own.
        if (line.ends_with("to follow.") && service != "ObjectFactory.CreateZipArchive") {
            EXPECT_EQ(lines.size(), 2U) << service;
            lines.resize(1);
        }
        EXPECT_EQ(lines, line.empty() ? Lines{} : Lines{line}) << service;
    }
    const std::string follow = "More information to follow.";
};

TEST_F(SyncFileTest, PackedFolderReadsBack) {
    const std::string working = CreateWorkingFolder(context);
    WriteIdFile(context, working, {.SyncState = SyncFileInitialSync});
    WriteText(working + "/more.txt", "unknown");
    TakeLog();
    const std::string path = CreateSyncFile(context, working);
    EXPECT_EQ(TakeLog(), Lines{"The sync file 'Temp/suzTOKEN.zip' was created."});
    const FoundSyncFile entry = Read(path);
    EXPECT_EQ(entry.SyncState, 1);
    EXPECT_EQ(entry.From, RoamingID);
    EXPECT_EQ(TakeLog(), Lines{});
    EXPECT_EQ(FilesBelow("Temp"), (Lines{"Temp/suzTOKEN.zip", "Temp/~suz/id.dat", "Temp/~suz/more.txt"}));

    const auto expect = [&](const std::string& service, const std::string& why) {
        Expect(service, "Error: Unable to create a sync file because " + why,
               [&] { EXPECT_EQ(CreateSyncFile(context, working), ""); });
    };
    expect("ObjectFactory.CreateZipArchive", "the Zip library could not be accessed. (1)");
    expect("FileTools.CreateTemporaryFile", "a temporary file could not be created.");
    expect("ZipArchive.NewZip", "a new zip file could not be created. " + follow);
    expect("ZipArchive.AppendFiles", "the files from the folder 'Temp/~suz' could not be added. " + follow);
    expect("ZipArchive.WriteZipAndClose", "the zip file could not be written to. " + follow);
}

TEST_F(SyncFileTest, EachFailureOfReadingLeavesTheEntryBlank) {
    const std::string good = DropSyncFile("a~b~c.zip", "From=me\r\nSyncState=4\r\n");
    const auto expect = [&](const std::string& service, const std::string& line) {
        Expect(service, line, [&] { EXPECT_EQ(Read(good).From, ""); });
        EXPECT_EQ(FilesBelow("Temp"), Lines{}) << service;
    };
    const std::string unable = "Error: Unable to read the sync file 'a~b~c.zip' becuase ";
    expect("FileTools.FileExists", "Error: The sync file 'a~b~c.zip' will not be read because it does not exist.");
    expect("ZipArchive.OpenZip", unable + "it could not be opened. " + follow);
    expect("ObjectFactory.CreateZipArchive", unable + "it could not be opened. " + follow);
    expect("ZipArchive.GetEntryByName", unable + "its id.dat file could not be found.");
    expect("PathTools.CreateTemporaryFolder", "");
    expect("ZipEntry.Extract", unable + "its id.dat file could not read. " + follow);
    gate.Before("FileTools.FileExists", [&] { std::filesystem::remove(Path("Temp/~suz/id.dat")); });
    expect("none", unable + "its id.dat file could not extracted to 'Temp/~suz/id.dat.");
}

TEST_F(SyncFileTest, ImportTellsWhetherTheFileIsDone) {
    const std::string path = DropSyncFile("a~b~c.zip", "");
    const auto expect = [&](const std::string& service, bool done, const std::string& line) {
        Expect(service, line, [&] { EXPECT_EQ(Import(path), done) << service; });
        EXPECT_EQ(FilesBelow("Temp"), Lines{}) << service;
    };
    const std::string unable = "Error: Unable to process the sync file 'a~b~c.zip' because ";
    expect("none", true, "The sync file 'a~b~c.zip' was processed.");
    EXPECT_EQ(engine->imports, Lines{"data of a~b~c.zip"});
    expect("Engine.ImportFile", true,
           "Warning: Unable to process the sync file 'Sync/a~b~c.zip' because its extracted data.xml file, "
           "'Temp/~suz/data.xml' could not be imported. This will not prevent future imports.");
    expect("ZipArchive.OpenZip", true, unable + "it could not be opened. " + follow);
    expect("ZipArchive.GetEntryByName", true, unable + "its data.xml file could not be found.");
    expect("FileTools.FileExists", false,
           "The sync file 'a~b~c.zip' will not be processed becuase it does not exist.");
    expect("PathTools.CreateTemporaryFolder", false, unable + "a temporary folder could not be created.");
    expect("ZipEntry.Extract", false,
           unable + "its data.xml file could not be extracted to 'Temp/~suz'. More informtion to follow.");
    gate.Before("FileTools.FileExists", [&] { std::filesystem::remove(Path("Temp/~suz/data.xml")); });
    expect("none", false, unable + "its extracted data.xml file, 'Temp/~suz/data.xml' could not be found.");
    EXPECT_EQ(engine->imports.size(), 1U);
}

TEST_F(SyncFileTest, UnprocessedFilesRemainWhileOneHasAPathAndNoMark) {
    std::vector<FoundSyncFile> files(1);
    EXPECT_FALSE(UnprocessedSyncFilesRemain(files));
    files.emplace_back().FilePath = "a";
    EXPECT_TRUE(UnprocessedSyncFilesRemain(files));
    files.back().Processed = FieldTrue;
    EXPECT_FALSE(UnprocessedSyncFilesRemain(files));
}

} // namespace
} // namespace qndr::testing
