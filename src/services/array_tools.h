#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qndr::services {

/// Searches and grows arrays of texts. An array whose last element is empty takes the next text there.
class StringArrayTools {
  public:
    virtual ~StringArrayTools() = default;

    /// The index, negative when absent. Without `matchCase` ASCII letters compare without case; with `partial` an
    /// element that contains the value is a match.
    virtual std::int32_t FindString(const std::string& value, const std::vector<std::string>& array,
                                    bool matchCase, bool partial) = 0;

    /// With `unique` a text that is there already is not added again.
    virtual void AddString(const std::string& value, std::vector<std::string>& array, bool unique) = 0;
};

/// Searches and grows arrays of numbers.
class ArrayTools {
  public:
    virtual ~ArrayTools() = default;

    /// The index, negative when absent.
    virtual std::int32_t FindLong(std::int32_t value, const std::vector<std::int32_t>& array) = 0;

    /// With `unique` a number that is there already is not added again.
    virtual void AddLong(std::int32_t value, std::vector<std::int32_t>& array, bool unique) = 0;
};

} // namespace qndr::services
