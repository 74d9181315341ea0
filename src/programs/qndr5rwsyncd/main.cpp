#include "agent/start_up.h"
#include "composition/computer_services.h"
#include "programs/qndr5rwsyncd/headless_agent.h"
#include "programs/qndr5rwsyncd/options.h"
#include "services/failure.h"
#include "shared/settings.h"
#include "suite/computer/system_clock.h"
#include "suite/computer/system_facts.h"
#include "suite/computer/ticks.h"

#include <algorithm>
#include <iostream>
#include <unistd.h>

namespace {

constexpr int kEnded = 0;
constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

/// The name of the agent in all its forms: it decides about the log file and about who is another copy.
constexpr const char* kProgramName = "qndr5rwsync";

void RunAgent(const qndr::Options& options) {
    const qndr::suite::Computer computer = qndr::suite::Computer::FromEnvironment();
    qndr::suite::SystemTicks ticks;
    qndr::suite::SystemClock clock;
    qndr::suite::HeadlessLoop loop(ticks);
    const qndr::ComputerServices outside(computer, {clock, loop, loop}, kProgramName, qndr::SwitchNames());
    qndr::AgentContext context(outside.Services());

    if (qndr::StartAgent(context, options.commandLine) != qndr::StartUp::LoadAgent) {
        return;
    }
    // An agent that can keep no setting could neither keep its schedule nor be asked to stop: this write raises
    // then.
    qndr::services::RegistryTools& registry = context.services.registryTools;
    registry.SetLong(qndr::services::CurrentUserHive, qndr::settings::RootKey, qndr::settings::StopSync, 0);
    qndr::HeadlessAgent agent(context, loop, isatty(STDOUT_FILENO) != 0 ? &std::cout : nullptr);
    if (options.passes) {
        agent.RunPasses(*options.passes);
    } else {
        agent.Run();
    }
}

void ShowVersion() {
    const qndr::suite::RunningProgram program(qndr::suite::Computer{}, kProgramName);
    std::cout << kProgramName << "d " << program.Version() << '\n';
}

} // namespace

int main(int argc, char** argv) {
    qndr::Options options;
    try {
        options = qndr::ReadOptions({argv + std::min(argc, 1), argv + argc});
    } catch (const qndr::services::Failure& failure) {
        std::cerr << "qndr5rwsyncd: " << failure.what() << '\n';
        return kBadUsage;
    }
    try {
        if (options.help) {
            std::cout << qndr::HelpText();
        } else if (options.version) {
            ShowVersion();
        } else {
            RunAgent(options);
        }
    } catch (const qndr::services::Failure& failure) {
        std::cerr << "qndr5rwsyncd: " << failure.what() << '\n';
        return kFailed;
    }
    return kEnded;
}
