#pragma once

#include "programs/qndr5ctl/control_context.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>

namespace qndr::control {

// Each adds one group of commands. A command runs in its callback, writes to `context.out` and raises
// services::Failure when it cannot do what it is for.

void AddCompanyCommands(CLI::App& program, const ControlContext& context);
void AddCompareCommand(CLI::App& companyGroup, const ControlContext& context);
void AddWorkstationCommands(CLI::App& program, const ControlContext& context);
void AddSyncCommands(CLI::App& program, const ControlContext& context);
void AddOptionCommands(CLI::App& program, const ControlContext& context);
void AddSettingsCommands(CLI::App& program, const ControlContext& context);
void AddComputerCommands(CLI::App& program, const ControlContext& context);
void AddFileCommands(CLI::App& program, const ControlContext& context);
void AddFolderCommand(CLI::App& program, const ControlContext& context);
void AddDoctorCommand(CLI::App& program, const ControlContext& context);
void AddOrderCommands(CLI::App& program, const ControlContext& context);
void AddLogCommands(CLI::App& program, const ControlContext& context);
void AddRowCommands(CLI::App& program, const ControlContext& context);
void AddTableCommand(CLI::App& program, const ControlContext& context);
void AddConflictCommands(CLI::App& program, const ControlContext& context);
void AddProblemCommands(CLI::App& program, const ControlContext& context);

/// A group of commands, of which one must be named.
inline CLI::App& AddGroup(CLI::App& program, const std::string& name, const std::string& description) {
    CLI::App& group = *program.add_subcommand(name, description);
    group.require_subcommand(1);
    return group;
}

/// A command and the place that its arguments are read into, which lives as long as the command.
template <typename Arguments> struct Command {
    CLI::App& app;
    Arguments& arguments;
};

template <typename Arguments>
Command<Arguments> AddCommand(CLI::App& group, const ControlContext& context, const std::string& name,
                              const std::string& description,
                              void (*run)(const ControlContext&, const Arguments&)) {
    CLI::App& app = *group.add_subcommand(name, description);
    auto arguments = std::make_shared<Arguments>();
    app.callback([&context, arguments, run] { run(context, *arguments); });
    return {app, *arguments};
}

inline void AddJsonFlag(CLI::App& command, bool& json) {
    command.add_flag("--json", json, "Write JSON for machines");
}

} // namespace qndr::control
