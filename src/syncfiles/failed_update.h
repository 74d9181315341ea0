#pragma once

#include "shared/agent_context.h"

#include <functional>
#include <string>

namespace qndr {

/// Reports an `UPDATE` that did not do what it should: the error text, the statement and the database's words, one
/// line each. The statement is made for its line, under the failure rule; it need not be the one that ran.
void LogFailedUpdate(AgentContext& context, const std::string& errorText,
                     const std::function<services::Statement()>& statement);

} // namespace qndr
