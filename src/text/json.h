#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace qndr::text {

/// A moment in UTC, as text in the general date format: machines get it with its zone.
struct UtcMoment {
    std::string text;
};
/// A number with decimals, as text with a point.
struct DecimalNumber {
    std::string text;
};

/// A JSON value under construction. The members of an object keep the order in which they were set.
class Json {
  public:
    Json() = default;
    Json(std::nullptr_t) {}
    Json(std::same_as<bool> auto value) : value_(value) {}
    Json(std::integral auto value) requires(!std::same_as<decltype(value), bool>)
        : value_(static_cast<std::int64_t>(value)) {}
    Json(std::string value) : value_(std::move(value)) {}
    Json(std::string_view value) : value_(std::string(value)) {}
    Json(const char* value) : value_(std::string(value)) {}
    Json(UtcMoment value) : value_(std::move(value)) {}
    Json(DecimalNumber value) : value_(std::move(value)) {}
    static Json Object();
    static Json Array();

    bool IsNull() const { return std::holds_alternative<std::monostate>(value_); }
    bool IsNumber() const {
        return std::holds_alternative<std::int64_t>(value_) || std::holds_alternative<DecimalNumber>(value_);
    }

    /// Of an object; the name must be new.
    Json& Set(std::string name, Json value);
    /// Of an array.
    Json& Append(Json value);

    /// One line of JSON text. Bytes that are no UTF-8 become U+FFFD, for a log or a database may hold them.
    std::string ToText() const;
    /// What a person reads: a text as it is, "yes" or "no", "-" for null. Not for objects and arrays.
    std::string ToPlainText() const;

  private:
    using Members = std::vector<std::pair<std::string, Json>>;
    using Elements = std::vector<Json>;

    void WriteTo(std::string& target) const;

    std::variant<std::monostate, bool, std::int64_t, std::string, UtcMoment, DecimalNumber, Members, Elements>
        value_;
};

/// Appends a text as JSON has it, between quotes. Bytes that are no UTF-8 become U+FFFD.
void AppendJsonText(std::string& out, std::string_view text);

} // namespace qndr::text
