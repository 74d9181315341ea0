#pragma once

#include "standing/message.h"

#include <cstdint>
#include <string>

namespace qndr::standing {

/// What one end of a pairing knows of both. Dates are UTC, "yyyymmdd hh:nn:ss".
struct Outlook {
    bool isMain = false;              ///< whose outlook it is
    Message own;                      ///< what this end would tell now
    const Message* partner = nullptr; ///< what the other one told last; null when it never told anything
    std::int64_t silentMinutes = 0;   ///< since it did
    std::string provenOn;
    /// Of a workstation: StepTrouble::what as it stood at its last exchange. What is seen for the first time may
    /// only be a message that is not the newest.
    std::string lasting;
    bool isTwice = false; ///< the partner's messages come from two computers in turn
    std::string mendsOn;  ///< when a pairing that is out of step will be mended; empty when it will not be
};

enum class Health {
    Same,      ///< proven, and nothing is waiting
    Behind,    ///< something is waiting or under way, as it should be
    Unknown,   ///< the partner does not speak, or nothing was proven yet
    OutOfStep, ///< it cannot go on without being mended, or somebody has to look
};

struct Verdict {
    Health health = Health::Unknown;
    std::string kind; ///< of the trouble, as doctor names it; empty for none
    std::string text; ///< goes on behind the pairing's name, without a full stop
};

/// Never says that two companies are the same unless that was proven and nothing has been changed since that the
/// other has not got.
Verdict Judge(const Outlook& outlook);

/// "2026-11-23 10:05 UTC" of a date as it is stored; anything else as it stands.
std::string InWords(const std::string& date);

} // namespace qndr::standing
