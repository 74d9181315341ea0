#pragma once

#include "simulation/judge.h"
#include "simulation/simulated_computer.h"

#include <map>
#include <string>

namespace qndr::simulation {

/// The rows that main and the workstation should hold alike and do not: the tables by the rows' identities. Behind
/// a reset the workstation keeps rows that main does not have, and of orders it has what main has changed since.
std::map<std::string, std::string> DifferingRows(const SimulatedComputer& main,
                                                 const SimulatedComputer& workstation, const Pairing& pairing);

} // namespace qndr::simulation
