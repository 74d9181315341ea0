#include "services/exchange_statements.h"

#include <gtest/gtest.h>

namespace qndr::services {
namespace {

using Kind = ExportRequest::Kind;

TEST(ExchangeStatements, AreRecognizedAsWhatTheyWereBuiltFor) {
    const struct {
        std::string table;
        std::string statement;
        Kind kind;
        std::int64_t id;
    } entries[] = {
        {"Terms", ExportOfTable("Terms"), Kind::Rows, 0},
        {"Terms", ExportOfTable("Terms", "DueDays <> 2"), Kind::Rows, 0},
        {"Terms", ExportOfRow("Terms", -7), Kind::Row, -7},
        {"Terms WHERE ID = 3", ExportOfTable("Terms WHERE ID = 3"), Kind::Rows, 0},
        {"odd {1} ' {1}", ExportOfRow("odd {1} ' {1}", 12), Kind::Row, 12},
        {"Terms", ExportOfDeletion(5), Kind::Deletion, 5},
    };
    for (const auto& entry : entries) {
        const ExportRequest request = RecognizeExport(entry.table, entry.statement, entry.kind == Kind::Deletion);
        EXPECT_EQ(request.kind, entry.kind) << entry.statement;
        EXPECT_EQ(request.id, entry.id) << entry.statement;
        if (entry.kind != Kind::Rows) {
            EXPECT_EQ(entry.statement.substr(request.idStarts), std::to_string(entry.id)) << entry.statement;
        }
    }
    EXPECT_EQ(ExportOfRow("odd {1}", 12), "SELECT * FROM vwExporting_odd 12 WHERE ID = 12");
}

} // namespace
} // namespace qndr::services
