#include "standing/digests.h"
#include "standing/message.h"

#include <gtest/gtest.h>

namespace qndr::standing {
namespace {

TEST(StandingMessage, ComesBackAsItWasTold) {
    Message message;
    message.from = "A-1";
    message.to = "B-2";
    message.number = 12;
    message.heard = 9;
    message.writtenOn = "20261123 10:05:00";
    message.computer = "Zoë's\nPC";
    message.position = {4, 7, 3, 1200, 5, "20261123 09:10:00"};
    message.filesTo = {-1, 3, 4};
    message.troubles = {"sequence-lost", "conflicts-open"};
    message.asksForProof = true;
    message.proof = "00ff";
    const std::optional<Message> read = ReadMessage(ToText(message));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->computer, "Zoë's PC") << "nothing ends its line";
    EXPECT_EQ(read->position, message.position);
    EXPECT_EQ(read->filesTo, message.filesTo);
    EXPECT_EQ(read->troubles, message.troubles);
    EXPECT_TRUE(SaysTheSame(*read, *ReadMessage(ToText(*read))));
    Message later = *read;
    later.number = 13;
    later.heard = 10;
    later.writtenOn = "20261123 11:05:00";
    EXPECT_TRUE(SaysTheSame(*read, later));
    later.position.waiting = 0;
    EXPECT_FALSE(SaysTheSame(*read, later));
}

TEST(StandingMessage, IsNotTakenFromWhatIsNone) {
    const std::string good = ToText(Message());
    ASSERT_TRUE(ReadMessage(good));
    for (const std::string& bad :
         {std::string(), std::string("[GENERAL]\nFormat=1\n"), std::string("[STANDING]\nFormat=2\n"),
          good + "Number=twelve\n", good + "Number=99999999999999999999\n", good + "Heard=1\nHeard=2\n",
          good + "FilesTo=1 x\n", good + "Note=" + std::string(20'000, 'x') + "\n", good + "FilesTo=" + [] {
              std::string many;
              for (int i = 0; i < 70; ++i) {
                  many += "1 ";
              }
              return many;
          }()}) {
        EXPECT_FALSE(ReadMessage(bad)) << bad.substr(0, 60);
    }
}

TEST(StandingMessage, HasAFileOnlyForIdentities) {
    EXPECT_EQ(FileName("{ab-1}", "cd-2"), "AB-1~CD-2~standing.rsf");
    for (const char* hostile : {"../x", "a/b", "a\\b", "a~b", ".", "", "a b", "\xC3\xA4"}) {
        EXPECT_EQ(FileName(hostile, "CD-2"), "") << hostile;
        EXPECT_EQ(FileName("CD-2", hostile), "") << hostile;
    }
}

TEST(StandingDigests, AddUpInAnyOrderAndCarryOver) {
    Digest sum{0, ~0ULL};
    sum += {1, 1};
    EXPECT_EQ(sum, (Digest{2, 0}));
    EXPECT_EQ(BucketsFor(0), 1U);
    EXPECT_EQ(BucketsFor(257), 2U);
    EXPECT_LE(BucketsFor(1'000'000'000) * 64, MostBuckets);
}

TEST(StandingDigests, ComeBackAndAreBounded) {
    std::vector<TableDigests> tables{{"Customers", std::vector<Bucket>(4)}, {"Terms", std::vector<Bucket>(1)}};
    tables[0].buckets[3] = {2, {0xAB, 0x12}};
    const auto read = ReadTableDigests(ToText(tables));
    ASSERT_TRUE(read);
    EXPECT_EQ((*read)[0].buckets, tables[0].buckets);
    EXPECT_EQ((*read)[1].table, "Terms");
    for (const char* bad : {"0 1 00", "T A 3\n", "T A 131072\n", "T A 0\n", "T A 1\nT a 1\n", "T A 2\n2 1 0\n",
                            "T  2\n", "T A 2\n0 -1 00000000000000000000000000000000\n", "T A 2\n0 1 xyz\n"}) {
        EXPECT_FALSE(ReadTableDigests(bad)) << bad;
    }
    const std::vector<RowList> lists{{"Orders", 0, 0, {{"id 1", {1, 2}, 7}, {"line\nbreak", {1, 2}, 7}}}};
    const auto rows = ReadRowLists(ToText(lists));
    ASSERT_TRUE(rows);
    ASSERT_EQ((*rows)[0].rows.size(), 1U) << "what cannot stand in a line is left out";
    EXPECT_EQ((*rows)[0].rows[0].uniqueID, "id 1");
    EXPECT_EQ((*rows)[0].rows[0].ownChange, 7);
    for (const char* bad : {"R 00000000000000000000000000000000 1 x\n", "T A 1\n", "T A 1 0\nR zz 1 x\n",
                            "T A 1 0\nR 00000000000000000000000000000000 1 \n", "X\n"}) {
        EXPECT_FALSE(ReadRowLists(bad)) << bad;
    }
}

} // namespace
} // namespace qndr::standing
