#include "programs/qndr5ctl/control_program.h"

#include "programs/qndr5ctl/commands.h"
#include "services/failure.h"

#include <algorithm>

namespace qndr::control {

namespace {

constexpr int Failed = 1;
constexpr int Usage = 2;

void WriteErrorLine(std::ostream& errors, std::string message) {
    std::replace_if(
        message.begin(), message.end(), [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, ' ');
    errors << "qndr5ctl: " << message << '\n';
}

void AddCommands(const CommandLine& program, const ControlContext& context) {
    AddCompanyCommands(program, context);
    AddWorkstationCommands(program, context);
    AddStatusCommands(program, context);
    AddSyncCommands(program, context);
    AddOptionCommands(program, context);
    AddSettingsCommands(program, context);
    AddComputerCommands(program, context);
    AddFileCommands(program, context);
    AddFolderCommand(program, context);
    AddDoctorCommand(program, context);
    AddOrderCommands(program, context);
    AddLogCommands(program, context);
    AddRowCommands(program, context);
    AddTableCommand(program, context);
    AddConflictCommands(program, context);
    AddProblemCommands(program, context);
}

} // namespace

int RunControlProgram(const std::vector<std::string>& arguments, const ControlContext& context,
                      std::ostream& errors) {
    ProgramArguments program("qndr5ctl", "Sets up companies and workstations and looks inside the exchange",
                             context.services.program.Version());
    AddCommands(program.Commands(), context);
    try {
        program.Run(arguments, context.out);
        if (!context.out.flush()) {
            throw services::Failure("the output cannot be written");
        }
        return 0;
    } catch (const UsageError& error) {
        WriteErrorLine(errors, error.message + " (--help shows how it is used)");
        return Usage;
    } catch (const std::exception& failure) {
        context.out.flush();
        WriteErrorLine(errors, failure.what());
        return Failed;
    }
}

} // namespace qndr::control
