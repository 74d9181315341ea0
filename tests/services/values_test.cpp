#include "services/date.h"
#include "services/failure.h"
#include "services/variant.h"

#include <gtest/gtest.h>

#include <sstream>

namespace qndr::testing {
namespace {

using services::Failure;

TEST(Date, ParserAcceptsOnlyRealCalendarDates) {
    for (const char* text : {"2026-11-22 19:08:52", "20261122 19:08:52", "11/22/2026 19:08:52"}) {
        const auto date = ParseDate(text);
        ASSERT_TRUE(date) << text;
        EXPECT_EQ(FormatGeneralDate(*date), "2026-11-22 19:08:52");
    }
    EXPECT_EQ(FormatGeneralDate(*ParseDate("2/29/2024 1:2:3")), "2024-02-29 01:02:03");
    EXPECT_EQ(FormatGeneralDate(*ParseDate("1600-02-29")), "1600-02-29 00:00:00");
    std::istringstream refused("| "
                               "|2026|yesterday|2026-02-29|2100-02-29|2026-13-01|2026-00-10|2026-11-00|2026-11-31|"
                               "20261131|2/30/2024|2026-11-22 24:00:00|2026-11-22 23:60:00|2026-11-22 "
                               "23:59:60|2026-11-22 |2026-11-22T19:08:52|2026-11-22 19:08|2026-11-22 19:08:52Z| "
                               "2026-11-22|-2026-11-22|26-11-22|11/22/26|0099-01-01|2026-1-2");
    for (std::string text; std::getline(refused, text, '|');) {
        EXPECT_FALSE(ParseDate(text)) << text;
    }
}

TEST(Date, CountsDaysFromItsOrigin) {
    EXPECT_EQ(FormatGeneralDate(Date()), "1899-12-30 00:00:00");
    EXPECT_EQ(FormatGeneralDate(NoDate), "1900-01-01 00:00:00");
    EXPECT_EQ(FormatGeneralDate(Date(1.5)), "1899-12-31 12:00:00");
    EXPECT_EQ(FormatGeneralDate(Date().AddSeconds(-1)), "1899-12-29 23:59:59");
    EXPECT_EQ(Date(2.0 + 0.4 / 86400), NoDate) << "to the second";
}

TEST(Variant, RoundsHalvesToEvenAndRaisesWhatDoesNotFit) {
    EXPECT_EQ(Variant(0.5).ToLong(), 0);
    EXPECT_EQ(Variant(1.5).ToLong(), 2);
    EXPECT_EQ(Variant(-1.5).ToLong(), -2);
    EXPECT_EQ(Variant(-2.5).ToLong(), -2);
    EXPECT_EQ(Variant("32767.4").ToInteger(), 32767);
    EXPECT_THROW(Variant("32767.5").ToInteger(), Failure);
    EXPECT_EQ(Variant(-32768).ToInteger(), -32768);
    EXPECT_THROW(Variant(-32769).ToInteger(), Failure);
    EXPECT_EQ(Variant(255).ToByte(), 255);
    EXPECT_THROW(Variant(256).ToByte(), Failure);
    EXPECT_THROW(Variant(-1).ToByte(), Failure);
    EXPECT_EQ(Variant("-2147483648").ToLong(), -2147483648);
    EXPECT_THROW(Variant("2147483648").ToLong(), Failure);
    EXPECT_THROW(Variant(std::int64_t{1} << 40U).ToLong(), Failure);
}

TEST(Variant, ConvertsAsTheSuiteDoes) {
    EXPECT_EQ(Variant().ToLong(), 0);
    EXPECT_EQ(Variant().ToText(), "");
    EXPECT_FALSE(Variant().ToBoolean());
    EXPECT_EQ(Variant().ToDate(), Date());
    EXPECT_THROW(Variant(Null{}).ToText(), Failure);
    EXPECT_THROW(Variant(Null{}).ToLong(), Failure);
    EXPECT_THROW(Variant(Null{}).ToBoolean(), Failure);
    EXPECT_THROW(Variant(Null{}).ToDate(), Failure);

    EXPECT_EQ(Variant(true).ToLong(), -1);
    EXPECT_EQ(Variant(true).ToText() + Variant(false).ToText(), "TrueFalse");
    EXPECT_TRUE(Variant("True").ToBoolean());
    EXPECT_FALSE(Variant("False").ToBoolean());
    EXPECT_TRUE(Variant("-0.25").ToBoolean());
    EXPECT_THROW(Variant("").ToBoolean(), Failure);
    EXPECT_THROW(Variant("").ToLong(), Failure);
    EXPECT_THROW(Variant("").ToDate(), Failure);

    EXPECT_EQ(Variant(1.25).ToText(), "1.25");
    EXPECT_EQ(Variant(*ParseDate("2026-11-22")).ToText(), "2026-11-22 00:00:00");
    EXPECT_EQ(Variant(2).ToDate(), NoDate);
    EXPECT_THROW(Variant(3'000'000).ToDate(), Failure);
    EXPECT_EQ(Variant(2958465.99999).ToDate(), *ParseDate("9999-12-31 23:59:59"));
    EXPECT_THROW(Variant(2958465.999999).ToDate(), Failure) << "rounds to the year 10000";
}

TEST(ParseNumber, KnowsOneMeaningOfNumeric) {
    for (const char* text : {"1", " +1 ", "1.", "1e0", "1.0E+0"}) {
        EXPECT_EQ(ParseNumber(text), 1.0) << text;
    }
    EXPECT_EQ(ParseNumber("-.5"), -0.5);
    for (const char* text : {"", " ", "-", ".", "e1", "1e", "--1", "+-1", "1 2", "1,000", "0x10", "inf", "nan",
                             "1e999", "1\n", "&H10"}) {
        EXPECT_FALSE(ParseNumber(text)) << text;
    }
}

} // namespace
} // namespace qndr::testing
