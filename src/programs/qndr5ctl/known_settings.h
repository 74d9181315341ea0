#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qndr::control {

enum class SettingKind { Number, Date, Text };

/// A value in the settings store that the agent reads.
struct KnownSetting {
    std::string_view name;
    SettingKind kind;
    std::string_view key;
    std::string_view fallback; ///< what a missing value reads as
    std::string_view meaning;
    std::int32_t lowest = 0; ///< of a number
    std::int32_t highest = 1;
};

std::span<const KnownSetting> KnownSettings();
/// Finds a setting without regard to letter case; under any key when `key` is empty. Null when there is none.
const KnownSetting* FindKnownSetting(std::string_view name, std::string_view key);

} // namespace qndr::control
