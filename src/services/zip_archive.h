#pragma once

#include "services/call_gate.h"

#include <cstdint>
#include <memory>
#include <string>

namespace qndr::services {

/// One entry of an open archive; must not outlive the archive.
class ZipEntry {
  public:
    virtual ~ZipEntry() = default;

    /// 1 on success. Writes the entry into the folder as a file of the name that it was asked for by, whatever
    /// path the archive gives it, and nothing else. On failure the archive's LastErrorText tells why, and no file
    /// is left.
    virtual std::int32_t Extract(const std::string& folder) = 0;
};

/// Forwards every call of a ZipEntry that `gate` admits. A null gate admits all.
class ZipEntryWrapper : public ZipEntry, private Gated {
  public:
    ZipEntryWrapper(std::unique_ptr<ZipEntry> target, CallGate* gate) : Gated(gate), target_(std::move(target)) {}

    std::int32_t Extract(const std::string& folder) override {
        if (!Admits("ZipEntry.Extract")) {
            return 0;
        }
        return target_->Extract(folder);
    }

  protected:
    ZipEntry& Target() const { return *target_; }

  private:
    std::unique_ptr<ZipEntry> target_;
};

/// One ZIP archive, written or read; an object serves one archive. Results other than success leave a text in
/// LastErrorText.
class ZipArchive {
  public:
    virtual ~ZipArchive() = default;
    virtual std::string LastErrorText() const = 0;

    /// 1 on success. Replaces the file when the archive is written.
    virtual std::int32_t NewZip(const std::string& path) = 0;

    /// 1 on success. The pattern is a folder with a file wildcard at its end; "*.*" is everything. A folder
    /// without files adds nothing and succeeds.
    virtual std::int32_t AppendFiles(const std::string& pattern, std::int32_t recurse) = 0;

    /// 1 on success.
    virtual std::int32_t WriteZipAndClose() = 0;

    /// Not 0 on success. 0 says that the file was read and is no archive, which it will not be the next time
    /// either: who asked may be done with it. A file that cannot be read now opens well, whatever it is: any entry
    /// is there for all that is known, and its Extract fails, so that the file stays to be tried again.
    virtual std::int32_t OpenZip(const std::string& path) = 0;

    /// Nothing when the archive was read and has no such entry at its top. An archive whose "id.dat" was asked for
    /// and could not be extracted, other than for damage, extracts nothing else until it could: by an empty
    /// descriptor a file would be taken for one that it is not.
    virtual std::unique_ptr<ZipEntry> GetEntryByName(const std::string& name) = 0;
    virtual void CloseZip() = 0;
};

/// Forwards every call of a ZipArchive that `gate` admits, those of its entries included. A null gate admits all.
class ZipArchiveWrapper : public ZipArchive, private Gated {
  public:
    ZipArchiveWrapper(std::unique_ptr<ZipArchive> target, CallGate* gate)
        : Gated(gate), target_(std::move(target)) {}

    std::string LastErrorText() const override {
        Demand("ZipArchive.LastErrorText");
        return target_->LastErrorText();
    }
    std::int32_t NewZip(const std::string& path) override {
        if (!Admits("ZipArchive.NewZip")) {
            return 0;
        }
        return target_->NewZip(path);
    }
    std::int32_t AppendFiles(const std::string& pattern, std::int32_t recurse) override {
        if (!Admits("ZipArchive.AppendFiles")) {
            return 0;
        }
        return target_->AppendFiles(pattern, recurse);
    }
    std::int32_t WriteZipAndClose() override {
        if (!Admits("ZipArchive.WriteZipAndClose")) {
            return 0;
        }
        return target_->WriteZipAndClose();
    }
    std::int32_t OpenZip(const std::string& path) override {
        if (!Admits("ZipArchive.OpenZip")) {
            return 0;
        }
        return target_->OpenZip(path);
    }
    std::unique_ptr<ZipEntry> GetEntryByName(const std::string& name) override {
        if (!Admits("ZipArchive.GetEntryByName")) {
            return nullptr;
        }
        auto entry = target_->GetEntryByName(name);
        if (entry == nullptr) {
            return nullptr;
        }
        return std::make_unique<ZipEntryWrapper>(std::move(entry), Gate());
    }
    void CloseZip() override {
        if (Admits("ZipArchive.CloseZip")) {
            target_->CloseZip();
        }
    }

  protected:
    ZipArchive& Target() const { return *target_; }

  private:
    std::unique_ptr<ZipArchive> target_;
};

} // namespace qndr::services
