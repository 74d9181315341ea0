// Dates, numbers, conversions and templates: what parses is written and read back alike.
#include "services/failure.h"
#include "services/variant.h"
#include "shared/dates.h"
#include "shared/formatting.h"
#include "suite/company_fixture.h"
#include "suite/sql/sql_date.h"
#include "suite/sql/sqlite/sqlite_connection.h"
#include "support.h"
#include "syncfiles/discovery.h"
#include "text/editing.h"
#include "text/letter_case.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <optional>

namespace qndr::fuzz {
namespace {

/// The result of a conversion, nothing when it raises what conversions raise.
template <typename Conversion> auto Converted(Conversion convert) -> std::optional<decltype(convert())> {
    try {
        return convert();
    } catch (const services::Failure&) {
        return std::nullopt;
    }
}

void CheckDate(const Date& date) {
    Require(ParseDate(FormatGeneralDate(date)) == date, "a date reads back from the general date format");
    Require(ParseDate(FormatDatabaseDate(date)) == date, "a date reads back from the database's format");
    Require(ParseFileStamp(FormatFileStamp(date), NoDate) == date, "a date reads back from a file's stamp");
    Require(Date(date.Days()) == date, "a date is exact to the second as a number");
    Require(Date::FromCivil(date.Civil()) == date, "a date is its parts");
}

void CheckNumber(double number) {
    const std::string text = Variant(number).ToText();
    const auto parsed = ParseNumber(text);
    Require(parsed && std::bit_cast<std::uint64_t>(*parsed) == std::bit_cast<std::uint64_t>(number),
            "a number's text is that number");
    const auto whole = Converted([&] { return Variant(number).ToLong(); });
    Require(whole.has_value() ==
                (std::nearbyint(number) >= -2147483648.0 && std::nearbyint(number) <= 2147483647.0),
            "a number converts to a Long when it rounds to one");
    Require(!whole || *whole == std::nearbyint(number), "halves are rounded to the even number");
    const auto small = Converted([&] { return Variant(number).ToInteger(); });
    Require(small.has_value() == (whole && *whole >= -32768 && *whole <= 32767), "an Integer is a small Long");
    const auto byte = Converted([&] { return Variant(number).ToByte(); });
    Require(byte.has_value() == (whole && *whole >= 0 && *whole <= 255), "a Byte is a small Long");
    Require((!small || *small == *whole) && (!byte || *byte == *whole), "all widths hold the same number");
    if (const auto date = Converted([&] { return Variant(number).ToDate(); })) {
        CheckDate(*date);
    }
}

void CheckTextConversions(const std::string& text) {
    const auto date = ParseDate(text);
    Require(Converted([&] { return Variant(text).ToDate(); }) == date, "a text converts to the date that it is");
    if (date) {
        CheckDate(*date);
    }
    const auto number = ParseNumber(text);
    Require(Converted([&] { return Variant(text).ToLong(); }) ==
                Converted([&] { return number ? Variant(*number).ToLong() : throw services::Failure(""); }),
            "a text converts to the Long that its number does");
    if (number) {
        CheckNumber(*number);
    }
    ParseFileStamp(text, NoDate);
}

/// The bytes of a line that is too short are followed by zeros.
double BytesAsNumber(const std::string& line) {
    double number = 0;
    std::memcpy(&number, line.data(), std::min(line.size(), sizeof number));
    return number;
}

void CheckTemplate(const std::string& text, const std::string& first, const std::string& second) {
    Require(FormatString(text) == text, "a template without values stays");
    const std::string once = text::ReplaceAll(text, "{0}", first);
    Require(FormatString(text, first) == once, "one value goes into its places");
    Require(FormatString(text, first, second) == text::ReplaceAll(once, "{1}", second),
            "values go in by their numbers");
    Require(FormatString(text, Variant(Null{}), second) == text::ReplaceAll(text, "{1}", second),
            "a value without a text leaves its places");
}

void CheckDateAdd(const std::string& part, const std::string& number, const std::string& date) {
    static const suite::StandingClock clock;
    static const sql::SqliteConnection connection(Scratch() / "dates.db", clock, sql::Missing::Create);
    static sql::Statement add = connection.Prepare("SELECT DATEADD(?1, CAST(?2 AS INTEGER), ?3)");
    static sql::Statement back = connection.Prepare("SELECT DATEADD(?1, -CAST(?2 AS INTEGER), ?3)");
    const auto run = [&](sql::Statement& statement, const std::string& from) {
        statement.Reset();
        statement.Bind(1, part);
        statement.Bind(2, number);
        statement.Bind(3, from);
        return Converted([&] { return statement.Step() ? std::string(statement.Text(0)) : ""; });
    };
    const auto sum = run(add, date);
    if (!sum) {
        return;
    }
    const auto from = ParseDate(date);
    const auto to = ParseDate(*sum);
    Require(from && to, "DATEADD makes a date of a date");
    const std::string lower = text::ToLowerCase(part);
    const bool months =
        lower.starts_with('y') || lower.starts_with('q') || lower == "mm" || lower == "m" || lower == "month";
    if (!months || lower == "y") {
        Require(run(back, *sum) == FormatDatabaseDate(*from), "what was added can be taken away");
    }
}

} // namespace
} // namespace qndr::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qndr;
    using namespace qndr::fuzz;
    std::string input = AsText(data, size);
    const std::string first = TakeLine(input);
    const std::string second = TakeLine(input);
    CheckTextConversions(first);
    CheckTextConversions(second);
    const double number = BytesAsNumber(first);
    if (std::isfinite(number)) {
        CheckNumber(number);
    }
    CheckDateAdd(first, second, TakeLine(input));
    CheckTemplate(input, first, second);
    return 0;
}
