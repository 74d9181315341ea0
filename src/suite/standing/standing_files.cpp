#include "suite/standing/standing_files.h"

#include "suite/files/file_writing.h"
#include "suite/files/packed_texts.h"
#include "suite/files/zip_reader.h"
#include "text/letter_case.h"
#include "text/utf8_path.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

namespace qndr::suite {

namespace {

constexpr const char* MessageEntry = "standing.dat";
constexpr const char* ProofEntry = "proof.dat";
constexpr const char* RowsEntry = "rows.dat";
constexpr const char* GivenUpEntry = "givenup.dat";
constexpr const char* DescriptorEntry = "id.dat";
constexpr std::uint64_t LargestMessage = 16 * 1024;
constexpr std::uint64_t LargestList = 16 * 1024 * 1024;
constexpr std::uint64_t LargestDescriptor = 16 * 1024;
/// The addressee of who does not know its main company yet, in lower case.
constexpr const char* AnyMain = "main";
/// Files of the first exchange have no number.
constexpr std::int64_t FirstExchange = -100;

bool ReadEntry(ZipReader& reader, const char* name, std::uint64_t largest, std::string& text) {
    return reader.Read(name, largest, [&](std::string_view piece) {
        text += piece;
        return std::error_code();
    }) == ZipReader::Result::Done;
}

/// The descriptor's value of a key, as the steps find it: the key has no letter case.
std::string ValueOf(std::string_view descriptor, std::string_view key) {
    while (!descriptor.empty()) {
        std::string_view line = descriptor.substr(0, descriptor.find('\n'));
        descriptor.remove_prefix(std::min(descriptor.size(), line.size() + 1));
        const std::size_t equals = line.find('=');
        if (equals != std::string_view::npos && text::EqualsWithoutCase(line.substr(0, equals), key)) {
            line.remove_prefix(equals + 1);
            return std::string(line.substr(0, line.find('\r')));
        }
    }
    return "";
}

std::int64_t NumberOf(const std::string& text) {
    std::int64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// Nothing for a file that is no sync file, or cannot be read now.
std::optional<std::string> ReadDescriptor(ArchiveShelf& archives, const std::string& path) {
    FileFacts facts;
    if (archives.Reads().Facts(path, facts)) {
        return std::nullopt;
    }
    if (const ArchiveShelf::Known* const known = archives.Find(path, facts)) {
        return known->noArchive.empty() && known->hasDescriptor && known->damage.empty()
                   ? std::optional(known->descriptor)
                   : std::nullopt;
    }
    ZipReader reader(archives.Reads());
    std::string descriptor;
    if (reader.Open(path) != ZipReader::Result::Done ||
        !ReadEntry(reader, DescriptorEntry, LargestDescriptor, descriptor)) {
        return std::nullopt;
    }
    return descriptor;
}

/// Both companies in lower case.
struct SyncFile {
    std::string path;
    std::string to;
    std::string from;
    std::int64_t number = 0;
};

std::vector<SyncFile> SyncFilesIn(ArchiveShelf& archives, const std::string& folder) {
    std::vector<SyncFile> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(text::ToPath(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = text::FromPath(entry->path().filename());
        const std::size_t tilde = name.find('~');
        if (tilde == 0 || tilde == std::string::npos || !text::ToLowerCase(name).ends_with(".zip")) {
            continue;
        }
        SyncFile file{text::FromPath(entry->path()), text::ToLowerCase(name.substr(0, tilde)), "", 0};
        const std::optional<std::string> descriptor = ReadDescriptor(archives, file.path);
        if (!descriptor) {
            continue;
        }
        const std::int64_t state = NumberOf(ValueOf(*descriptor, "SyncState"));
        file.from = text::ToLowerCase(ValueOf(*descriptor, "From"));
        file.number = state != 0 ? FirstExchange - state : NumberOf(ValueOf(*descriptor, "Sequence"));
        files.push_back(std::move(file));
    }
    return files;
}

} // namespace

std::string StandingFileFacts(const std::string& path) {
    const std::optional<FileFacts> facts = ReadFileFacts(path);
    if (!facts || !facts->file) {
        return "";
    }
    return std::to_string(facts->number) + ":" + std::to_string(facts->size) + ":" +
           std::to_string(facts->changed);
}

std::optional<StandingFile> ReadStandingFile(FileReads& reads, const std::string& path) {
    ZipReader reader(reads);
    std::string text;
    if (reader.Open(path) != ZipReader::Result::Done || !ReadEntry(reader, MessageEntry, LargestMessage, text)) {
        return std::nullopt;
    }
    std::optional<standing::Message> message = standing::ReadMessage(text);
    if (!message) {
        return std::nullopt;
    }
    StandingFile file{std::move(*message), {}, {}, {}};
    const auto read = [&](const char* name, std::string& target) {
        return !reader.Has(name) || ReadEntry(reader, name, LargestList, target);
    };
    const bool isWhole =
        read(ProofEntry, file.proof) && read(RowsEntry, file.rows) && read(GivenUpEntry, file.givenUp);
    return isWhole ? std::optional(std::move(file)) : std::nullopt;
}

std::string FindSpeaker(const std::string& folder, const std::string& own) {
    std::string speaker;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(text::ToPath(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = text::FromPath(entry->path().filename());
        const std::size_t first = name.find('~');
        const std::size_t second = name.find('~', first + 1);
        if (second == std::string::npos) {
            continue;
        }
        const std::string from = name.substr(first + 1, second - first - 1);
        if (name == standing::FileName(own, from)) {
            if (!speaker.empty()) {
                return "";
            }
            speaker = from;
        }
    }
    return speaker;
}

std::string WriteStandingFile(const std::string& path, const StandingFile& file) {
    const std::string message = standing::ToText(file.message);
    std::vector<std::pair<std::string, std::string_view>> entries{{MessageEntry, message}};
    const auto add = [&](const char* name, const std::string& content) {
        if (!content.empty()) {
            entries.emplace_back(name, content);
        }
    };
    add(ProofEntry, file.proof);
    add(RowsEntry, file.rows);
    add(GivenUpEntry, file.givenUp);
    return ReplaceFile(path, PackTexts(entries), FileAccess::LikeFolder);
}

SyncFolderCensus::SyncFolderCensus(ArchiveShelf& archives, const std::string& folder, const std::string& own) {
    for (const SyncFile& file : SyncFilesIn(archives, folder)) {
        if (file.to == AnyMain || text::EqualsWithoutCase(file.to, own) ||
            text::EqualsWithoutCase(file.from, own)) {
            files_[{file.to, file.from}].push_back(file.number);
        }
    }
}

void DeleteFiles(ArchiveShelf& archives, const std::string& folder, const std::string& from,
                 const std::string& main) {
    for (const SyncFile& file : SyncFilesIn(archives, folder)) {
        if (text::EqualsWithoutCase(file.from, from) &&
            (file.to == AnyMain || text::EqualsWithoutCase(file.to, main))) {
            DeleteName(file.path);
        }
    }
}

std::vector<std::int64_t> SyncFolderCensus::Files(const std::string& to, const std::string& from,
                                                  bool isMain) const {
    std::vector<std::int64_t> numbers;
    for (const std::string& addressee : {text::ToLowerCase(to), std::string(isMain ? AnyMain : "")}) {
        if (const auto found = files_.find({addressee, text::ToLowerCase(from)}); found != files_.end()) {
            numbers.insert(numbers.end(), found->second.begin(), found->second.end());
        }
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

} // namespace qndr::suite
