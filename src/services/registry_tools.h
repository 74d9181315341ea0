#pragma once

#include "services/call_gate.h"

#include <cstdint>
#include <string>

namespace qndr::services {

/// The number of the current user's hive.
inline constexpr std::int32_t CurrentUserHive = static_cast<std::int32_t>(0x80000001U);

/// The platform's store of settings and signals, shared by all processes of the user. Values are addressed by
/// hive, key and name (names and keys without regard to case), each read is fresh, each write stands by itself.
class RegistryTools {
  public:
    virtual ~RegistryTools() = default;

    /// The default when the value is missing or the store cannot be read.
    virtual std::string GetString(std::int32_t hive, const std::string& key, const std::string& name,
                                  const std::string& fallback) = 0;

    /// The default when the value is missing. Raises when the stored value is no 32-bit number or the store cannot
    /// be read.
    virtual std::int32_t GetLong(std::int32_t hive, const std::string& key, const std::string& name,
                                 std::int32_t fallback) = 0;

    /// Raises when the store cannot be written.
    virtual void SetString(std::int32_t hive, const std::string& key, const std::string& name,
                           const std::string& value) = 0;

    /// Raises when the store cannot be written.
    virtual void SetLong(std::int32_t hive, const std::string& key, const std::string& name,
                         std::int32_t value) = 0;
};

/// Forwards every call of a RegistryTools that `gate` admits. A null gate admits all.
class RegistryToolsWrapper : public RegistryTools, private Gated {
  public:
    RegistryToolsWrapper(RegistryTools& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::string GetString(std::int32_t hive, const std::string& key, const std::string& name,
                          const std::string& fallback) override {
        if (!Admits("RegistryTools.GetString")) {
            return fallback;
        }
        return target_->GetString(hive, key, name, fallback);
    }
    std::int32_t GetLong(std::int32_t hive, const std::string& key, const std::string& name,
                         std::int32_t fallback) override {
        Demand("RegistryTools.GetLong");
        return target_->GetLong(hive, key, name, fallback);
    }
    void SetString(std::int32_t hive, const std::string& key, const std::string& name,
                   const std::string& value) override {
        Demand("RegistryTools.SetString");
        target_->SetString(hive, key, name, value);
    }
    void SetLong(std::int32_t hive, const std::string& key, const std::string& name, std::int32_t value) override {
        Demand("RegistryTools.SetLong");
        target_->SetLong(hive, key, name, value);
    }

  protected:
    RegistryTools& Target() const { return *target_; }

  private:
    RegistryTools* target_;
};

} // namespace qndr::services
