#pragma once

#include "services/record_document.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qndr {

// Reading one column of a query result's row. A row that is nothing, a missing column and an empty one all give
// the default; none of these routines raises.

/// The text with its line breaks decoded, not trimmed.
std::string GetNodeText(const std::string& name, const services::Node* node, const std::string& fallback);
/// The same as GetNodeText.
std::string GetNodeString(const std::string& name, const services::Node* node, const std::string& fallback);

/// Text that is no number gives the default. A number that does not fit gives 0, not the default; a fraction is
/// rounded, halves to the even number.
std::int32_t GetNodeLong(const std::string& name, const services::Node* node, std::int32_t fallback);
/// As GetNodeLong, for 16 bits.
std::int16_t GetNodeInteger(const std::string& name, const services::Node* node, std::int16_t fallback);

/// Turns the texts "&#13;" and "&#10;" back into carriage returns and line feeds.
std::string DecodeLineBreaks(std::string_view text);

/// An identity in its comparable form: without braces and the blanks around it, in upper case.
std::string NormalizeUniqueID(std::string_view text);

/// Whether two identities are the same, letter case aside. Neither is normalized here.
bool EqualIdentities(std::string_view left, std::string_view right);

} // namespace qndr
