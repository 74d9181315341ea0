#pragma once

#include "services/directory_calls.h"
#include "shared/text.h"
#include "suite/files/wildcards.h"
#include "support/fakes.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace qndr::testing {

/// Drives and shares in memory. A folder is known by its path without a separator at the end; its listing begins
/// with
/// "." and "..", but for roots, as the operating system gives it.
struct SimulatedDirectories : services::DirectoryCalls {
    class Listing : public services::DirectoryListing {
      public:
        explicit Listing(std::vector<services::DirectoryEntry> entries) : entries_(std::move(entries)) {}
        std::optional<services::DirectoryEntry> Next() override {
            if (next_ == entries_.size()) {
                return std::nullopt;
            }
            return entries_[next_++];
        }

      private:
        std::vector<services::DirectoryEntry> entries_;
        std::size_t next_ = 0;
    };

    /// Makes the folder with all its parents.
    void AddFolder(const std::string& path) {
        if (folders.contains(path)) {
            return;
        }
        folders[path];
        if (const std::string parent = Parent(path); !parent.empty() && !IsRoot(path)) {
            AddFolder(parent);
            folders[parent].push_back({Name(path), services::DirectoryAttribute, 0});
        }
    }
    void AddFile(const std::string& path, std::uint32_t size = 1, std::uint32_t attributes = 0) {
        AddFolder(Parent(path));
        folders[Parent(path)].push_back({Name(path), attributes, size});
    }
    bool Remove(const std::string& path) {
        const auto parent = folders.find(Parent(path));
        return parent != folders.end() &&
               std::erase_if(parent->second, [&](const auto& entry) { return entry.name == Name(path); }) == 1;
    }

    char Separator() const override { return '\\'; }
    std::size_t MaximumPathLength() const override { return 260; }
    std::unique_ptr<services::DirectoryListing> List(const std::string& folder,
                                                     const std::string& pattern) override {
        const std::string path = Plain(folder);
        const auto found = folders.find(path);
        if (found == folders.end()) {
            return nullptr;
        }
        std::vector<services::DirectoryEntry> entries;
        if (!IsRoot(path)) {
            entries = {{std::string(".\0padding", 9), services::DirectoryAttribute, 0},
                       {"..", services::DirectoryAttribute, 0}};
        }
        std::ranges::copy_if(found->second, std::back_inserter(entries),
                             [&](const auto& entry) { return suite::MatchesWildcard(entry.name, pattern); });
        return std::make_unique<Listing>(std::move(entries));
    }
    std::optional<services::DirectoryEntry> Find(const std::string& path) override {
        const auto parent = folders.find(Parent(path));
        if (parent == folders.end()) {
            return std::nullopt;
        }
        for (const auto& entry : parent->second) {
            if (entry.name == Name(path)) {
                return entry;
            }
        }
        return std::nullopt;
    }
    bool MakeDirectory(const std::string& path) override {
        made.push_back(path);
        const std::string plain = Plain(path);
        if (takenByAnother.erase(plain) == 1) {
            AddFolder(plain);
        }
        if (!folders.contains(Parent(plain)) || Find(plain)) {
            return false;
        }
        AddFolder(plain);
        return true;
    }
    bool RemoveEmptyDirectory(const std::string& path) override {
        const std::string plain = Plain(path);
        const auto found = folders.find(plain);
        if (found == folders.end() || !found->second.empty()) {
            return false;
        }
        folders.erase(found);
        return Remove(plain);
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
        return suite::MatchesAnyWildcard(name, pattern);
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

    std::map<std::string, std::vector<services::DirectoryEntry>> folders;
    std::map<std::string, services::NetworkConnection> connections;
    std::string temporaryPath = "C:\\Temp";
    /// Folders that another process makes right in front of this one's attempt.
    std::set<std::string> takenByAnother;
    std::vector<std::string> made; ///< what MakeDirectory was asked for
};

/// The files in those folders.
struct SimulatedFiles : MemoryFiles {
    explicit SimulatedFiles(SimulatedDirectories& where) : directories(where) {}
    bool DeleteFile(const std::string& path) override {
        return MemoryFiles::DeleteFile(path) || directories.Remove(path);
    }
    SimulatedDirectories& directories;
};

} // namespace qndr::testing
