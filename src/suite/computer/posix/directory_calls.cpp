#include "suite/computer/posix/directory_calls.h"

#include "text/wildcards.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace qndr::suite {
namespace {

using services::DirectoryEntry;

constexpr mode_t kPrivateFolder = 0700;
/// What the network calls answer for a device that is none.
constexpr std::int32_t kBadDevice = 1200;

/// A path with a NUL inside would name something else than it says.
bool IsUsable(const std::string& path) {
    return !path.empty() && path.find('\0') == std::string::npos;
}

/// With a separator behind it a link would be taken for what it leads to.
std::string WithoutSeparators(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

std::uint32_t HiddenBit(const std::string& name) {
    return name.starts_with('.') && name != "." && name != ".." ? services::HiddenAttribute : 0;
}

/// Nothing when the path names nothing. `followed` tells whether a link has the attributes of what it leads to.
std::optional<DirectoryEntry> ReadEntry(const std::string& path, std::string name, bool followed) {
    struct stat facts {};
    if (lstat(path.c_str(), &facts) != 0) {
        return std::nullopt;
    }
    DirectoryEntry entry;
    entry.attributes = HiddenBit(name);
    entry.name = std::move(name);
    const bool isLink = S_ISLNK(facts.st_mode);
    if (isLink) {
        entry.attributes |= services::LinkAttribute;
        const bool leadsSomewhere = stat(path.c_str(), &facts) == 0;
        if (!leadsSomewhere && followed) {
            return std::nullopt;
        }
    }
    if (S_ISDIR(facts.st_mode) && (followed || !isLink)) {
        entry.attributes |= services::DirectoryAttribute;
    } else if (S_ISREG(facts.st_mode)) {
        entry.sizeLow = static_cast<std::uint32_t>(facts.st_size);
    }
    return entry;
}

class NamesListing : public services::DirectoryListing {
  public:
    NamesListing(std::string folder, std::vector<std::string> names)
        : folder_(std::move(folder)), names_(std::move(names)) {}

    std::optional<DirectoryEntry> Next() override {
        while (next_ < names_.size()) {
            std::string& name = names_[next_++];
            if (auto entry = ReadEntry(folder_ + name, name, false)) {
                return entry;
            }
        }
        return std::nullopt;
    }

  private:
    std::string folder_;
    std::vector<std::string> names_;
    std::size_t next_ = 0;
};

/// Cuts the last character, all its bytes.
void DropLastCharacter(std::string& text) {
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U) {
        text.pop_back();
    }
    if (!text.empty()) {
        text.pop_back();
    }
}

} // namespace

std::size_t PosixDirectoryCalls::MaximumPathLength() const {
    return PATH_MAX - 1;
}

std::unique_ptr<services::DirectoryListing> PosixDirectoryCalls::List(const std::string& folder,
                                                                      const std::string& pattern) {
    if (!IsUsable(folder)) {
        return nullptr;
    }
    DIR* directory = opendir(folder.c_str());
    if (directory == nullptr) {
        return nullptr;
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = readdir(directory)) {
        if (text::MatchesWildcard(entry->d_name, pattern)) {
            names.emplace_back(entry->d_name);
        }
    }
    const bool isCutShort = errno != 0;
    closedir(directory);
    if (isCutShort) {
        return nullptr;
    }
    // A file system has an order of its own; what an agent does should follow from the names alone.
    std::sort(names.begin(), names.end());
    return std::make_unique<NamesListing>(folder, std::move(names));
}

std::optional<DirectoryEntry> PosixDirectoryCalls::Find(const std::string& path) {
    if (!IsUsable(path)) {
        return std::nullopt;
    }
    const std::string plain = WithoutSeparators(path);
    return ReadEntry(plain, plain.substr(plain.rfind('/') + 1), true);
}

bool PosixDirectoryCalls::MakeDirectory(const std::string& path) {
    return IsUsable(path) && mkdir(path.c_str(), kPrivateFolder) == 0;
}

bool PosixDirectoryCalls::RemoveEmptyDirectory(const std::string& path) {
    if (!IsUsable(path)) {
        return false;
    }
    const std::string plain = WithoutSeparators(path);
    struct stat facts {};
    const bool isLink = lstat(plain.c_str(), &facts) == 0 && S_ISLNK(facts.st_mode);
    return (isLink ? unlink(plain.c_str()) : rmdir(plain.c_str())) == 0;
}

services::NetworkConnection PosixDirectoryCalls::FindNetworkConnection(const std::string&) {
    return {kBadDevice, ""};
}

bool PosixDirectoryCalls::MatchesPattern(const std::string& name, const std::string& pattern) {
    return text::MatchesAnyWildcard(name, pattern);
}

std::string PosixDirectoryCalls::CompactPath(const services::DeviceContext& device, const std::string& path,
                                             int width) {
    if (device.TextWidth(path) <= width) {
        return path;
    }
    const auto separator = path.rfind('/');
    std::string head = separator == std::string::npos ? "" : path.substr(0, separator);
    const std::string tail = "..." + (separator == std::string::npos ? path : path.substr(separator));
    while (!head.empty() && device.TextWidth(head + tail) > width) {
        DropLastCharacter(head);
    }
    return head + tail;
}

} // namespace qndr::suite
