#include "programs/qndr5ctl/output.h"

#include "text/utf8.h"

#include <algorithm>

namespace qndr::control {

namespace {

/// The text on one line and without control characters, so that a value from a database cannot break a table or
/// reach the terminal as a command.
std::string OnOneLine(const std::string& text) {
    std::string line = text;
    std::replace_if(
        line.begin(), line.end(), [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, ' ');
    return line;
}

/// Every character counts as one column of a terminal.
std::string Padded(const std::string& text, std::size_t width, bool right) {
    const std::size_t own = text::CountCharacters(text);
    const std::string blanks(width > own ? width - own : 0, ' ');
    return right ? blanks + text : text + blanks;
}

void PrintLine(std::ostream& out, std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

} // namespace

void Listing::Add(std::vector<Json> cells) {
    rows_.push_back(std::move(cells));
}

void Listing::PrintTable(std::ostream& out, const std::string& whenEmpty) const {
    if (rows_.empty()) {
        out << whenEmpty << '\n';
        return;
    }
    std::vector<std::string> lines(rows_.size() + 1);
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        const std::string& title = columns_[column].title;
        if (title.empty()) {
            continue;
        }
        std::vector<std::string> texts{title};
        std::size_t width = text::CountCharacters(title);
        bool anyNumber = false;
        bool anyText = false;
        for (const auto& row : rows_) {
            texts.push_back(OnOneLine(row[column].ToPlainText()));
            width = std::max(width, text::CountCharacters(texts.back()));
            anyNumber = anyNumber || row[column].IsNumber();
            anyText = anyText || !(row[column].IsNumber() || row[column].IsNull());
        }
        for (std::size_t line = 0; line < lines.size(); ++line) {
            lines[line] += (lines[line].empty() ? "" : "  ") + Padded(texts[line], width, anyNumber && !anyText);
        }
    }
    for (const std::string& line : lines) {
        PrintLine(out, line);
    }
}

Json Listing::ToJson() const {
    Json array = Json::Array();
    for (const auto& row : rows_) {
        Json object = Json::Object();
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            if (!columns_[column].key.empty()) {
                object.Set(columns_[column].key, row[column]);
            }
        }
        array.Append(std::move(object));
    }
    return array;
}

void Facts::Add(const std::string& title, const std::string& key, Json value) {
    if (!title.empty()) {
        lines_.emplace_back(title + ":", OnOneLine(value.ToPlainText()));
    }
    if (!key.empty()) {
        json_.Set(key, std::move(value));
    }
}

void Facts::Print(std::ostream& out) const {
    std::size_t width = 0;
    for (const auto& [title, value] : lines_) {
        width = std::max(width, text::CountCharacters(title));
    }
    for (const auto& [title, value] : lines_) {
        PrintLine(out, Padded(title, width, false) + "  " + value);
    }
}

} // namespace qndr::control
