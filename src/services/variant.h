#pragma once

#include "services/date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace qndr {

/// The database's NULL. Unlike an empty variant it converts to nothing at all.
struct Null {
    bool operator==(const Null&) const = default;
};

/// A value on its way to or from one of the suite's objects. The conversions are those of the suite: a value that
/// does not fit raises services::Failure, an empty variant converts to 0, False, the zero date or "", Null raises,
/// and a fraction is rounded to the nearest whole number, halves to the even one. True is -1 as a number.
class Variant {
  public:
    Variant() = default;
    Variant(Null value) : value_(value) {}
    Variant(bool value) : value_(value) {}
    Variant(int value) : value_(static_cast<std::int64_t>(value)) {}
    Variant(std::int64_t value) : value_(value) {}
    Variant(double value) : value_(value) {}
    Variant(Date value) : value_(value) {}
    Variant(std::string value) : value_(std::move(value)) {}
    Variant(std::string_view value) : value_(std::string(value)) {}
    Variant(const char* value) : value_(std::string(value)) {}

    bool IsEmpty() const { return std::holds_alternative<std::monostate>(value_); }
    bool IsNull() const { return std::holds_alternative<Null>(value_); }

    /// 16-bit integer.
    std::int16_t ToInteger() const;
    /// 32-bit integer.
    std::int32_t ToLong() const;
    std::uint8_t ToByte() const;
    bool ToBoolean() const;
    Date ToDate() const;
    /// A Boolean is "True" or "False", a date has the general date format, a number has "." for its decimals.
    std::string ToText() const;

    bool operator==(const Variant&) const = default;

  private:
    double ToNumber() const;
    std::variant<std::monostate, Null, bool, std::int64_t, double, Date, std::string> value_;
};

/// Reads a decimal number with an optional sign, point and exponent, blanks around it allowed. Nothing for any
/// other text and for a number that a double cannot hold. This is the one meaning of "numeric" in the system.
std::optional<double> ParseNumber(std::string_view text);

} // namespace qndr
