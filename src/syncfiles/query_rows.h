#pragma once

#include "services/record_document.h"
#include "shared/agent_context.h"

#include <memory>

namespace qndr {

/// The rows that one statement gave. A failed statement and one without rows are alike: nothing to walk.
class QueryRows {
  public:
    QueryRows(AgentContext& context, const services::Statement& statement);

    long Count() const { return count_; }
    /// The row at `index`, counted from 0, or nothing. Must not outlive this object.
    std::unique_ptr<services::Node> Row(long index) const;

  private:
    std::unique_ptr<services::RecordDocument> document_;
    std::unique_ptr<services::NodeList> list_;
    long count_ = 0;
};

} // namespace qndr
