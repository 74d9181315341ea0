#pragma once

#include <filesystem>
#include <string>

/// The parts of a path as text, with the platform's separator only.
namespace qndr::suite {

inline constexpr char kPathSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

/// The part up to the last separator, that one included; empty without one.
inline std::string FolderPart(const std::string& path) {
    return path.substr(0, path.rfind(kPathSeparator) + 1);
}

/// The part behind the last separator.
inline std::string NamePart(const std::string& path) {
    return path.substr(path.rfind(kPathSeparator) + 1);
}

/// The folder with one separator behind it; empty stays empty.
inline std::string WithSeparator(const std::string& folder) {
    return folder.empty() || folder.back() == kPathSeparator ? folder : folder + kPathSeparator;
}

} // namespace qndr::suite
