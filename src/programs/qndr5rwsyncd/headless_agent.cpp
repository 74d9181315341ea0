#include "programs/qndr5rwsyncd/headless_agent.h"

#include "agent/schedule_guard.h"

#include <ostream>

namespace qndr {
namespace {

constexpr const char* kSyncTick = "tmr_Sync";
constexpr const char* kExitTick = "tmr_Exit";

} // namespace

AgentProgram HeadlessProgram() {
    return {.name = "qndr5rwsyncd",
            .switches = {{"once", false}, {"passes", true}},
            .usage = "Keeps the companies of the Companies folder in step with those on other computers.\n"
                     "Runs until it is asked to stop: by qndr5ctl stop, by SIGTERM or by SIGINT.\n",
            .ownOptions = "  --once              one pass at once, then ends\n"
                          "  --passes N          N passes, one behind the other, then ends\n"};
}

HeadlessAgent::HeadlessAgent(AgentContext& context, suite::HeadlessLoop& loop, std::ostream* terminal)
    : context_(context), loop_(loop), terminal_(terminal), scheduler_(context, *this, *this) {
    loop_.OnEndRequest([this] { EndWhenIdle(HeadlessProgram(), context_, [this] { Unload(); }); });
}

HeadlessAgent::~HeadlessAgent() {
    StopTimers();
    loop_.OnEndRequest({});
}

void HeadlessAgent::Run() {
    scheduler_.Load();
    loop_.AddTick(kSyncTick, AgentScheduler::SyncInterval, [this] {
        RecoverSchedule(context_, scheduler_);
        scheduler_.TickSync();
    });
    loop_.AddTick(kExitTick, AgentScheduler::ExitInterval, [this] { scheduler_.TickExit(); });
    loop_.Run();
}

void HeadlessAgent::RunPasses(int count) {
    scheduler_.Load();
    for (int pass = 0; pass < count && !isUnloaded_; ++pass) {
        scheduler_.SyncNow();
        scheduler_.TickSync();
        scheduler_.TickExit();
    }
}

void HeadlessAgent::StopTimers() {
    loop_.RemoveTick(kSyncTick);
    loop_.RemoveTick(kExitTick);
}

void HeadlessAgent::Unload() {
    isUnloaded_ = true;
    loop_.Quit();
}

void HeadlessAgent::SetText(const std::string& text) {
    if (terminal_ != nullptr && text != text_) {
        *terminal_ << text << std::endl;
    }
    text_ = text;
}

} // namespace qndr
