#pragma once

#include "services/platform.h"

namespace qndr::suite {

/// The computer's clock and time zone.
class SystemClock : public services::Clock {
  public:
    Date Now() const override;
    services::TimeZoneInformation GetTimeZoneInformation() const override;
};

/// Reads the version resource of a program file by itself, so that it is the same on every platform.
class ProgramFileVersions : public services::FileVersions {
  public:
    std::optional<services::FixedFileVersion> GetFileVersion(const std::string& path) override;
};

} // namespace qndr::suite
