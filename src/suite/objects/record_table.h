#pragma once

#include "services/record_document.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::suite {

/// The rows of a query result in little memory: the values lie one behind the other in blocks of text, column
/// names are kept once, and nodes are made only when they are asked for. A row costs its text, 8 bytes and 1 byte
/// for each value of up to 127 bytes.
class RecordTable : public services::RecordDocument {
  public:
    explicit RecordTable(std::vector<std::string> columns);

    /// Adds a row with one value for each column. NULL is an empty text.
    void AddRow(const std::vector<std::string_view>& values);

    std::size_t RowCount() const { return rows_.size(); }
    const std::vector<std::string>& Columns() const { return columns_; }
    /// The value as it was added. Row and column must exist.
    std::string_view Value(std::size_t row, std::size_t column) const;

    std::unique_ptr<services::NodeList> selectNodes(const std::string& path) const override;

  private:
    struct Place {
        std::uint32_t block;
        std::uint32_t offset;
    };

    std::vector<std::string> columns_;
    std::deque<std::string> blocks_;
    std::deque<Place> rows_;
};

} // namespace qndr::suite
