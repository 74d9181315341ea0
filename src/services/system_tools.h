#pragma once

#include <cstdint>
#include <string>

namespace qndr::services {

/// Facts of the computer.
class SystemTools {
  public:
    virtual ~SystemTools() = default;

    /// A new random GUID, upper case, without braces.
    virtual std::string GetIdentifierText() = 0;
    virtual std::string GetComputerName() = 0;
};

/// Paths of the shell's special folders.
class SpecialFolderTools {
  public:
    virtual ~SpecialFolderTools() = default;

    /// 35 is the common application data folder; the folder is made when it is missing. Empty for any other number
    /// and on failure.
    virtual std::string GetFolderPath(std::int32_t folderNumber) = 0;
};

} // namespace qndr::services
