#include "programs/qndr5ctl/command_line.h"

#include <CLI/CLI.hpp>

namespace qndr::control {

Option Option::Required() const {
    option_->required();
    return *this;
}

Option Option::ShowDefault() const {
    option_->capture_default_str();
    return *this;
}

Option Option::Between(std::int64_t least, std::int64_t most) const {
    option_->check(CLI::Range(least, most));
    return *this;
}

Option Option::OneOf(std::vector<std::string> words) const {
    option_->check(CLI::IsMember(std::move(words)));
    return *this;
}

Option Option::Check(std::function<std::string(const std::string&)> complaint) const {
    option_->check(std::move(complaint));
    return *this;
}

Option Option::Needs(const Option& other) const {
    option_->needs(other.option_);
    return *this;
}

Option Option::Excludes(const Option& other) const {
    option_->excludes(other.option_);
    return *this;
}

Option Option::OneValueATime() const {
    option_->allow_extra_args(false);
    return *this;
}

Option Option::Hidden() const {
    option_->group("");
    return *this;
}

Option CommandLine::Add(const std::string& name, std::string& target, const std::string& description) const {
    return Option(*app_->add_option(name, target, description));
}

Option CommandLine::Add(const std::string& name, std::vector<std::string>& target,
                        const std::string& description) const {
    return Option(*app_->add_option(name, target, description));
}

Option CommandLine::Add(const std::string& name, std::int64_t& target, const std::string& description) const {
    return Option(*app_->add_option(name, target, description));
}

Option CommandLine::Add(const std::string& name, std::uint32_t& target, const std::string& description) const {
    return Option(*app_->add_option(name, target, description));
}

Option CommandLine::Add(const std::string& name, std::size_t& target, const std::string& description) const {
    return Option(*app_->add_option(name, target, description));
}

Option CommandLine::Add(const std::string& name, std::optional<int>& target,
                        const std::string& description) const {
    return Option(*app_->add_option(name, target, description));
}

Option CommandLine::AddFlag(const std::string& name, bool& target, const std::string& description) const {
    return Option(*app_->add_flag(name, target, description));
}

Option CommandLine::AddJsonFlag(bool& target) const {
    return AddFlag("--json", target, "Write JSON for machines");
}

CommandLine CommandLine::AddChoice(const std::string& title) const {
    CLI::Option_group& choice = *app_->add_option_group(title);
    choice.require_option(1);
    return CommandLine(choice);
}

CommandLine CommandLine::AddGroup(const std::string& name, const std::string& description) const {
    CLI::App& group = *app_->add_subcommand(name, description);
    group.require_subcommand(1);
    return CommandLine(group);
}

CommandLine CommandLine::AddCommand(const std::string& name, const std::string& description,
                                    std::function<void()> run) const {
    CLI::App& command = *app_->add_subcommand(name, description);
    command.callback(std::move(run));
    return CommandLine(command);
}

ProgramArguments::ProgramArguments(const std::string& name, const std::string& description,
                                   const std::string& version)
    : app_(std::make_unique<CLI::App>(description, name)) {
    app_->set_version_flag("--version", name + " " + version);
    app_->require_subcommand(1);
    app_->allow_windows_style_options(false);
}

ProgramArguments::~ProgramArguments() = default;

void ProgramArguments::Run(const std::vector<std::string>& words, std::ostream& out) {
    try {
        // The library takes the words from the back.
        app_->parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::CallForHelp&) {
        out << app_->help();
    } catch (const CLI::CallForVersion& version) {
        out << version.what() << '\n';
    } catch (const CLI::ParseError& error) {
        // A word that means nothing explains more than what is missing because of it.
        const std::vector<std::string> unknown = app_->remaining(true);
        throw UsageError{unknown.empty() ? error.what() : "'" + unknown.front() + "' is not understood"};
    }
}

} // namespace qndr::control
