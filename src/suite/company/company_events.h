#pragma once

#include <cstdint>

namespace qndr::suite {

/// CompanyEvents.EventNumber, where an event has one: what a program may look for. Stored: never change.
namespace event {
inline constexpr std::int32_t SyncReset = 2;   ///< a reset was received, or is complete
inline constexpr std::int32_t FileRefused = 3; ///< a file counts as taken, and its data are not in
inline constexpr std::int32_t OwnTrouble = 4;  ///< this computer could not do its work; the file waits
} // namespace event

} // namespace qndr::suite
