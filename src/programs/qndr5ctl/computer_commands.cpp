#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"
#include "shared/settings.h"
#include "suite/company/provisioning.h"
#include "suite/company/utf8_path.h"

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
constexpr std::array LocationNames{"Companies", "Sync"};

std::string ProfileKey(const std::string& profile) {
    return std::string(settings::RootKey) + "\\Settings (" + profile + ")";
}

/// Agents run in other folders than the shell does, so only an absolute path means the same to all of them.
std::string AbsoluteFolder(const std::string& folder) {
    std::error_code error;
    const auto path = std::filesystem::absolute(suite::ToPath(folder), error);
    if (error || folder.empty()) {
        throw services::Failure("'" + folder + "' is no folder");
    }
    return suite::FromPath(path.lexically_normal());
}

void SetLocation(const ControlContext& context, const LocationSetArguments& arguments) {
    const std::string folder = AbsoluteFolder(arguments.folder);
    context.services.registryTools.SetString(CurrentUserHive, ProfileKey(arguments.profile),
                                             "UFL:" + arguments.name, folder);
    context.out << arguments.name << " is at " << folder << '\n';
    if (!context.services.pathTools.FolderExists(folder)) {
        context.out << "That folder does not exist at the moment.\n";
    }
}

void ListLocations(const ControlContext& context, const LocationListArguments& arguments) {
    Listing listing({{"Location", "name"}, {"Folder", "folder"}, {"Profile", "profile"}});
    for (const char* name : LocationNames) {
        std::string profile = arguments.profile;
        const auto folderOf = [&] {
            return context.services.registryTools.GetString(CurrentUserHive, ProfileKey(profile),
                                                            std::string("UFL:") + name, "");
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

void SetRole(const ControlContext& context, const RoleArguments& arguments) {
    context.services.registryTools.SetLong(CurrentUserHive, ProfileKey(arguments.profile), "RoamingWorkstation",
                                           arguments.role == "roaming" ? 1 : 0);
}

void AddProfileOption(CLI::App& command, std::string& profile) {
    command.add_option("--profile", profile, "The profile; every other one falls back on Default")
        ->capture_default_str();
}

} // namespace

void AddComputerCommands(CLI::App& program, const ControlContext& context) {
    CLI::App& group = AddGroup(program, "location", "The folders that this computer works with");

    const auto set = AddCommand<LocationSetArguments>(group, context, "set", "Name a folder", SetLocation);
    set.app.add_option("NAME", set.arguments.name, "Sync or Companies")->required();
    set.app.add_option("FOLDER", set.arguments.folder, "The folder")->required();
    AddProfileOption(set.app, set.arguments.profile);

    const auto list =
        AddCommand<LocationListArguments>(group, context, "list", "The folders in force", ListLocations);
    AddProfileOption(list.app, list.arguments.profile);
    AddJsonFlag(list.app, list.arguments.json);

    const auto role =
        AddCommand<RoleArguments>(program, context, "role", "What this computer is to the agent", SetRole);
    role.app.add_option("ROLE", role.arguments.role, "main or roaming")
        ->required()
        ->check(CLI::IsMember({"main", "roaming"}));
    AddProfileOption(role.app, role.arguments.profile);
}

} // namespace qndr::control
