#pragma once

#include "services/call_gate.h"

#include <string>
#include <vector>

namespace qndr::services {

/// Operations on paths and folders. The rules of each are told in shared/paths2.h, the one implementation.
class PathTools {
  public:
    virtual ~PathTools() = default;
    virtual bool FolderExists(const std::string& path) = 0;
    virtual bool FolderContainsFiles(const std::string& path, bool recurse) = 0;

    /// Full paths of the matching files; one empty element when there are none.
    virtual std::vector<std::string> FindFiles(const std::string& folder, const std::string& pattern,
                                               bool recurse) = 0;

    /// Full paths of all folders of the tree, a parent before its children; one empty element when there are none.
    virtual std::vector<std::string> FindFolders(const std::string& folder) = 0;

    /// The folder ends in a separator, the extension begins with its dot.
    virtual bool SplitPath(const std::string& path, std::string& folder, std::string& name,
                           std::string& extension) = 0;
    virtual bool SplitPath2(const std::string& path, std::string& folder, std::string& fileName) = 0;

    /// The trimmed path, ending in a separator or not. Empty stays empty.
    virtual std::string FixPath(const std::string& path, bool addSeparator) = 0;

    /// True when the folder exists afterwards, made with all its parents where needed.
    virtual bool CreateNestedFolder(const std::string& path) = 0;

    /// True when the folder is gone, or was not there.
    virtual bool DeleteFolder(const std::string& path, bool recursive) = 0;

    /// Ends in a separator.
    virtual std::string GetTemporaryFolder() = 0;

    /// The path of the folder, empty on failure. An empty parent stands for the temporary folder.
    virtual std::string CreateTemporaryFolder(const std::string& parentFolder, const std::string& prefix,
                                              bool makeUnique) = 0;
};

/// Forwards every call of a PathTools that `gate` admits. A null gate admits all.
class PathToolsWrapper : public PathTools, private Gated {
  public:
    PathToolsWrapper(PathTools& target, CallGate* gate) : Gated(gate), target_(&target) {}

    bool FolderExists(const std::string& path) override {
        if (!Admits("PathTools.FolderExists")) {
            return false;
        }
        return target_->FolderExists(path);
    }
    bool FolderContainsFiles(const std::string& path, bool recurse) override {
        Demand("PathTools.FolderContainsFiles");
        return target_->FolderContainsFiles(path, recurse);
    }
    std::vector<std::string> FindFiles(const std::string& folder, const std::string& pattern,
                                       bool recurse) override {
        if (!Admits("PathTools.FindFiles")) {
            return {""};
        }
        return target_->FindFiles(folder, pattern, recurse);
    }
    std::vector<std::string> FindFolders(const std::string& folder) override {
        if (!Admits("PathTools.FindFolders")) {
            return {""};
        }
        return target_->FindFolders(folder);
    }
    bool SplitPath(const std::string& path, std::string& folder, std::string& name,
                   std::string& extension) override {
        Demand("PathTools.SplitPath");
        return target_->SplitPath(path, folder, name, extension);
    }
    bool SplitPath2(const std::string& path, std::string& folder, std::string& fileName) override {
        Demand("PathTools.SplitPath2");
        return target_->SplitPath2(path, folder, fileName);
    }
    std::string FixPath(const std::string& path, bool addSeparator) override {
        Demand("PathTools.FixPath");
        return target_->FixPath(path, addSeparator);
    }
    bool CreateNestedFolder(const std::string& path) override {
        if (!Admits("PathTools.CreateNestedFolder")) {
            return false;
        }
        return target_->CreateNestedFolder(path);
    }
    bool DeleteFolder(const std::string& path, bool recursive) override {
        if (!Admits("PathTools.DeleteFolder")) {
            return false;
        }
        return target_->DeleteFolder(path, recursive);
    }
    std::string GetTemporaryFolder() override {
        Demand("PathTools.GetTemporaryFolder");
        return target_->GetTemporaryFolder();
    }
    std::string CreateTemporaryFolder(const std::string& parentFolder, const std::string& prefix,
                                      bool makeUnique) override {
        if (!Admits("PathTools.CreateTemporaryFolder")) {
            return "";
        }
        return target_->CreateTemporaryFolder(parentFolder, prefix, makeUnique);
    }

  protected:
    PathTools& Target() const { return *target_; }

  private:
    PathTools* target_;
};

} // namespace qndr::services
