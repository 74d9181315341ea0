#include "services/failure.h"
#include "shared/failure_rule.h"
#include "shared/paths2.h"
#include "text/letter_case.h"

#include <memory>

namespace qndr {
namespace {

using services::DirectoryEntry;

bool HasLeadingDot(const DirectoryEntry& entry) {
    return entry.name.starts_with('.');
}

void AddFound(std::vector<std::string>& found, const std::string& path) {
    if (!found.front().empty()) {
        found.emplace_back();
    }
    found.back() = path;
}

} // namespace

struct Paths2::FileSearch {
    std::string pattern;
    bool recurse = false;
    ProgressLabel* label = nullptr;
    const services::DeviceContext* device = nullptr;
    std::vector<std::string> found{""};
};

bool Paths2::VisitEntries(const std::string& folder, const std::string& pattern, const Visitor& visit) {
    std::unique_ptr<services::DirectoryListing> listing;
    Attempt([&] { listing = calls_.List(folder, pattern); });
    if (listing == nullptr) {
        return false;
    }
    while (true) {
        std::optional<DirectoryEntry> entry;
        bool isRead = false;
        Attempt([&] {
            entry = listing->Next();
            isRead = true;
        });
        if (!entry) {
            return isRead;
        }
        TrimNull(entry->name);
        if (!visit(*entry)) {
            return true;
        }
    }
}

bool Paths2::FolderExists(const std::string& path) {
    std::optional<DirectoryEntry> entry;
    if (IsJudgedByFirstEntry(path)) {
        VisitEntries(ExpandNetworkDrive(QualifyPath(path)), "*", [&](const DirectoryEntry& first) {
            entry = first;
            return false;
        });
    } else {
        Attempt([&] { entry = calls_.Find(ExpandNetworkDrive(UnQualifyPath(path))); });
    }
    return entry && entry->IsDirectory();
}

bool Paths2::IsFolderWriteable(const std::string& path) {
    if (!FolderExists(path)) {
        return false;
    }
    std::string file;
    Attempt([&] { file = fileTools_.CreateTemporaryFile(ExpandNetworkDrive(path), "suz", ".tmp"); });
    if (!Holds([&] { return fileTools_.FileExists(file); })) {
        return false;
    }
    Attempt([&] { fileTools_.DeleteFile(file); });
    return true;
}

bool Paths2::IsFolderEmpty(const std::string& path) {
    return !FolderContainsFolders(path) && !FolderContainsFiles(path, false);
}

bool Paths2::FolderContainsFiles(const std::string& path, bool recurse) {
    return ContainsFiles(ExpandNetworkDrive(path), recurse);
}

bool Paths2::ContainsFiles(const std::string& path, bool recurse) {
    const std::string folder = ToWalk(path);
    bool found = false;
    const bool isListed = VisitEntries(folder, "*.*", [&](const DirectoryEntry& entry) {
        if (!HasLeadingDot(entry)) {
            found = entry.IsDirectory() ? recurse && ContainsFiles(folder + entry.name, recurse) : true;
        }
        return !found;
    });
    // A folder that cannot be listed may hold anything: whoever deletes what is empty must not take it for that.
    return found || (!isListed && FolderExists(path));
}

bool Paths2::FolderContainsFolders(const std::string& path) {
    bool found = false;
    VisitEntries(ToWalk(ExpandNetworkDrive(path)), "*.*", [&](const DirectoryEntry& entry) {
        found = entry.IsDirectory() && !HasLeadingDot(entry);
        return !found;
    });
    return found;
}

bool Paths2::FolderContainsFile(const std::string& folder, const std::string& fileName, bool recurse) {
    for (const std::string& path : FindFiles(folder, "*.*", recurse)) {
        if (Holds([&] { return text::EqualsWithoutCase(fileTools_.GetFileName(path), fileName); })) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> Paths2::FindFiles(const std::string& folder, const std::string& pattern, bool recurse) {
    FileSearch search{pattern, recurse};
    // An empty result would say that no file is there.
    if (!CollectFiles(ExpandNetworkDrive(folder), search) && FolderExists(folder)) {
        throw services::Failure("the folder '" + folder + "' cannot be listed");
    }
    return search.found;
}

std::vector<std::string> Paths2::FindFilesWithProgress(const std::string& folder, const std::string& pattern,
                                                       bool recurse, ProgressLabel* label,
                                                       const services::DeviceContext& device) {
    FileSearch search{pattern, recurse, label, &device};
    CollectFiles(ExpandNetworkDrive(folder), search);
    return search.found;
}

bool Paths2::CollectFiles(const std::string& path, FileSearch& search) {
    const std::string folder = ToWalk(path);
    return VisitEntries(folder, "*.*", [&](const DirectoryEntry& entry) {
        if (!entry.IsDirectory()) {
            if (Holds([&] { return calls_.MatchesPattern(entry.name, search.pattern); })) {
                AddFound(search.found, folder + entry.name);
            }
        } else if (search.recurse && !HasLeadingDot(entry)) {
            if (search.label != nullptr) {
                ShowProgress(folder + entry.name, search);
            }
            CollectFiles(folder + entry.name, search);
        }
        return true;
    });
}

void Paths2::ShowProgress(const std::string& path, const FileSearch& search) {
    int width = 0;
    Attempt([&] { width = search.label->Width(); });
    std::string text;
    Attempt([&] { text = calls_.CompactPath(*search.device, path, width); });
    Attempt([&] { search.label->SetCaption(text); });
    Attempt([&] { messages_.ProcessMessages(); });
}

std::vector<std::string> Paths2::FindFolders(const std::string& folder) {
    std::vector<std::string> found{""};
    CollectFolders(ExpandNetworkDrive(folder), found);
    return found;
}

void Paths2::CollectFolders(const std::string& path, std::vector<std::string>& found) {
    const std::string folder = ToWalk(path);
    VisitEntries(folder, "*.*", [&](const DirectoryEntry& entry) {
        if (entry.IsDirectory() && !HasLeadingDot(entry)) {
            AddFound(found, folder + entry.name);
            CollectFolders(folder + entry.name, found);
        }
        return true;
    });
}

} // namespace qndr
