#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace qndr::control {

// What qndr5ctl needs of the library that takes a command line apart, whose header alone takes longer to compile
// than a command.

/// An option of a command, or an argument by its place. Each call gives the option itself.
class Option {
  public:
    explicit Option(CLI::Option& option) : option_(&option) {}

    Option Required() const;
    /// Tells the value that it has when it is not given.
    Option ShowDefault() const;
    Option Between(std::int64_t least, std::int64_t most) const;
    Option OneOf(std::vector<std::string> words) const;
    /// `complaint` gives what is wrong with a text; an empty one when nothing is.
    Option Check(std::function<std::string(const std::string&)> complaint) const;
    Option Needs(const Option& other) const;
    Option Excludes(const Option& other) const;
    /// One value each time that it is given.
    Option OneValueATime() const;
    /// Not told in the help.
    Option Hidden() const;

  private:
    CLI::Option* option_;
};

/// A command, a group of commands or the whole program. It is only a name for what ProgramArguments holds.
class CommandLine {
  public:
    explicit CommandLine(CLI::App& app) : app_(&app) {}

    Option Add(const std::string& name, std::string& target, const std::string& description) const;
    Option Add(const std::string& name, std::vector<std::string>& target, const std::string& description) const;
    Option Add(const std::string& name, std::int64_t& target, const std::string& description) const;
    Option Add(const std::string& name, std::uint32_t& target, const std::string& description) const;
    Option Add(const std::string& name, std::size_t& target, const std::string& description) const;
    Option Add(const std::string& name, std::optional<int>& target, const std::string& description) const;
    Option AddFlag(const std::string& name, bool& target, const std::string& description) const;
    Option AddJsonFlag(bool& target) const;
    /// Of what is added to the result, one and only one must be given.
    CommandLine AddChoice(const std::string& title) const;

    /// A group of commands, of which one must be named.
    CommandLine AddGroup(const std::string& name, const std::string& description) const;
    CommandLine AddCommand(const std::string& name, const std::string& description,
                           std::function<void()> run) const;

  private:
    CLI::App* app_;
};

/// What was typed means nothing; the text says what.
struct UsageError {
    std::string message;
};

/// All commands of a program.
class ProgramArguments {
  public:
    ProgramArguments(const std::string& name, const std::string& description, const std::string& version);
    ~ProgramArguments();
    ProgramArguments(const ProgramArguments&) = delete;
    ProgramArguments& operator=(const ProgramArguments&) = delete;

    CommandLine Commands() { return CommandLine(*app_); }
    /// Runs the command that the words name, or writes the help or the version that they ask for. Throws
    /// UsageError, and what the command throws.
    void Run(const std::vector<std::string>& words, std::ostream& out);

  private:
    std::unique_ptr<CLI::App> app_;
};

} // namespace qndr::control
