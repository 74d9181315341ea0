#include "syncfiles/identity.h"

#include "shared/failure_rule.h"
#include "shared/records.h"

namespace qndr {

std::string ReadOwnUniqueID(AgentContext& context) {
    std::string uniqueId;
    Attempt([&] {
        uniqueId = NormalizeUniqueID(context.Database().ExecuteScaler("SELECT UniqueID FROM Company").ToText());
    });
    return uniqueId;
}

} // namespace qndr
