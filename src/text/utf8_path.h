#pragma once

#include <filesystem>
#include <string>

namespace qndr::text {

// A std::string given to std::filesystem is taken in the system's code page on Windows; all our texts are UTF-8.

inline std::filesystem::path ToPath(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

inline std::string FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace qndr::text
