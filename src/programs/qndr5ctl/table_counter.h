#pragma once

#include "programs/qndr5ctl/archive_contents.h"

#include <expat.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace qndr::control {

/// Counts the records of an exchange document, which it is given piece by piece.
class TableCounter {
  public:
    TableCounter();
    ~TableCounter() = default;
    TableCounter(const TableCounter&) = delete;
    TableCounter& operator=(const TableCounter&) = delete;

    /// Raises services::Failure when the document is not well-formed.
    void Take(std::string_view piece);
    /// Ends the document. Raises as Take, and when it was no exchange document.
    std::vector<TableCount> Finish();

  private:
    static void StartElement(void* self, const char* name, const char** attributes);
    static void EndElement(void* self, const char* name);
    void StartTable(const char** attributes);
    void Parse(std::string_view piece, bool last);

    std::unique_ptr<std::remove_pointer_t<XML_Parser>, void (*)(XML_Parser)> parser_;
    std::vector<TableCount> counts_;
    std::map<std::pair<std::string, bool>, std::size_t> indexes_; ///< of table and deletion in counts_
    std::size_t current_ = 0;
    int depth_ = 0;
    bool isExchange_ = false;
};

} // namespace qndr::control
