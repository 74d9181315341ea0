#include "programs/qndr5ctl_fixture.h"

namespace qndr::control {
namespace {

TEST_F(Qndr5ctl, ListsAndRestoresWhatAResetGaveUp) {
    const std::string laptop = NewCompany("Laptop", "roaming");
    OnDatabase("Laptop", "UPDATE Company SET SyncState = 4, MainUniqueID = 'M'");
    OnDatabase("Laptop", "INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O1', 1042)");
    const auto give = [&](const std::string& table, const std::string& uniqueID, const std::string& values,
                          int reason) {
        OnDatabase("Laptop", "INSERT INTO ImportConflicts (TableName, RowUniqueID, LosingOrigin, WinningOrigin, "
                             "LosingValues, Reason) SELECT '" +
                                 table + "', '" + uniqueID + "', UniqueID, 'M', " + values + ", " +
                                 std::to_string(reason) + " FROM Company");
    };
    give("Terms", "T1", R"('{"Name":"Net 30"}')", 2);
    give("Terms", "T2", R"('{"Name":')", 1);
    give("Orders", "O1", R"('{"OrderNumber":"1042"}')", 1);
    give("Terms", "T3", R"('{"Name":"Net 60"}')", 0);
    OnDatabase("Laptop", "UPDATE GivenUpMark SET AuditID = (SELECT MAX(ID) FROM AuditLog)");
    OnDatabase("Laptop", "DELETE FROM AuditLog");

    const std::string listed = MustRun({"conflicts", "list", laptop, "--json"});
    EXPECT_EQ(JsonAt(listed, "$[0].reason"), "not confirmed before a reset");
    EXPECT_EQ(JsonAt(listed, "$[1].rowName"), "");
    EXPECT_EQ(JsonAt(listed, "$[2].reason"), "given up by a reset");
    EXPECT_EQ(JsonAt(listed, "$[2].rowName"), "1042") << "the emptied log cannot tell";
    EXPECT_EQ(JsonAt(listed, "$[3].reason"), "changed on both sides");

    EXPECT_EQ(Run({"conflicts", "restore", laptop}).status, 2);
    EXPECT_EQ(Run({"conflicts", "restore", laptop, "1", "--all-given-up"}).status, 2);
    const Outcome outcome = Run({"conflicts", "restore", "--all-given-up", laptop});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "Restored 2 changes that were given up by a reset.\n");
    EXPECT_TRUE(outcome.errors.starts_with("qndr5ctl: not all could be restored: 2: ")) << outcome.errors;
    EXPECT_EQ(JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.waitingChanges"), "2");
    MustRun({"conflicts", "restore", laptop, "3"});
    EXPECT_EQ(JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.waitingChanges"), "3") << "sent again";

    MustRun({"edit", laptop, "Orders", "O1", "Notes=since"});
    give("Orders", "O1", R"('{"OrderNumber":"1042","Notes":"before"}')", 1);
    OnDatabase("Laptop", "UPDATE ImportConflicts SET State = 2 WHERE ID = 2");
    const std::string left = MustRun({"conflicts", "restore", laptop, "--all-given-up"});
    EXPECT_NE(left.find("The row of 1 more was changed here since"), std::string::npos) << left;
    EXPECT_EQ(JsonAt(MustRun({"show", laptop, "Orders", "O1", "--json"}), "$.Notes"), "since");
}

} // namespace
} // namespace qndr::control
