#include "suite/objects/record_table.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace qndr::suite {
namespace {

/// Blocks instead of one text: a growing text is copied, and takes more than twice its size meanwhile. The first
/// is small, for most results are, and each next one four times as large up to this size.
constexpr std::size_t kLargestBlock = 1024 * 1024;
constexpr std::size_t kFirstBlock = 4096;

std::size_t BlockSize(std::size_t index) {
    return std::min(kLargestBlock, kFirstBlock << (2 * std::min<std::size_t>(index, 8)));
}

// The length in front of each value: seven bits a byte, the lowest first, the high bit set on all but the last
// byte.

void AppendLength(std::string& text, std::size_t length) {
    while (length >= 0x80) {
        text.push_back(static_cast<char>(0x80 | (length & 0x7F)));
        length >>= 7;
    }
    text.push_back(static_cast<char>(length));
}

std::string_view TakeValue(std::string_view& text) {
    std::size_t length = 0;
    int shift = 0;
    std::size_t at = 0;
    for (bool more = true; more; ++at, shift += 7) {
        const auto byte = static_cast<unsigned char>(text[at]);
        length |= static_cast<std::size_t>(byte & 0x7F) << shift;
        more = (byte & 0x80) != 0;
    }
    const std::string_view value = text.substr(at, length);
    text.remove_prefix(at + length);
    return value;
}

/// Line breaks as the literal texts in which they travel; whoever reads a value turns them back.
void AppendEscaped(std::string& result, std::string_view value) {
    for (const char c : value) {
        if (c == '\r') {
            result += "&#13;";
        } else if (c == '\n') {
            result += "&#10;";
        } else {
            result += c;
        }
    }
}

class ValueNode : public services::Node {
  public:
    explicit ValueNode(std::string_view value) : value_(value) {}

    std::unique_ptr<services::Node> selectSingleNode(const std::string&) const override { return nullptr; }
    std::string text() const override {
        std::string result;
        result.reserve(value_.size());
        AppendEscaped(result, value_);
        return result;
    }

  private:
    std::string_view value_;
};

class RowNode : public services::Node {
  public:
    RowNode(const RecordTable& table, std::size_t row) : table_(table), row_(row) {}

    std::unique_ptr<services::Node> selectSingleNode(const std::string& name) const override {
        const auto& columns = table_.Columns();
        const auto found = std::find(columns.begin(), columns.end(), name);
        if (found == columns.end()) {
            return nullptr;
        }
        return std::make_unique<ValueNode>(table_.Value(row_, static_cast<std::size_t>(found - columns.begin())));
    }
    /// The texts of all columns, as the document interface has it for an element with children.
    std::string text() const override {
        std::string result;
        for (std::size_t column = 0; column < table_.Columns().size(); ++column) {
            AppendEscaped(result, table_.Value(row_, column));
        }
        return result;
    }

  private:
    const RecordTable& table_;
    std::size_t row_;
};

class RowList : public services::NodeList {
  public:
    explicit RowList(const RecordTable* table) : table_(table) {}

    long length() const override { return table_ == nullptr ? 0 : static_cast<long>(table_->RowCount()); }
    std::unique_ptr<services::Node> item(long index) const override {
        if (index < 0 || index >= length()) {
            return nullptr;
        }
        return std::make_unique<RowNode>(*table_, static_cast<std::size_t>(index));
    }

  private:
    const RecordTable* table_;
};

} // namespace

RecordTable::RecordTable(std::vector<std::string> columns) : columns_(std::move(columns)) {
}

void RecordTable::AddRow(const std::vector<std::string_view>& values) {
    // A length takes ten bytes at most. A row lies in one block whole; a long one has a block of its own.
    std::size_t size = 0;
    for (const std::string_view value : values) {
        size += value.size() + 10;
    }
    if (blocks_.empty() || blocks_.back().size() + size > blocks_.back().capacity()) {
        const std::size_t room = std::max(size, BlockSize(blocks_.size()));
        blocks_.emplace_back().reserve(room);
    }
    std::string& block = blocks_.back();
    rows_.push_back({static_cast<std::uint32_t>(blocks_.size() - 1), static_cast<std::uint32_t>(block.size())});
    for (const std::string_view value : values) {
        AppendLength(block, value.size());
        block.append(value);
    }
}

std::string_view RecordTable::Value(std::size_t row, std::size_t column) const {
    const Place& place = rows_[row];
    std::string_view rest = std::string_view(blocks_[place.block]).substr(place.offset);
    std::string_view value = TakeValue(rest);
    for (std::size_t i = 0; i < column; ++i) {
        value = TakeValue(rest);
    }
    return value;
}

std::unique_ptr<services::NodeList> RecordTable::selectNodes(const std::string& path) const {
    return std::make_unique<RowList>(path == "//Records/Record" ? this : nullptr);
}

} // namespace qndr::suite
