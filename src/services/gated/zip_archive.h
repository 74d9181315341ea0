#pragma once

#include "services/gated/forwarding.h"
#include "services/zip_archive.h"

namespace qndr::services {

class ZipEntryWrapper : public Forwarding<ZipEntry> {
  public:
    using Forwarding::Forwarding;

    std::int32_t Extract(const std::string& folder) override {
        return Ask(calls::ZipEntry::Extract, 0, [&](ZipEntry& entry) { return entry.Extract(folder); });
    }
};

/// Its entries are behind the gate too.
class ZipArchiveWrapper : public Forwarding<ZipArchive> {
  public:
    using Forwarding::Forwarding;

    std::string LastErrorText() const override {
        return Ask(calls::ZipArchive::LastErrorText, Raises,
                   [](ZipArchive& archive) { return archive.LastErrorText(); });
    }
    std::int32_t NewZip(const std::string& path) override {
        return Ask(calls::ZipArchive::NewZip, 0, [&](ZipArchive& archive) { return archive.NewZip(path); });
    }
    std::int32_t AppendFiles(const std::string& pattern, std::int32_t recurse) override {
        return Ask(calls::ZipArchive::AppendFiles, 0,
                   [&](ZipArchive& archive) { return archive.AppendFiles(pattern, recurse); });
    }
    std::int32_t WriteZipAndClose() override {
        return Ask(calls::ZipArchive::WriteZipAndClose, 0,
                   [](ZipArchive& archive) { return archive.WriteZipAndClose(); });
    }
    std::int32_t OpenZip(const std::string& path) override {
        return Ask(calls::ZipArchive::OpenZip, 0, [&](ZipArchive& archive) { return archive.OpenZip(path); });
    }
    std::unique_ptr<ZipEntry> GetEntryByName(const std::string& name) override {
        return Behind<ZipEntryWrapper>(Ask(calls::ZipArchive::GetEntryByName, nullptr,
                                           [&](ZipArchive& archive) { return archive.GetEntryByName(name); }),
                                       Gate());
    }
    void CloseZip() override {
        Ask(calls::ZipArchive::CloseZip, DoesNothing, [](ZipArchive& archive) { return archive.CloseZip(); });
    }
};

} // namespace qndr::services
