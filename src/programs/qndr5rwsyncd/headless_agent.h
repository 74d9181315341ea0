#pragma once

#include "agent/scheduler.h"
#include "programs/agent_program/agent_program.h"
#include "suite/computer/message_loop.h"

#include <iosfwd>

namespace qndr {

/// The agent without a window, as a program.
AgentProgram HeadlessProgram();

/// The agent without a window: the scheduler on a headless loop. There are no labels and no controls to fill; what
/// the tray would show goes to a terminal, if there is one.
class HeadlessAgent final : public AgentView, public ActivityTarget {
  public:
    /// All of them must outlive the agent. `terminal` may be null.
    HeadlessAgent(AgentContext& context, suite::HeadlessLoop& loop, std::ostream* terminal);
    ~HeadlessAgent() override;
    HeadlessAgent(const HeadlessAgent&) = delete;
    HeadlessAgent& operator=(const HeadlessAgent&) = delete;

    /// Runs until it is asked to stop.
    void Run();
    /// Runs so many passes at once, one behind the other, and ends earlier when it is asked to stop.
    void RunPasses(int count);

    /// What the pass waits for, shown in the place of its activity; see AgentScheduler::ShowWait.
    void ShowWait(const std::string& text) { scheduler_.ShowWait(text); }

    void FillLabels() override {}
    void ShowFrequency(std::int32_t) override {}
    void ShowActivity(const std::string&) override {}
    void RefreshStatus() override {}
    void StopTimers() override;
    void Unload() override;

    std::string Text() const override { return text_; }
    void SetText(const std::string& text) override;

  private:
    AgentContext& context_;
    suite::HeadlessLoop& loop_;
    std::ostream* terminal_;
    AgentScheduler scheduler_;
    std::string text_;
    bool isUnloaded_ = false;
};

} // namespace qndr
