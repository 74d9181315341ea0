#include "shared/failure_rule.h"
#include "shared/paths2.h"

#include <algorithm>

namespace qndr {
namespace {

constexpr int kMostTemporaryFolders = 999;

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    std::size_t from = 0;
    for (auto at = text.find(separator); at != std::string::npos; at = text.find(separator, from)) {
        pieces.push_back(text.substr(from, at - from));
        from = at + 1;
    }
    pieces.push_back(text.substr(from));
    return pieces;
}

/// Where the separator behind server and share stands, nothing without one.
std::size_t EndOfShare(const std::string& path) {
    std::size_t at = 1;
    for (int separators = 2; separators < 4 && at != std::string::npos; ++separators) {
        at = path.find('\\', at + 1);
    }
    return at;
}

} // namespace

bool Paths2::CreateFolder(const std::string& path) {
    if (IsRefused(path)) {
        return false;
    }
    return FolderExists(path) || MakeFolder(path);
}

bool Paths2::MakeFolder(const std::string& path) {
    bool made = false;
    Attempt([&] { made = !IsRefused(path) && calls_.MakeDirectory(ExpandNetworkDrive(path)); });
    return made;
}

bool Paths2::CreateNestedFolder(const std::string& path) {
    if (IsRefused(path)) {
        return false;
    }
    std::string soFar;
    std::string rest = path;
    if (IsOnShare(path)) {
        const auto end = EndOfShare(path);
        if (end == std::string::npos) {
            return false;
        }
        soFar = path.substr(0, end);
        rest = path.substr(end);
    }
    for (const std::string& piece : Split(rest, separator_)) {
        soFar = FixPath(soFar, true).append(piece);
        if (!hasDrives_ && soFar.empty()) {
            soFar = separator_; // the root, in front of a rooted path's first separator
            continue;
        }
        if (hasDrives_ && (soFar.ends_with(':') || soFar.ends_with(R"(\\)"))) {
            continue;
        }
        if (!CreateFolder(ExpandNetworkDrive(soFar))) {
            return false;
        }
    }
    return FolderExists(path);
}

bool Paths2::DeleteFolder(const std::string& path, bool recursive) {
    if (IsRefused(path)) {
        return false;
    }
    if (!FolderExists(path)) {
        return true;
    }
    const std::string expanded = ExpandNetworkDrive(path);
    std::optional<services::DirectoryEntry> entry;
    Attempt([&] { entry = calls_.Find(UnQualifyPath(expanded)); });
    const bool isLink = entry && entry->IsLink();
    if (recursive && !isLink) {
        DeleteTree(expanded);
    } else {
        Attempt([&] { calls_.RemoveEmptyDirectory(expanded); });
    }
    return !FolderExists(path);
}

void Paths2::DeleteTree(const std::string& path) {
    const std::string folder = ToWalk(path);
    VisitEntries(folder, "*.*", [&](const services::DirectoryEntry& entry) {
        if (!entry.IsDirectory()) {
            Attempt([&] { fileTools_.DeleteFile(folder + entry.name); });
        } else if (!entry.name.starts_with('.')) {
            DeleteTree(folder + entry.name);
        }
        return true;
    });
    Attempt([&] { calls_.RemoveEmptyDirectory(path); });
}

std::string Paths2::TemporaryFolder() {
    std::string folder = calls_.TemporaryPath();
    TrimNull(folder);
    return QualifyPath(folder);
}

std::string Paths2::GetTemporaryFolder() {
    std::string folder;
    Attempt([&] { folder = TemporaryFolder(); });
    return folder;
}

std::string Paths2::CreateTemporaryFolder(const std::string& parentFolder, const std::string& prefix,
                                          bool makeUnique) {
    std::string result;
    // A fault ends the whole operation: going on without a temporary folder would make the candidate a relative
    // path, below whatever folder the process happens to be in.
    Attempt([&] {
        const bool isGiven = !parentFolder.empty() && FolderExists(parentFolder);
        const std::string folder = isGiven ? parentFolder : TemporaryFolder();
        result = MakeTemporaryFolder(FixPath(ExpandNetworkDrive(folder), true), prefix, makeUnique);
    });
    return result;
}

std::string Paths2::MakeTemporaryFolder(const std::string& folder, const std::string& prefix, bool makeUnique) {
    std::string candidate = folder + prefix;
    if (!FolderExists(candidate)) {
        if (MakeFolder(candidate)) {
            return candidate;
        }
        if (!FolderExists(candidate)) {
            return "";
        }
        // Another agent made it in between, and it is that agent's.
    }
    if (!makeUnique) {
        return candidate;
    }
    for (int number = 1; number <= kMostTemporaryFolders; ++number) {
        candidate = folder + prefix + std::to_string(number);
        if (!FolderExists(candidate) && MakeFolder(candidate)) {
            return candidate;
        }
    }
    return "";
}

} // namespace qndr
