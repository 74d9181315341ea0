#include "composition/computer_services.h"
#include "programs/qndr5rwsyncd/headless_agent.h"
#include "suite/computer/system_clock.h"
#include "suite/computer/ticks.h"

#include <iostream>
#include <unistd.h>

namespace {

void RunAgent(const qndr::AgentProgram& program, const qndr::Options& options) {
    const qndr::suite::Computer computer = qndr::suite::Computer::FromEnvironment();
    qndr::suite::SystemTicks ticks;
    qndr::suite::SystemClock clock;
    qndr::suite::HeadlessLoop loop(ticks);
    qndr::ComputerServices outside(computer, {clock, loop, loop}, qndr::AgentName,
                                   qndr::SwitchNames(program.switches));
    qndr::AgentContext context(outside.Services());

    if (!qndr::HasToLoad(context, options)) {
        return;
    }
    qndr::HeadlessAgent agent(context, loop, isatty(STDOUT_FILENO) != 0 ? &std::cout : nullptr);
    outside.TellWaitsTo([&](const std::string& text) { agent.ShowWait(text); });
    if (options.passes) {
        agent.RunPasses(*options.passes);
    } else {
        agent.Run();
    }
}

} // namespace

int main(int argc, char** argv) {
    const qndr::AgentProgram program = qndr::HeadlessProgram();
    return qndr::RunAgentProgram(program, argc, argv,
                                 [&](const qndr::Options& options) { RunAgent(program, options); });
}
