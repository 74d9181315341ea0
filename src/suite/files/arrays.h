#pragma once

#include "services/array_tools.h"

namespace qndr::suite {

class PlainStringArrayTools : public services::StringArrayTools {
  public:
    std::int32_t FindString(const std::string& value, const std::vector<std::string>& array, bool matchCase,
                            bool partial) override;
    void AddString(const std::string& value, std::vector<std::string>& array, bool unique) override;
};

class PlainArrayTools : public services::ArrayTools {
  public:
    std::int32_t FindLong(std::int32_t value, const std::vector<std::int32_t>& array) override;
    void AddLong(std::int32_t value, std::vector<std::int32_t>& array, bool unique) override;
};

} // namespace qndr::suite
