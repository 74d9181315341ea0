#include "shared/dates.h"
#include "shared/outside.h"
#include "shared/versions.h"

#include <gtest/gtest.h>

namespace qndr::testing {
namespace {

struct DatesVersionsTest : ::testing::Test, Outside {};

struct FakeUpgrader : services::Upgrader {
    FakeUpgrader(const char* version, int& endings) : latest(version), ended(endings) {}
    std::string LatestVersion() const override {
        return latest != nullptr ? latest : throw services::Failure("broken");
    }
    void PreTerminate() override { ++ended; }

    const char* latest;
    int& ended;
};

TEST_F(DatesVersionsTest, UtcTakesTheBiasOfThisMoment) {
    struct Case {
        services::TimeZoneInformation zone;
        const char* expected;
    };
    for (const Case& each :
         {Case{{2, 300, 0, -60}, "2026-11-14 22:10:00"}, Case{{1, 300, 0, -60}, "2026-11-14 23:10:00"},
          Case{{0, 300, 5, -60}, "2026-11-14 23:15:00"}, Case{{2, -60, 0, -60}, "2026-11-14 16:10:00"},
          Case{{1, 360, 0, 0}, "2026-11-15 00:10:00"}}) {
        clock.zone = each.zone;
        EXPECT_EQ(FormatGeneralDate(LocalToUtc(services, clock.now)), each.expected);
    }
}

TEST_F(DatesVersionsTest, FileStampHasFifteenCharacters) {
    EXPECT_EQ(FormatFileStamp(*ParseDate("0999-01-02 03:04:05")), "09990102T030405");
}

TEST_F(DatesVersionsTest, LatestVersionIsUnknownWithoutAnUpgrader) {
    int ended = 0;
    EXPECT_EQ(GetLatestVersion(services), "(Unknown)");
    objects.upgrader = std::make_unique<FakeUpgrader>(nullptr, ended);
    EXPECT_EQ(GetLatestVersion(services), "(Unknown)");
    EXPECT_EQ(ended, 1);
    objects.upgrader = std::make_unique<FakeUpgrader>("5.0.7", ended);
    EXPECT_EQ(GetLatestVersion(services), "5.0.7");
    EXPECT_EQ(ended, 2);
}

TEST_F(DatesVersionsTest, ApplicationVersionIsThatOfTheFileBeside) {
    facts.version = {5U << 16U, (12U << 16U) | 3U};
    EXPECT_EQ(GetApplicationVersion(services), "");
    files.files["C:\\Program\\qndr5.exe"] = "";
    EXPECT_EQ(GetApplicationVersion(services), "5.0.12.3");
    facts.version = {0x8000FFFFU, 0x7FFF0001U};
    EXPECT_EQ(GetApplicationVersion(services), "-32768.-1.32767.1");
    facts.version.reset();
    EXPECT_EQ(GetApplicationVersion(services), "");
}

} // namespace
} // namespace qndr::testing
