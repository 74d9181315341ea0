#include "suite/sql/sql_text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace qndr::suite {
namespace {

TEST(Dialect, QuotesTheDatePartOfACallAndTouchesNoLiteral) {
    const std::pair<std::string, std::string> statements[] = {
        {"DATEADD(day,", "DATEADD('day',"},
        {"dateAdd\n( n ,", "dateAdd\n( 'n' ,"},
        {"DATEADD('day',", "DATEADD('day',"},
        {"dateadd ( /* , */ Minute --)\n , 1, DateAdd(hh,2,",
         "dateadd ( /* , */ 'Minute' --)\n , 1, DateAdd('hh',2,"},
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
        {"Ä_DATEADD(day,", "Ä_DATEADD(day,"},
    };
    for (const auto& [sql, expected] : statements) {
        EXPECT_EQ(sql::ToSqliteDialect(sql), expected);
    }
}

} // namespace
} // namespace qndr::suite
