#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/did_you_mean.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"
#include "suite/admin/provisioning.h"
#include "text/letter_case.h"

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
    if (!text::EqualsWithoutCase(arguments.section, RoamingSection)) {
        throw services::Failure("there is no option section '" + arguments.section + "'" +
                                DidYouMean(arguments.section, {RoamingSection}));
    }
    if (std::none_of(KnownKeys.begin(), KnownKeys.end(),
                     [&](std::string_view key) { return text::EqualsWithoutCase(key, arguments.key); })) {
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
    command.app.Add("FILE", command.arguments.file, "The company's .psd file").Required();
    command.app.Add("SECTION", command.arguments.section, "For instance \"Roaming Workstations\"").Required();
    command.app.Add("KEY", command.arguments.key, "For instance EnableSync or SyncComputerName").Required();
    command.app.Add("--profile", command.arguments.profile, "The profile that the option belongs to")
        .ShowDefault();
}

} // namespace

void AddOptionCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group = program.AddGroup("option", "The options of a company, which lie in its database");

    const auto get = AddCommand<OptionArguments>(
        group, context, "get", "Show an option, the default profile's where the profile has none", Get);
    AddOptionArguments(get);
    get.app.AddJsonFlag(get.arguments.json);

    const auto set = AddCommand<OptionArguments>(group, context, "set", "Write an option", Set);
    AddOptionArguments(set);
    set.app.Add("VALUE", set.arguments.value, "The new value").Required();
}

} // namespace qndr::control
