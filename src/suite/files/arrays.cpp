#include "suite/files/arrays.h"

#include "text/letter_case.h"

#include <algorithm>

namespace qndr::suite {
namespace {

constexpr std::int32_t kAbsent = -1;

template <typename Array, typename Test> std::int32_t IndexWhere(const Array& array, Test test) {
    const auto found = std::find_if(array.begin(), array.end(), test);
    return found == array.end() ? kAbsent : static_cast<std::int32_t>(found - array.begin());
}

} // namespace

std::int32_t PlainStringArrayTools::FindString(const std::string& value, const std::vector<std::string>& array,
                                               bool matchCase, bool partial) {
    const std::string wanted = matchCase ? value : text::ToLowerCase(value);
    return IndexWhere(array, [&](const std::string& element) {
        const std::string text = matchCase ? element : text::ToLowerCase(element);
        return partial ? text.find(wanted) != std::string::npos : text == wanted;
    });
}

void PlainStringArrayTools::AddString(const std::string& value, std::vector<std::string>& array, bool unique) {
    if (unique && FindString(value, array, true, false) != kAbsent) {
        return;
    }
    if (!array.empty() && array.back().empty()) {
        array.back() = value;
    } else {
        array.push_back(value);
    }
}

std::int32_t PlainArrayTools::FindLong(std::int32_t value, const std::vector<std::int32_t>& array) {
    return IndexWhere(array, [value](std::int32_t element) { return element == value; });
}

void PlainArrayTools::AddLong(std::int32_t value, std::vector<std::int32_t>& array, bool unique) {
    if (!unique || FindLong(value, array) == kAbsent) {
        array.push_back(value);
    }
}

} // namespace qndr::suite
