#include "programs/qndr5ctl/log_tail.h"

#include "text/utf8_path.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

namespace qndr::control {

namespace {

namespace fs = std::filesystem;

/// Read in one piece and closed again: an open file could not be renamed by the agent everywhere. Empty when the
/// file cannot be read.
std::string ReadFrom(const fs::path& file, std::uintmax_t offset) {
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(offset));
    return stream ? std::string(std::istreambuf_iterator<char>(stream), {}) : std::string();
}

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        std::string line = text.substr(begin, end - begin);
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        lines.push_back(std::move(line));
        begin = end + 1;
    }
    return lines;
}

} // namespace

std::vector<fs::path> LogTail::Files() const {
    std::vector<std::pair<fs::file_time_type, fs::path>> found;
    std::error_code error;
    for (fs::directory_iterator entry(folder_, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = text::FromPath(entry->path().filename());
        std::error_code ignored;
        if (name.starts_with(program_ + " ") && name.ends_with(".log") && entry->is_regular_file(ignored)) {
            found.emplace_back(entry->last_write_time(ignored), entry->path());
        }
    }
    // Of two files of one moment the renamed one, which has the longer name, is the older.
    std::sort(found.begin(), found.end(), [](const auto& one, const auto& other) {
        return one.first != other.first ? one.first > other.first
                                        : one.second.native().size() < other.second.native().size();
    });
    std::vector<fs::path> files;
    files.reserve(found.size());
    for (auto& [time, path] : found) {
        files.push_back(std::move(path));
    }
    return files;
}

fs::path LogTail::NewestFile() const {
    const auto files = Files();
    return files.empty() ? fs::path() : files.front();
}

std::vector<std::string> LogTail::LastLines(std::size_t count) {
    std::vector<std::string> lines;
    file_.clear();
    for (const fs::path& file : Files()) {
        const std::string text = ReadFrom(file, 0);
        if (file_.empty()) {
            file_ = file;
            offset_ = text.size();
        }
        std::vector<std::string> older = SplitLines(text);
        const std::size_t wanted = std::min(count - lines.size(), older.size());
        lines.insert(lines.begin(), older.end() - static_cast<std::ptrdiff_t>(wanted), older.end());
        if (lines.size() == count) {
            break;
        }
    }
    return lines;
}

std::string LogTail::Poll() {
    const std::vector<fs::path> files = Files();
    if (files.empty()) {
        return "";
    }
    std::string text;
    std::error_code error;
    const bool isOtherFile = files.front() != file_;
    if (isOtherFile || fs::file_size(files.front(), error) < offset_) {
        // The rest of the file so far: under its own name when a month has begun, else it was renamed.
        const fs::path previous = isOtherFile ? file_ : files.size() > 1 ? files[1] : fs::path();
        if (!previous.empty()) {
            text = ReadFrom(previous, offset_);
        }
        file_ = files.front();
        offset_ = 0;
    }
    const std::string added = ReadFrom(file_, offset_);
    offset_ += added.size();
    return text + added;
}

} // namespace qndr::control
