#pragma once

#include "diagnosis/observations.h"
#include "services/agent_services.h"

#include <cstdint>
#include <string>

namespace qndr::observation {

/// Makes a file in the folder and takes it out again. Its name is one that no agent takes for anything, and that
/// tells a person what it is when it stays behind.
diagnosis::Probe ProbeFolder(const services::AgentServices& services, const std::string& folder);

/// In words what of it did not work; empty when all did.
std::string WhatFails(const diagnosis::Probe& probe);

/// Free bytes for this user where the folder, or the nearest folder above that exists, lies; below 0 when the
/// system does not tell.
std::int64_t FreeSpaceAt(const std::string& folder);

} // namespace qndr::observation
