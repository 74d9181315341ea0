#include "suite/database/dialect.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace qndr::suite {
namespace {

/// Pieces of statements, each with what becomes of it.
const std::vector<std::pair<std::string, std::string>> kPieces{
    {"DATEADD(day,", "DATEADD('day',"},
    {"dateAdd\n( n ,", "dateAdd\n( 'n' ,"},
    {"DATEADD('day',", "DATEADD('day',"},
    {"dateadd ( /* , */ Minute --)\n , 1, DateAdd(hh,2,", "dateadd ( /* , */ 'Minute' --)\n , 1, DateAdd('hh',2,"},
    {"XDATEADD(day,1) DATEADDX(day,1) :DATEADD(day,1)", "XDATEADD(day,1) DATEADDX(day,1) :DATEADD(day,1)"},
    {"DATEADD(day) DATEADD(1,2) DATEADD(day+1,2) DATEADD day, DATEADD(",
     "DATEADD(day) DATEADD(1,2) DATEADD(day+1,2) DATEADD day, DATEADD("},
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
