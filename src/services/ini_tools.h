#pragma once

#include "services/call_gate.h"

#include <string>

namespace qndr::services {

/// Reads and writes INI files. Sections and keys have no letter case. Values are trimmed.
class IniTools {
  public:
    virtual ~IniTools() = default;

    /// The default when the file, the section or the key is missing or the file is no INI file.
    virtual std::string GetValue(const std::string& section, const std::string& key, const std::string& fallback,
                                 const std::string& file) = 0;

    /// Adds or replaces one value, keeping the order of the keys; makes the file when it is missing. Raises when
    /// the file cannot be written.
    virtual void SetValue(const std::string& section, const std::string& key, const std::string& value,
                          const std::string& file) = 0;
};

/// Forwards every call of a IniTools that `gate` admits. A null gate admits all.
class IniToolsWrapper : public IniTools, private Gated {
  public:
    IniToolsWrapper(IniTools& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::string GetValue(const std::string& section, const std::string& key, const std::string& fallback,
                         const std::string& file) override {
        if (!Admits("IniTools.GetValue")) {
            return fallback;
        }
        return target_->GetValue(section, key, fallback, file);
    }
    void SetValue(const std::string& section, const std::string& key, const std::string& value,
                  const std::string& file) override {
        Demand("IniTools.SetValue");
        target_->SetValue(section, key, value, file);
    }

  protected:
    IniTools& Target() const { return *target_; }

  private:
    IniTools* target_;
};

} // namespace qndr::services
