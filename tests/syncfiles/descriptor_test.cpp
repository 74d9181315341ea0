#include "shared/formatting.h"
#include "support/agent_bench.h"
#include "syncfiles/descriptor.h"

namespace qndr::testing {
namespace {

class DescriptorTest : public AgentBench {
  protected:
    /// What ReadIdFile makes of this file, in an entry that is fresh but for `From`: the message, the sender, the
    /// numbers, the reset.
    std::string Read(const std::string& text) {
        WriteText(Path("id.dat"), text);
        FoundSyncFile entry;
        entry.From = "before";
        ReadIdFile(context, Path("id.dat"), entry);
        return FormatString("{0} {1}, '{2}' '{3}' '{4}', {5} {6} {7}, {8} {9}", entry.IsMessage, entry.MessageCode,
                            entry.From, entry.FromCompanyVersion, entry.FromAppVersion, entry.ReferenceCode,
                            entry.SyncState, entry.Sequence, entry.IsSyncReset,
                            FormatGeneralDate(entry.ResetDate));
    }
};

TEST_F(DescriptorTest, EachKindOfFileHasItsKeysAlone) {
    const auto keys = [&](const SyncFileInfo& info) {
        std::filesystem::remove(Path("id.dat"));
        EXPECT_TRUE(WriteIdFile(context, folder.Path(), info));
        std::string text = ReadText(Path("id.dat"));
        std::erase(text, '\r');
        return text.substr(0, text.find("\nFrom="));
    };
    EXPECT_EQ(keys({}), "[GENERAL]\nSequence=0");
    EXPECT_EQ(keys({.IsMessage = FieldTrue, .MessageCode = 12, .SyncState = 1, .Sequence = SyncResetSequence}),
              "[GENERAL]\nMessageCode=12");
    EXPECT_EQ(keys({.SyncState = SyncFileReady, .Sequence = SyncResetSequence}),
              "[GENERAL]\nSyncState=4\nResetDate=1900-01-01 00:00:00");
}

TEST_F(DescriptorTest, ReadsWhatAnySenderWrites) {
    EXPECT_EQ(Read("\xEF\xBB\xBF[general]\nmessagecode=70000\nFrom={abc}\nFromCompanyVersion=5.0\n"
                   "FromAppVersion=5.0.12.3\r\nReferenceCode=255\r\nSyncState=-2\r\nSequence=-1\n"
                   "IsSyncReset=1\nResetDate=11/22/2026 10:00:00\nFromType=2\nUnknown=1\n"),
              "-1 0, '{abc}' '5.0' '5.0.12.3', 255 -2 -1, -1 2026-11-22 10:00:00")
        << "the code fits a Long, not an Integer";
    // What does not convert leaves its field, and the keys behind it are read all the same.
    const std::string nothing = ", 0 0 0, 0 1899-12-30 00:00:00";
    EXPECT_EQ(Read("[GENERAL]\nMessageCode=x\nReferenceCode=256\nSyncState=40000\nSequence=99999999999\n"
                   "IsSyncReset=-1\nResetDate=2026-02-30\nFrom=me\n"),
              "0 0, 'me' '' ''" + nothing);
    EXPECT_EQ(Read("[GENERAL]\nMessageCode=12\nIsSyncReset=2\n"), "-1 12, '' '' ''" + nothing);
    EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(DescriptorTest, SequenceFileListsTheDataFiles) {
    SyncFileInfo info{.Sequence = 1};
    InitSyncFileInfo(info);
    EXPECT_EQ(info.Sequence, 0);
    EXPECT_TRUE(WriteSequenceFile(context, folder.Path(), info));
    EXPECT_FALSE(std::filesystem::exists(Path("sequence.dat")));
    AddFileToSyncFileInfo(Path("one.xml"), info);
    AddFileToSyncFileInfo(Path("two.xml"), info);
    info.Files.insert(info.Files.begin(), "");
    EXPECT_TRUE(WriteSequenceFile(context, folder.Path(), info));
    EXPECT_EQ(ReadText(Path("sequence.dat")), "one.xml\r\ntwo.xml");
}

} // namespace
} // namespace qndr::testing
