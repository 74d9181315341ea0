#pragma once

#include "services/gated/forwarding.h"
#include "services/ini_tools.h"

namespace qndr::services {

class IniToolsWrapper : public Forwarding<IniTools> {
  public:
    using Forwarding::Forwarding;

    std::string GetValue(const std::string& section, const std::string& key, const std::string& fallback,
                         const std::string& file) override {
        return Ask(calls::IniTools::GetValue, fallback,
                   [&](IniTools& tools) { return tools.GetValue(section, key, fallback, file); });
    }
    void SetValue(const std::string& section, const std::string& key, const std::string& value,
                  const std::string& file) override {
        Ask(calls::IniTools::SetValue, Raises,
            [&](IniTools& tools) { return tools.SetValue(section, key, value, file); });
    }
};

} // namespace qndr::services
