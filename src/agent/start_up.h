#pragma once

#include "shared/agent_context.h"

#include <cstdint>
#include <string>

namespace qndr {

enum class StartUp {
    AnotherCopyRuns,  ///< nothing was done; the program ends silently
    DeveloperRunDone, ///< the program ends
    LoadAgent,        ///< the program loads its window, or what stands in its place
};

/// Reads the command line (the words behind the program) and fills the profile and the Companies folder. An empty
/// folder is no error here: each pass reports it. /DVLP instead works through the two developer companies.
/// Never raises.
StartUp StartAgent(AgentContext& context, const std::string& commandLine);

/// A cut-down pass over one .psd file, on any computer and whatever the company's options say; mode 1 is main, 2
/// Roaming Workstation. Leaves the context's OperatingMode and SyncFolder alone. Never raises.
void RunDeveloperSync(AgentContext& context, const std::string& path, std::int16_t mode);

} // namespace qndr
