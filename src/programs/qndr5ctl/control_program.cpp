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

void AddCommands(CLI::App& program, const ControlContext& context) {
    program.require_subcommand(1);
    program.allow_windows_style_options(false);
    AddCompanyCommands(program, context);
    AddWorkstationCommands(program, context);
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
    CLI::App program("Sets up companies and workstations and looks inside the exchange", "qndr5ctl");
    program.set_version_flag("--version", "qndr5ctl " + context.services.program.Version());
    AddCommands(program, context);
    try {
        // CLI11 takes the words from the back.
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        if (!context.out.flush()) {
            throw services::Failure("the output cannot be written");
        }
        return 0;
    } catch (const CLI::CallForHelp&) {
        context.out << program.help() << std::flush;
        return 0;
    } catch (const CLI::CallForVersion& version) {
        context.out << version.what() << '\n' << std::flush;
        return 0;
    } catch (const CLI::ParseError& error) {
        // A word that means nothing explains more than what is missing because of it.
        const std::vector<std::string> unknown = program.remaining(true);
        WriteErrorLine(errors, (unknown.empty() ? error.what() : "'" + unknown.front() + "' is not understood") +
                                   " (--help shows how it is used)");
        return Usage;
    } catch (const std::exception& failure) {
        context.out.flush();
        WriteErrorLine(errors, failure.what());
        return Failed;
    }
}

} // namespace qndr::control
