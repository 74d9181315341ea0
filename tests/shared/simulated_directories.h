#pragma once

#include "services/directory_calls.h"
#include "services/failure.h"
#include "suite/files/disk_files.h"
#include "text/wildcards.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace qndr::testing {

/// Drives and shares in memory. A folder is known by its path without a separator at the end; its listing begins
/// with "." and "..", but for roots, as the operating system gives it.
struct SimulatedDirectories : services::DirectoryCalls {
    struct Listing : services::DirectoryListing {
        std::optional<services::DirectoryEntry> Next() override {
            return next == entries.size() ? std::nullopt : std::optional(entries[next++]);
        }
        std::vector<services::DirectoryEntry> entries;
        std::size_t next = 0;
    };

    /// Makes the folder with all its parents.
    void AddFolder(const std::string& path) {
        if (Place(path) != all.end()) {
            return;
        }
        if (!IsRoot(path)) {
            AddFolder(Parent(path));
        }
        all.push_back({path, {Name(path), services::DirectoryAttribute, 0}});
    }
    void AddFile(const std::string& path, std::uint32_t size = 1, std::uint32_t attributes = 0) {
        AddFolder(Parent(path));
        all.push_back({path, {Name(path), attributes, size}});
    }
    bool Has(const std::string& path) { return Place(path) != all.end(); }
    bool Remove(const std::string& path) {
        return std::erase_if(all, [&](const auto& each) { return each.first == path; }) == 1;
    }

    char Separator() const override { return '\\'; }
    std::size_t MaximumPathLength() const override { return 260; }
    std::unique_ptr<services::DirectoryListing> List(const std::string& folder,
                                                     const std::string& pattern) override {
        const auto place = Place(Plain(folder));
        if (place == all.end() || !place->second.IsDirectory()) {
            return nullptr;
        }
        auto listing = std::make_unique<Listing>();
        if (!IsRoot(place->first)) {
            listing->entries = {{std::string(".\0padding", 9), services::DirectoryAttribute, 0},
                                {"..", services::DirectoryAttribute, 0}};
        }
        for (const auto& [path, entry] : all) {
            if (Parent(path) == place->first && text::MatchesWildcard(entry.name, pattern)) {
                listing->entries.push_back(entry);
            }
        }
        return listing;
    }
    std::optional<services::DirectoryEntry> Find(const std::string& path) override {
        const auto place = Place(path);
        return place == all.end() || IsRoot(path) ? std::nullopt : std::optional(place->second);
    }
    bool MakeDirectory(const std::string& path) override {
        made.push_back(path);
        const std::string plain = Plain(path);
        if (takenByAnother.erase(plain) == 1) {
            AddFolder(plain);
        }
        const auto parent = Place(Parent(plain));
        if (parent == all.end() || !parent->second.IsDirectory() || Has(plain)) {
            return false;
        }
        AddFolder(plain);
        return true;
    }
    bool RemoveEmptyDirectory(const std::string& path) override {
        const std::string plain = Plain(path);
        return std::ranges::none_of(all, [&](const auto& each) { return Parent(each.first) == plain; }) &&
               Remove(plain);
    }
    std::string TemporaryPath() override {
        if (temporaryPath.empty()) {
            throw services::Failure("no temporary folder");
        }
        return temporaryPath;
    }
    services::NetworkConnection FindNetworkConnection(const std::string& drive) override {
        const auto found = connections.find(drive);
        return found == connections.end() ? services::NetworkConnection{1200, ""} : found->second;
    }
    bool MatchesPattern(const std::string& name, const std::string& pattern) override {
        return text::MatchesAnyWildcard(name, pattern);
    }
    std::string CompactPath(const services::DeviceContext&, const std::string& path, int width) override {
        return std::to_string(width) + ":" + path;
    }

    static std::string Plain(std::string path) {
        if (path.ends_with('\\')) {
            path.pop_back();
        }
        return path;
    }
    static std::string Parent(const std::string& path) {
        const auto at = path.rfind('\\');
        return at == std::string::npos ? "" : path.substr(0, at);
    }
    static std::string Name(const std::string& path) { return path.substr(path.rfind('\\') + 1); }
    /// "C:" or "\\server\share"
    static bool IsRoot(const std::string& path) {
        return path.ends_with(':') || (path.starts_with("\\\\") && std::ranges::count(path, '\\') == 3);
    }

    using Entries = std::vector<std::pair<std::string, services::DirectoryEntry>>;
    Entries::iterator Place(const std::string& path) {
        return std::ranges::find(all, path, &Entries::value_type::first);
    }

    Entries all; ///< by their paths, in the order in which listings show them
    std::map<std::string, services::NetworkConnection> connections;
    std::string temporaryPath = "C:\\Temp";
    /// Folders that another process makes right in front of this one's attempt.
    std::set<std::string> takenByAnother;
    std::vector<std::string> made; ///< what MakeDirectory was asked for
};

/// The files in those folders.
struct SimulatedFiles : suite::DiskFileTools {
    explicit SimulatedFiles(SimulatedDirectories& where) : DiskFileTools(std::string()), directories(where) {}
    std::string GetFileName(const std::string& path) override { return SimulatedDirectories::Name(path); }
    bool FileExists(const std::string& path) override { return !path.empty() && directories.Has(path); }
    std::string CreateTemporaryFile(const std::string& folder, const std::string& prefix,
                                    const std::string& extension) override {
        const std::string path = folder + "\\" + prefix + extension;
        if (!isWriteable || !directories.Has(folder)) {
            return "";
        }
        directories.AddFile(path);
        return path;
    }
    bool DeleteFile(const std::string& path) override { return directories.Remove(path); }

    SimulatedDirectories& directories;
    bool isWriteable = true;
};

} // namespace qndr::testing
