#include "suite/files/archive_shelf.h"

#include <chrono>
#include <cstdlib>
#include <utility>

namespace qndr::suite {
namespace {

/// About ten thousand files with their descriptors.
constexpr std::size_t kMostBytes = 8U * 1024 * 1024;
/// What a file costs besides its texts.
constexpr std::size_t kBytesOfEntry = 256;

constexpr int kTries = 3;
constexpr std::int64_t kSecondsWithoutWaiting = 60;

/// Waiting does not bring such a file back, or another one would come.
bool IsForGood(std::error_code error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
           error == std::errc::invalid_argument || error == std::errc::filename_too_long ||
           error == std::errc::too_many_symbolic_link_levels;
}

std::size_t BytesOf(const std::string& path, const ArchiveShelf::Known& known) {
    return kBytesOfEntry + path.size() + known.noArchive.size() + known.damage.size() + known.descriptor.size();
}

/// Nanoseconds since 1 January 1970 UTC by the computer's clock, whatever time the agent lives in: it is compared
/// with the file system's.
std::int64_t FileSystemNow() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

} // namespace

const ArchiveShelf::Known* ArchiveShelf::Find(const std::string& path, const FileFacts& facts) const {
    const auto found = entries_.find(path);
    return found != entries_.end() && found->second.facts == facts ? &found->second.known : nullptr;
}

void ArchiveShelf::Keep(const std::string& path, const FileFacts& facts, Known known) {
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    if (FileSystemNow() - facts.changed < settleSeconds_ * nanoseconds) {
        return;
    }
    const auto [entry, added] = entries_.try_emplace(path);
    bytes_ -= added ? 0 : BytesOf(path, entry->second.known);
    bytes_ += BytesOf(path, known);
    entry->second = {facts, std::move(known)};
    // Whatever is still there is soon known again; files that are gone go with this.
    if (bytes_ > kMostBytes) {
        entries_.clear();
        bytes_ = 0;
    }
}

bool ArchiveShelf::WaitOut(int attempt, std::error_code error) {
    if (patience_ == nullptr || clock_ == nullptr || IsForGood(error)) {
        return false;
    }
    const Date now = clock_->Now();
    if (attempt == 0 && waitedInVain_ && std::abs(now.SecondsSince(*waitedInVain_)) < kSecondsWithoutWaiting) {
        return false;
    }
    if (attempt < kTries && patience_->Wait(attempt + 1)) {
        return true;
    }
    waitedInVain_ = now;
    return false;
}

} // namespace qndr::suite
