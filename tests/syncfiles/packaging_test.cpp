#include "support/agent_bench.h"
#include "syncfiles/import.h"
#include "syncfiles/packaging.h"

namespace qndr::testing {
namespace {

using SyncFileTest = AgentBench;

TEST_F(SyncFileTest, PackedFolderReadsBackWhateverElseIsInIt) {
    OpenCompany(2);
    const std::string working = CreateWorkingFolder(context);
    WriteIdFile(context, working, {.SyncState = SyncFileInitialSync});
    WriteText(working + "/more.txt", "unknown");
    FoundSyncFile entry;
    entry.FilePath = CreateSyncFile(context, working);
    ReadSyncFile(context, entry);
    EXPECT_EQ(entry.SyncState, 1);
    EXPECT_EQ(entry.From, RoamingID);
    EXPECT_EQ(FilesBelow("Temp"), (Lines{"Temp/suzTOKEN.zip", "Temp/~suz/id.dat", "Temp/~suz/more.txt"}));
    EXPECT_TRUE(ImportSyncFileData(context, entry)) << "nothing can be done about a file without data";
    EXPECT_EQ(engine->imports, Lines{});
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
