#pragma once

#include "services/array_tools.h"
#include "services/gated/forwarding.h"

namespace qndr::services {

class StringArrayToolsWrapper : public Forwarding<StringArrayTools> {
  public:
    using Forwarding::Forwarding;

    std::int32_t FindString(const std::string& value, const std::vector<std::string>& array, bool matchCase,
                            bool partial) override {
        return Ask(calls::StringArrayTools::FindString, -1,
                   [&](StringArrayTools& tools) { return tools.FindString(value, array, matchCase, partial); });
    }
    void AddString(const std::string& value, std::vector<std::string>& array, bool unique) override {
        Ask(calls::StringArrayTools::AddString, Raises,
            [&](StringArrayTools& tools) { return tools.AddString(value, array, unique); });
    }
};

class ArrayToolsWrapper : public Forwarding<ArrayTools> {
  public:
    using Forwarding::Forwarding;

    std::int32_t FindLong(std::int32_t value, const std::vector<std::int32_t>& array) override {
        return Ask(calls::ArrayTools::FindLong, -1,
                   [&](ArrayTools& tools) { return tools.FindLong(value, array); });
    }
    void AddLong(std::int32_t value, std::vector<std::int32_t>& array, bool unique) override {
        Ask(calls::ArrayTools::AddLong, Raises,
            [&](ArrayTools& tools) { return tools.AddLong(value, array, unique); });
    }
};

} // namespace qndr::services
