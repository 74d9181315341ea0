#include "services/variant.h"

#include "services/failure.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace qndr {
namespace {

using services::Failure;

/// Rounds halves to the even number, whatever the floating-point environment says.
double RoundHalfToEven(double value) {
    const double lower = std::floor(value);
    const double fraction = value - lower;
    if (fraction < 0.5) {
        return lower;
    }
    if (fraction > 0.5) {
        return lower + 1;
    }
    return std::fmod(lower, 2.0) == 0.0 ? lower : lower + 1;
}

template <typename Integer> Integer ToWhole(double value) {
    const double rounded = RoundHalfToEven(value);
    if (!(rounded >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
          rounded <= static_cast<double>(std::numeric_limits<Integer>::max()))) {
        throw Failure("overflow: the number does not fit its type");
    }
    return static_cast<Integer>(rounded);
}

std::string NumberText(double value) {
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end.ptr};
}

} // namespace

std::optional<double> ParseNumber(std::string_view text) {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    // Keeps out what from_chars takes beside digits: a second sign, "inf" and "nan".
    if (text.empty() || !((text.front() >= '0' && text.front() <= '9') || text.front() == '.')) {
        return std::nullopt;
    }
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc{} || result.ptr != text.data() + text.size()) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

double Variant::ToNumber() const {
    struct Convert {
        double operator()(std::monostate) const { return 0; }
        double operator()(Null) const { throw Failure("invalid use of Null"); }
        double operator()(bool value) const { return value ? -1 : 0; }
        double operator()(std::int64_t value) const { return static_cast<double>(value); }
        double operator()(double value) const { return value; }
        double operator()(const Date& value) const { return value.Days(); }
        double operator()(const std::string& value) const {
            const auto number = ParseNumber(value);
            if (!number) {
                throw Failure("type mismatch: '" + value + "' is not a number");
            }
            return *number;
        }
    };
    return std::visit(Convert{}, value_);
}

std::int16_t Variant::ToInteger() const {
    return ToWhole<std::int16_t>(ToNumber());
}

std::int32_t Variant::ToLong() const {
    return ToWhole<std::int32_t>(ToNumber());
}

std::uint8_t Variant::ToByte() const {
    return ToWhole<std::uint8_t>(ToNumber());
}

bool Variant::ToBoolean() const {
    if (const auto* text = std::get_if<std::string>(&value_)) {
        if (*text == "True") {
            return true;
        }
        if (*text == "False") {
            return false;
        }
    }
    return ToNumber() != 0;
}

Date Variant::ToDate() const {
    if (const auto* date = std::get_if<Date>(&value_)) {
        return *date;
    }
    if (const auto* text = std::get_if<std::string>(&value_)) {
        const auto date = ParseDate(*text);
        if (!date) {
            throw Failure("type mismatch: '" + *text + "' is not a date");
        }
        return *date;
    }
    const double days = ToNumber();
    // The years 100 to 9999, the range of dates that the suite knows. The last half second would be rounded out of
    // it.
    if (!(days >= -657434.0 && days < 2958466.0) || Date(days) >= Date(2958466.0)) {
        throw Failure("overflow: the number is no date");
    }
    return Date(days);
}

std::string Variant::ToText() const {
    struct Convert {
        std::string operator()(std::monostate) const { return ""; }
        std::string operator()(Null) const { throw Failure("invalid use of Null"); }
        std::string operator()(bool value) const { return value ? "True" : "False"; }
        std::string operator()(std::int64_t value) const { return std::to_string(value); }
        std::string operator()(double value) const { return NumberText(value); }
        std::string operator()(const Date& value) const { return FormatGeneralDate(value); }
        std::string operator()(const std::string& value) const { return value; }
    };
    return std::visit(Convert{}, value_);
}

} // namespace qndr
