#pragma once

#include <memory>
#include <string>

namespace qndr::services {

/// A node of a query result: a row (an element `Record`) or one column of a row. A node must not outlive the
/// document that it came from.
class Node {
  public:
    virtual ~Node() = default;
    /// The child element with this name (the column's name; letter case counts), or nothing.
    virtual std::unique_ptr<Node> selectSingleNode(const std::string& name) const = 0;
    /// The value as text, line breaks as the literal texts "&#13;" and "&#10;". NULL is an empty text. A date
    /// has the form in which the database stores it.
    virtual std::string text() const = 0;
};

class NodeList {
  public:
    virtual ~NodeList() = default;
    virtual long length() const = 0;
    /// The node at `index`, counted from 0, or nothing when there is none.
    virtual std::unique_ptr<Node> item(long index) const = 0;
};

/// The result of Database::ExecuteRead: rows are the elements `Record` under the root `Records`. All rows were
/// read when the document came into being; later changes of the database do not reach it.
class RecordDocument {
  public:
    virtual ~RecordDocument() = default;
    /// The rows for "//Records/Record", an empty list for any other path. The list must not outlive the document.
    virtual std::unique_ptr<NodeList> selectNodes(const std::string& path) const = 0;
};

} // namespace qndr::services
