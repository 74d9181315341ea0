#pragma once

#include "services/call_gate.h"

#include <string>

namespace qndr::services {

/// Reads the command line. A switch is "/Name", "-Name" or "--name" in any letter case, with its value behind a
/// blank, ":" or "=".
class CommandLineTools {
  public:
    virtual ~CommandLineTools() = default;

    /// The words behind the program, separated by blanks; a word with blanks stands in double quotes.
    virtual void SetCommandLine(const std::string& commandLine) = 0;
    virtual bool SwitchExists(const std::string& name) = 0;

    /// The default when the switch or its value is missing.
    virtual std::string GetSwitchValue(const std::string& name, const std::string& fallback) = 0;
};

/// Forwards every call of a CommandLineTools that `gate` admits. A null gate admits all.
class CommandLineToolsWrapper : public CommandLineTools, private Gated {
  public:
    CommandLineToolsWrapper(CommandLineTools& target, CallGate* gate) : Gated(gate), target_(&target) {}

    void SetCommandLine(const std::string& commandLine) override {
        Demand("CommandLineTools.SetCommandLine");
        target_->SetCommandLine(commandLine);
    }
    bool SwitchExists(const std::string& name) override {
        if (!Admits("CommandLineTools.SwitchExists")) {
            return false;
        }
        return target_->SwitchExists(name);
    }
    std::string GetSwitchValue(const std::string& name, const std::string& fallback) override {
        if (!Admits("CommandLineTools.GetSwitchValue")) {
            return fallback;
        }
        return target_->GetSwitchValue(name, fallback);
    }

  protected:
    CommandLineTools& Target() const { return *target_; }

  private:
    CommandLineTools* target_;
};

} // namespace qndr::services
