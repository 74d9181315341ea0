#pragma once

#include "shared/agent_context.h"

#include <cstdint>

namespace qndr {

/// Pauses while messages, and with them ticks and clicks, keep being delivered. For 1 to 214 seconds; the timer's
/// two-part arithmetic makes longer pauses last longer than asked for. Returns at once when no timer can be had.
void Wait(AgentContext& context, std::int32_t seconds);

} // namespace qndr
