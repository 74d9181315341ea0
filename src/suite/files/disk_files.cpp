#include "suite/files/disk_files.h"

#include "services/failure.h"
#include "suite/computer/file_calls.h"
#include "suite/computer/local_time.h"
#include "suite/computer/operating_system.h"
#include "suite/files/path_text.h"

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

namespace qndr::suite {
namespace {

using services::Failure;

constexpr std::size_t kCopyPiece = 64 * 1024;
constexpr int kNameTries = 16;

/// Whether some platform's file names cannot carry it. A file that only half of the parties could take is not
/// made.
bool IsForbiddenInNames(char c) {
    return std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos ||
           static_cast<unsigned char>(c) < 0x20;
}

FileFacts RequiredFacts(const std::string& path) {
    const std::optional<FileFacts> facts = ReadFileFacts(path);
    if (!facts || !facts->file) {
        throw Failure("there is no file '" + path + "'");
    }
    return *facts;
}

bool IsFile(const std::string& path) {
    const std::optional<FileFacts> facts = ReadFileFacts(path);
    return facts && facts->file;
}

/// Deletes a file in the making unless it was given its final name.
class Unfinished {
  public:
    explicit Unfinished(std::string path) : path_(std::move(path)) {}
    ~Unfinished() {
        if (!path_.empty()) {
            DeleteName(path_);
        }
    }
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

    void Keep() { path_.clear(); }

  private:
    std::string path_;
};

bool CopyContent(OpenFile& from, OpenFile& to) {
    const auto piece = std::make_unique_for_overwrite<char[]>(kCopyPiece); // most files fill little of it
    const std::span<char> buffer(piece.get(), kCopyPiece);
    for (;;) {
        std::size_t count = 0;
        if (from.Read(buffer, count)) {
            return false;
        }
        if (count == 0) {
            return true;
        }
        if (to.Write({buffer.data(), count})) {
            return false;
        }
    }
}

/// The target may be replaced, or has nobody's name yet.
bool MayBecomeFile(const std::string& target, bool overwrite) {
    return overwrite ? !NameIsTaken(target) || IsFile(target) : !NameIsTaken(target);
}

} // namespace

bool DiskFileTools::FileIsPresent(const std::string& path) {
    return FileExists(path);
}

bool DiskFileTools::FileExists(const std::string& path) {
    return IsFile(path);
}

std::int64_t DiskFileTools::GetFileSize(const std::string& path) {
    return RequiredFacts(path).size;
}

std::string DiskFileTools::GetFileName(const std::string& path) {
    return NamePart(path);
}

std::string DiskFileTools::GetFileBaseName(const std::string& path) {
    const std::string name = NamePart(path);
    return name.substr(0, name.rfind('.'));
}

bool DiskFileTools::FileHasAttribute(const std::string& path, int attribute) {
    return HasAttribute(path, attribute);
}

Date DiskFileTools::GetFileDate(const std::string& path) {
    const std::optional<FileFacts> facts = ReadFileFacts(path);
    if (!facts) {
        throw Failure("there is no file or folder '" + path + "'");
    }
    return LocalTime(facts->modified);
}

std::string DiskFileTools::CreateTemporaryFile(const std::string& folder, const std::string& prefix,
                                               const std::string& extension) {
    std::string place = folder;
    if (folder.empty()) {
        try {
            place = temporaryPlaces_.Usable();
        } catch (const Failure&) {
            return "";
        }
    }
    const std::string start = WithSeparator(place) + prefix;
    for (int i = 0; i < kNameTries; ++i) {
        std::string path = start;
        path.append(RandomToken()).append(extension);
        OpenFile file;
        const std::error_code error = file.CreateNew(path, FileAccess::Private);
        if (!error) {
            return path;
        }
        if (error != std::errc::file_exists) {
            return "";
        }
    }
    return "";
}

bool DiskFileTools::DeleteFile(const std::string& path) {
    return !IsHeld(path) && !DeleteName(path);
}

bool DiskFileTools::CopyFile(const std::string& source, const std::string& target, bool overwrite) {
    const std::string name = NamePart(target);
    if (name.empty() || std::ranges::any_of(name, IsForbiddenInNames) || !MayBecomeFile(target, overwrite)) {
        return false;
    }
    OpenFile from;
    if (from.OpenForReading(source)) {
        return false;
    }
    // No scan of the Sync folder takes such a name, and the common cloud folders do not carry it on.
    const std::string folder = FolderPart(target);
    const std::string working = folder + "~$" + RandomToken() + ".tmp";
    OpenFile to;
    // Other users' agents read what is copied into the Sync folder.
    if (to.CreateNew(working, FileAccess::LikeFolder)) {
        return false;
    }
    Unfinished unfinished(working);
    if (!CopyContent(from, to) || to.MakeDurable() || to.Close() ||
        RenameFile(working, target, overwrite ? Existing::Replace : Existing::Keep)) {
        return false;
    }
    unfinished.Keep();
    if (MakeFolderDurable(folder)) {
        // The sender takes a False for "not sent" and builds the file anew under another name.
        if (!overwrite) {
            DeleteName(target);
        }
        return false;
    }
    return true;
}

bool DiskFileTools::MoveFile(const std::string& source, const std::string& target, bool overwrite) {
    if (IsHeld(source) || !IsFile(source) || NamePart(target).empty() || !MayBecomeFile(target, overwrite)) {
        return false;
    }
    // What is moved into a folder ages from then on, as a copy across file systems has it. The date of another
    // user's file cannot be renewed, so that one is copied too.
    if (!RenewFileDate(source)) {
        const std::error_code error = RenameFile(source, target, overwrite ? Existing::Replace : Existing::Keep);
        if (!error) {
            // It came from the Sync folder, and is nobody else's any more.
            MakePrivate(target);
        }
        if (error != std::errc::cross_device_link) {
            return !error;
        }
    }
    if (!CopyFile(source, target, overwrite)) {
        return false;
    }
    if (DeleteName(source)) {
        if (!overwrite) {
            DeleteName(target);
        }
        return false;
    }
    return true;
}

std::string DiskFileTools::ToFileToken(const std::string& text) {
    std::string token = text;
    for (char& c : token) {
        if (c == '~' || IsForbiddenInNames(c)) {
            c = '-';
        }
    }
    return token;
}

} // namespace qndr::suite
