#pragma once

#include "services/file_tools.h"
#include "services/gated/forwarding.h"

namespace qndr::services {

class FileToolsWrapper : public Forwarding<FileTools> {
  public:
    using Forwarding::Forwarding;

    bool FileIsPresent(const std::string& path) override {
        return Ask(calls::FileTools::FileIsPresent, false,
                   [&](FileTools& tools) { return tools.FileIsPresent(path); });
    }
    bool FileExists(const std::string& path) override {
        return Ask(calls::FileTools::FileExists, false, [&](FileTools& tools) { return tools.FileExists(path); });
    }
    std::int64_t GetFileSize(const std::string& path) override {
        return Ask(calls::FileTools::GetFileSize, Raises,
                   [&](FileTools& tools) { return tools.GetFileSize(path); });
    }
    std::string GetFileName(const std::string& path) override {
        return Ask(calls::FileTools::GetFileName, Raises,
                   [&](FileTools& tools) { return tools.GetFileName(path); });
    }
    std::string GetFileBaseName(const std::string& path) override {
        return Ask(calls::FileTools::GetFileBaseName, Raises,
                   [&](FileTools& tools) { return tools.GetFileBaseName(path); });
    }
    bool FileHasAttribute(const std::string& path, int attribute) override {
        return Ask(calls::FileTools::FileHasAttribute, false,
                   [&](FileTools& tools) { return tools.FileHasAttribute(path, attribute); });
    }
    Date GetFileDate(const std::string& path) override {
        return Ask(calls::FileTools::GetFileDate, Raises,
                   [&](FileTools& tools) { return tools.GetFileDate(path); });
    }
    std::string CreateTemporaryFile(const std::string& folder, const std::string& prefix,
                                    const std::string& extension) override {
        return Ask(calls::FileTools::CreateTemporaryFile, "",
                   [&](FileTools& tools) { return tools.CreateTemporaryFile(folder, prefix, extension); });
    }
    bool DeleteFile(const std::string& path) override {
        return Ask(calls::FileTools::DeleteFile, false, [&](FileTools& tools) { return tools.DeleteFile(path); });
    }
    bool CopyFile(const std::string& source, const std::string& target, bool overwrite) override {
        return Ask(calls::FileTools::CopyFile, false,
                   [&](FileTools& tools) { return tools.CopyFile(source, target, overwrite); });
    }
    bool MoveFile(const std::string& source, const std::string& target, bool overwrite) override {
        return Ask(calls::FileTools::MoveFile, false,
                   [&](FileTools& tools) { return tools.MoveFile(source, target, overwrite); });
    }
    std::string ToFileToken(const std::string& text) override {
        return Ask(calls::FileTools::ToFileToken, Raises,
                   [&](FileTools& tools) { return tools.ToFileToken(text); });
    }
};

} // namespace qndr::services
