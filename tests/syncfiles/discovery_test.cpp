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
    DeleteMarkedSyncFiles(context, Find());
    EXPECT_EQ(gate.Count(calls::MessagePump::ProcessMessages), 6) << "three in each walk";
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
    for (const std::string text : {"old", "new"}) {
        WriteText(Path("Sync/a~b~c.zip"), text);
        Retire(1);
        EXPECT_EQ(FilesBelow("Sync").size(), 1U) << "1 is not True";
        Retire(FieldTrue);
        EXPECT_EQ(FilesBelow("Sync"), Lines{});
        EXPECT_EQ(ReadText(Path("Local/Acme/Sync Local/Deleted/2026/11/a~b~c.zip")), text);
    }
}

TEST_F(DiscoveryTest, NothingIsMadeWhenManagedDeletingIsOff) {
    SetNumber(settings::ManageDeleting, 0);
    WriteText(Path("Sync/a~b~c.zip"), "");
    Retire(FieldTrue);
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    EXPECT_FALSE(std::filesystem::exists(Path("Local")));
}

} // namespace
} // namespace qndr::testing
