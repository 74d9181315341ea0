#pragma once

#include "programs/agent_program/options.h"
#include "shared/agent_context.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qndr {

/// The name of the agent in all its forms: it decides about the log file and about who is another copy.
inline constexpr const char* AgentName = "qndr5rwsync";

/// One form of the agent.
struct AgentProgram {
    const char* name;             ///< that of its file, in front of its messages
    std::vector<Switch> switches; ///< beside those of every agent
    const char* usage;            ///< what it does, in front of the options in --help
    const char* ownOptions;       ///< its own lines of --help
};

/// The whole of a main function: reads the options, answers --help and --version itself, and calls `run` for all
/// else. Gives the exit status: that of `run`, 1 when something could not be done, 2 for a command line that means
/// nothing, with one line on standard error for either.
int RunAgentProgram(const AgentProgram& program, int count, char** arguments,
                    const std::function<int(const Options&)>& run);

/// Nothing when the program now has to load its window, or what stands in its place; otherwise its exit status. A
/// copy that gives way to another one says so to whoever asked for a pass or sits at a terminal. Raises
/// services::Failure where settings cannot be stored: such an agent could neither keep its schedule nor be asked
/// to stop.
std::optional<int> EndsAtStart(const AgentProgram& program, AgentContext& context, const Options& options);

/// What a request from the system to end leads to: the same as that of another program. Where that cannot be
/// stored no tick would ever find it, and `unload` is called.
void EndWhenIdle(const AgentProgram& program, AgentContext& context, const std::function<void()>& unload);

} // namespace qndr
