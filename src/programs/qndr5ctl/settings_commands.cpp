#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/did_you_mean.h"
#include "programs/qndr5ctl/known_settings.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"
#include "shared/settings.h"
#include "text/whole_number.h"

namespace qndr::control {

namespace {

using services::CurrentUserHive;
using services::Failure;

struct ListArguments {
    bool json = false;
};

struct GetArguments {
    std::string name;
    std::string key;
    bool json = false;
};

struct SetArguments {
    std::string name;
    std::string value;
    std::string key;
};

/// The value as it is stored; null when there is none. Raises services::Failure when the store cannot be read.
Json ReadStored(services::RegistryTools& registry, const std::string& key, const std::string& name) {
    const std::string text = registry.GetString(CurrentUserHive, key, name, "");
    if (text != registry.GetString(CurrentUserHive, key, name, "-")) {
        // A text that cannot be read gives the default as a missing one does; a number raises then.
        registry.GetLong(CurrentUserHive, key, name, 0);
        return {};
    }
    const auto number = text::ParseWholeNumber(text);
    return number ? Json(*number) : Json(text);
}

Json DefaultOf(const KnownSetting& setting) {
    const auto number = text::ParseWholeNumber(std::string(setting.fallback));
    return number ? Json(*number) : Json(setting.fallback);
}

void List(const ControlContext& context, const ListArguments& arguments) {
    Listing listing(
        {{"Name", "name"}, {"Value", "value"}, {"Default", "default"}, {"Meaning", "meaning"}, {"", "key"}});
    for (const KnownSetting& setting : KnownSettings()) {
        const std::string key(setting.key);
        listing.Add({setting.name, ReadStored(context.services.registryTools, key, std::string(setting.name)),
                     DefaultOf(setting), setting.meaning, key});
    }
    if (arguments.json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, "");
    }
}

/// The setting that a name without a key means. Raises services::Failure for a name that the agent does not read.
const KnownSetting* DemandKnown(const std::string& name, const std::string& key) {
    const KnownSetting* known = FindKnownSetting(name, key);
    if (known == nullptr && key.empty()) {
        std::vector<std::string_view> names;
        for (const KnownSetting& setting : KnownSettings()) {
            names.push_back(setting.name);
        }
        throw Failure("the agent has no setting '" + name +
                      "' ('settings list' shows them; --key names another key)" + DidYouMean(name, names));
    }
    return known;
}

void Get(const ControlContext& context, const GetArguments& arguments) {
    const KnownSetting* known = DemandKnown(arguments.name, arguments.key);
    const std::string key = known != nullptr ? std::string(known->key) : arguments.key;
    const Json stored = ReadStored(context.services.registryTools, key, arguments.name);
    if (known == nullptr && stored.IsNull()) {
        throw Failure("there is no value '" + arguments.name + "' under '" + key + "'");
    }
    if (!arguments.json) {
        context.out << (stored.IsNull() ? std::string(known->fallback) : stored.ToPlainText()) << '\n';
        return;
    }
    Json value = Json::Object();
    value.Set("name", known != nullptr ? std::string(known->name) : arguments.name)
        .Set("key", key)
        .Set("value", stored);
    if (known != nullptr) {
        value.Set("default", DefaultOf(*known)).Set("meaning", known->meaning);
    }
    context.out << value.ToText() << '\n';
}

void DemandFitting(const KnownSetting& setting, const std::string& value) {
    const std::string name(setting.name);
    if (setting.kind == SettingKind::Number) {
        const auto number = text::ParseWholeNumber(value);
        if (!number || *number < setting.lowest || *number > setting.highest) {
            throw Failure("'" + value + "' is no value for " + name + ", which is a number from " +
                          std::to_string(setting.lowest) + " to " + std::to_string(setting.highest));
        }
    } else if (setting.kind == SettingKind::Date && !value.empty() && !ParseDate(value)) {
        throw Failure("'" + value + "' is no value for " + name + ", which is a date like 2026-11-22 19:08:52");
    }
}

void Set(const ControlContext& context, const SetArguments& arguments) {
    auto& registry = context.services.registryTools;
    const KnownSetting* known = DemandKnown(arguments.name, arguments.key);
    const std::string key = known != nullptr ? std::string(known->key) : arguments.key;
    const std::string name = known != nullptr ? std::string(known->name) : arguments.name;
    if (known != nullptr) {
        DemandFitting(*known, arguments.value);
    }
    const auto number = text::ParseWholeNumber(arguments.value);
    if (number && (known == nullptr || known->kind == SettingKind::Number)) {
        registry.SetLong(CurrentUserHive, key, name, *number);
    } else {
        registry.SetString(CurrentUserHive, key, name, arguments.value);
    }
    if (known != nullptr && name == settings::DebugSyncAgent) {
        // Behind the date of an earlier time the log's seven days would be over at the next pass.
        registry.SetString(CurrentUserHive, key, settings::DebugSyncAgentStartDate,
                           *number == 1 ? FormatGeneralDate(context.services.clock.Now()) : "");
    }
    context.out << name << " is '" << arguments.value << "' now.\n";
}

struct NoArguments {};

void Stop(const ControlContext& context, const NoArguments&) {
    context.services.registryTools.SetLong(CurrentUserHive, settings::RootKey, settings::StopSync, 1);
    context.out << "Asked the agents of this user to exit; a pass in work ends first.\n";
}

} // namespace

void AddSettingsCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group = program.AddGroup("settings", "The agent's settings on this computer");

    const auto list = AddCommand<ListArguments>(group, context, "list", "All settings of the agent", List);
    list.app.AddJsonFlag(list.arguments.json);

    const auto get = AddCommand<GetArguments>(group, context, "get", "Show a setting, or its default", Get);
    get.app.Add("NAME", get.arguments.name, "The setting's name").Required();
    get.app.Add("--key", get.arguments.key, "The key of a value that is not the agent's own");
    get.app.AddJsonFlag(get.arguments.json);

    const auto set = AddCommand<SetArguments>(group, context, "set", "Write a setting", Set);
    set.app.Add("NAME", set.arguments.name, "The setting's name").Required();
    set.app.Add("VALUE", set.arguments.value, "The new value; a date like \"2026-11-22 19:08:52\"").Required();
    set.app.Add("--key", set.arguments.key,
                "The key of a value that is not the agent's own; a whole number is then stored as one");

    AddCommand<NoArguments>(program, context, "stop", "Ask the agent to exit (writes StopSync)", Stop);
}

} // namespace qndr::control
