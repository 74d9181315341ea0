#pragma once

#include "suite/computer/computer.h"

#include <string>
#include <utility>
#include <vector>

namespace qndr::suite {

/// Where a computer's working files may lie. The first place is the usual one, but in a folder for all users
/// anybody can make it first; whoever has made it could exchange what lies in it.
class TemporaryPlaces {
  public:
    TemporaryPlaces(std::string only) : folders_{std::move(only)} {}
    explicit TemporaryPlaces(const Computer& computer);

    /// The first of them that is a folder of this user alone; it is made when it is missing. Raises
    /// services::Failure with the reason against the first when there is none.
    std::string Usable() const;
    /// Why the first cannot be used; empty when it can.
    std::string Obstacle() const;
    const std::string& First() const { return folders_.front(); }

  private:
    std::vector<std::string> folders_;
};

} // namespace qndr::suite
