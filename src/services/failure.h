#pragma once

#include <stdexcept>
#include <string>

namespace qndr::services {

/// What a service raises when an operation cannot be done and has no result that could say so. The message is
/// one readable sentence without a full stop at its end. The agent's failure rule (shared/failure_rule.h)
/// turns it into an abandoned statement.
class Failure : public std::runtime_error {
  public:
    explicit Failure(const std::string& message) : std::runtime_error(message) {}
};

} // namespace qndr::services
