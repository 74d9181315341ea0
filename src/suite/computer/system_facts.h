#pragma once

#include "services/platform.h"
#include "services/system_tools.h"
#include "suite/computer/computer.h"
#include "suite/computer/instance_lock.h"
#include "suite/computer/operating_system.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace qndr::suite {

class ComputerSystemTools : public services::SystemTools {
  public:
    /// Milliseconds since 1 January 1970 UTC.
    using Milliseconds = std::function<std::uint64_t()>;

    explicit ComputerSystemTools(const Computer& computer, Milliseconds now = UnixMilliseconds)
        : computerName_(computer.name), now_(std::move(now)) {}

    /// A GUID that begins with the moment of its making, so that the names of a sender's files sort as they were
    /// sent. Within one object each is above the one before, also when the clock was put back.
    std::string GetIdentifierText() override;
    std::string GetComputerName() override { return computerName_; }

  private:
    std::string computerName_;
    Milliseconds now_;
    std::uint64_t last_ = 0; ///< the moment that the last identifier bears
};

class ComputerSpecialFolders : public services::SpecialFolderTools {
  public:
    explicit ComputerSpecialFolders(const Computer& computer) : commonData_(computer.commonApplicationData) {}

    std::string GetFolderPath(std::int32_t folderNumber) override;

  private:
    std::string commonData_;
};

/// The running program, under the name that it gives itself: the agent with its window and the one without go by
/// the same name, so that they share a log and never run side by side.
class RunningProgram : public services::ProgramFacts {
  public:
    RunningProgram(const Computer& computer, std::string executableName);

    std::string ExecutableName() const override { return executableName_; }
    /// Empty when the system does not tell.
    std::string Folder() const override;
    std::string Version() const override;
    /// False also where the computer's own folder cannot be written.
    bool AnotherCopyIsRunning() override;

  private:
    std::string executableName_;
    InstanceLock lock_;
};

class SystemProcesses : public services::Processes {
  public:
    std::vector<std::string> Names() override { return RunningProcessNames(); }
};

} // namespace qndr::suite
