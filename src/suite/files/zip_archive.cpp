#include "suite/files/zip_archive.h"

#include "suite/computer/file_calls.h"
#include "suite/files/file_writing.h"
#include "suite/files/path_text.h"
#include "text/wildcards.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace qndr::suite {
namespace {

/// A full export waits for the packer: the library's default level takes twice as long and saves a tenth of such
/// data.
constexpr zip_uint32_t kCompressionLevel = 2;

/// Every pass reads it of every file in the Sync folder, several times. Those that are written here have 300
/// bytes.
constexpr const char* kDescriptor = "id.dat";
constexpr std::size_t kLargestDescriptor = 16 * 1024;

/// What is unpacked must leave as much room again, for it goes into the database next; this much is enough.
constexpr std::uint64_t kLargestReserve = 256ULL * 1024 * 1024;
constexpr std::uint64_t kSmallSize = 1024 * 1024;
constexpr std::uint64_t kAnySize = std::numeric_limits<std::uint64_t>::max();

/// The end record of an archive without entries, which libzip does not write.
constexpr std::string_view kEmptyArchive("PK\5\6\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 22);

std::string Words(int code) {
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string words = zip_error_strerror(&error);
    zip_error_fini(&error);
    return words;
}

/// Empty when the folder has room for so many bytes, otherwise what is wrong. A few are not worth a question, and
/// a nearly full disk must go on taking small files.
std::string WordsForRoom(std::uint64_t size, const std::string& folder) {
    std::uint64_t free = 0;
    if (size <= kSmallSize) {
        return "";
    }
    if (const std::error_code error = ReadFreeSpace(folder, free)) {
        return error.message();
    }
    const std::uint64_t reserve = std::min(size, kLargestReserve);
    return free >= reserve && free - reserve >= size
               ? ""
               : "its " + std::to_string(size) + " bytes and as much room again are more than the disk has free";
}

/// Writes a private file that is there whole or not at all; empty on success, otherwise what was wrong.
std::string WriteNew(const std::string& path, const std::function<std::string(OpenFile&)>& write) {
    OpenFile file;
    if (const std::error_code error = file.CreateNew(path, FileAccess::Private)) {
        return error.message();
    }
    std::string words = write(file);
    if (const std::error_code error = file.Close(); words.empty() && error) {
        words = error.message();
    }
    if (!words.empty()) {
        DeleteName(path);
    }
    return words;
}

} // namespace

class LibZipArchive::Entry : public services::ZipEntry {
  public:
    Entry(LibZipArchive& archive, std::string name) : archive_(archive), name_(std::move(name)) {}

    std::int32_t Extract(const std::string& folder) override { return archive_.Extract(name_, folder) ? 1 : 0; }

  private:
    LibZipArchive& archive_;
    std::string name_;
};

LibZipArchive::LibZipArchive()
    : ownReads_(std::make_unique<FileReads>()), ownShelf_(std::make_unique<ArchiveShelf>(*ownReads_)),
      shelf_(ownShelf_.get()), reader_(*ownReads_) {
}

LibZipArchive::~LibZipArchive() {
    CloseZip();
}

bool LibZipArchive::Fail(const std::string& text) {
    lastErrorText_ = text;
    return false;
}

std::int32_t LibZipArchive::NewZip(const std::string& path) {
    if (written_ != nullptr || reading_) {
        return Fail("The archive object is in use for '" + path_ + "'.");
    }
    int code = 0;
    written_ = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    if (written_ == nullptr) {
        return Fail("The archive '" + path + "' cannot be made: " + Words(code) + ".");
    }
    path_ = path;
    return 1;
}

std::int32_t LibZipArchive::AppendFiles(const std::string& pattern, std::int32_t recurse) {
    if (written_ == nullptr) {
        return Fail("There is no new archive to add files to.");
    }
    const std::string folder = FolderPart(pattern);
    if (const auto unwritten = shelf_->Unwritten().Take(folder)) {
        return Fail("The file '" + folder + *unwritten + "' could not be written as it should be.");
    }
    return AppendFolder(folder, NamePart(pattern), recurse != 0, "");
}

bool LibZipArchive::AppendFolder(const std::string& folder, const std::string& wildcard, bool recurse,
                                 const std::string& namesStart) {
    namespace fs = std::filesystem;
    std::error_code error;
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator next(folder.empty() ? fs::path(".") : fs::path(folder), error), end;
         !error && next != end; next.increment(error)) {
        entries.push_back(*next);
    }
    if (error) {
        return Fail("The folder '" + folder + "' cannot be read: " + error.message() + ".");
    }
    std::sort(entries.begin(), entries.end());
    for (const fs::directory_entry& entry : entries) {
        const std::string name = entry.path().filename().string();
        const fs::file_status status = entry.symlink_status(error);
        if (error) {
            return Fail("The file '" + folder + name + "' cannot be added: " + error.message() + ".");
        }
        if (fs::is_directory(status)) {
            if (recurse &&
                !AppendFolder(WithSeparator(folder + name), wildcard, recurse, namesStart + name + '/')) {
                return false;
            }
        } else if (fs::is_regular_file(status) && text::MatchesWildcard(name, wildcard)) {
            if (!AppendFile(folder + name, namesStart + name)) {
                return false;
            }
        }
    }
    return true;
}

bool LibZipArchive::AppendFile(const std::string& path, const std::string& name) {
    const auto fail = [&] {
        return Fail("The file '" + path + "' cannot be added: " + zip_error_strerror(zip_get_error(written_)) +
                    ".");
    };
    zip_source_t* source = zip_source_file(written_, path.c_str(), 0, -1);
    if (source == nullptr) {
        return fail();
    }
    const zip_int64_t index = zip_file_add(written_, name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
        zip_source_free(source);
        return fail();
    }
    const auto place = static_cast<zip_uint64_t>(index);
    return zip_set_file_compression(written_, place, ZIP_CM_DEFLATE, kCompressionLevel) == 0 || fail();
}

std::int32_t LibZipArchive::WriteZipAndClose() {
    if (written_ == nullptr) {
        return Fail("There is no new archive to be written.");
    }
    if (zip_get_num_entries(written_, 0) == 0) {
        CloseZip();
        const std::string words = ReplaceFile(path_, kEmptyArchive);
        return words.empty() || Fail("The archive '" + path_ + "' cannot be written: " + words + ".");
    }
    if (zip_close(written_) != 0) {
        Fail("The archive '" + path_ + "' cannot be written: " + zip_error_strerror(zip_get_error(written_)) +
             ".");
        CloseZip();
        return 0;
    }
    written_ = nullptr;
    return 1;
}

std::int32_t LibZipArchive::OpenZip(const std::string& path) {
    if (written_ != nullptr || reading_) {
        return Fail("The archive object is in use for '" + path_ + "'.");
    }
    if (trouble_ != nullptr) {
        trouble_->TakeInHand(path);
    }
    FileFacts facts;
    const std::error_code error = shelf_->Reads().Facts(path, facts);
    if (!error && !facts.file) {
        return Fail("There is no file '" + path + "'.");
    }
    path_ = path;
    known_.reset();
    if (const ArchiveShelf::Known* known = error ? nullptr : shelf_->Find(path, facts)) {
        if (!known->noArchive.empty()) {
            return Fail(known->noArchive);
        }
        known_ = *known;
    } else if (Persist([&] { return OpenReader(); }) == Result::Damaged) {
        Fail("The file '" + path + "' cannot be opened as an archive: " + reader_.Words() + ".");
        Learn({.noArchive = lastErrorText_, .damage = {}, .descriptor = {}});
        return 0;
    }
    reading_ = true;
    return 1;
}

/// Reads the directory unless that is done.
LibZipArchive::Result LibZipArchive::OpenReader() {
    return reader_.IsOpen() ? Result::Done : reader_.Open(path_);
}

/// Does the step until this computer can, or patience ends.
LibZipArchive::Result LibZipArchive::Persist(const std::function<Result()>& step) {
    for (int attempt = 0;; ++attempt) {
        const Result result = step();
        if (result != Result::Trouble) {
            return result;
        }
        reader_.Close();
        if (!shelf_->WaitOut(attempt, reader_.Error())) {
            return result;
        }
    }
}

/// Remembers what was found out about the file, unless it was changed meanwhile.
void LibZipArchive::Learn(ArchiveShelf::Known known) {
    FileFacts now;
    if (!shelf_->Reads().Facts(path_, now) && now == reader_.Facts()) {
        shelf_->Keep(path_, now, known);
    }
    known_ = std::move(known);
}

std::unique_ptr<services::ZipEntry> LibZipArchive::GetEntryByName(const std::string& name) {
    if (!reading_) {
        Fail("There is no open archive to read from.");
        return nullptr;
    }
    const bool leadsElsewhere = name.empty() || name == "." || name == ".." ||
                                name.find_first_of(std::string_view("/\\:\0", 4)) != std::string::npos;
    if (leadsElsewhere || !MayHave(name)) {
        Fail("The archive '" + path_ + "' has no entry '" + name + "' at its top.");
        return nullptr;
    }
    if (name == kDescriptor) {
        shelf_->Owe(path_);
    }
    return std::make_unique<Entry>(*this, name);
}

/// False when the directory tells that it has no such entry. What cannot be looked into has any.
bool LibZipArchive::MayHave(const std::string& name) {
    if (name == kDescriptor && known_) {
        return known_->hasDescriptor;
    }
    if (Persist([&] { return OpenReader(); }) != Result::Done || reader_.Has(name)) {
        return true;
    }
    if (name == kDescriptor) {
        Learn({});
    }
    return false;
}

bool LibZipArchive::Extract(const std::string& name, const std::string& folder) {
    std::string words;
    if (!reading_) {
        words = "the archive is closed";
    } else if (name == kDescriptor) {
        words = ExtractDescriptor(folder);
    } else if (shelf_->IsOwed(path_)) {
        words = std::string("its ") + kDescriptor + " could not be read";
    } else {
        words = ExtractLarge(name, folder);
    }
    return words.empty() ||
           Fail("The entry '" + name + "' of '" + path_ + "' cannot be extracted: " + words + ".");
}

std::string LibZipArchive::ExtractDescriptor(const std::string& folder) {
    if (!known_) {
        ArchiveShelf::Known known;
        known.hasDescriptor = true;
        const Result result = Persist([&] {
            known.descriptor.clear();
            const Result opened = OpenReader();
            return opened != Result::Done ? opened
                                          : reader_.Read(kDescriptor, kLargestDescriptor, [&](auto piece) {
                                                known.descriptor += piece;
                                                return std::error_code();
                                            });
        });
        if (result == Result::Trouble) {
            return reader_.Words();
        }
        known.damage = result == Result::Done ? "" : reader_.Words();
        Learn(std::move(known));
    }
    if (!known_->damage.empty()) {
        shelf_->Settle(path_);
        return known_->damage;
    }
    std::string words = WriteNew(WithSeparator(folder) + kDescriptor, [&](OpenFile& to) {
        const std::error_code error = to.Write(known_->descriptor);
        return error ? error.message() : std::string();
    });
    if (words.empty()) {
        shelf_->Settle(path_);
    }
    return words;
}

std::string LibZipArchive::ExtractLarge(const std::string& name, const std::string& folder) {
    std::string words;
    Persist([&] {
        Result result = OpenReader();
        words = reader_.Words();
        if (result != Result::Done) {
            return result;
        }
        words = WordsForRoom(reader_.SizeOf(name), folder);
        if (!words.empty()) {
            return Result::NotTaken;
        }
        words = WriteNew(WithSeparator(folder) + name, [&](OpenFile& to) {
            result = reader_.Read(name, kAnySize, [&](auto piece) { return to.Write(piece); });
            return result == Result::Done ? std::string() : reader_.Words();
        });
        return result;
    });
    return words;
}

void LibZipArchive::CloseZip() {
    if (written_ != nullptr) {
        zip_discard(std::exchange(written_, nullptr));
    }
    reader_.Close();
    reading_ = false;
    known_.reset();
}

} // namespace qndr::suite
