#include "diagnosis/fates.h"

#include <gtest/gtest.h>

namespace qndr::diagnosis {
namespace {

FolderFile File(const std::string& to, const std::string& from, std::int16_t state, std::int32_t sequence = 0) {
    FolderFile file;
    file.kind = FileKind::SyncFile;
    file.entry.To = to;
    file.entry.From = from;
    file.entry.SyncState = state;
    file.entry.Sequence = sequence;
    return file;
}

FolderFile Damaged(const std::string& to) {
    FolderFile file = File(to, "", 0);
    file.kind = FileKind::UnreadableSyncFile;
    return file;
}

/// Main with one workstation, whose row expects 5.
CompanyFacts Main(std::int64_t rowState) {
    return {
        .name = "Main",
        .uniqueID = "{aa}",
        .isMain = true,
        .mainUniqueID = "",
        .workstations = {{.name = "Ann", .uniqueID = "bb", .syncState = rowState, .nextSequenceFromRoaming = 5}}};
}

CompanyFacts Ann(std::int64_t state, std::int64_t expected = 5) {
    return {.name = "Ann",
            .uniqueID = "bb",
            .syncState = state,
            .mainUniqueID = "AA",
            .nextSequenceFromMain = expected,
            .workstations = {}};
}

struct Case {
    CompanyFacts company;
    FolderFile file;
    Fate fate;
    std::string text;
    std::vector<FolderFile> others = {};
};

void Check(const std::vector<Case>& cases) {
    for (const Case& each : cases) {
        std::vector<FolderFile> files{each.file};
        files.insert(files.end(), each.others.begin(), each.others.end());
        const Judgement judgement = JudgeFiles(files, {each.company}).front();
        EXPECT_EQ(FateWord(judgement.fate), FateWord(each.fate)) << each.text << " / " << judgement.text;
        EXPECT_NE(judgement.text.find(each.text), std::string::npos) << each.text << " / " << judgement.text;
    }
}

TEST(Fates, JudgesWhatIsForMainByTheRowOfItsSender) {
    CompanyFacts disabled = Main(4);
    disabled.syncEnabled = false;
    CompanyFacts misplaced = Main(4);
    misplaced.syncState = 2;
    Check({
        {Main(4), File("AA", "BB", 0, 5), Fate::Taken, "Main takes it next"},
        {Main(4), File("AA", "BB", 0, 7), Fate::Waits, "waits for sequence 7 (Main expects 5)"},
        {Main(4), File("AA", "BB", 0, 4), Fate::Late, "late: Main is at 5 already; will be ignored for ever"},
        {Main(4), File("AA", "CC", 0, 5), Fate::Nobody, "sender is not registered on Main"},
        // A row's identity and the sender's are compared as they stand.
        {Main(4), File("AA", "{bb}", 0, 5), Fate::Nobody, "sender is not registered on Main"},
        {Main(4), File("DD", "BB", 0, 5), Fate::Nobody, "no company here has this id"},
        {Main(4), File("BB", "AA", 0, 5), Fate::Elsewhere, "for Ann, whose company is not here"},
        {Main(4), File("", "BB", 0, 5), Fate::Nobody, "no addressee"},
        {Main(4), Damaged("AA"), Fate::Nobody, "damaged archive: Main cannot read it"},
        {disabled, File("AA", "BB", 0, 5), Fate::Waits, "EnableSync"},

        {Main(0), File("MAIN", "BB", -2), Fate::Taken, "Main takes it next"},
        {Main(6), File("AA", "BB", -2), Fate::Taken, "Main takes it next"},
        {Main(0), File("MAIN", "CC", -2), Fate::Nobody, "not registered"},
        {Main(4), File("MAIN", "BB", 0, -1), Fate::Nobody, "only an initial sync request"},
        {Main(3), File("AA", "BB", 4), Fate::Taken, "Main takes it next"},
        {Main(3), File("AA", "CC", 4), Fate::Taken, "without effect"},
        {misplaced, File("AA", "BB", 4), Fate::Nobody, "no acknowledge"},

        {Main(4), File("AA", "BB", 0, -1), Fate::Taken, "Main takes it next"},
        {Main(5), File("AA", "BB", 0, -1), Fate::Taken, "Main takes it next"},
        {Main(3), File("AA", "BB", 0, -1), Fate::Waits, "at 3"},
        {Main(6), File("AA", "BB", 0, 5), Fate::Taken, "Main deletes it"},
        {Main(5), File("AA", "BB", 0, 5), Fate::Waits, "at 5 (Reset Requested, owes the full data)"},
        {Main(0), File("AA", "BB", 0, 5), Fate::Waits, "at 0"},
        {Main(1), File("AA", "BB", 0, 5), Fate::Waits, "initial sync first"},
    });
}

TEST(Fates, SeesWhatTheOtherFilesDoFirst) {
    const FolderFile change = File("AA", "BB", 0, 5);
    Check({
        {Main(4), change, Fate::Taken, "deletes it with the reset request", {File("AA", "BB", 0, -1)}},
        {Main(4), change, Fate::Taken, "takes it next", {File("AA", "CC", 0, -1), File("BB", "AA", 0, -1)}},
        {Main(4), change, Fate::Waits, "initial sync first", {File("MAIN", "BB", -2)}},
        {Main(3), change, Fate::Taken, "takes it next", {File("AA", "BB", 4)}},
        {Ann(2, 0), File("BB", "AA", 0, 0), Fate::Taken, "Ann takes it next", {File("BB", "AA", 1)}},
    });
}

TEST(Fates, JudgesWhatIsForAWorkstationByItsState) {
    Check({
        {Ann(2), File("BB", "XX", 1), Fate::Taken, "Ann takes it next"},
        {Ann(1), File("BB", "AA", 1), Fate::Taken, "Ann takes it next"},
        {Ann(2), File("BB", "AA", 0, 5), Fate::Waits, "needs its initial sync first"},
        {Ann(1), File("BB", "AA", 0, 0), Fate::Waits, "needs its initial sync first"},
        {Ann(4), File("BB", "XX", 0, 5), Fate::Taken, "Ann takes it next"},
        {Ann(6), File("BB", "AA", 0, 5), Fate::Taken, "Ann takes it next"},
        {Ann(6), File("BB", "AA", 0, 6), Fate::Waits, "waits for sequence 6 (Ann expects 5)"},
        {Ann(4), File("BB", "AA", 0, 0), Fate::Late, "late: Ann is at 5 already"},
        // Full data of an initial sync counts as a file of sequence 0, and so does what cannot be read.
        {Ann(4), File("BB", "AA", 1), Fate::Late, "late: Ann is at 5 already"},
        {Ann(4, 0), File("BB", "AA", 1), Fate::Taken, "Ann takes it next"},
        {Ann(4, 0), Damaged("BB"), Fate::Taken, "damaged archive: Ann takes it next, without its data"},
        {Ann(5), File("BB", "AA", 0, 5), Fate::Taken, "deletes it unread"},
        {Ann(0), File("BB", "AA", 0, 5), Fate::Nobody, "its state is 0"},
        {Ann(4), File("AA", "BB", 0, 5), Fate::Elsewhere, "for the main company of Ann, which is not here"},
        {Ann(4), File("MAIN", "BB", -2), Fate::Elsewhere, "for the main company, which is not here"},
    });
}

TEST(Fates, NamesKindsAndParties) {
    EXPECT_EQ(KindInWords(File("AA", "BB", -2)), "initial sync request");
    EXPECT_EQ(KindInWords(File("BB", "AA", 1)), "full data");
    EXPECT_EQ(KindInWords(File("AA", "BB", 4)), "acknowledge");
    EXPECT_EQ(KindInWords(File("AA", "BB", 0, -1)), "reset request");
    EXPECT_EQ(KindInWords(File("AA", "BB", 0, 3)), "changes");
    FolderFile answer = File("BB", "AA", 0, 0);
    answer.entry.IsSyncReset = FieldTrue;
    EXPECT_EQ(KindInWords(answer), "reset data");
    EXPECT_EQ(KindInWords(Damaged("AA")), "unreadable");
    EXPECT_EQ(NameOf("{AA}", {Main(4)}), "Main");
    EXPECT_EQ(NameOf("BB", {Main(4)}), "Ann");
    EXPECT_EQ(NameOf("CC", {Main(4)}), "CC");
}

} // namespace
} // namespace qndr::diagnosis
