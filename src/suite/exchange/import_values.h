#pragma once

#include "suite/exchange/import_batch.h"

#include <charconv>
#include <string_view>

namespace qndr::suite {

/// Whether the whole text is one number, which is stored then.
template <class Number> bool ParseWhole(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

/// Gives a value that is not null the kind that the column's type asks for; what does not fit stays text. `text`
/// is what the value holds, decoded when the file had it `encoded`.
void ConvertValue(ImportValue& value, std::string_view text, ColumnType type, bool encoded);

} // namespace qndr::suite
