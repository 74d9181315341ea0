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
    void Retire(const std::string& name, FieldBoolean mark = FieldTrue) {
        std::vector<FoundSyncFile> list(2);
        list[1].FilePath = Path("Sync/" + name);
        list[1].Delete = mark;
        DeleteMarkedSyncFiles(context, list);
    }
};

TEST_F(DiscoveryTest, EveryZipWithThreeTokensIsListed) {
    EXPECT_EQ(Find().size(), 1U);
    EXPECT_EQ(Find().front().FilePath, "");
    EXPECT_EQ(TakeLog(),
              (Lines{"No sync files were found for processing.", "No sync files were found for processing."}));
    for (const char* name : {"{ab-Cd}~20070315T102233~x.zip", "one~two.zip", "a~b~c~d.zip", "me~x~y.rhb"}) {
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
    auto list = Find();
    EXPECT_EQ(list.size(), 11U);
    EXPECT_EQ(gate.Count("MessagePump.ProcessMessages"), 3);
    DeleteMarkedSyncFiles(context, list);
    EXPECT_EQ(gate.Count("MessagePump.ProcessMessages"), 6);
}

TEST_F(DiscoveryTest, EntryWithoutAddresseeIsOverwritten) {
    std::vector<FoundSyncFile> list(1);
    AddFoundSyncFile("one", "", NoDate, NoDate, list);
    EXPECT_EQ(list.front().FilePath, "one");
    AddFoundSyncFile("two", "a", NoDate, NoDate, list);
    AddFoundSyncFile("three", "{}", NoDate, NoDate, list);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0].FilePath, "two");
    EXPECT_EQ(list[1].FilePath, "three");
}

TEST_F(DiscoveryTest, StampsAreReadOrGiveTheDefault) {
    for (const char* text :
         {"", "T", "20070315", "20071315T102233", "20070315T1022", "20070315t102233", "0123456789ABCDEF"}) {
        EXPECT_EQ(ParseFileStamp(text, NoDate), NoDate) << text;
    }
    EXPECT_EQ(ParseFileStamp("20070315T102233", NoDate), *ParseDate("2007-03-15 10:22:33"));
}

TEST_F(DiscoveryTest, MarkedFileMovesOverItsNamesakeOfTheMonth) {
    const std::string kept = "Local/Acme/Sync Local/Deleted/2026/11/a~b~c.zip";
    WriteText(Path("Sync/a~b~c.zip"), "old");
    Retire("a~b~c.zip", 1);
    EXPECT_EQ(FilesBelow("Sync").size(), 1U) << "1 is not True";
    Retire("a~b~c.zip");
    WriteText(Path("Sync/a~b~c.zip"), "new");
    Retire("a~b~c.zip");
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    EXPECT_EQ(ReadText(Path(kept)), "new");
    Retire("a~b~c.zip");
    const std::string marked = "The sync file 'a~b~c.zip' has been marked to delete.";
    EXPECT_EQ(TakeLog(), (Lines{marked, marked, marked})) << "a file that is gone is passed over in silence";
}

TEST_F(DiscoveryTest, FileThatCannotBeKeptIsDeleted) {
    const std::string marked = "The sync file 'a~b~c.zip' has been marked to delete.";
    const auto retire = [&](const std::string& why, bool gone = true) {
        WriteText(Path("Sync/a~b~c.zip"), "");
        Retire("a~b~c.zip");
        Lines expected{marked, why};
        if (!gone) {
            expected.push_back(
                "Error: The sync file 'a~b~c.zip' was marked to be deleted but it could not be deleted.");
        }
        EXPECT_EQ(TakeLog(), expected);
        EXPECT_EQ(FilesBelow("Sync").empty(), gone);
        EXPECT_EQ(FilesBelow("Local/Acme/Sync Local"), Lines{});
    };
    gate.Refuse("FileTools.MoveFile", 1);
    retire(
        "Unable to move the sync file 'Sync/a~b~c.zip' while doing a managed delete. The file will be deleted.");
    std::filesystem::remove_all(Path("Local/Acme/Sync Local"));
    WriteText(Path("Local/Acme/Sync Local"), "no folder");
    retire("Unable to create the manage delete folder 'Local/Acme/Sync Local/Deleted/2026/11/'. The sync file "
           "'Sync/a~b~c.zip' will be deleted.");
    std::filesystem::remove_all(Path("Local"));
    SetNumber(settings::ManageDeleting, 0);
    retire("Managed deleting is disabled. The sync file 'Sync/a~b~c.zip' will be deleted.");
    EXPECT_FALSE(std::filesystem::exists(Path("Local"))) << "nothing is made when managed deleting is off";
    gate.Refuse("FileTools.DeleteFile", 1);
    retire("Managed deleting is disabled. The sync file 'Sync/a~b~c.zip' will be deleted.", false);
}

} // namespace
} // namespace qndr::testing
