#pragma once

#include "text/json.h"

#include <ostream>
#include <string>
#include <vector>

namespace qndr::control {

using text::Json;

/// A column of a Listing. Without a title it is shown to machines only, without a key to people only.
struct ListColumn {
    std::string title;
    std::string key;
};

/// Rows of like values: an aligned table for people, an array of objects for machines.
class Listing {
  public:
    explicit Listing(std::vector<ListColumn> columns) : columns_(std::move(columns)) {}

    /// One cell a column.
    void Add(std::vector<Json> cells);
    bool Empty() const { return rows_.empty(); }

    /// Numbers stand at the right of their column. Without rows it is `whenEmpty`, a line of its own.
    void PrintTable(std::ostream& out, const std::string& whenEmpty) const;
    Json ToJson() const;

  private:
    std::vector<ListColumn> columns_;
    std::vector<std::vector<Json>> rows_;
};

/// Named values of one thing: a line each for people, one object for machines. As in a Listing, an empty title or
/// key keeps a value from the one or the other.
class Facts {
  public:
    void Add(const std::string& title, const std::string& key, Json value);

    void Print(std::ostream& out) const;
    Json ToJson() const { return json_; }

  private:
    std::vector<std::pair<std::string, std::string>> lines_;
    Json json_ = Json::Object();
};

} // namespace qndr::control
