#include "programs/qndr5ctl/archive_contents.h"

#include "programs/qndr5ctl/table_counter.h"
#include "services/failure.h"

// The text stays UTF-8; the default would need a conversion library for wide characters.
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#include <zip.h>

#include <array>
#include <memory>
#include <string_view>

namespace qndr::control {

namespace {

using services::Failure;

/// A descriptor is a dozen short lines.
constexpr std::size_t LargestDescriptor = 1024 * 1024;

using Archive = std::unique_ptr<zip_t, void (*)(zip_t*)>;
using EntryFile = std::unique_ptr<zip_file_t, int (*)(zip_file_t*)>;

Archive Open(const std::string& path) {
    int code = 0;
    zip_t* archive = zip_open(path.c_str(), ZIP_RDONLY, &code);
    if (archive == nullptr) {
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        const std::string reason = zip_error_strerror(&error);
        zip_error_fini(&error);
        throw Failure("'" + path + "' cannot be read as a ZIP archive: " + reason);
    }
    return {archive, &zip_discard};
}

/// One entry, read from its start.
class EntryReader {
  public:
    EntryReader(zip_t& archive, const std::string& name)
        : name_(name), file_(zip_fopen(&archive, name.c_str(), 0), &zip_fclose) {
        if (!file_) {
            throw Failure("the entry '" + name_ + "' cannot be read: " + zip_strerror(&archive));
        }
    }

    /// The next piece, empty at the end. Raises when the entry is damaged; the last read finds a wrong checksum.
    std::string_view Read() {
        const zip_int64_t count = zip_fread(file_.get(), piece_.data(), piece_.size());
        if (count < 0) {
            throw Failure("the entry '" + name_ + "' is damaged: " + zip_file_strerror(file_.get()));
        }
        return {piece_.data(), static_cast<std::size_t>(count)};
    }

  private:
    std::string name_;
    EntryFile file_;
    std::array<char, 64 * 1024> piece_{};
};

std::vector<ArchiveEntry> ListEntries(zip_t& archive, const std::string& path) {
    std::vector<ArchiveEntry> entries;
    const zip_int64_t count = zip_get_num_entries(&archive, 0);
    for (zip_int64_t index = 0; index < count; ++index) {
        zip_stat_t facts;
        if (zip_stat_index(&archive, static_cast<zip_uint64_t>(index), 0, &facts) != 0) {
            throw Failure("the directory of '" + path + "' is damaged: " + zip_strerror(&archive));
        }
        entries.push_back(
            {facts.name, static_cast<std::int64_t>(facts.size), static_cast<std::int64_t>(facts.comp_size)});
    }
    return entries;
}

std::vector<std::pair<std::string, std::string>> ReadDescriptor(zip_t& archive) {
    EntryReader reader(archive, "id.dat");
    std::string text;
    for (std::string_view piece = reader.Read(); !piece.empty(); piece = reader.Read()) {
        text += piece;
        if (text.size() > LargestDescriptor) {
            throw Failure("the entry 'id.dat' is too large for a descriptor");
        }
    }
    CSimpleIniA ini(true, false, false);
    if (ini.LoadData(text) < 0) {
        throw Failure("the entry 'id.dat' is no INI file");
    }
    CSimpleIniA::TNamesDepend keys;
    ini.GetAllKeys("GENERAL", keys);
    keys.sort(CSimpleIniA::Entry::LoadOrder());
    std::vector<std::pair<std::string, std::string>> values;
    for (const auto& key : keys) {
        values.emplace_back(key.pItem, ini.GetValue("GENERAL", key.pItem, ""));
    }
    return values;
}

std::string BackupEntry(const std::vector<ArchiveEntry>& entries) {
    const bool isBackup =
        entries.size() == 1 && entries.front().name.starts_with("suz") && entries.front().name.ends_with(".xml");
    return isBackup ? entries.front().name : "";
}

std::vector<TableCount> CountRecords(zip_t& archive, const std::string& entry) {
    EntryReader reader(archive, entry);
    TableCounter counter;
    for (std::string_view piece = reader.Read(); !piece.empty(); piece = reader.Read()) {
        counter.Take(piece);
    }
    return counter.Finish();
}

} // namespace

ArchiveContents ReadArchiveContents(const std::string& path) {
    const Archive archive = Open(path);
    ArchiveContents contents;
    contents.entries = ListEntries(*archive, path);
    if (zip_name_locate(archive.get(), "id.dat", 0) >= 0) {
        contents.descriptor = ReadDescriptor(*archive);
    }
    contents.backupEntry = BackupEntry(contents.entries);
    if (!contents.backupEntry.empty()) {
        contents.tables = CountRecords(*archive, contents.backupEntry);
    } else if (zip_name_locate(archive.get(), "data.xml", 0) >= 0) {
        contents.tables = CountRecords(*archive, "data.xml");
    }
    return contents;
}

} // namespace qndr::control
