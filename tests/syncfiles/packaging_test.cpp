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
    /// The log of a call with one of its services refused once; a text of the ZIP component is given as "...".
    template <typename Call> Lines LogWithout(const std::string& service, Call&& call) {
        TakeLog();
        gate.Refuse(service, 1);
        call();
        Lines lines = TakeLog();
        for (std::size_t i = 1; i < lines.size(); ++i) {
            if (lines[i - 1].ends_with("to follow.")) {
                lines[i] = "...";
            }
        }
        return lines;
    }
    void ExpectNothingLeft() { EXPECT_EQ(FilesBelow("Temp"), Lines{}); }
};

TEST_F(SyncFileTest, PackedFolderReadsBack) {
    const std::string working = CreateWorkingFolder(context);
    EXPECT_EQ(Tidy(working), "Temp/~suz");
    SyncFileInfo info;
    info.SyncState = SyncFileInitialSync;
    WriteIdFile(context, working, info);
    WriteText(working + "/more.txt", "unknown");
    TakeLog();
    const std::string path = CreateSyncFile(context, working);
    EXPECT_EQ(TakeLog(), Lines{"The sync file 'Temp/suzTOKEN.zip' was created."});
    const FoundSyncFile entry = Read(path);
    EXPECT_EQ(entry.SyncState, 1);
    EXPECT_EQ(entry.From, RoamingID);
    EXPECT_EQ(TakeLog(), Lines{});
    EXPECT_EQ(FilesBelow("Temp"), (Lines{"Temp/suzTOKEN.zip", "Temp/~suz/id.dat", "Temp/~suz/more.txt"}));
}

TEST_F(SyncFileTest, EachFailureOfPackingIsReported) {
    const std::string working = CreateWorkingFolder(context);
    WriteText(working + "/id.dat", "[GENERAL]\r\n");
    const auto without = [&](const std::string& service) {
        return LogWithout(service, [&] { EXPECT_EQ(CreateSyncFile(context, working), ""); });
    };
    EXPECT_EQ(without("ObjectFactory.CreateZipArchive"),
              Lines{"Error: Unable to create a sync file because the Zip library could not be accessed. (1)"});
    EXPECT_EQ(without("FileTools.CreateTemporaryFile"),
              Lines{"Error: Unable to create a sync file because a temporary file could not be created."});
    EXPECT_EQ(without("ZipArchive.NewZip"),
              (Lines{"Error: Unable to create a sync file because a new zip file could not be created. More "
                     "information to follow.",
                     "..."}));
    EXPECT_EQ(
        without("ZipArchive.AppendFiles"),
        (Lines{"Error: Unable to create a sync file because the files from the folder 'Temp/~suz' could not be "
               "added. More information to follow.",
               "..."}));
    EXPECT_EQ(without("ZipArchive.WriteZipAndClose"),
              (Lines{"Error: Unable to create a sync file because the zip file could not be written to. More "
                     "information to follow.",
                     "..."}));
}

TEST_F(SyncFileTest, EachFailureOfReadingLeavesTheEntryBlank) {
    const std::string good = DropSyncFile("a~b~c.zip", "From=me\r\nSyncState=4\r\n");
    const auto without = [&](const std::string& service) {
        return LogWithout(service, [&] {
            const FoundSyncFile entry = Read(good);
            EXPECT_EQ(entry.From + std::to_string(entry.SyncState), "0");
        });
    };
    const std::string unable = "Error: Unable to read the sync file 'a~b~c.zip' becuase ";
    EXPECT_EQ(without("FileTools.FileExists"),
              Lines{"Error: The sync file 'a~b~c.zip' will not be read because it does not exist."});
    EXPECT_EQ(without("ZipArchive.OpenZip"),
              (Lines{unable + "it could not be opened. More information to follow.", "..."}));
    EXPECT_EQ(without("ObjectFactory.CreateZipArchive"),
              Lines{unable + "it could not be opened. More information to follow."});
    EXPECT_EQ(without("ZipArchive.GetEntryByName"), Lines{unable + "its id.dat file could not be found."});
    EXPECT_EQ(without("PathTools.CreateTemporaryFolder"), Lines{});
    EXPECT_EQ(without("ZipEntry.Extract"),
              (Lines{unable + "its id.dat file could not read. More information to follow.", "..."}));
    ExpectNothingLeft();

    int asked = 0;
    gate.Before("FileTools.FileExists", [&] {
        if (++asked == 2) {
            std::filesystem::remove(Path("Temp/~suz/id.dat"));
        }
    });
    EXPECT_EQ(Read(good).From, "");
    EXPECT_EQ(TakeLog(), Lines{unable + "its id.dat file could not extracted to 'Temp/~suz/id.dat."});
    ExpectNothingLeft();
}

TEST_F(SyncFileTest, ImportTellsWhetherTheFileIsDone) {
    const std::string path = DropSyncFile("a~b~c.zip", "");
    FoundSyncFile entry;
    entry.FilePath = path;
    const auto without = [&](const std::string& service, bool done) {
        const Lines lines =
            LogWithout(service, [&] { EXPECT_EQ(ImportSyncFileData(context, entry), done) << service; });
        ExpectNothingLeft();
        return lines;
    };
    const std::string unable = "Error: Unable to process the sync file 'a~b~c.zip' because ";
    EXPECT_EQ(without("none", true), Lines{"The sync file 'a~b~c.zip' was processed."});
    EXPECT_EQ(engine->imports, Lines{"data of a~b~c.zip"});
    EXPECT_EQ(
        without("Engine.ImportFile", true),
        Lines{"Warning: Unable to process the sync file 'Sync/a~b~c.zip' because its extracted data.xml file, "
              "'Temp/~suz/data.xml' could not be imported. This will not prevent future imports."});
    EXPECT_EQ(without("ZipArchive.OpenZip", true),
              (Lines{unable + "it could not be opened. More information to follow.", "..."}));
    EXPECT_EQ(without("ZipArchive.GetEntryByName", true), Lines{unable + "its data.xml file could not be found."});
    EXPECT_EQ(without("FileTools.FileExists", false),
              Lines{"The sync file 'a~b~c.zip' will not be processed becuase it does not exist."});
    EXPECT_EQ(without("PathTools.CreateTemporaryFolder", false),
              Lines{unable + "a temporary folder could not be created."});
    EXPECT_EQ(
        without("ZipEntry.Extract", false),
        (Lines{unable + "its data.xml file could not be extracted to 'Temp/~suz'. More informtion to follow.",
               "..."}));
    int asked = 0;
    gate.Before("FileTools.FileExists", [&] {
        if (++asked == 2) {
            std::filesystem::remove(Path("Temp/~suz/data.xml"));
        }
    });
    EXPECT_EQ(without("none", false),
              Lines{unable + "its extracted data.xml file, 'Temp/~suz/data.xml' could not be found."});
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
