#include "suite/files/ini_files.h"

#include "services/failure.h"
#include "suite/computer/file_calls.h"
#include "suite/files/file_writing.h"
#include "text/editing.h"

// Text stays UTF-8, so the conversions, which need a source file that not every platform ships, are left out.
#define SI_NO_CONVERSION
#include <SimpleIni.h>

#include <array>

namespace qndr::suite {
namespace {

using services::Failure;

constexpr std::size_t kLargestFile = 1024 * 1024;
constexpr std::string_view kBlanks = " \t";

/// UTF-8, one value a key, no values over several lines.
class IniText : public CSimpleIniA {
  public:
    IniText() : CSimpleIniA(true, false, false) { SetSpaces(false); }
};

/// The content, nothing when the file cannot be read or is too large.
std::optional<std::string> ReadText(const std::string& path) {
    OpenFile file;
    if (file.OpenForReading(path)) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 16 * 1024> piece;
    for (;;) {
        std::size_t count = 0;
        if (file.Read(piece, count)) {
            return std::nullopt;
        }
        if (count == 0) {
            return text;
        }
        text.append(piece.data(), count);
        if (text.size() > kLargestFile) {
            return std::nullopt;
        }
    }
}

bool LoadIni(const std::string& path, IniText& ini) {
    const std::optional<std::string> text = ReadText(path);
    return text && text->find('\0') == std::string::npos && ini.LoadData(*text) >= 0;
}

} // namespace

std::string DiskIniTools::GetValue(const std::string& section, const std::string& key, const std::string& fallback,
                                   const std::string& file) {
    IniText ini;
    if (!LoadIni(file, ini)) {
        return fallback;
    }
    const char* value = ini.GetValue(section.c_str(), key.c_str(), nullptr);
    return value == nullptr ? fallback : text::Trimmed(value, kBlanks);
}

void DiskIniTools::SetValue(const std::string& section, const std::string& key, const std::string& value,
                            const std::string& file) {
    const auto fail = [&](const std::string& words) {
        if (unwritten_ != nullptr) {
            unwritten_->Note(file);
        }
        throw Failure("the value '" + key + "' cannot be written to '" + file + "': " + words);
    };
    if (value.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos) {
        fail("it holds a line break");
    }
    IniText ini;
    if (NameIsTaken(file) && !LoadIni(file, ini)) {
        fail("this is no INI file");
    }
    std::string text;
    if (ini.SetValue(section.c_str(), key.c_str(), text::Trimmed(value, kBlanks).c_str()) < 0 ||
        ini.Save(text) < 0) {
        fail("it cannot be put into the file");
    }
    if (const std::string words = ReplaceFile(file, text); !words.empty()) {
        fail(words);
    }
}

} // namespace qndr::suite
