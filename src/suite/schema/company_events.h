#pragma once

#include <cstdint>

namespace qndr::suite {

// CompanyEvents.EventNumber, beside that of a sync reset, which is the agent's. Stored: never change.

inline constexpr std::int32_t FileRefusedEvent = 3;     ///< something is wrong with a file itself
inline constexpr std::int32_t ComputerTroubleEvent = 4; ///< this computer could not store something; it is kept
inline constexpr std::int32_t AnotherAgentEvent = 5;    ///< an agent found another one at work on the company
inline constexpr std::int32_t StandingEvent = 6;        ///< rows were repaired, or a pairing mended

} // namespace qndr::suite
