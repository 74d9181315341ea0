#pragma once

#include "services/command_line_tools.h"
#include "services/gated/forwarding.h"

namespace qndr::services {

class CommandLineToolsWrapper : public Forwarding<CommandLineTools> {
  public:
    using Forwarding::Forwarding;

    void SetCommandLine(const std::string& commandLine) override {
        Ask(calls::CommandLineTools::SetCommandLine, Raises,
            [&](CommandLineTools& tools) { return tools.SetCommandLine(commandLine); });
    }
    bool SwitchExists(const std::string& name) override {
        return Ask(calls::CommandLineTools::SwitchExists, false,
                   [&](CommandLineTools& tools) { return tools.SwitchExists(name); });
    }
    std::string GetSwitchValue(const std::string& name, const std::string& fallback) override {
        return Ask(calls::CommandLineTools::GetSwitchValue, fallback,
                   [&](CommandLineTools& tools) { return tools.GetSwitchValue(name, fallback); });
    }
};

} // namespace qndr::services
