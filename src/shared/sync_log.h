#pragma once

#include "services/agent_services.h"
#include "shared/settings.h"

#include <cstdint>
#include <string>

namespace qndr {

// The log is the agent's one channel for what it wants to report: a text file per month and program, off by
// default. None of these routines raises; what cannot be logged is lost, for there is no other channel. An
// AgentContext can be passed wherever the services are asked for.

/// Switches the log off once it has been on for seven days. Called at the start of each pass, and nowhere else, so
/// that a running log is never cut off in the middle of a pass.
void ReadDebugSetting(const services::AgentServices& services, const std::string& key = settings::RootKey);

/// Writes the message when logging is on, that is, when the setting below `key` is exactly 1. The setting is read
/// for every message, so that the switch works at once.
void WriteLog(const services::AgentServices& services, const std::string& key, const std::string& message);

/// The same with the agent's root key.
void WriteLog(const services::AgentServices& services, const std::string& message);

/// Writes at once, whether logging is on or not. A number other than 0 or a description gives a second line.
void WriteLogEntry(const services::AgentServices& services, const std::string& message, std::int32_t errorNumber,
                   const std::string& errorDescription);

/// Folder of the log files, ending in a separator. Made on demand; empty when it cannot be reached.
std::string GetLogsFolder(const services::AgentServices& services);

/// Full path of this month's log file, whose folder is made on demand; empty when the folder cannot be reached.
std::string GetLogFilePath(const services::AgentServices& services);

} // namespace qndr
