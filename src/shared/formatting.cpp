#include "shared/formatting.h"

#include "shared/failure_rule.h"
#include "text/editing.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace qndr {
namespace {

constexpr std::size_t kPlaceholders = 17;

} // namespace

std::string FormatSQLDate(const Date& date, bool nullFlag) {
    if (date <= NoDate && nullFlag) {
        return "NULL";
    }
    return FormatDatabaseDate(date);
}

std::string FillTemplate(std::string_view text, std::span<const Variant> values) {
    std::string result(text);
    for (std::size_t i = 0; i < std::min(values.size(), kPlaceholders); ++i) {
        Attempt([&] { result = text::ReplaceAll(result, "{" + std::to_string(i) + "}", values[i].ToText()); });
    }
    return result;
}

services::Statement FillStatement(std::string_view text, std::span<const Variant> values) {
    std::vector<std::string> texts(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        Attempt([&] { texts[i] = values[i].ToText(); });
    }
    return {FillTemplate(text, values), std::string(text), std::move(texts)};
}

} // namespace qndr
