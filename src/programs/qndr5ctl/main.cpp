#include "composition/computer_services.h"
#include "programs/qndr5ctl/control_program.h"
#include "suite/computer/system_clock.h"
#include "suite/computer/virtual_time.h"

#include <exception>
#include <iostream>

int main(int count, char** words) {
    try {
        const auto computer = qndr::suite::Computer::FromEnvironment();
        qndr::suite::SystemClock clock;
        // No command waits or lets messages through, and the agent's own loop would keep Ctrl-C for itself.
        qndr::suite::VirtualTime loop(clock.Now());
        const qndr::ComputerServices services(computer, {clock, loop, loop}, "qndr5ctl", {});
        return qndr::control::RunControlProgram({words + 1, words + count},
                                                {computer, services.Services(), std::cout}, std::cerr);
    } catch (const std::exception& failure) {
        std::cerr << "qndr5ctl: " << failure.what() << '\n';
        return 1;
    }
}
