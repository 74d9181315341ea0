#include "shared/failure_rule.h"
#include "shared/paths2.h"
#include "text/editing.h"
#include "text/utf8.h"

namespace qndr {
namespace {

/// Up to this length a path is a drive's root, and is treated as one.
constexpr std::size_t kDriveRootLength = 3;

constexpr std::int32_t kConnected = 0;
constexpr std::int32_t kConnectionUnavailable = 1201;
constexpr std::int32_t kNotConnected = 2250;

} // namespace

Paths2::Paths2(services::DirectoryCalls& calls, services::FileTools& fileTools, services::MessagePump& messages)
    : calls_(calls), fileTools_(fileTools), messages_(messages), separator_(calls.Separator()),
      hasDrives_(separator_ == '\\') {
}

bool Paths2::SplitPath(const std::string& path, std::string& folder, std::string& name, std::string& extension) {
    // One of the outputs may be the path itself.
    const std::string whole = path; // NOLINT(performance-unnecessary-copy-initialization)
    folder.clear();
    name.clear();
    extension.clear();
    const auto separator = whole.rfind(separator_);
    if (separator != std::string::npos && whole.find('.') == std::string::npos) {
        folder = whole;
        return true;
    }
    if (separator != std::string::npos) {
        folder = whole.substr(0, separator + 1);
    }
    name = whole.substr(folder.size());
    if (const auto dot = name.rfind('.'); dot != std::string::npos) {
        extension = name.substr(dot);
        name.erase(dot);
    }
    folder = FixPath(folder, true);
    return true;
}

bool Paths2::SplitPath2(const std::string& path, std::string& folder, std::string& fileName) {
    std::string name;
    std::string extension;
    const bool split = SplitPath(path, folder, name, extension);
    fileName = name + extension;
    return split;
}

std::string Paths2::FixPath(const std::string& path, bool addSeparator) {
    const std::string trimmed = text::Trimmed(path);
    return addSeparator ? QualifyPath(trimmed) : UnQualifyPath(trimmed);
}

std::string Paths2::QualifyPath(const std::string& path) const {
    return path.empty() || path.back() == separator_ ? path : path + separator_;
}

std::string Paths2::UnQualifyPath(const std::string& path) const {
    std::string result = text::Trimmed(path);
    const bool isRoot = !hasDrives_ && result.size() == 1;
    if (!result.empty() && result.back() == separator_ && !isRoot) {
        result.pop_back();
    }
    return result;
}

bool Paths2::CharacterIsAllowedForFileName(std::string_view character) {
    return character.size() != 1 || std::string_view(R"(\/:*?"><|)").find(character) == std::string_view::npos;
}

std::string Paths2::FixForFileName(const std::string& text, const std::string& replacement,
                                   bool allowSpaces) const {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        // Byte by byte: none of the characters that are not allowed stands inside a longer one in UTF-8.
        const auto character = std::string_view(text).substr(i, 1);
        result += CharacterIsAllowedForFileName(character) ? character : std::string_view(replacement);
    }
    return allowSpaces ? result : text::ReplaceAll(result, " ", replacement);
}

void Paths2::TrimNull(std::string& text) {
    if (const auto end = text.find('\0'); end != std::string::npos) {
        text.erase(end);
    }
}

bool Paths2::IsOnShare(const std::string& path) const {
    return hasDrives_ && path.starts_with(R"(\\)");
}

bool Paths2::IsRefused(const std::string& path) const {
    return path.empty() || text::CountCharacters(path) > calls_.MaximumPathLength();
}

bool Paths2::IsJudgedByFirstEntry(const std::string& path) const {
    return hasDrives_ && (text::CountCharacters(path) <= kDriveRootLength || IsOnShare(path));
}

std::string Paths2::ExpandNetworkDrive(const std::string& path) {
    if (!hasDrives_ || path.size() < 2 || path[1] != ':') {
        return path;
    }
    services::NetworkConnection connection{-1, ""};
    Attempt([&] { connection = calls_.FindNetworkConnection(path.substr(0, 2)); });
    // A connection that is only remembered gives the share as well: the share is meant, whatever state the drive
    // letter is in.
    if (connection.result != kConnected && connection.result != kConnectionUnavailable &&
        connection.result != kNotConnected) {
        return path;
    }
    TrimNull(connection.buffer);
    if (connection.buffer.empty()) {
        return path;
    }
    return text::Trimmed(connection.buffer) + path.substr(2);
}

std::string Paths2::ToWalk(const std::string& path) const {
    // A shorter path is a drive without its root: its listing is that of the drive's current folder.
    return hasDrives_ && text::CountCharacters(path) < kDriveRootLength ? path : QualifyPath(path);
}

} // namespace qndr
