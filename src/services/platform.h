#pragma once

#include "services/call_gate.h"
#include "services/date.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qndr::services {

/// The numbers that the operating system gives; a bias is in minutes and is added to local time to give UTC.
struct TimeZoneInformation {
    int state = 0; ///< 0 unknown, 1 standard time, 2 daylight time is in force
    int bias = 0;
    int standardBias = 0;
    int daylightBias = 0;

    /// What is added to local time to give UTC at present.
    int MinutesToUtc() const { return bias + (state == 2 ? daylightBias : standardBias); }
};

/// The file version of a version resource's fixed part.
struct FixedFileVersion {
    std::uint32_t high = 0; ///< major in the high 16 bits, minor in the low ones
    std::uint32_t low = 0;  ///< revision in the high 16 bits, build in the low ones
};

/// The time of the computer.
class Clock {
  public:
    virtual ~Clock() = default;

    /// Local time.
    virtual Date Now() const = 0;
    virtual TimeZoneInformation GetTimeZoneInformation() const = 0;
};

/// Forwards every call of a Clock that `gate` admits. A null gate admits all.
class ClockWrapper : public Clock, private Gated {
  public:
    ClockWrapper(Clock& target, CallGate* gate) : Gated(gate), target_(&target) {}

    Date Now() const override {
        Demand("Clock.Now");
        return target_->Now();
    }
    TimeZoneInformation GetTimeZoneInformation() const override {
        Demand("Clock.GetTimeZoneInformation");
        return target_->GetTimeZoneInformation();
    }

  protected:
    Clock& Target() const { return *target_; }

  private:
    Clock* target_;
};

/// The queue through which ticks, clicks and signals reach the one thread of the agent.
class MessagePump {
  public:
    virtual ~MessagePump() = default;

    /// Delivers what is pending now and returns. Handlers run inside this call.
    virtual void ProcessMessages() = 0;
};

/// Forwards every call of a MessagePump that `gate` admits. A null gate admits all.
class MessagePumpWrapper : public MessagePump, private Gated {
  public:
    MessagePumpWrapper(MessagePump& target, CallGate* gate) : Gated(gate), target_(&target) {}

    void ProcessMessages() override {
        Demand("MessagePump.ProcessMessages");
        target_->ProcessMessages();
    }

  protected:
    MessagePump& Target() const { return *target_; }

  private:
    MessagePump* target_;
};

/// A named timer of the operating system; closed with its destruction.
class WaitableTimer {
  public:
    virtual ~WaitableTimer() = default;

    /// True when the timer had been created under its name before and is still open.
    virtual bool AlreadyExists() const = 0;

    /// Arms the timer. The halves make a 64-bit due time in units of 100 nanoseconds, negative for a time from now
    /// on.
    virtual void Set(std::int32_t low, std::int32_t high) = 0;

    /// Sleeps until the timer is due or a message is pending. True when the timer is due.
    virtual bool WaitForMessages() = 0;
};

/// Forwards every call of a WaitableTimer that `gate` admits. A null gate admits all.
class WaitableTimerWrapper : public WaitableTimer, private Gated {
  public:
    WaitableTimerWrapper(std::unique_ptr<WaitableTimer> target, CallGate* gate)
        : Gated(gate), target_(std::move(target)) {}

    bool AlreadyExists() const override {
        Demand("WaitableTimer.AlreadyExists");
        return target_->AlreadyExists();
    }
    void Set(std::int32_t low, std::int32_t high) override {
        Demand("WaitableTimer.Set");
        target_->Set(low, high);
    }
    bool WaitForMessages() override {
        Demand("WaitableTimer.WaitForMessages");
        return target_->WaitForMessages();
    }

  protected:
    WaitableTimer& Target() const { return *target_; }

  private:
    std::unique_ptr<WaitableTimer> target_;
};

/// Makes waitable timers.
class WaitableTimers {
  public:
    virtual ~WaitableTimers() = default;

    /// Raises when no timer can be had.
    virtual std::unique_ptr<WaitableTimer> Create(const std::string& name) = 0;
};

/// Forwards every call of a WaitableTimers that `gate` admits. A null gate admits all.
class WaitableTimersWrapper : public WaitableTimers, private Gated {
  public:
    WaitableTimersWrapper(WaitableTimers& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::unique_ptr<WaitableTimer> Create(const std::string& name) override {
        Demand("WaitableTimers.Create");
        return target_->Create(name);
    }

  protected:
    WaitableTimers& Target() const { return *target_; }

  private:
    WaitableTimers* target_;
};

/// Version resources of program files.
class FileVersions {
  public:
    virtual ~FileVersions() = default;

    /// Nothing for a file without a version resource.
    virtual std::optional<FixedFileVersion> GetFileVersion(const std::string& path) = 0;
};

/// Forwards every call of a FileVersions that `gate` admits. A null gate admits all.
class FileVersionsWrapper : public FileVersions, private Gated {
  public:
    FileVersionsWrapper(FileVersions& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::optional<FixedFileVersion> GetFileVersion(const std::string& path) override {
        if (!Admits("FileVersions.GetFileVersion")) {
            return std::nullopt;
        }
        return target_->GetFileVersion(path);
    }

  protected:
    FileVersions& Target() const { return *target_; }

  private:
    FileVersions* target_;
};

/// Appends to text files, for the log.
class TextAppender {
  public:
    virtual ~TextAppender() = default;

    /// Opens, appends and closes. Makes the file when it is missing. Raises when it cannot.
    virtual void Append(const std::string& path, const std::string& text) = 0;
};

/// Forwards every call of a TextAppender that `gate` admits. A null gate admits all.
class TextAppenderWrapper : public TextAppender, private Gated {
  public:
    TextAppenderWrapper(TextAppender& target, CallGate* gate) : Gated(gate), target_(&target) {}

    void Append(const std::string& path, const std::string& text) override {
        Demand("TextAppender.Append");
        target_->Append(path, text);
    }

  protected:
    TextAppender& Target() const { return *target_; }

  private:
    TextAppender* target_;
};

/// Facts of the running program.
class ProgramFacts {
  public:
    virtual ~ProgramFacts() = default;

    /// Without folder and extension.
    virtual std::string ExecutableName() const = 0;

    /// The folder of the running program.
    virtual std::string Folder() const = 0;

    /// Major, minor and revision number, joined by ".".
    virtual std::string Version() const = 0;

    /// Whether another copy of this program runs for this user on this computer. The first copy that asks counts
    /// as running from then on, until it ends, however it ends.
    virtual bool AnotherCopyIsRunning() = 0;
};

/// Forwards every call of a ProgramFacts that `gate` admits. A null gate admits all.
class ProgramFactsWrapper : public ProgramFacts, private Gated {
  public:
    ProgramFactsWrapper(ProgramFacts& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::string ExecutableName() const override {
        Demand("ProgramFacts.ExecutableName");
        return target_->ExecutableName();
    }
    std::string Folder() const override {
        Demand("ProgramFacts.Folder");
        return target_->Folder();
    }
    std::string Version() const override {
        Demand("ProgramFacts.Version");
        return target_->Version();
    }
    bool AnotherCopyIsRunning() override {
        if (!Admits("ProgramFacts.AnotherCopyIsRunning")) {
            return false;
        }
        return target_->AnotherCopyIsRunning();
    }

  protected:
    ProgramFacts& Target() const { return *target_; }

  private:
    ProgramFacts* target_;
};

/// The processes of this computer.
class Processes {
  public:
    virtual ~Processes() = default;

    /// The file names of the programs that run at this moment, with extension and without folder; none when the
    /// system does not tell.
    virtual std::vector<std::string> Names() = 0;
};

/// Forwards every call of a Processes that `gate` admits. A null gate admits all.
class ProcessesWrapper : public Processes, private Gated {
  public:
    ProcessesWrapper(Processes& target, CallGate* gate) : Gated(gate), target_(&target) {}

    std::vector<std::string> Names() override {
        if (!Admits("Processes.Names")) {
            return {};
        }
        return target_->Names();
    }

  protected:
    Processes& Target() const { return *target_; }

  private:
    Processes* target_;
};

} // namespace qndr::services
