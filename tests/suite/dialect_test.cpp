#include "suite/database/dialect.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace qndr::suite {
namespace {

TEST(Dialect, QuotesTheDatePartWhereverTheCallStands) {
    EXPECT_EQ(ToSqliteDialect("SELECT * FROM a WHERE d > DATEADD(day,-30,GETUTCDATE())"),
              "SELECT * FROM a WHERE d > DATEADD('day',-30,GETUTCDATE())");
    EXPECT_EQ(ToSqliteDialect("dateadd ( /* , */ Minute --)\n , 1, DateAdd(hh,2,x))"),
              "dateadd ( /* , */ 'Minute' --)\n , 1, DateAdd('hh',2,x))");
}

TEST(Dialect, LeavesAloneWhatIsNoBareDatePart) {
    for (const char* sql : {
             "SELECT 'DATEADD(day,1,x)', \"DATEADD(day,1,x)\", [DATEADD(day,1,x)], `DATEADD(day,1,x)`",
             "SELECT 'it''s DATEADD(day,1,x)' -- DATEADD(day,1,x)\n/* DATEADD(day,1,x) */",
             "DATEADD('day',1,x) XDATEADD(day,1,x) DATEADDX(day,1,x) :DATEADD(day,1,x)",
             "DATEADD(day) DATEADD(1,2,3) DATEADD(day+1,2,3) DATEADD day, DATEADD(",
             "SELECT 'open DATEADD(day,1,x)",
             "/* open DATEADD(day,1,x)",
         }) {
        EXPECT_EQ(ToSqliteDialect(sql), sql);
    }
}

/// Pieces of statements, each with what becomes of it.
const std::vector<std::pair<std::string, std::string>> kPieces{
    {"DATEADD(day,", "DATEADD('day',"},
    {"dateAdd\n( n ,", "dateAdd\n( 'n' ,"},
    {"DATEADD('day',", "DATEADD('day',"},
    {"'DATEADD(day,'", "'DATEADD(day,'"},
    {"'x'' DATEADD(day,'''", "'x'' DATEADD(day,'''"},
    {"\"a'b DATEADD(day,\"", "\"a'b DATEADD(day,\""},
    {"[it's DATEADD(day,]", "[it's DATEADD(day,]"},
    {"`\"DATEADD(day,`", "`\"DATEADD(day,`"},
    {"-- it's DATEADD(day,\n", "-- it's DATEADD(day,\n"},
    {"/* \"' -- DATEADD(day, */", "/* \"' -- DATEADD(day, */"},
    {"day, 1)", "day, 1)"},
    {"Ä_DATEADD(day,", "Ä_DATEADD(day,"},
    {"-", "-"},
    {"/ *", "/ *"},
    {"(", "("},
};

RC_GTEST_PROP(Dialect, TreatsEachPieceOfAStatementByItself, ()) {
    std::string sql;
    std::string expected;
    for (const auto index :
         *rc::gen::container<std::vector<std::size_t>>(rc::gen::inRange<std::size_t>(0, kPieces.size()))) {
        sql += kPieces[index].first + " ; ";
        expected += kPieces[index].second + " ; ";
    }
    RC_ASSERT(ToSqliteDialect(sql) == expected);
}

RC_GTEST_PROP(Dialect, HasNothingLeftToDoInItsOwnResult, ()) {
    const auto alphabet = rc::gen::elementOf(std::vector<std::string>{
        "DATEADD", "(", "day", ",", "'", "\"", "[", "]", "`", "--", "/*", "*/", "\n", " ", "x", ")"});
    std::string sql;
    for (const auto& piece : *rc::gen::container<std::vector<std::string>>(alphabet)) {
        sql += piece;
    }
    const std::string once = ToSqliteDialect(sql);
    RC_ASSERT(ToSqliteDialect(once) == once);
    RC_ASSERT(once.size() >= sql.size());
}

} // namespace
} // namespace qndr::suite
