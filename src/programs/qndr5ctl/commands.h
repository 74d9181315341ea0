#pragma once

#include "programs/qndr5ctl/command_line.h"
#include "programs/qndr5ctl/control_context.h"

#include <memory>
#include <string>

namespace qndr::control {

// Each adds one group of commands. A command runs in its callback, writes to `context.out` and raises
// services::Failure when it cannot do what it is for.

void AddCompanyCommands(const CommandLine& program, const ControlContext& context);
void AddCompareCommand(const CommandLine& companyGroup, const ControlContext& context);
void AddWorkstationCommands(const CommandLine& program, const ControlContext& context);
void AddStatusCommands(const CommandLine& program, const ControlContext& context);
void AddSyncCommands(const CommandLine& program, const ControlContext& context);
void AddOptionCommands(const CommandLine& program, const ControlContext& context);
void AddSettingsCommands(const CommandLine& program, const ControlContext& context);
void AddComputerCommands(const CommandLine& program, const ControlContext& context);
void AddFileCommands(const CommandLine& program, const ControlContext& context);
void AddFolderCommand(const CommandLine& program, const ControlContext& context);
void AddDoctorCommand(const CommandLine& program, const ControlContext& context);
void AddOrderCommands(const CommandLine& program, const ControlContext& context);
void AddLogCommands(const CommandLine& program, const ControlContext& context);
void AddRowCommands(const CommandLine& program, const ControlContext& context);
void AddTableCommand(const CommandLine& program, const ControlContext& context);
void AddConflictCommands(const CommandLine& program, const ControlContext& context);
void AddProblemCommands(const CommandLine& program, const ControlContext& context);

/// A command and the place that its arguments are read into, which lives as long as the command.
template <typename Arguments> struct Command {
    CommandLine app;
    Arguments& arguments;
};

template <typename Arguments>
Command<Arguments> AddCommand(const CommandLine& group, const ControlContext& context, const std::string& name,
                              const std::string& description,
                              void (*run)(const ControlContext&, const Arguments&)) {
    auto arguments = std::make_shared<Arguments>();
    const CommandLine app =
        group.AddCommand(name, description, [&context, arguments, run] { run(context, *arguments); });
    return {app, *arguments};
}

} // namespace qndr::control
