#include "suite/computer/system_facts.h"

#include "suite/computer/operating_system.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>

namespace qndr::suite {
namespace {

constexpr std::int32_t kCommonApplicationData = 35;

/// Beside the settings and not in the temporary folder, where the clean-up of old files would delete it.
std::string LockPath(const Computer& computer, const std::string& executableName) {
    const std::filesystem::path settings(computer.registryFile);
    return (settings.parent_path() / (executableName + ".lock")).string();
}

} // namespace

std::string ComputerSystemTools::GetIdentifierText() {
    last_ = std::max(now_(), last_ + 1);
    // Version 7, variant 1: 48 bits of time, the rest is random.
    const std::uint64_t high = last_ << 16 | 0x7000U | (RandomBits() & 0x0FFFU);
    const std::uint64_t low = (RandomBits() & 0x3FFFFFFFFFFFFFFFU) | 0x8000000000000000U;
    std::array<char, 37> text{};
    std::snprintf(text.data(), text.size(), "%08X-%04X-%04X-%04X-%012llX", static_cast<unsigned>(high >> 32),
                  static_cast<unsigned>(high >> 16 & 0xFFFF), static_cast<unsigned>(high & 0xFFFF),
                  static_cast<unsigned>(low >> 48), static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFU));
    return text.data();
}

std::string ComputerSpecialFolders::GetFolderPath(std::int32_t folderNumber) {
    if (folderNumber != kCommonApplicationData) {
        return "";
    }
    std::error_code error;
    std::filesystem::create_directories(commonData_, error);
    return std::filesystem::is_directory(commonData_, error) ? commonData_ : "";
}

RunningProgram::RunningProgram(const Computer& computer, std::string executableName)
    : executableName_(std::move(executableName)), lock_(LockPath(computer, executableName_)) {
}

std::string RunningProgram::Folder() const {
    return RunningProgramFolder();
}

std::string RunningProgram::Version() const {
    return QNDR_VERSION;
}

bool RunningProgram::AnotherCopyIsRunning() {
    return lock_.Join() == InstanceLock::Answer::HeldByAnother;
}

} // namespace qndr::suite
