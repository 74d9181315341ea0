#pragma once

#include "services/call_gate.h"

#include <cstdint>
#include <string>

namespace qndr::services {

/// Facts of the computer.
class SystemTools {
  public:
    virtual ~SystemTools() = default;

    /// A new random GUID, upper case, without braces.
    virtual std::string GetIdentifierText() = 0;
    virtual std::string GetComputerName() = 0;
};

/// Forwards every call of a SystemTools that `gate` admits. A null gate admits all.
class SystemToolsWrapper : public SystemTools, private Gated {
  public:
    SystemToolsWrapper(SystemTools& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::string GetIdentifierText() override {
        Demand("SystemTools.GetIdentifierText");
        return target_->GetIdentifierText();
    }
    std::string GetComputerName() override {
        Demand("SystemTools.GetComputerName");
        return target_->GetComputerName();
    }

  protected:
    SystemTools& Target() const { return *target_; }

  private:
    SystemTools* target_;
};

/// Paths of the shell's special folders.
class SpecialFolderTools {
  public:
    virtual ~SpecialFolderTools() = default;

    /// 35 is the common application data folder; the folder is made when it is missing. Empty for any other number
    /// and on failure.
    virtual std::string GetFolderPath(std::int32_t folderNumber) = 0;
};

/// Forwards every call of a SpecialFolderTools that `gate` admits. A null gate admits all.
class SpecialFolderToolsWrapper : public SpecialFolderTools, private Gated {
  public:
    SpecialFolderToolsWrapper(SpecialFolderTools& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::string GetFolderPath(std::int32_t folderNumber) override {
        if (!Admits("SpecialFolderTools.GetFolderPath")) {
            return "";
        }
        return target_->GetFolderPath(folderNumber);
    }

  protected:
    SpecialFolderTools& Target() const { return *target_; }

  private:
    SpecialFolderTools* target_;
};

} // namespace qndr::services
