#include "shared/formatting.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <utility>
#include <vector>

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
    EXPECT_EQ(FormatString("{0}\\{1}", "a", "b"), "a\\b");
    EXPECT_EQ(FormatString("{0} and {0}, not {1}", 7), "7 and 7, not {1}");
    EXPECT_EQ(FormatString("{0} {1}"), "{0} {1}");
    EXPECT_EQ(FormatString("{{0}} {00} { 0}", "x"), "{x} {00} { 0}");
    EXPECT_EQ(FormatString("{0} {1}", "{1}", "{0}"), "{0} {0}") << "in order, over the text as it has become";
    EXPECT_EQ(FormatString("{0}{1}{2}", "a", Null{}, "c"), "a{1}c");
    EXPECT_EQ(FormatString("{0} {1} {2}", std::int16_t{-2}, true, *ParseDate("2026-11-14")),
              "-2 True 2026-11-14 00:00:00");
    EXPECT_EQ(FormatString("{1}{16}{17}", 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, "last", "none"),
              "1last{17}");
    EXPECT_EQ(FormatString("SELECT '{0}'", "O'Neill"), "SELECT 'O'Neill'");
}

/// Values that can never be part of a placeholder do not influence each other, nor the text between them.
TEST(FormatString, PlainValuesAreFilledInIndependently) {
    rc::check([] {
        using Piece = std::pair<std::string, int>; // the number of a placeholder, or -1
        const auto pieces = *rc::gen::container<std::vector<Piece>>(rc::gen::element<Piece>(
            Piece{"{0}", 0}, Piece{"{1}", 1}, Piece{"{10}", 10}, Piece{"{16}", 16}, Piece{"{17}", -1},
            Piece{"{01}", -1}, Piece{"{", -1}, Piece{"}", -1}, Piece{"x", -1}));
        const auto count = *rc::gen::inRange(0, 20);
        std::vector<Variant> values;
        for (int i = 0; i < count; ++i) {
            values.emplace_back("value " + std::to_string(i));
        }
        std::string text;
        std::string expected;
        for (const auto& [piece, number] : pieces) {
            text += piece;
            expected += number >= 0 && number < count ? "value " + std::to_string(number) : piece;
        }
        RC_ASSERT(FillTemplate(text, values) == expected);
    });
}

} // namespace
} // namespace qndr::testing
