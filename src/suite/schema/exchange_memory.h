#pragma once

#include <string>

namespace qndr::suite {

/// Main's memory of the moment that full data shows, and what it does with the changes that the full data came too
/// early for.
std::string SnapshotMemoryScript();

/// The engine's memory, at both ends, of files that count as taken and whose data are not in. To be run behind the
/// scripts of the tables that it watches.
std::string RefusalMemoryScript();

/// What each side of a pairing knows of the other, and which rows were repaired.
std::string StandingMemoryScript();

} // namespace qndr::suite
