#pragma once

#include <string>
#include <utility>
#include <vector>

namespace qndr::services {

/// One SQL statement on its way to a database, and what of it was filled in. Nothing is escaped on that way: a
/// value may come from a file that somebody else wrote, and only a database that is told what the values are can
/// see to it that none of them becomes a part of the statement. So a text that was put together does not become a
/// statement by itself: FormatStatement (shared/formatting.h) makes one and tells its values.
class Statement {
  public:
    /// A statement that stands in the code as it is.
    Statement(const char* text) : text_(text), pattern_(text) {}
    /// A text that holds nothing from elsewhere.
    explicit Statement(std::string text) : text_(std::move(text)), pattern_(text_) {}
    /// `text` is the pattern with its placeholders, "{0}" and up, replaced by the values; a value without a
    /// placeholder of its own may have got in through that of another one.
    Statement(std::string text, std::string pattern, std::vector<std::string> values)
        : text_(std::move(text)), pattern_(std::move(pattern)), values_(std::move(values)) {}

    /// As it is run and logged.
    const std::string& Text() const { return text_; }
    const std::string& Pattern() const { return pattern_; }
    /// At its index the text of each value, an empty one for a value that has none.
    const std::vector<std::string>& Values() const { return values_; }

  private:
    std::string text_;
    std::string pattern_;
    std::vector<std::string> values_;
};

} // namespace qndr::services
