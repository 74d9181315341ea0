#include "changes/apply_changes_from_roaming_workstations.h"
#include "changes/order_number_sync.h"
#include "initial/initial_sync_main.h"
#include "initial/initial_sync_roaming.h"
#include "support/agent_bench.h"
#include "text/editing.h"

namespace qndr::testing {
namespace {

const std::string Password = "s3cret";

/// Each would do something else as soon as it were taken for a part of its statement.
const Lines Texts{
    "x' OR 1=1 --",
    "x' OR '1'='1",
    "5.0', NextSequenceFromRoaming = 99 --",
    "x' || (SELECT Value FROM CompanyOptions) || '",
    "x' || (WITH RECURSIVE r(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM r) SELECT COUNT(*) FROM r) || '",
    "m', CompanyType=1, Name='",
};

/// A company into whose statements somebody else's texts go.
class HostileTextsTest : public AgentBench {
  protected:
    void Open(int type) {
        OpenCompany(type);
        AddWorkstation(RoamingID, 3);
        AddWorkstation(OtherID, 4);
        Sql("UPDATE RoamingWorkstations SET NextSequenceFromRoaming = 5");
        Sql("INSERT INTO CompanyOptions VALUES ('Default', 'Mail', 'Password', '" + Password + "')");
    }
    /// Every value of every table.
    std::string Everything() {
        std::string all;
        auto tables = Connection().Prepare("SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY name");
        while (tables.Step()) {
            all.append("\n").append(tables.Text(0));
            auto rows = Connection().Prepare("SELECT * FROM " + std::string(tables.Text(0)));
            while (rows.Step()) {
                all += '\n';
                for (int column = 0; column < rows.ColumnCount(); ++column) {
                    all.append(rows.Text(column)).append("|");
                }
            }
        }
        return all;
    }
    static std::string Quoted(const std::string& text) { return "'" + text::ReplaceAll(text, "'", "''") + "'"; }

    /// Runs a step of main that takes the file, and expects that its statement is reported as one that failed and
    /// has changed nothing.
    void ExpectRefused(Step step, const std::string& keys, const std::string& statement, bool isMarked) {
        const std::string before = Everything();
        const std::string file = DropSyncFile(MainID + "~t~x.zip", keys);
        const Lines lines = Run(step);
        const auto error = std::ranges::find_if(lines, [](const std::string& line) {
            return line.starts_with("Error: There was a problem updating ");
        });
        ASSERT_GE(lines.end() - error, 3) << keys;
        EXPECT_EQ(error[1], statement);
        EXPECT_EQ(error[2], "the statement is refused: a value in it holds a quote or a null character");
        EXPECT_EQ(Everything(), before) << keys;
        EXPECT_EQ(std::filesystem::remove(file), !isMarked) << keys;
    }
};

TEST_F(HostileTextsTest, SenderOfAnAcknowledgeOrARequestStaysAValue) {
    Open(1);
    for (const std::string& text : Texts) {
        const auto update = [&](int state) {
            return "UPDATE RoamingWorkstations SET SyncState = " + std::to_string(state) + " WHERE UniqueID = '" +
                   text + "'";
        };
        ExpectRefused(ReceiveInitialSyncAcknowledges, "SyncState=4\r\nFrom=" + text + "\r\n", update(4), true);
        // A request gets so far only from a workstation that is known by this name.
        Sql("INSERT INTO RoamingWorkstations (UniqueID, Name) VALUES (" + Quoted(text) + ", 'Laptop')");
        ExpectRefused(ReceiveInitialSyncRequests, "SyncState=-2\r\nFrom=" + text + "\r\n", update(1), true);
    }
}

TEST_F(HostileTextsTest, VersionOfTheSenderStaysAValue) {
    Open(1);
    Sql("UPDATE RoamingWorkstations SET SyncState = 4");
    for (const std::string& text : Texts) {
        ExpectRefused(ApplyChangesFromRoamingWorkstations,
                      "Sequence=5\r\nFrom=" + RoamingID + "\r\nFromAppVersion=" + text + "\r\n",
                      "UPDATE RoamingWorkstations SET NextSequenceFromRoaming = NextSequenceFromRoaming + 1, "
                      "LastReceivedFrom = '20261122 19:08:52' WHERE ID = 1",
                      false);
    }
}

TEST_F(HostileTextsTest, SenderOfTheFirstDataStaysAValueAndTheRestGoesOn) {
    Open(2);
    Sql("UPDATE Company SET SyncState = 2, MainUniqueID = '" + MainID + "'");
    const std::string before = Everything();
    for (const std::string& text : Texts) {
        DropSyncFile(RoamingID + "~t~x.zip", "SyncState=1\r\nFrom=" + text + "\r\n");
        Sql("UPDATE TakenFile SET Sender = ''"); // what the import leaves, of which there is none here
        ReceiveInitialSync(context, nullptr);
        EXPECT_EQ(Value("SELECT SyncState FROM Company"), "4") << text;
        Sql("UPDATE Company SET SyncState = 2");
        EXPECT_EQ(Everything(), before) << text;
    }
    EXPECT_EQ(engine->imports.size(), Texts.size());
    for (const std::string& file : FilesBelow("Sync")) {
        EXPECT_TRUE(file.starts_with("Sync/" + MainID + "~")) << file;
    }
    // Whatever a text may bring about some day: what the company is stays.
    for (const std::string set : {"CompanyType = 1", "LastAuditID = 3, [uniqueid] = 'X'"}) {
        EXPECT_EQ(Company().ExecuteNonQuery(services::Statement("UPDATE Company SET " + set)), -1) << set;
    }
    EXPECT_EQ(Everything(), before);
}

TEST_F(HostileTextsTest, ImportedNumbersStayValuesAndTheirOrdersAreFlagged) {
    Open(2);
    Lines texts = Texts;
    texts.insert(texts.end(), {"(SELECT Value FROM CompanyOptions)", "{1}", "1 - 1"});
    for (const std::string& text : texts) {
        for (const std::string column : {"UniqueID", "State", "ReferenceNumber", "OrderNumber"}) {
            if (column == "UniqueID" && text.find('\'') == std::string::npos) {
                continue; // stands in quotes there, and is as good as any other
            }
            Sql("UPDATE Company SET SyncState = 4");
            Sql("INSERT INTO Orders (UniqueID, State, ReferenceNumber, OrderNumber) VALUES ('O', 2, 41, 1001)");
            Sql("UPDATE Orders SET " + column + " = " + Quoted(text));
            const std::string before = Everything();
            SendOrderNumberSyncs(context, nullptr);
            EXPECT_EQ(Value("SELECT SyncState FROM Orders"), "1") << column << " " << text;
            Sql("UPDATE Orders SET SyncState = 0");
            EXPECT_EQ(Everything(), before) << column << " " << text;
            Sql("DELETE FROM Orders");
        }
    }
}

} // namespace
} // namespace qndr::testing
