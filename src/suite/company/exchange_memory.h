#pragma once

#include <string>

namespace qndr::suite {

/// Main's memory of the moment that full data shows, and what it does with the changes that the full data came too
/// early for.
std::string SnapshotMemoryScript();

} // namespace qndr::suite
