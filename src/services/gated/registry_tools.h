#pragma once

#include "services/gated/forwarding.h"
#include "services/registry_tools.h"

namespace qndr::services {

class RegistryToolsWrapper : public Forwarding<RegistryTools> {
  public:
    using Forwarding::Forwarding;

    std::string GetString(std::int32_t hive, const std::string& key, const std::string& name,
                          const std::string& fallback) override {
        return Ask(calls::RegistryTools::GetString, fallback,
                   [&](RegistryTools& tools) { return tools.GetString(hive, key, name, fallback); });
    }
    std::int32_t GetLong(std::int32_t hive, const std::string& key, const std::string& name,
                         std::int32_t fallback) override {
        return Ask(calls::RegistryTools::GetLong, Raises,
                   [&](RegistryTools& tools) { return tools.GetLong(hive, key, name, fallback); });
    }
    void SetString(std::int32_t hive, const std::string& key, const std::string& name,
                   const std::string& value) override {
        Ask(calls::RegistryTools::SetString, Raises,
            [&](RegistryTools& tools) { return tools.SetString(hive, key, name, value); });
    }
    void SetLong(std::int32_t hive, const std::string& key, const std::string& name, std::int32_t value) override {
        Ask(calls::RegistryTools::SetLong, Raises,
            [&](RegistryTools& tools) { return tools.SetLong(hive, key, name, value); });
    }
};

} // namespace qndr::services
