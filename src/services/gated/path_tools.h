#pragma once

#include "services/gated/forwarding.h"
#include "services/path_tools.h"

namespace qndr::services {

class PathToolsWrapper : public Forwarding<PathTools> {
  public:
    using Forwarding::Forwarding;

    bool FolderExists(const std::string& path) override {
        return Ask(calls::PathTools::FolderExists, false,
                   [&](PathTools& tools) { return tools.FolderExists(path); });
    }
    bool FolderContainsFiles(const std::string& path, bool recurse) override {
        return Ask(calls::PathTools::FolderContainsFiles, Raises,
                   [&](PathTools& tools) { return tools.FolderContainsFiles(path, recurse); });
    }
    std::vector<std::string> FindFiles(const std::string& folder, const std::string& pattern,
                                       bool recurse) override {
        return Ask(calls::PathTools::FindFiles, std::vector<std::string>{""},
                   [&](PathTools& tools) { return tools.FindFiles(folder, pattern, recurse); });
    }
    std::vector<std::string> FindFolders(const std::string& folder) override {
        return Ask(calls::PathTools::FindFolders, std::vector<std::string>{""},
                   [&](PathTools& tools) { return tools.FindFolders(folder); });
    }
    bool SplitPath(const std::string& path, std::string& folder, std::string& name,
                   std::string& extension) override {
        return Ask(calls::PathTools::SplitPath, Raises,
                   [&](PathTools& tools) { return tools.SplitPath(path, folder, name, extension); });
    }
    bool SplitPath2(const std::string& path, std::string& folder, std::string& fileName) override {
        return Ask(calls::PathTools::SplitPath2, Raises,
                   [&](PathTools& tools) { return tools.SplitPath2(path, folder, fileName); });
    }
    std::string FixPath(const std::string& path, bool addSeparator) override {
        return Ask(calls::PathTools::FixPath, Raises,
                   [&](PathTools& tools) { return tools.FixPath(path, addSeparator); });
    }
    bool CreateNestedFolder(const std::string& path) override {
        return Ask(calls::PathTools::CreateNestedFolder, false,
                   [&](PathTools& tools) { return tools.CreateNestedFolder(path); });
    }
    bool DeleteFolder(const std::string& path, bool recursive) override {
        return Ask(calls::PathTools::DeleteFolder, false,
                   [&](PathTools& tools) { return tools.DeleteFolder(path, recursive); });
    }
    std::string GetTemporaryFolder() override {
        return Ask(calls::PathTools::GetTemporaryFolder, Raises,
                   [](PathTools& tools) { return tools.GetTemporaryFolder(); });
    }
    std::string CreateTemporaryFolder(const std::string& parentFolder, const std::string& prefix,
                                      bool makeUnique) override {
        return Ask(calls::PathTools::CreateTemporaryFolder, "", [&](PathTools& tools) {
            return tools.CreateTemporaryFolder(parentFolder, prefix, makeUnique);
        });
    }
};

} // namespace qndr::services
