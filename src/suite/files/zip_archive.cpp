#include "suite/files/zip_archive.h"

#include "suite/computer/file_calls.h"
#include "suite/files/file_writing.h"
#include "suite/files/path_text.h"
#include "suite/files/wildcards.h"

#include <algorithm>
#include <filesystem>
#include <vector>

namespace qndr::suite {
namespace {

/// A full export waits for the packer: the library's default level takes twice as long and saves a tenth of such
/// data.
constexpr zip_uint32_t kCompressionLevel = 2;
constexpr std::size_t kPiece = 64 * 1024;
/// Below this size any ratio is harmless, and short runs of one character do reach a high one.
constexpr zip_uint64_t kHarmlessSize = 64 * 1024 * 1024;
constexpr zip_uint64_t kLargestRatio = 1000;

/// The end record of an archive without entries, which libzip does not write.
constexpr std::string_view kEmptyArchive("PK\5\6\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 22);

std::string Words(int code) {
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string words = zip_error_strerror(&error);
    zip_error_fini(&error);
    return words;
}

bool IsBomb(zip_uint64_t size, zip_uint64_t storedSize) {
    return size > kHarmlessSize && size / kLargestRatio > storedSize;
}

struct EntryCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

/// Writes the content of the entry and closes the file; empty on success, otherwise what was wrong.
std::string CopyOut(zip_file_t& from, const zip_stat_t& facts, OpenFile& to) {
    std::vector<char> piece(kPiece);
    zip_uint64_t written = 0;
    for (;;) {
        const zip_int64_t count = zip_fread(&from, piece.data(), piece.size());
        if (count < 0) {
            return zip_error_strerror(zip_file_get_error(&from));
        }
        if (count == 0) {
            break;
        }
        written += static_cast<zip_uint64_t>(count);
        // A false size must not fill the disk before it is found out.
        if (written > facts.size) {
            break;
        }
        if (const std::error_code error = to.Write({piece.data(), static_cast<std::size_t>(count)})) {
            return error.message();
        }
    }
    if (written != facts.size) {
        return "its size is not the stored one";
    }
    const std::error_code error = to.Close();
    return error ? error.message() : "";
}

} // namespace

class LibZipArchive::Entry : public services::ZipEntry {
  public:
    Entry(LibZipArchive& archive, std::string name, zip_uint64_t index)
        : archive_(archive), name_(std::move(name)), index_(index) {}

    std::int32_t Extract(const std::string& folder) override {
        return archive_.ExtractTo(name_, index_, folder) ? 1 : 0;
    }

  private:
    LibZipArchive& archive_;
    std::string name_;
    zip_uint64_t index_;
};

LibZipArchive::~LibZipArchive() {
    CloseZip();
}

bool LibZipArchive::Fail(const std::string& text) {
    lastErrorText_ = text;
    return false;
}

std::int32_t LibZipArchive::NewZip(const std::string& path) {
    if (archive_ != nullptr) {
        return Fail("The archive object is in use for '" + path_ + "'.");
    }
    int code = 0;
    archive_ = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    if (archive_ == nullptr) {
        return Fail("The archive '" + path + "' cannot be made: " + Words(code) + ".");
    }
    path_ = path;
    writing_ = true;
    return 1;
}

std::int32_t LibZipArchive::AppendFiles(const std::string& pattern, std::int32_t recurse) {
    if (!writing_) {
        return Fail("There is no new archive to add files to.");
    }
    return AppendFolder(FolderPart(pattern), NamePart(pattern), recurse != 0, "");
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
        if (fs::is_directory(status)) {
            if (recurse &&
                !AppendFolder(WithSeparator(folder + name), wildcard, recurse, namesStart + name + '/')) {
                return false;
            }
        } else if (fs::is_regular_file(status) && MatchesWildcard(name, wildcard)) {
            if (!AppendFile(folder + name, namesStart + name)) {
                return false;
            }
        }
    }
    return true;
}

bool LibZipArchive::AppendFile(const std::string& path, const std::string& name) {
    const auto fail = [&] {
        return Fail("The file '" + path + "' cannot be added: " + zip_error_strerror(zip_get_error(archive_)) +
                    ".");
    };
    zip_source_t* source = zip_source_file(archive_, path.c_str(), 0, -1);
    if (source == nullptr) {
        return fail();
    }
    const zip_int64_t index = zip_file_add(archive_, name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
        zip_source_free(source);
        return fail();
    }
    const auto place = static_cast<zip_uint64_t>(index);
    return zip_set_file_compression(archive_, place, ZIP_CM_DEFLATE, kCompressionLevel) == 0 || fail();
}

std::int32_t LibZipArchive::WriteZipAndClose() {
    if (!writing_) {
        return Fail("There is no new archive to be written.");
    }
    if (zip_get_num_entries(archive_, 0) == 0) {
        CloseZip();
        const std::string words = ReplaceFile(path_, kEmptyArchive);
        return words.empty() || Fail("The archive '" + path_ + "' cannot be written: " + words + ".");
    }
    if (zip_close(archive_) != 0) {
        Fail("The archive '" + path_ + "' cannot be written: " + zip_error_strerror(zip_get_error(archive_)) +
             ".");
        CloseZip();
        return 0;
    }
    archive_ = nullptr;
    writing_ = false;
    return 1;
}

std::int32_t LibZipArchive::OpenZip(const std::string& path) {
    if (archive_ != nullptr) {
        return Fail("The archive object is in use for '" + path_ + "'.");
    }
    if (trouble_ != nullptr) {
        trouble_->TakeInHand(path);
    }
    const std::optional<FileFacts> facts = ReadFileFacts(path);
    if (!facts || !facts->file) {
        return Fail("There is no file '" + path + "'.");
    }
    int code = 0;
    archive_ = zip_open(path.c_str(), ZIP_RDONLY, &code);
    if (archive_ == nullptr) {
        return Fail("The file '" + path + "' cannot be opened as an archive: " + Words(code) + ".");
    }
    path_ = path;
    archiveSize_ = static_cast<zip_uint64_t>(facts->size);
    return 1;
}

std::unique_ptr<services::ZipEntry> LibZipArchive::GetEntryByName(const std::string& name) {
    if (archive_ == nullptr || writing_) {
        Fail("There is no open archive to read from.");
        return nullptr;
    }
    const bool leadsElsewhere = name.empty() || name == "." || name == ".." ||
                                name.find_first_of(std::string_view("/\\:\0", 4)) != std::string::npos;
    const zip_int64_t index = leadsElsewhere ? -1 : zip_name_locate(archive_, name.c_str(), 0);
    if (index < 0) {
        Fail("The archive '" + path_ + "' has no entry '" + name + "' at its top.");
        return nullptr;
    }
    return std::make_unique<Entry>(*this, name, static_cast<zip_uint64_t>(index));
}

bool LibZipArchive::ExtractTo(const std::string& name, zip_uint64_t index, const std::string& folder) {
    const auto fail = [&](const std::string& words) {
        return Fail("The entry '" + name + "' of '" + path_ + "' cannot be extracted: " + words + ".");
    };
    if (archive_ == nullptr) {
        return fail("the archive is closed");
    }
    zip_stat_t facts;
    if (zip_stat_index(archive_, index, 0, &facts) != 0) {
        return fail(zip_error_strerror(zip_get_error(archive_)));
    }
    constexpr zip_uint64_t needed = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE;
    if ((facts.valid & needed) != needed) {
        return fail("its size is not stored");
    }
    // The stored size is a claim as well; the archive's own size is not.
    if (IsBomb(facts.size, std::min(facts.comp_size, archiveSize_))) {
        return fail("it claims to be more than 1,000 times its stored size");
    }
    const std::unique_ptr<zip_file_t, EntryCloser> from(zip_fopen_index(archive_, index, 0));
    if (!from) {
        return fail(zip_error_strerror(zip_get_error(archive_)));
    }
    const std::string target = WithSeparator(folder) + name;
    OpenFile to;
    if (const std::error_code error = to.CreateNew(target, FileAccess::Private)) {
        return fail(error.message());
    }
    const std::string words = CopyOut(*from, facts, to);
    if (!words.empty()) {
        to.Close();
        DeleteName(target);
        return fail(words);
    }
    return true;
}

void LibZipArchive::CloseZip() {
    if (archive_ != nullptr) {
        zip_discard(archive_);
    }
    archive_ = nullptr;
    writing_ = false;
}

} // namespace qndr::suite
