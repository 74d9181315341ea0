#include "support/agent_bench.h"
#include "syncfiles/descriptor.h"

namespace qndr::testing {
namespace {

class DescriptorTest : public AgentBench {
  protected:
    /// What WriteIdFile writes for this record, without the section's line and with plain line ends.
    std::string Written(const SyncFileInfo& info) {
        std::filesystem::remove(Path("id.dat"));
        EXPECT_TRUE(WriteIdFile(context, folder.path, info));
        std::string text = ReadText(Path("id.dat"));
        std::erase(text, '\r');
        EXPECT_EQ(text.substr(0, 10), "[GENERAL]\n");
        return text.substr(10);
    }
    /// What ReadIdFile makes of this file, in an entry that is fresh but for `From`.
    FoundSyncFile Read(const std::string& text) {
        WriteText(Path("id.dat"), text);
        FoundSyncFile entry;
        entry.From = "before";
        ReadIdFile(context, Path("id.dat"), entry);
        return entry;
    }
};

TEST_F(DescriptorTest, IdFileHoldsTheKeysOfItsCaseInTheirOrder) {
    OpenCompany(1);
    const std::string sender = "From=" + MainID +
                               "\nFromType=1\nFromCompanyVersion=5.0.1\nFromAppVersion=\n"
                               "SentOn=2026-11-22 19:08:52\n";
    const auto expect = [&](const std::string& keys, const auto& fill) {
        SyncFileInfo info;
        fill(info);
        EXPECT_EQ(Written(info), keys + sender);
    };
    expect("Sequence=0\n", [](SyncFileInfo& info) { InitSyncFileInfo(info); });
    expect("SyncState=-2\n", [](SyncFileInfo& info) { info.SyncState = SyncFileInitialSyncRequest; });
    expect("SyncState=1\nReferenceCode=255\n", [](SyncFileInfo& info) {
        info.SyncState = SyncFileInitialSync;
        info.ReferenceCode = 255;
    });
    expect("Sequence=-1\nResetDate=2026-11-01 10:00:00\n", [](SyncFileInfo& info) {
        info.Sequence = SyncResetSequence;
        info.ResetDate = *ParseDate("2026-11-01 10:00:00");
    });
    expect("SyncState=4\nResetDate=1900-01-01 00:00:00\n", [](SyncFileInfo& info) {
        info.SyncState = SyncFileReady;
        info.Sequence = SyncResetSequence;
    });
    expect("Sequence=70000\nIsSyncReset=1\n", [](SyncFileInfo& info) {
        info.Sequence = 70000;
        info.IsSyncReset = FieldTrue;
    });
    expect("MessageCode=12\n", [](SyncFileInfo& info) {
        info.IsMessage = FieldTrue;
        info.MessageCode = 12;
        info.SyncState = 1;
        info.Sequence = SyncResetSequence;
    });
}

TEST_F(DescriptorTest, IdFileIsReportedAsAddedWhateverItsWritesDid) {
    gate.Before("IniTools.SetValue", Break);
    SyncFileInfo info;
    info.SyncState = SyncFileInitialSyncRequest;
    EXPECT_TRUE(WriteIdFile(context, "there", info));
    EXPECT_EQ(TakeLog(), (Lines{"The id file was added to 'there'. Details to follow:",
                                "SyncState = -2, Sequence = 0, ReferenceCode = 0"}));
    EXPECT_EQ(gate.Count("IniTools.SetValue"), 6);
}

TEST_F(DescriptorTest, ReadsWhatAnySenderWrites) {
    const FoundSyncFile full =
        Read("\xEF\xBB\xBF[general]\nmessagecode=70000\nFrom={abc}\nFromCompanyVersion=5.0\n"
             "FromAppVersion=5.0.12.3\r\nReferenceCode=255\r\nSyncState=-2\r\nSequence=-1\n"
             "IsSyncReset=1\nResetDate=11/22/2026 10:00:00\nFromType=2\nUnknown=1\n");
    EXPECT_EQ(full.IsMessage, -1);
    EXPECT_EQ(full.MessageCode, 0) << "the number fits a Long, not an Integer";
    EXPECT_EQ(full.From, "{abc}");
    EXPECT_EQ(full.FromCompanyVersion, "5.0");
    EXPECT_EQ(full.FromAppVersion, "5.0.12.3");
    EXPECT_EQ(full.ReferenceCode, 255);
    EXPECT_EQ(full.SyncState, -2);
    EXPECT_EQ(full.Sequence, -1);
    EXPECT_EQ(full.IsSyncReset, -1);
    EXPECT_EQ(full.ResetDate, *ParseDate("2026-11-22 10:00:00"));

    // What does not convert leaves its field, and the keys behind it are read all the same.
    const FoundSyncFile odd =
        Read("[GENERAL]\nMessageCode=x\nReferenceCode=256\nSyncState=40000\nSequence=99999999999\n"
             "IsSyncReset=-1\nResetDate=2026-02-30\nFrom=me\n");
    EXPECT_EQ(odd.IsMessage, 0);
    EXPECT_EQ(odd.ReferenceCode, 0);
    EXPECT_EQ(odd.SyncState, 0);
    EXPECT_EQ(odd.Sequence, 0);
    EXPECT_EQ(odd.IsSyncReset, 0);
    EXPECT_EQ(odd.ResetDate, Date());
    EXPECT_EQ(odd.From, "me");
    EXPECT_EQ(Read("[GENERAL]\nIsSyncReset=2\n").IsSyncReset, 0);
    EXPECT_EQ(Read("[GENERAL]\n").From, "");
    EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(DescriptorTest, SequenceFileListsTheDataFiles) {
    SyncFileInfo info;
    EXPECT_TRUE(WriteSequenceFile(context, folder.path, info));
    EXPECT_FALSE(std::filesystem::exists(Path("sequence.dat")));
    EXPECT_EQ(TakeLog(), Lines{});

    AddFileToSyncFileInfo(Path("one.xml"), info);
    AddFileToSyncFileInfo(Path("two.xml"), info);
    EXPECT_EQ(info.Files, (Lines{Path("one.xml"), Path("two.xml")}));
    info.Files.insert(info.Files.begin(), "");
    info.Files.push_back(Path("three.xml"));
    EXPECT_TRUE(WriteSequenceFile(context, folder.path, info));
    EXPECT_EQ(ReadText(Path("sequence.dat")), "one.xml\r\ntwo.xml\r\nthree.xml");
    EXPECT_EQ(log.lines, Lines{"The sequence file was added to '" + folder.path + "'."});
    TakeLog();

    gate.Refuse("TextFileTools.WriteTextFile");
    EXPECT_FALSE(WriteSequenceFile(context, folder.path, info));
    EXPECT_EQ(TakeLog(), Lines{"A sequence file 'sequence.dat' could not be written to."});
}

} // namespace
} // namespace qndr::testing
