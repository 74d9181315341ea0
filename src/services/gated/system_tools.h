#pragma once

#include "services/gated/forwarding.h"
#include "services/system_tools.h"

namespace qndr::services {

class SystemToolsWrapper : public Forwarding<SystemTools> {
  public:
    using Forwarding::Forwarding;

    std::string GetIdentifierText() override {
        return Ask(calls::SystemTools::GetIdentifierText, Raises,
                   [](SystemTools& tools) { return tools.GetIdentifierText(); });
    }
    std::string GetComputerName() override {
        return Ask(calls::SystemTools::GetComputerName, Raises,
                   [](SystemTools& tools) { return tools.GetComputerName(); });
    }
};

class SpecialFolderToolsWrapper : public Forwarding<SpecialFolderTools> {
  public:
    using Forwarding::Forwarding;

    std::string GetFolderPath(std::int32_t folderNumber) override {
        return Ask(calls::SpecialFolderTools::GetFolderPath, "",
                   [&](SpecialFolderTools& tools) { return tools.GetFolderPath(folderNumber); });
    }
};

} // namespace qndr::services
