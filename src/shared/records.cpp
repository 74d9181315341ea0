#include "shared/records.h"

#include "services/variant.h"
#include "shared/failure_rule.h"
#include "text/editing.h"
#include "text/letter_case.h"

#include <memory>

namespace qndr {
namespace {

/// The text that a numeric column is converted from: the column's own if it is a number, else the default's.
Variant NumericText(const std::string& name, const services::Node* node, std::int32_t fallback) {
    std::string text = GetNodeText(name, node, "");
    if (!ParseNumber(text)) {
        text = std::to_string(fallback);
    }
    return text;
}

} // namespace

std::string GetNodeText(const std::string& name, const services::Node* node, const std::string& fallback) {
    if (node == nullptr) {
        return fallback;
    }
    std::unique_ptr<services::Node> column;
    Attempt([&] { column = node->selectSingleNode(name); });
    if (column == nullptr) {
        return fallback;
    }
    std::string text;
    Attempt([&] { text = column->text(); });
    return text.empty() ? fallback : DecodeLineBreaks(text);
}

std::string GetNodeString(const std::string& name, const services::Node* node, const std::string& fallback) {
    return GetNodeText(name, node, fallback);
}

std::int32_t GetNodeLong(const std::string& name, const services::Node* node, std::int32_t fallback) {
    std::int32_t value = 0;
    Attempt([&] { value = NumericText(name, node, fallback).ToLong(); });
    return value;
}

std::int16_t GetNodeInteger(const std::string& name, const services::Node* node, std::int16_t fallback) {
    std::int16_t value = 0;
    Attempt([&] { value = NumericText(name, node, fallback).ToInteger(); });
    return value;
}

std::string DecodeLineBreaks(std::string_view text) {
    return text::ReplaceAll(text::ReplaceAll(text, "&#13;", "\r"), "&#10;", "\n");
}

std::string NormalizeUniqueID(std::string_view text) {
    return text::ToUpperCase(text::Trimmed(text::ReplaceAll(text::ReplaceAll(text, "{", ""), "}", "")));
}

bool EqualIdentities(std::string_view left, std::string_view right) {
    return text::EqualsWithoutCase(left, right);
}

} // namespace qndr
