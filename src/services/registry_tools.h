#pragma once

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

} // namespace qndr::services
