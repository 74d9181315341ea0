#pragma once

#include "support/temporary_folder.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// What every fuzzer calls for each input; the result is always 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace qndr::fuzz {

/// Ends the program when the property does not hold, so that the input is kept.
inline void Require(bool holds, const char* property) {
    if (!holds) {
        std::fprintf(stderr, "The property does not hold: %s\n", property);
        std::abort();
    }
}

inline std::string AsText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Takes the text before the first line break, and the break, from the front of the input; all of it when there is
/// none. So several values fit into one input that a person can read and write.
inline std::string TakeLine(std::string& input) {
    const std::size_t end = input.find('\n');
    std::string line = input.substr(0, end);
    input.erase(0, end == std::string::npos ? end : end + 1);
    return line;
}

/// A folder for the files of this process: in memory, or below TMPDIR when that is set.
inline const test::TemporaryFolder& Scratch() {
    static const test::TemporaryFolder folder(
        std::getenv("TMPDIR") != nullptr ? std::filesystem::temp_directory_path() : test::QuickPlace());
    return folder;
}

} // namespace qndr::fuzz
