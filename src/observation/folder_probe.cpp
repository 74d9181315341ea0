#include "observation/folder_probe.h"

#include "services/failure.h"
#include "text/utf8_path.h"

#include <fstream>

namespace qndr::observation {

using diagnosis::Probe;

namespace {

/// A full disk often still takes a few bytes.
constexpr std::size_t ProbeSize = 64 * 1024;

bool IsSticky(const std::string& folder) {
    std::error_code error;
    const auto permissions = std::filesystem::status(text::ToPath(folder), error).permissions();
    return !error && (permissions & std::filesystem::perms::sticky_bit) != std::filesystem::perms::none;
}

} // namespace

Probe ProbeFolder(const services::AgentServices& services, const std::string& folder) {
    services::FileTools& fileTools = services.fileTools;
    Probe probe;
    probe.isSticky = IsSticky(folder);
    // One that could not be deleted says enough, and is not to be joined by another each time.
    for (const std::string& left : services.pathTools.FindFiles(folder, "~$probe*.tmp", false)) {
        if (!left.empty() && !fileTools.DeleteFile(left) && fileTools.FileExists(left)) {
            probe.isWritten = true;
            probe.file = left;
            return probe;
        }
    }
    probe.file = fileTools.CreateTemporaryFile(folder, "~$probe", ".tmp");
    if (probe.file.empty()) {
        return probe;
    }
    try {
        std::ofstream file(text::ToPath(probe.file), std::ios::binary);
        file << "qndr5ctl doctor" << std::string(ProbeSize, ' ');
        file.close();
        probe.isWritten = !file.fail();
        probe.clockAhead = services.clock.Now().SecondsSince(fileTools.GetFileDate(probe.file));
        const std::string renamed = probe.file.substr(0, probe.file.size() - std::string(".tmp").size()) + "r.tmp";
        probe.isRenamed = fileTools.MoveFile(probe.file, renamed, false);
        probe.file = probe.isRenamed ? renamed : probe.file;
    } catch (const services::Failure&) {
        probe.isWritten = false;
    }
    probe.isRemoved = fileTools.DeleteFile(probe.file);
    return probe;
}

std::string WhatFails(const Probe& probe) {
    if (!probe.isWritten) {
        return "no file can be written into that folder";
    }
    if (!probe.isRenamed || !probe.isRemoved) {
        return "files can be made in that folder, but not renamed or deleted there";
    }
    return probe.isSticky ? "files of other users cannot be deleted in that folder (its sticky bit is set)" : "";
}

std::int64_t FreeSpaceAt(const std::string& folder) {
    std::filesystem::path path = text::ToPath(folder);
    std::error_code error;
    while (!std::filesystem::exists(path, error) && path.has_relative_path()) {
        path = path.parent_path();
    }
    const auto space = std::filesystem::space(path, error);
    return error ? -1 : static_cast<std::int64_t>(space.available);
}

} // namespace qndr::observation
