#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/did_you_mean.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"
#include "suite/company/provisioning.h"
#include "suite/files/ascii_case.h"

#include <algorithm>

namespace qndr::control {

namespace {

struct OptionArguments {
    std::string file;
    std::string section;
    std::string key;
    std::string value;
    std::string profile = suite::DefaultProfile;
    bool json = false;
};

constexpr std::string_view RoamingSection = "Roaming Workstations";
const std::vector<std::string_view> KnownKeys{"EnableSync", "SyncComputerName", "ResetSyncDate"};

/// The agents read these alone; a slip of the pen would be stored and have no effect.
void DemandKnown(const OptionArguments& arguments) {
    if (!suite::EqualsWithoutCase(arguments.section, RoamingSection)) {
        throw services::Failure("there is no option section '" + arguments.section + "'" +
                                DidYouMean(arguments.section, {RoamingSection}));
    }
    if (std::none_of(KnownKeys.begin(), KnownKeys.end(),
                     [&](std::string_view key) { return suite::EqualsWithoutCase(key, arguments.key); })) {
        throw services::Failure("there is no option '" + arguments.key + "'" +
                                DidYouMean(arguments.key, KnownKeys));
    }
}

void Get(const ControlContext& context, const OptionArguments& arguments) {
    DemandKnown(arguments);
    const OpenedCompany company(context, arguments.file);
    const auto value =
        suite::GetCompanyOption(company.Database(), arguments.section, arguments.key, arguments.profile);
    if (!value) {
        throw services::Failure("the option '" + arguments.key + "' of '" + arguments.section + "' is not set");
    }
    if (arguments.json) {
        Json option = Json::Object();
        option.Set("section", arguments.section).Set("key", arguments.key).Set("value", *value);
        context.out << option.ToText() << '\n';
    } else {
        context.out << *value << '\n';
    }
}

void Set(const ControlContext& context, const OptionArguments& arguments) {
    DemandKnown(arguments);
    const OpenedCompany company(context, arguments.file);
    suite::SetCompanyOption(company.Database(), arguments.section, arguments.key, arguments.value,
                            arguments.profile);
    context.out << arguments.key << " is '" << arguments.value << "' now.\n";
}

void AddOptionArguments(const Command<OptionArguments>& command) {
    command.app.add_option("FILE", command.arguments.file, "The company's .psd file")->required();
    command.app.add_option("SECTION", command.arguments.section, "For instance \"Roaming Workstations\"")
        ->required();
    command.app.add_option("KEY", command.arguments.key, "For instance EnableSync or SyncComputerName")
        ->required();
    command.app.add_option("--profile", command.arguments.profile, "The profile that the option belongs to")
        ->capture_default_str();
}

} // namespace

void AddOptionCommands(CLI::App& program, const ControlContext& context) {
    CLI::App& group = AddGroup(program, "option", "The options of a company, which lie in its database");

    const auto get = AddCommand<OptionArguments>(
        group, context, "get", "Show an option, the default profile's where the profile has none", Get);
    AddOptionArguments(get);
    AddJsonFlag(get.app, get.arguments.json);

    const auto set = AddCommand<OptionArguments>(group, context, "set", "Write an option", Set);
    AddOptionArguments(set);
    set.app.add_option("VALUE", set.arguments.value, "The new value")->required();
}

} // namespace qndr::control
