#include "shared/activity.h"

namespace qndr {

void SetActivity(AgentContext& context, const std::string& text, ActivityTarget* target) {
    if (target == nullptr) {
        return;
    }
    target->SetText(text);
    context.services.messages.ProcessMessages();
}

} // namespace qndr
