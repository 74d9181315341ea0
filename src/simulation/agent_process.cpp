#include "simulation/agent_process.h"

#include "agent/start_up.h"
#include "services/gated/file_tools.h"
#include "services/gated/path_tools.h"
#include "services/gated/system_tools.h"

#include <algorithm>
#include <vector>

namespace qndr::simulation {
namespace {

constexpr const char* SyncTick = "tmr_Sync";
constexpr const char* ExitTick = "tmr_Exit";

/// Identities that follow from the seed.
class SeededSystemTools : public services::SystemToolsWrapper {
  public:
    SeededSystemTools(services::SystemTools& target, SeededRandom& random)
        : SystemToolsWrapper(target, nullptr), random_(random) {}
    std::string GetIdentifierText() override {
        SystemToolsWrapper::GetIdentifierText();
        return random_.Identifier();
    }

  private:
    SeededRandom& random_;
};

/// Lists in the order of the names, or in any other.
class SeededPathTools : public services::PathToolsWrapper {
  public:
    SeededPathTools(services::PathTools& target, const FaultPlan& plan, SeededRandom& random)
        : PathToolsWrapper(target, nullptr), plan_(plan), random_(random) {}
    std::vector<std::string> FindFiles(const std::string& folder, const std::string& pattern,
                                       bool recurse) override {
        std::vector<std::string> files = PathToolsWrapper::FindFiles(folder, pattern, recurse);
        std::sort(files.begin(), files.end());
        if (random_.Chance(plan_.Rate(Fault::ShuffleListing))) {
            for (std::size_t place = files.size(); place > 1; --place) {
                std::swap(files[place - 1],
                          files[static_cast<std::size_t>(random_.Below(static_cast<std::int64_t>(place)))]);
            }
        }
        return files;
    }

  private:
    const FaultPlan& plan_;
    SeededRandom& random_;
};

/// What runs on the real machine is none of the simulated computer's.
class NoProcesses : public services::Processes {
  public:
    explicit NoProcesses(FaultGate& gate) : gate_(gate) {}
    std::vector<std::string> Names() override {
        gate_.Admits(calls::Processes::Names);
        return {};
    }

  private:
    FaultGate& gate_;
};

/// Refuses now and then to take a file out of the Sync folder, as when another program has it open.
class StubbornFileTools : public services::FileToolsWrapper {
  public:
    StubbornFileTools(services::FileTools& target, const SimulatedComputer& computer, const FaultPlan& plan,
                      SeededRandom& random, Chronicle& chronicle, ImportWatch& watch)
        : FileToolsWrapper(target, nullptr), computer_(computer), plan_(plan), random_(random),
          chronicle_(chronicle), watch_(watch) {}
    bool DeleteFile(const std::string& path) override {
        return !IsHeld(path) && FileToolsWrapper::DeleteFile(path);
    }
    bool MoveFile(const std::string& source, const std::string& target, bool overwrite) override {
        return !IsHeld(source) && FileToolsWrapper::MoveFile(source, target, overwrite);
    }

  private:
    bool IsHeld(const std::string& path) {
        const std::string folder = computer_.SyncFolder() + "/";
        if (!path.starts_with(folder) || !random_.Chance(plan_.Rate(Fault::RefuseDeletion))) {
            return false;
        }
        chronicle_.NoteFault(computer_.Name(), "refuse-deletion",
                             path.substr(folder.size()) + " cannot be deleted");
        watch_.SeeHeld(path.substr(folder.size()));
        return true;
    }

    const SimulatedComputer& computer_;
    const FaultPlan& plan_;
    SeededRandom& random_;
    Chronicle& chronicle_;
    ImportWatch& watch_;
};

/// The first of the clean-ups, which come behind the last step.
constexpr const char* BehindAllSteps = "Cleaning up temp files...";

} // namespace

class AgentProcess::Parts {
  public:
    Parts(const services::AgentServices& all, const SimulatedComputer& computer, FaultGate& gate,
          const FaultPlan& plan, SeededRandom& random, Chronicle& chronicle, ImportWatch& watch)
        : objects(all.objects, watch), systemTools(all.systemTools, random),
          pathTools(all.pathTools, plan, random), processes(gate),
          fileTools(all.fileTools, computer, plan, random, chronicle, watch), services{objects,
                                                                                       all.commandLineTools,
                                                                                       all.registryTools,
                                                                                       fileTools,
                                                                                       pathTools,
                                                                                       all.iniTools,
                                                                                       all.textFileTools,
                                                                                       all.stringArrayTools,
                                                                                       all.arrayTools,
                                                                                       systemTools,
                                                                                       all.specialFolderTools,
                                                                                       all.clock,
                                                                                       all.messages,
                                                                                       all.timers,
                                                                                       all.fileVersions,
                                                                                       all.textAppender,
                                                                                       all.program,
                                                                                       processes} {}

    WatchedObjects objects;
    SeededSystemTools systemTools;
    SeededPathTools pathTools;
    NoProcesses processes;
    StubbornFileTools fileTools;
    services::AgentServices services;
};

AgentProcess::AgentProcess(SimulatedComputer& computer, FaultGate& gate, ComputerFaults& below,
                           const FaultPlan& plan, SeededRandom& random, Chronicle& chronicle, ImportWatch& watch)
    : computer_(computer), gate_(gate),
      outside_(computer.Places(), {computer.Time(), computer.Time(), computer.Time()}, "qndr5rwsync",
               {"Companies"}, &gate, &below),
      parts_(std::make_unique<Parts>(outside_.Services(), computer, gate, plan, random, chronicle, watch)),
      context_(std::make_unique<AgentContext>(parts_->services)),
      scheduler_(new AgentScheduler(*context_, *this, *this)) {
}

AgentProcess::~AgentProcess() {
    StopTimers();
}

void AgentProcess::StopTimers() {
    computer_.Time().Loop().RemoveTick(SyncTick);
    computer_.Time().Loop().RemoveTick(ExitTick);
}

void AgentProcess::Load() {
    hasEnded_ = StartAgent(*context_, "/Companies \"" + computer_.Companies() + "\"") != StartUp::LoadAgent;
    if (!hasEnded_) {
        scheduler_->Load();
    }
}

void AgentProcess::SetText(const std::string& text) {
    tray_ = text;
    hasRunThrough_ = hasRunThrough_ || text == BehindAllSteps;
}

void AgentProcess::RunUntilNextTick() {
    hasRunThrough_ = false;
    suite::HeadlessLoop& loop = computer_.Time().Loop();
    loop.AddTick(SyncTick, AgentScheduler::SyncInterval, [this] {
        const FaultGate::Tick tick(gate_);
        scheduler_->TickSync();
    });
    loop.AddTick(ExitTick, AgentScheduler::ExitInterval, [this] {
        const FaultGate::Tick tick(gate_);
        scheduler_->TickExit();
    });
    computer_.Time().Advance(AgentScheduler::SyncInterval + AgentScheduler::ExitInterval);
    StopTimers();
}

} // namespace qndr::simulation
