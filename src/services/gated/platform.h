#pragma once

#include "services/gated/forwarding.h"
#include "services/platform.h"

namespace qndr::services {

class ClockWrapper : public Forwarding<Clock> {
  public:
    using Forwarding::Forwarding;

    Date Now() const override {
        return Ask(calls::Clock::Now, Raises, [](Clock& clock) { return clock.Now(); });
    }
    TimeZoneInformation GetTimeZoneInformation() const override {
        return Ask(calls::Clock::GetTimeZoneInformation, Raises,
                   [](Clock& clock) { return clock.GetTimeZoneInformation(); });
    }
};

class MessagePumpWrapper : public Forwarding<MessagePump> {
  public:
    using Forwarding::Forwarding;

    void ProcessMessages() override {
        Ask(calls::MessagePump::ProcessMessages, Raises, [](MessagePump& pump) { return pump.ProcessMessages(); });
    }
};

class WaitableTimersWrapper : public Forwarding<WaitableTimers> {
  public:
    using Forwarding::Forwarding;

    std::unique_ptr<WaitableTimer> Create(const std::string& name) override {
        return Ask(calls::WaitableTimers::Create, Raises,
                   [&](WaitableTimers& timers) { return timers.Create(name); });
    }
};

class FileVersionsWrapper : public Forwarding<FileVersions> {
  public:
    using Forwarding::Forwarding;

    std::optional<FixedFileVersion> GetFileVersion(const std::string& path) override {
        return Ask(calls::FileVersions::GetFileVersion, std::nullopt,
                   [&](FileVersions& versions) { return versions.GetFileVersion(path); });
    }
};

class TextAppenderWrapper : public Forwarding<TextAppender> {
  public:
    using Forwarding::Forwarding;

    void Append(const std::string& path, const std::string& text) override {
        Ask(calls::TextAppender::Append, Raises,
            [&](TextAppender& appender) { return appender.Append(path, text); });
    }
};

class ProgramFactsWrapper : public Forwarding<ProgramFacts> {
  public:
    using Forwarding::Forwarding;

    std::string ExecutableName() const override {
        return Ask(calls::ProgramFacts::ExecutableName, Raises,
                   [](ProgramFacts& facts) { return facts.ExecutableName(); });
    }
    std::string Folder() const override {
        return Ask(calls::ProgramFacts::Folder, Raises, [](ProgramFacts& facts) { return facts.Folder(); });
    }
    std::string Version() const override {
        return Ask(calls::ProgramFacts::Version, Raises, [](ProgramFacts& facts) { return facts.Version(); });
    }
    bool AnotherCopyIsRunning() override {
        return Ask(calls::ProgramFacts::AnotherCopyIsRunning, false,
                   [](ProgramFacts& facts) { return facts.AnotherCopyIsRunning(); });
    }
};

class ProcessesWrapper : public Forwarding<Processes> {
  public:
    using Forwarding::Forwarding;

    std::vector<std::string> Names() override {
        return Ask(calls::Processes::Names, std::vector<std::string>{},
                   [](Processes& processes) { return processes.Names(); });
    }
};

} // namespace qndr::services
