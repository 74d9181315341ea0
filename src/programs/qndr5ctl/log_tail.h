#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace qndr::control {

/// Reads the agent's log from its end. The agent begins a new file with each month, and renames one that has grown
/// too large; what was written last may therefore lie in more than one file.
class LogTail {
  public:
    /// `folder` holds the log files of `program`, "<program> <anything>.log"; neither must exist.
    LogTail(std::filesystem::path folder, std::string program)
        : folder_(std::move(folder)), program_(std::move(program)) {}

    /// The last lines, oldest first, without line ends. Poll goes on behind them.
    std::vector<std::string> LastLines(std::size_t count);
    /// What was written since the last call, as it stands in the file.
    std::string Poll();

    /// The file that was written to last; empty when there is none.
    std::filesystem::path NewestFile() const;

  private:
    /// Newest first.
    std::vector<std::filesystem::path> Files() const;

    std::filesystem::path folder_;
    std::string program_;
    std::filesystem::path file_; ///< where Poll goes on
    std::uintmax_t offset_ = 0;
};

} // namespace qndr::control
