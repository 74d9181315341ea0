#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qndr {

/// A calendar date with a time of day, without a time zone.
struct CivilTime {
    int year = 1899;
    int month = 12;
    int day = 30;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

/// Days since 30 December 1899, 00:00, exact to the second. A default Date is that day itself, the "zero date"
/// of a record field that was never set; NoDate (2.0, 1 January 1900) is the value that means "no date".
class Date {
  public:
    constexpr Date() = default;
    /// Rounds to the nearest second.
    explicit Date(double days);
    /// The caller gives a real calendar date; ParseDate checks, this does not.
    static Date FromCivil(const CivilTime& civil);

    double Days() const { return static_cast<double>(seconds_) / 86400.0; }
    CivilTime Civil() const;

    Date AddSeconds(std::int64_t seconds) const;
    Date AddMinutes(std::int64_t minutes) const { return AddSeconds(minutes * 60); }
    Date AddDays(std::int64_t days) const { return AddSeconds(days * 86400); }
    /// Whole seconds from `earlier` to this date.
    std::int64_t SecondsSince(const Date& earlier) const { return seconds_ - earlier.seconds_; }

    auto operator<=>(const Date&) const = default;

  private:
    std::int64_t seconds_ = 0;
};

/// The no-date value: 2.0, 1 January 1900.
inline const Date NoDate{2.0};

/// The general date format, the same on every platform: "yyyy-mm-dd hh:nn:ss".
std::string FormatGeneralDate(const Date& date);

/// The form in which the databases store dates: "yyyymmdd hh:nn:ss". Texts of this form sort as their dates.
std::string FormatDatabaseDate(const Date& date);

/// Reads the general date format, "yyyymmdd hh:nn:ss", "mm/dd/yyyy" and "m/d/yyyy", each with or without a time
/// "h:n:s" behind one blank. Nothing for any other text and for a day that the calendar does not have.
std::optional<Date> ParseDate(std::string_view text);

} // namespace qndr
