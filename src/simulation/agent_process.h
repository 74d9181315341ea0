#pragma once

#include "agent/scheduler.h"
#include "composition/computer_services.h"
#include "simulation/fault_gate.h"
#include "simulation/import_watch.h"
#include "simulation/simulated_computer.h"

#include <memory>
#include <string>

namespace qndr::simulation {

/// One run of the agent on a computer, from its start to its end or its death: the agent as it is, with the
/// computer's own files, settings and database, and its window's ticks in virtual time. Only what is random is
/// drawn from the seed, and folders are listed in an order that follows from it.
class AgentProcess : private AgentView, private ActivityTarget {
  public:
    /// All of them must outlive the process; each call may end with AgentDied.
    AgentProcess(SimulatedComputer& computer, FaultGate& gate, ComputerFaults& below, const FaultPlan& plan,
                 SeededRandom& random, Chronicle& chronicle, ImportWatch& watch);
    ~AgentProcess() override;
    AgentProcess(const AgentProcess&) = delete;
    AgentProcess& operator=(const AgentProcess&) = delete;

    void Load();
    /// Lets the time run until tmr_Sync has ticked once, and with it the pass, when one is due.
    void RunUntilNextTick();
    void SyncNow() { scheduler_->SyncNow(); }
    /// Whether a pass came to its end in that time with no step left out.
    bool HasRunThrough() const { return hasRunThrough_; }
    /// Whether it has left after a request to stop.
    bool HasEnded() const { return hasEnded_; }

  private:
    class Parts;

    void FillLabels() override {}
    void ShowFrequency(std::int32_t) override {}
    void ShowActivity(const std::string&) override {}
    void RefreshStatus() override {}
    void StopTimers() override;
    void Unload() override { hasEnded_ = true; }
    std::string Text() const override { return tray_; }
    void SetText(const std::string& text) override;

    SimulatedComputer& computer_;
    FaultGate& gate_;
    ComputerServices outside_;
    std::unique_ptr<Parts> parts_;
    std::unique_ptr<AgentContext> context_;
    std::unique_ptr<AgentScheduler> scheduler_;
    std::string tray_;
    bool hasRunThrough_ = false;
    bool hasEnded_ = false;
};

} // namespace qndr::simulation
