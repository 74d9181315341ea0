#pragma once

#include "services/platform.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace qndr::suite {

/// A clock that stands still: 22 November 2026, 19:08:52 UTC, which is 14:08:52 local time.
class StandingClock : public services::Clock {
  public:
    Date Now() const override { return now; }
    services::TimeZoneInformation GetTimeZoneInformation() const override { return zone; }

    Date now = *ParseDate("2026-11-22 14:08:52");
    services::TimeZoneInformation zone{.state = 1, .bias = 300, .standardBias = 0, .daylightBias = -60};
};

class TestFolder : public test::TemporaryFolder {
  public:
    using TemporaryFolder::TemporaryFolder;
    std::string Path(const std::string& name) const { return *this / name; }
};

inline void WriteFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

} // namespace qndr::suite
