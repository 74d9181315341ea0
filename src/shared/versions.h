#pragma once

#include "services/agent_services.h"

#include <string>

namespace qndr {

// Versions as a descriptor carries them. None of these routines raises or reports.

/// The version of company databases that this installation works with; "(Unknown)" without an upgrader.
std::string GetLatestVersion(const services::AgentServices& services);

/// The version of the main application installed beside the agent; empty when there is none.
std::string GetApplicationVersion(const services::AgentServices& services);

/// The four numbers of a program file's version, joined by "."; empty for a file without a version resource.
std::string GetFileVersionText(const services::AgentServices& services, const std::string& path);

} // namespace qndr
