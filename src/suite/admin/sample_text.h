#pragma once

#include <span>
#include <string_view>

namespace qndr::suite {

/// The texts from which sample data takes those of a column: of the table's own column when there is a list for
/// it, otherwise of the column of any table. Empty for a column without a list.
std::span<const std::string_view> SampleTexts(std::string_view table, std::string_view column);

/// A text that is made of a running number: prefix, the number with at least `digits` digits, suffix.
struct NumberedText {
    std::string_view column;
    std::string_view prefix;
    int digits;
    std::string_view suffix;
};

/// Null for a column whose texts are not numbered.
const NumberedText* FindNumberedText(std::string_view column);

} // namespace qndr::suite
