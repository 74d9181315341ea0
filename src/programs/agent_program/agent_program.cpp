#include "programs/agent_program/agent_program.h"

#include "agent/start_up.h"
#include "agent/stop_request.h"
#include "programs/agent_program/pass_report.h"
#include "services/failure.h"
#include "shared/settings.h"
#include "suite/computer/system_facts.h"

#include <algorithm>
#include <iostream>
#include <unistd.h>

namespace qndr {
namespace {

constexpr int kEnded = 0;
constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

void ShowHelp(const AgentProgram& program) {
    std::cout
        << "Usage: " << program.name << " [options]\n"
        << program.usage
        << "\n"
           "  --Companies FOLDER  folder of the .psd files; otherwise the suite's own location is taken\n"
           "  --Profile NAME      profile of the settings\n"
           "  --AllowMany         runs beside another copy\n"
           "  --DVLP              one pass over the two companies of the developer settings\n"
        << program.ownOptions
        << "  --help              shows this text\n"
           "  --version           shows the version\n"
           "\n"
           "Options have no letter case and may begin with / or -, with their value behind a blank, : or =.\n"
           "QNDR_HOME=FOLDER makes one folder a whole computer, QNDR_COMPUTER_NAME gives it a name.\n";
}

void ShowVersion(const AgentProgram& program) {
    const suite::RunningProgram running(suite::Computer{}, AgentName);
    std::cout << program.name << ' ' << running.Version() << '\n';
}

int Fail(const AgentProgram& program, const services::Failure& failure, int status) {
    std::cerr << program.name << ": " << failure.what() << '\n';
    return status;
}

} // namespace

int RunAgentProgram(const AgentProgram& program, int count, char** arguments,
                    const std::function<int(const Options&)>& run) {
    Options options;
    try {
        options = ReadOptions(program.switches, {arguments + std::min(count, 1), arguments + count});
    } catch (const services::Failure& failure) {
        return Fail(program, failure, kBadUsage);
    }
    try {
        if (options.help) {
            ShowHelp(program);
        } else if (options.version) {
            ShowVersion(program);
        } else {
            return run(options);
        }
    } catch (const services::Failure& failure) {
        return Fail(program, failure, kFailed);
    }
    return kEnded;
}

std::optional<int> EndsAtStart(const AgentProgram& program, AgentContext& context, const Options& options) {
    const StartUp start = StartAgent(context, options.commandLine);
    if (start == StartUp::AnotherCopyRuns) {
        if (options.passes || isatty(STDERR_FILENO) != 0) {
            std::cerr << program.name << (options.passes ? ": no pass was made" : "")
                      << ": another copy of the agent is running" << std::endl;
        }
        return options.passes ? PassReport::NoPassMade : kEnded;
    }
    if (start != StartUp::LoadAgent) {
        return kEnded;
    }
    context.services.registryTools.SetLong(services::CurrentUserHive, settings::RootKey, settings::StopSync, 0);
    return std::nullopt;
}

void EndWhenIdle(const AgentProgram& program, AgentContext& context, const std::function<void()>& unload) {
    try {
        RequestStopSync(context);
    } catch (const services::Failure& failure) {
        Fail(program, failure, kFailed);
        unload();
    }
}

} // namespace qndr
