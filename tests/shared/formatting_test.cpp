#include "shared/formatting.h"

#include <gtest/gtest.h>

namespace qndr::testing {
namespace {

TEST(FormatSQLDate, GivesNullOnlyUpToTheNoDateValueAndOnRequest) {
    const Date date = *ParseDate("2026-11-14 18:10:00");
    EXPECT_EQ(FormatSQLDate(date, true), "20261114 18:10:00");
    EXPECT_EQ(FormatSQLDate(*ParseDate("2007-03-05 01:02:03"), false), "20070305 01:02:03");
    EXPECT_EQ(FormatSQLDate(NoDate, true), "NULL");
    EXPECT_EQ(FormatSQLDate(Date(), true), "NULL");
    EXPECT_EQ(FormatSQLDate(NoDate, false), "19000101 00:00:00");
    EXPECT_EQ(FormatSQLDate(NoDate.AddSeconds(1), true), "19000101 00:00:01");
}

TEST(FormatString, FollowsTheRulesThatCallersLeanOn) {
    EXPECT_EQ(FormatString("'{0}' and {0}, not {1}", "O'Neill"), "'O'Neill' and O'Neill, not {1}");
    EXPECT_EQ(FormatString("{0} {1}"), "{0} {1}");
    EXPECT_EQ(FormatString("{{0}} {00} { 0}{", "x"), "{x} {00} { 0}{");
    EXPECT_EQ(FormatString("{0} {1}", "{1}", "{0}"), "{0} {0}") << "in order, over the text as it has become";
    EXPECT_EQ(FormatString("{0}{1}{2}", "a", Null{}, "c"), "a{1}c");
    EXPECT_EQ(FormatString("{0} {1} {2}", std::int16_t{-2}, true, *ParseDate("2026-11-14")),
              "-2 True 2026-11-14 00:00:00");
    EXPECT_EQ(FormatString("{1}{16}{17}", 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, "last", "none"),
              "1last{17}");
}

TEST(FormatStatement, TellsWhatItFilledIn) {
    const auto statement = FormatStatement("{0} '{1}' {2}", 4, "x'", Null{});
    EXPECT_EQ(statement.Text(), "4 'x'' {2}");
    EXPECT_EQ(statement.Pattern(), "{0} '{1}' {2}");
    EXPECT_EQ(statement.Values(), (std::vector<std::string>{"4", "x'", ""}));
}

} // namespace
} // namespace qndr::testing
