#include "suite/files/zip_reader.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace qndr::suite {
namespace {

constexpr std::size_t kPiece = 64 * 1024;
/// Below this size any ratio is harmless, and short runs of one character do reach a high one.
constexpr zip_uint64_t kHarmlessSize = 64 * 1024 * 1024;
constexpr zip_uint64_t kLargestRatio = 1000;

/// What may be read of a file before its directory is known. libzip keeps some six bytes for each byte of the
/// directory; a sync file's has about two hundred.
constexpr std::uint64_t kLargestDirectory = 1024 * 1024;
/// libzip makes room for as many entries as an archive claims before it reads the first one. Only the numbers of
/// the long form can claim more than this.
constexpr std::uint64_t kMostEntries = 65535;
/// Where the end of the directory is looked for: its record, the locator before it, the longest comment.
constexpr std::size_t kTail = 22 + 20 + 65535;
constexpr std::string_view kLocator("PK\6\7", 4);
constexpr std::string_view kLongEnd("PK\6\6", 4);
constexpr std::size_t kLocatorLength = 20;
constexpr std::size_t kLongEndLength = 56;

std::uint64_t Number(std::string_view bytes, std::size_t at) {
    std::uint64_t number = 0;
    for (std::size_t i = 8; i-- > 0;) {
        number = number << 8U | static_cast<unsigned char>(bytes[at + i]);
    }
    return number;
}

bool IsBomb(zip_uint64_t size, zip_uint64_t storedSize) {
    return size > kHarmlessSize && size / kLargestRatio > storedSize;
}

struct EntryCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

} // namespace

ZipReader::Result ZipReader::Fail(Result result, std::string words) {
    words_ = std::move(words);
    return result;
}

ZipReader::Result ZipReader::FailAs(zip_error_t* error) {
    if (error_) {
        return Fail(Result::Trouble, error_.message());
    }
    if (budgetSpent_) {
        return Fail(Result::Damaged, "its directory is too large");
    }
    if (zip_error_code_zip(error) == ZIP_ER_MEMORY) {
        error_ = std::make_error_code(std::errc::not_enough_memory);
        return Fail(Result::Trouble, error_.message());
    }
    return Fail(Result::Damaged, zip_error_strerror(error));
}

ZipReader::Result ZipReader::Open(const std::string& path) {
    Close();
    error_ = reads_.Open(path, file_);
    if (!error_) {
        error_ = file_.Facts(facts_);
    }
    if (error_) {
        return Fail(Result::Trouble, error_.message());
    }
    budget_ = kLargestDirectory;
    budgetSpent_ = false;
    Result result = CheckClaims();
    if (result == Result::Done) {
        result = OpenArchive();
    }
    budget_ = std::numeric_limits<std::uint64_t>::max();
    if (result != Result::Done) {
        file_.Close();
    }
    return result;
}

ZipReader::Result ZipReader::OpenArchive() {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_function_create(&ZipReader::Serve, this, &error);
    if (source != nullptr) {
        archive_ = zip_open_from_source(source, ZIP_RDONLY, &error);
        if (archive_ == nullptr) {
            zip_source_free(source);
        }
    }
    const Result result = archive_ != nullptr ? Result::Done : FailAs(&error);
    zip_error_fini(&error);
    return result;
}

/// Looks at the numbers of the long form, which stand for more than a short one can claim.
ZipReader::Result ZipReader::CheckClaims() {
    const auto size = static_cast<std::uint64_t>(facts_.size);
    if (size == 0) {
        return Fail(Result::Damaged, "it is empty"); // which the library takes for an archive without entries
    }
    const std::size_t tailLength = static_cast<std::size_t>(std::min<std::uint64_t>(size, kTail));
    std::string tail;
    if (const Result result = ReadBytes(size - tailLength, tail, tailLength); result != Result::Done) {
        return result;
    }
    for (std::size_t at = 0; (at = tail.find(kLocator, at)) != std::string::npos; ++at) {
        if (tail.size() - at < kLocatorLength) {
            break;
        }
        const std::uint64_t end = Number(tail, at + 8);
        if (size < kLongEndLength || end > size - kLongEndLength) {
            continue;
        }
        std::string record;
        if (const Result result = ReadBytes(end, record, kLongEndLength); result != Result::Done) {
            return result;
        }
        if (record.size() == kLongEndLength && record.starts_with(kLongEnd) &&
            std::max(Number(record, 24), Number(record, 32)) > kMostEntries) {
            return Fail(Result::Damaged, "its directory is too large");
        }
    }
    return Result::Done;
}

/// Fewer bytes where the file ends.
ZipReader::Result ZipReader::ReadBytes(std::uint64_t offset, std::string& bytes, std::size_t length) {
    bytes.resize(length);
    std::size_t read = 0;
    for (std::size_t count = 1; read < length && count > 0; read += count) {
        count = 0;
        error_ = reads_.ReadAt(file_, offset + read, {bytes.data() + read, length - read}, count);
        if (error_) {
            return Fail(Result::Trouble, error_.message());
        }
    }
    bytes.resize(read);
    return Result::Done;
}

zip_int64_t ZipReader::ServeBytes(void* data, zip_uint64_t length) {
    if (length > budget_) {
        budgetSpent_ = true;
        zip_error_set(&sourceError_, ZIP_ER_INCONS, 0);
        return -1;
    }
    std::size_t count = 0;
    error_ = reads_.ReadAt(file_, position_, {static_cast<char*>(data), static_cast<std::size_t>(length)}, count);
    if (error_) {
        zip_error_set(&sourceError_, ZIP_ER_READ, error_.value());
        return -1;
    }
    budget_ -= count;
    position_ += count;
    return static_cast<zip_int64_t>(count);
}

zip_int64_t ZipReader::Serve(void* reader, void* data, zip_uint64_t length, zip_source_cmd_t command) {
    ZipReader& self = *static_cast<ZipReader*>(reader);
    switch (command) {
    case ZIP_SOURCE_OPEN:
        self.position_ = 0;
        return 0;
    case ZIP_SOURCE_READ:
        return self.ServeBytes(data, length);
    case ZIP_SOURCE_SEEK: {
        const zip_int64_t to = zip_source_seek_compute_offset(
            self.position_, static_cast<zip_uint64_t>(self.facts_.size), data, length, &self.sourceError_);
        if (to < 0) {
            return -1;
        }
        self.position_ = static_cast<std::uint64_t>(to);
        return 0;
    }
    case ZIP_SOURCE_TELL:
        return static_cast<zip_int64_t>(self.position_);
    case ZIP_SOURCE_STAT: {
        auto* const facts = static_cast<zip_stat_t*>(data);
        zip_stat_init(facts);
        facts->size = static_cast<zip_uint64_t>(self.facts_.size);
        facts->valid = ZIP_STAT_SIZE;
        return sizeof(*facts);
    }
    case ZIP_SOURCE_ERROR:
        return zip_error_to_data(&self.sourceError_, data, length);
    case ZIP_SOURCE_CLOSE:
    case ZIP_SOURCE_FREE:
        return 0;
    case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                              ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL,
                                              ZIP_SOURCE_SUPPORTS, -1);
    default:
        zip_error_set(&self.sourceError_, ZIP_ER_OPNOTSUPP, 0);
        return -1;
    }
}

void ZipReader::Close() {
    if (archive_ != nullptr) {
        zip_discard(std::exchange(archive_, nullptr));
    }
    file_.Close();
}

std::uint64_t ZipReader::SizeOf(const std::string& name) const {
    zip_stat_t facts;
    const bool known = zip_stat(archive_, name.c_str(), 0, &facts) == 0 && (facts.valid & ZIP_STAT_SIZE) != 0;
    return known ? facts.size : 0;
}

ZipReader::Result ZipReader::CheckEntry(zip_int64_t index, std::uint64_t largest, std::uint64_t& size) {
    zip_stat_t facts;
    if (index < 0 || zip_stat_index(archive_, static_cast<zip_uint64_t>(index), 0, &facts) != 0) {
        return FailAs(zip_get_error(archive_));
    }
    constexpr zip_uint64_t needed = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD;
    if ((facts.valid & needed) != needed) {
        return Fail(Result::Damaged, "its size is not stored");
    }
    if (facts.size > largest) {
        return Fail(Result::Damaged, "it is larger than " + std::to_string(largest) + " bytes");
    }
    // Others unpack with as much memory as the archive says.
    if (facts.comp_method != ZIP_CM_STORE && facts.comp_method != ZIP_CM_DEFLATE) {
        return Fail(Result::Damaged, "it is packed in a way that is not taken");
    }
    // The stored size is a claim as well; the archive's own size is not.
    if (IsBomb(facts.size, std::min(facts.comp_size, static_cast<zip_uint64_t>(facts_.size)))) {
        return Fail(Result::Damaged, "it claims to be more than 1,000 times its stored size");
    }
    size = facts.size;
    return Result::Done;
}

ZipReader::Result ZipReader::Read(const std::string& name, std::uint64_t largest, const Sink& sink) {
    const zip_int64_t index = Find(name);
    std::uint64_t size = 0;
    if (const Result result = CheckEntry(index, largest, size); result != Result::Done) {
        return result;
    }
    const std::unique_ptr<zip_file_t, EntryCloser> from(
        zip_fopen_index(archive_, static_cast<zip_uint64_t>(index), 0));
    if (!from) {
        return FailAs(zip_get_error(archive_));
    }
    std::vector<char> piece(kPiece);
    std::uint64_t taken = 0;
    for (;;) {
        const zip_int64_t count = zip_fread(from.get(), piece.data(), piece.size());
        if (count < 0) {
            return FailAs(zip_file_get_error(from.get()));
        }
        taken += static_cast<std::uint64_t>(count);
        // A false size must not fill the disk before it is found out.
        if (taken > size || (count == 0 && taken != size)) {
            return Fail(Result::Damaged, "its size is not the stored one");
        }
        if (count == 0) {
            return Result::Done;
        }
        if (const std::error_code error = sink({piece.data(), static_cast<std::size_t>(count)})) {
            return Fail(Result::NotTaken, error.message());
        }
    }
}

} // namespace qndr::suite
