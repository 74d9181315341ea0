#pragma once

#include "programs/qndr5ctl/control_context.h"

#include <cstdint>
#include <string>

namespace qndr::control {

/// What happened to a file that was made in the Sync folder as the agent makes its files there, and taken out
/// again.
struct Probe {
    bool isWritten = false;
    bool isRenamed = false;
    bool isRemoved = false;
    std::string file;            ///< its name at the end; empty when none could be made
    std::int64_t clockAhead = 0; ///< seconds that this computer's clock is ahead of the folder's
    bool isSticky = false;       ///< files of other users cannot be deleted there

    bool IsWell() const { return isWritten && isRenamed && isRemoved && !isSticky; }
};

/// The name is one that no agent takes for anything, and that tells a person what it is when it stays behind.
Probe ProbeFolder(const ControlContext& context, const std::string& folder);

/// In words what of it did not work; empty when all did.
std::string WhatFails(const Probe& probe);

/// Free bytes for this user where the folder, or the nearest folder above that exists, lies; below 0 when the
/// system does not tell.
std::int64_t FreeSpaceAt(const std::string& folder);

} // namespace qndr::control
