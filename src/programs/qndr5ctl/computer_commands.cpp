#include "observation/computer_places.h"
#include "observation/folder_probe.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/did_you_mean.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"
#include "shared/settings.h"
#include "suite/admin/provisioning.h"
#include "suite/files/sync_folder_mark.h"
#include "text/letter_case.h"
#include "text/utf8_path.h"

#include <array>

namespace qndr::control {

namespace {

using services::CurrentUserHive;

struct LocationSetArguments {
    std::string name;
    std::string folder;
    std::string profile = suite::DefaultProfile;
};

struct LocationListArguments {
    std::string profile = suite::DefaultProfile;
    bool json = false;
};

struct RoleArguments {
    std::string role;
    std::string profile = suite::DefaultProfile;
};

/// The locations that the suite looks up.
constexpr std::array<std::string_view, 2> LocationNames{"Companies", "Sync"};

/// Agents run in other folders than the shell does, so only an absolute path means the same to all of them.
std::string AbsoluteFolder(const std::string& folder) {
    std::error_code error;
    const auto path = std::filesystem::absolute(text::ToPath(folder), error);
    if (error || folder.empty()) {
        throw services::Failure("'" + folder + "' is no folder");
    }
    return text::FromPath(path.lexically_normal());
}

std::string KnownLocation(const std::string& name) {
    for (const std::string_view known : LocationNames) {
        if (text::EqualsWithoutCase(known, name)) {
            return std::string(known);
        }
    }
    throw services::Failure("there is no location '" + name + "'" +
                            DidYouMean(name, {LocationNames.begin(), LocationNames.end()}));
}

/// Makes the folder this computer's Sync folder, with a mark by which the agent knows it again.
void SetSyncFolder(const ControlContext& context, const std::string& profile, const std::string& folder) {
    std::string identity;
    std::string trouble;
    try {
        identity = suite::MakeSyncFolderMark(folder);
        trouble = observation::WhatFails(observation::ProbeFolder(context.services, folder));
    } catch (const services::Failure& failure) {
        trouble = failure.what();
    }
    observation::WriteSyncLocation(context.services, profile, folder, identity);
    if (!trouble.empty()) {
        context.out << "Warning: " << trouble << "; 'qndr5ctl doctor' tells what to do.\n";
    }
}

void SetLocation(const ControlContext& context, const LocationSetArguments& arguments) {
    const std::string name = KnownLocation(arguments.name);
    const std::string folder = AbsoluteFolder(arguments.folder);
    const bool isNew = !context.services.pathTools.FolderExists(folder);
    if (isNew && !context.services.pathTools.CreateNestedFolder(folder)) {
        throw services::Failure("there is no folder '" + folder + "', and it cannot be made");
    }
    if (name == "Sync") {
        SetSyncFolder(context, arguments.profile, folder);
    } else {
        context.services.registryTools.SetString(CurrentUserHive, observation::ProfileKey(arguments.profile),
                                                 "UFL:" + name, folder);
    }
    context.out << name << " is at " << folder << (isNew ? ", a new folder" : "") << ".\n";
}

void ListLocations(const ControlContext& context, const LocationListArguments& arguments) {
    Listing listing({{"Location", "name"}, {"Folder", "folder"}, {"Profile", "profile"}});
    for (const std::string_view name : LocationNames) {
        std::string profile = arguments.profile;
        const auto folderOf = [&] {
            return context.services.registryTools.GetString(CurrentUserHive, observation::ProfileKey(profile),
                                                            "UFL:" + std::string(name), "");
        };
        std::string folder = folderOf();
        if (folder.empty()) {
            profile = suite::DefaultProfile;
            folder = folderOf();
        }
        listing.Add({name, folder.empty() ? Json() : Json(folder), folder.empty() ? Json() : Json(profile)});
    }
    if (arguments.json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, "");
    }
}

void Role(const ControlContext& context, const RoleArguments& arguments) {
    auto& registry = context.services.registryTools;
    const std::string key = observation::ProfileKey(arguments.profile);
    if (!arguments.role.empty()) {
        registry.SetLong(CurrentUserHive, key, observation::RoleName, arguments.role == "roaming" ? 1 : 0);
        context.out << "This computer is "
                    << (arguments.role == "main" ? "a main computer" : "a Roaming Workstation") << " now.\n";
        return;
    }
    constexpr std::int32_t Unset = -1;
    const std::int32_t fallback = registry.GetLong(CurrentUserHive, observation::ProfileKey(suite::DefaultProfile),
                                                   observation::RoleName, Unset);
    const std::int32_t role = registry.GetLong(CurrentUserHive, key, observation::RoleName, fallback);
    context.out << (role == Unset ? "main (not set)" : role != 0 ? "roaming" : "main") << '\n';
}

void AddProfileOption(const CommandLine& command, std::string& profile) {
    command.Add("--profile", profile, "The profile; every other one falls back on Default").ShowDefault();
}

} // namespace

void AddComputerCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group = program.AddGroup("location", "The folders that this computer works with");

    const auto set = AddCommand<LocationSetArguments>(group, context, "set", "Name a folder", SetLocation);
    set.app.Add("NAME", set.arguments.name, "Sync or Companies").Required();
    set.app.Add("FOLDER", set.arguments.folder, "The folder, which is made when it is missing").Required();
    AddProfileOption(set.app, set.arguments.profile);

    const auto list =
        AddCommand<LocationListArguments>(group, context, "list", "The folders in force", ListLocations);
    AddProfileOption(list.app, list.arguments.profile);
    list.app.AddJsonFlag(list.arguments.json);

    const auto role =
        AddCommand<RoleArguments>(program, context, "role", "What this computer is to the agent", Role);
    role.app.Add("ROLE", role.arguments.role, "main or roaming; shows the role when it is not given")
        .OneOf({"main", "roaming"});
    AddProfileOption(role.app, role.arguments.profile);
}

} // namespace qndr::control
