#include "support/agent_bench.h"
#include "syncfiles/discovery.h"

namespace qndr::testing {
namespace {

class DiscoveryTest : public AgentBench {
  protected:
    DiscoveryTest() { OpenCompany(1); }

    std::vector<FoundSyncFile> Find() {
        std::vector<FoundSyncFile> list(1);
        FindSyncFiles(context, list);
        return list;
    }
    void Retire(FieldBoolean mark) {
        std::vector<FoundSyncFile> list(2);
        list[1].FilePath = Path("Sync/a~b~c.zip");
        list[1].Delete = mark;
        DeleteMarkedSyncFiles(context, list);
    }
    const std::string marked = "The sync file 'a~b~c.zip' has been marked to delete.";
};

TEST_F(DiscoveryTest, EveryZipWithThreeTokensIsListed) {
    EXPECT_EQ(Find().front().FilePath, "");
    EXPECT_EQ(TakeLog(), Lines{"No sync files were found for processing."});
    std::filesystem::create_directory(Path("Sync/sub"));
    for (const char* name :
         {"{ab-Cd}~20070315T102233~x.zip", "one~two.zip", "a~b~c~d.zip", "me~x~y.rhb", "sub/a~b~c.zip"}) {
        WriteText(Path("Sync/") + name, "");
    }
    const auto list = Find();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].FilePath, Path("Sync/{ab-Cd}~20070315T102233~x.zip"));
    EXPECT_EQ(list[0].To, "AB-CD");
    EXPECT_EQ(list[0].NameDate, *ParseDate("2007-03-15 10:22:33"));
    EXPECT_GT(list[0].FileDate, *ParseDate("2020-01-01"));
    Lines lines = TakeLog();
    std::sort(lines.begin(), lines.end());
    const std::string ignored = "' is in the sync folder however it is not a valid sync file and will be ignored.";
    EXPECT_EQ(lines, (Lines{"3 sync files were found for processing.", "The file 'Sync/a~b~c~d.zip" + ignored,
                            "The file 'Sync/one~two.zip" + ignored}));
    SetSyncFolder("");
    EXPECT_EQ(Find().size(), 1U);
    EXPECT_EQ(TakeLog(), Lines{"Error: No sync files could be found because no sync folder has been identified."});
}

TEST_F(DiscoveryTest, MessagesComeThroughAtEveryFifthElement) {
    for (char name = 'a'; name <= 'k'; ++name) {
        WriteText(Path("Sync/") + name + "~b~c.zip", "");
    }
    const auto list = Find();
    EXPECT_EQ(list.size(), 11U);
    EXPECT_EQ(gate.Count("MessagePump.ProcessMessages"), 3);
    DeleteMarkedSyncFiles(context, list);
    EXPECT_EQ(gate.Count("MessagePump.ProcessMessages"), 6);
}

TEST_F(DiscoveryTest, EntryWithoutAddresseeIsOverwritten) {
    std::vector<FoundSyncFile> list(1);
    for (const char* token : {"", "a", "{}"}) {
        AddFoundSyncFile(std::string("of ") + token, token, NoDate, NoDate, list);
    }
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0].FilePath + list[1].FilePath, "of aof {}");
}

TEST_F(DiscoveryTest, TextThatIsNoStampGivesTheDefault) {
    for (const char* text : {"", "T", "20070315", "20071315T102233", "20070315T1022", "20070315t102233"}) {
        EXPECT_EQ(ParseFileStamp(text, NoDate), NoDate) << text;
    }
}

TEST_F(DiscoveryTest, MarkedFileMovesOverItsNamesakeOfTheMonth) {
    WriteText(Path("Sync/a~b~c.zip"), "old");
    Retire(1);
    EXPECT_EQ(FilesBelow("Sync").size(), 1U) << "1 is not True";
    Retire(FieldTrue);
    WriteText(Path("Sync/a~b~c.zip"), "new");
    Retire(FieldTrue);
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    EXPECT_EQ(ReadText(Path("Local/Acme/Sync Local/Deleted/2026/11/a~b~c.zip")), "new");
    Retire(FieldTrue);
    EXPECT_EQ(TakeLog(), (Lines{marked, marked, marked})) << "a file that is gone is passed over in silence";
}

TEST_F(DiscoveryTest, NothingIsMadeWhenManagedDeletingIsOff) {
    SetNumber(settings::ManageDeleting, 0);
    WriteText(Path("Sync/a~b~c.zip"), "");
    gate.Refuse("FileTools.DeleteFile", 1);
    Retire(FieldTrue);
    EXPECT_EQ(TakeLog(),
              (Lines{marked, "Managed deleting is disabled. The sync file 'Sync/a~b~c.zip' will be deleted.",
                     "Error: The sync file 'a~b~c.zip' was marked to be deleted but it could not be deleted."}));
    Retire(FieldTrue);
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    EXPECT_FALSE(std::filesystem::exists(Path("Local")));
}

} // namespace
} // namespace qndr::testing
