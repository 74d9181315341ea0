#include "programs/qndr5rwsyncd/headless_agent.h"

#include "agent/stop_request.h"
#include "services/failure.h"

#include <iostream>

namespace qndr {
namespace {

constexpr const char* kSyncTick = "tmr_Sync";
constexpr const char* kExitTick = "tmr_Exit";

} // namespace

HeadlessAgent::HeadlessAgent(AgentContext& context, suite::HeadlessLoop& loop, std::ostream* terminal)
    : context_(context), loop_(loop), terminal_(terminal), scheduler_(context, *this, *this) {
    loop_.OnEndRequest([this] { EndWhenIdle(); });
}

HeadlessAgent::~HeadlessAgent() {
    StopTimers();
    loop_.OnEndRequest({});
}

void HeadlessAgent::Run() {
    scheduler_.Load();
    loop_.AddTick(kSyncTick, AgentScheduler::SyncInterval, [this] { scheduler_.TickSync(); });
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

void HeadlessAgent::EndWhenIdle() {
    try {
        RequestStopSync(context_);
    } catch (const services::Failure& failure) {
        // Without a registry no tick would ever find the request; the pass in work still runs to its end.
        std::cerr << "qndr5rwsyncd: " << failure.what() << '\n';
        Unload();
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
