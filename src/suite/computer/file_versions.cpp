#include "suite/computer/file_calls.h"
#include "suite/computer/system_clock.h"

#include <fstream>
#include <vector>

namespace qndr::suite {
namespace {

constexpr std::uint32_t kVersionResource = 16;
constexpr std::size_t kResourceDirectory = 2;
constexpr std::uint32_t kSubfolder = 0x80000000U;
constexpr std::uint32_t kFixedSignature = 0xFEEF04BDU;
/// Length, value length and type, the key "VS_VERSION_INFO" in UTF-16 with its end, and two bytes of padding.
constexpr std::uint32_t kFixedOffset = 40;

/// A program file: numbers at offsets, nothing for what lies behind its end.
class ProgramFile {
  public:
    explicit ProgramFile(const std::string& path) : file_(path, std::ios::binary) {}

    std::optional<std::uint32_t> Number(std::uint64_t offset, std::size_t bytes) {
        unsigned char raw[4] = {};
        file_.clear();
        file_.seekg(static_cast<std::streamoff>(offset));
        if (!file_.read(reinterpret_cast<char*>(raw), static_cast<std::streamsize>(bytes))) {
            return std::nullopt;
        }
        return raw[0] | raw[1] << 8 | raw[2] << 16 | static_cast<std::uint32_t>(raw[3]) << 24;
    }
    std::uint32_t Word(std::uint64_t offset) { return Number(offset, 2).value_or(0); }
    std::uint32_t Double(std::uint64_t offset) { return Number(offset, 4).value_or(0); }

  private:
    std::ifstream file_;
};

/// Where the section with this address of the loaded program lies in the file.
class Sections {
  public:
    Sections(ProgramFile& file, std::uint64_t table, std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint64_t entry = table + 40ULL * i;
            if (!file.Number(entry + 20, 4)) {
                return;
            }
            all_.push_back({file.Double(entry + 12), file.Double(entry + 16), file.Double(entry + 20)});
        }
    }
    std::optional<std::uint64_t> Offset(std::uint32_t address) const {
        for (const Section& section : all_) {
            if (address >= section.address && address - section.address < section.size) {
                return std::uint64_t{section.offset} + (address - section.address);
            }
        }
        return std::nullopt;
    }

  private:
    struct Section {
        std::uint32_t address, size, offset;
    };
    std::vector<Section> all_;
};

/// The entry of a resource folder with this number, or its first entry: an offset from the start of the resources,
/// with the subfolder bit.
std::optional<std::uint32_t> ResourceEntry(ProgramFile& file, std::uint64_t folder,
                                           std::optional<std::uint32_t> number) {
    const std::uint32_t count = file.Word(folder + 12) + file.Word(folder + 14);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t entry = folder + 16 + 8ULL * i;
        const auto target = file.Number(entry + 4, 4);
        if (!target || !number || file.Double(entry) == *number) {
            return target;
        }
    }
    return std::nullopt;
}

std::optional<std::uint64_t> VersionResource(ProgramFile& file) {
    const std::uint64_t header = file.Double(0x3C);
    if (file.Word(0) != 0x5A4D || file.Double(header) != 0x00004550) {
        return std::nullopt;
    }
    const std::uint64_t optional = header + 24;
    const std::uint32_t optionalSize = file.Word(header + 20);
    const bool wide = file.Word(optional) == 0x20B;
    const std::uint64_t directories = optional + (wide ? 112 : 96);
    const Sections sections(file, optional + optionalSize, file.Word(header + 6));
    const auto root = sections.Offset(file.Double(directories + 8 * kResourceDirectory));
    if (!root) {
        return std::nullopt;
    }
    // Type, then name, then language; of the latter two the first will do.
    std::uint64_t place = *root;
    for (int level = 0; level < 3; ++level) {
        const auto entry = ResourceEntry(file, place, level == 0 ? std::optional(kVersionResource) : std::nullopt);
        const bool isFolder = entry && (*entry & kSubfolder) != 0;
        if (!entry || isFolder != (level < 2)) {
            return std::nullopt;
        }
        place = *root + (*entry & ~kSubfolder);
    }
    return sections.Offset(file.Double(place));
}

} // namespace

std::optional<services::FixedFileVersion> ProgramFileVersions::GetFileVersion(const std::string& path) {
    const std::optional<FileFacts> facts = ReadFileFacts(path);
    if (!facts || !facts->file) {
        return std::nullopt;
    }
    ProgramFile file(path);
    const auto resource = VersionResource(file);
    if (!resource || file.Double(*resource + kFixedOffset) != kFixedSignature) {
        return std::nullopt;
    }
    const auto high = file.Number(*resource + kFixedOffset + 8, 4);
    const auto low = file.Number(*resource + kFixedOffset + 12, 4);
    if (!high || !low) {
        return std::nullopt;
    }
    return services::FixedFileVersion{*high, *low};
}

} // namespace qndr::suite
