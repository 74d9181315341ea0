#pragma once

#include "standing/message.h"

#include <string>

namespace qndr::standing {

enum class Remedy {
    None,
    Reset,       ///< the workstation asks for a reset
    InitialSync, ///< the workstation asks for its first data anew
};

/// What two messages show for certain of a pairing that cannot go on by itself.
struct StepTrouble {
    std::string kind; ///< as qndr5ctl doctor names it; empty when there is none
    std::string what; ///< in words, behind the pairing's name
    Remedy remedy = Remedy::None;
    bool isCertain = true; ///< false: a file may only be very late
};

/// `own` is what the workstation would tell now, `main` what its main company told last. What only lasts (a file
/// on its way, a reset under way, a message that is not the newest) shows for a while too: only what stands in
/// several messages of main's is certain.
StepTrouble FindStepTrouble(const Message& own, const Message& main);

/// Files of the first exchange stand in a message's lists of numbers as this and the descriptor's SyncState.
inline constexpr std::int64_t FirstExchangeFile = -100;
/// The number of a file that asks for a reset.
inline constexpr std::int64_t ResetRequestFile = -1;

} // namespace qndr::standing
