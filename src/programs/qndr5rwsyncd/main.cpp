#include "composition/computer_services.h"
#include "programs/agent_program/pass_report.h"
#include "programs/qndr5rwsyncd/headless_agent.h"
#include "suite/computer/system_clock.h"
#include "suite/computer/ticks.h"

#include <iostream>
#include <unistd.h>

namespace {

int RunAgent(const qndr::AgentProgram& program, const qndr::Options& options) {
    const qndr::suite::Computer computer = qndr::suite::Computer::FromEnvironment();
    qndr::suite::SystemTicks ticks;
    qndr::suite::SystemClock clock;
    qndr::suite::HeadlessLoop loop(ticks);
    qndr::ComputerServices outside(computer, {clock, loop, loop}, qndr::AgentName,
                                   qndr::SwitchNames(program.switches));
    qndr::AgentContext context(outside.Services());

    qndr::PassReport report(program.name, std::cerr);
    context.services.reports = &report;
    if (const auto status = qndr::EndsAtStart(program, context, options)) {
        return *status;
    }
    qndr::HeadlessAgent agent(context, loop, isatty(STDOUT_FILENO) != 0 ? &std::cout : nullptr);
    outside.TellWaitsTo([&](const std::string& text) { agent.ShowWait(text); });
    if (options.passes) {
        agent.RunPasses(*options.passes);
        return report.Status();
    }
    agent.Run();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const qndr::AgentProgram program = qndr::HeadlessProgram();
    return qndr::RunAgentProgram(program, argc, argv,
                                 [&](const qndr::Options& options) { return RunAgent(program, options); });
}
