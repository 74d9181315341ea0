#include "programs/qndr5ctl/did_you_mean.h"

#include "text/letter_case.h"

#include <algorithm>
#include <numeric>

namespace qndr::control {

namespace {

/// Characters to be put in, taken out or exchanged to make one of the other.
std::size_t Distance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < right.size(); ++j) {
            const bool same = text::ToLowerCase(left[i]) == text::ToLowerCase(right[j]);
            const std::size_t exchanged = diagonal + (same ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& known) {
    const auto nearest = std::min_element(known.begin(), known.end(), [&](auto left, auto right) {
        return Distance(word, left) < Distance(word, right);
    });
    if (nearest != known.end() && Distance(word, *nearest) <= std::max<std::size_t>(2, nearest->size() / 3)) {
        return "; did you mean '" + std::string(*nearest) + "'?";
    }
    std::string all;
    for (const std::string_view name : known) {
        all += (all.empty() ? "" : ", ") + std::string(name);
    }
    return all.empty() ? "" : "; there are: " + all;
}

} // namespace qndr::control
