#include "shared/dates.h"
#include "shared/versions.h"
#include "support/agent_bench.h"

namespace qndr::testing {
namespace {

using DatesVersionsTest = AgentBench;

TEST_F(DatesVersionsTest, UtcTakesTheBiasOfThisMoment) {
    const Date local = *ParseDate("2026-11-14 18:10:00");
    for (const auto& [zone, expected] :
         {std::pair{services::TimeZoneInformation{2, 300, 0, -60}, "2026-11-14 22:10:00"},
          {{1, 300, 0, -60}, "2026-11-14 23:10:00"},
          {{0, 300, 5, -60}, "2026-11-14 23:15:00"},
          {{2, -60, 0, -60}, "2026-11-14 16:10:00"},
          {{1, 360, 0, 0}, "2026-11-15 00:10:00"}}) {
        time.SetTimeZone(zone);
        EXPECT_EQ(FormatGeneralDate(LocalToUtc(context, local)), expected);
    }
    EXPECT_EQ(FormatFileStamp(*ParseDate("0999-01-02 03:04:05")), "09990102T030405");
}

TEST_F(DatesVersionsTest, VersionHasFourSignedParts) {
    struct OneVersion : services::FileVersions {
        std::optional<services::FixedFileVersion> GetFileVersion(const std::string&) override { return version; }
        std::optional<services::FixedFileVersion> version;
    } versions;
    const services::AgentServices services =
        Replacing(outside.Services(), log, time, nullptr, nullptr, nullptr, &versions);
    EXPECT_EQ(GetFileVersionText(services, ""), "");
    versions.version = {5U << 16U, (12U << 16U) | 3U};
    EXPECT_EQ(GetFileVersionText(services, ""), "5.0.12.3");
    EXPECT_EQ(GetApplicationVersion(services), "") << "there is no such file";
    versions.version = {0x8000FFFFU, 0x7FFF0001U};
    EXPECT_EQ(GetFileVersionText(services, ""), "-32768.-1.32767.1");
}

} // namespace
} // namespace qndr::testing
