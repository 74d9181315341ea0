#include "syncfiles/query_rows.h"

#include "shared/failure_rule.h"

namespace qndr {

QueryRows::QueryRows(AgentContext& context, const services::Statement& statement) {
    Attempt([&] { document_ = context.Database().ExecuteRead(statement); });
    if (document_) {
        Attempt([&] { list_ = document_->selectNodes("//Records/Record"); });
    }
    if (list_) {
        Attempt([&] { count_ = list_->length(); });
    }
}

std::unique_ptr<services::Node> QueryRows::Row(long index) const {
    std::unique_ptr<services::Node> row;
    if (list_) {
        Attempt([&] { row = list_->item(index); });
    }
    return row;
}

} // namespace qndr
