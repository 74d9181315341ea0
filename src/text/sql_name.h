#pragma once

#include <string>
#include <string_view>

namespace qndr::text {

/// The name of a table or column as SQL takes it, whatever it holds; a quote in it is doubled.
inline std::string QuotedName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name) {
        quoted += c;
        if (c == '"') {
            quoted += c;
        }
    }
    return quoted + '"';
}

} // namespace qndr::text
