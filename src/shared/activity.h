#pragma once

#include "shared/agent_context.h"

#include <string>

namespace qndr {

/// Shows what the agent is doing; in the window it is the tip of the tray icon.
class ActivityTarget {
  public:
    virtual ~ActivityTarget() = default;
    virtual std::string Text() const = 0;
    virtual void SetText(const std::string& text) = 0;
};

/// Assigns the text and lets pending messages run once. Does nothing without a target. Does not guard itself: a
/// failure of the target or of a message handler reaches the caller.
void SetActivity(AgentContext& context, const std::string& text, ActivityTarget* target);

} // namespace qndr
