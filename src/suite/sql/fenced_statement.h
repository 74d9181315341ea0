#pragma once

#include "services/statement.h"
#include "suite/sql/connection.h"

#include <functional>

namespace qndr::sql {

/// Prepares a statement of the agent and lets `work` step it, behind three fences of which each holds by itself:
///
/// - no value that was filled in can end the literal that it stands in, and outside of literals each is a number;
/// - the statement reads, writes and calls nothing that its pattern does not name (see Fence), and holds no
///   word that the pattern does not hold;
/// - it ends when it passes its limit.
///
/// Raises services::Failure with the fence's or the database's words.
void RunFenced(const Connection& connection, const services::Statement& statement, const StatementLimits& limits,
               const std::function<void(Statement&)>& work);

} // namespace qndr::sql
