#include "initial/export_tables.h"
#include "initial/initial_sync_main.h"
#include "suite/schema/company_schema.h"
#include "support/agent_bench.h"

namespace qndr::testing {
namespace {

class InitialSyncMainTest : public AgentBench {
  protected:
    InitialSyncMainTest() { OpenCompany(1); }
};

TEST_F(InitialSyncMainTest, FullExportIsTheSchemasListInItsOrder) {
    Lines expected;
    for (const suite::Table& table : suite::AuditedTables()) {
        if (table.exported) {
            expected.push_back(std::string(table.name) + ": SELECT * FROM vwExporting_" + std::string(table.name));
        }
    }
    for (const std::size_t place : {33U, 37U, 40U, 43U}) {
        expected.at(place - 1) += " WHERE ActivityDate > DATEADD(day,-30,GETUTCDATE())";
    }
    expected.at(48) += " WHERE AttachmentType <> 2 AND AttachmentType <> 3";
    Lines listed;
    for (const ExportTable& table : ExportTables) {
        listed.push_back(std::string(table.Name) + ": " + ExportStatement(table));
        EXPECT_NE(Company().ExecuteRead(services::Statement(ExportStatement(table))), nullptr)
            << Company().LastSQLErrorDescription();
    }
    EXPECT_EQ(listed, expected);
}

TEST_F(InitialSyncMainTest, EveryRowThatAsksGetsTheFullData) {
    EXPECT_EQ(Run(SendInitialSyncs), Lines{});
    AddWorkstation("other", 4);
    AddWorkstation(RoamingID, 1);
    AddWorkstation(OtherID, 1, 300);
    const Lines lines = Run(SendInitialSyncs);
    EXPECT_EQ(activity.texts, Lines(2, "Sending initial sync to 'Laptop'."));
    EXPECT_EQ(Value("SELECT group_concat(SyncState) FROM RoamingWorkstations"), "4,3,3");
    EXPECT_EQ(lines.at(lines.size() / 2 + 4), "SyncState = 1, Sequence = 0, ReferenceCode = 0")
        << "300 is no byte";
    ASSERT_EQ(engine->exported.size(), 2U);
    EXPECT_EQ(engine->exported[0].size(), ExportTables.size());
    EXPECT_EQ(engine->exported[1].size(), 2 * ExportTables.size()) << "what is pending stays pending";
}

TEST_F(InitialSyncMainTest, AcknowledgesNeedACompanyThatIsAtNoStateItself) {
    AddWorkstation(RoamingID, 3);
    DropSyncFile(MainID + "~t~x.zip", "SyncState=4\r\nFrom=" + RoamingID + "\r\n");
    Sql("UPDATE Company SET SyncState = 4");
    EXPECT_EQ(Run(ReceiveInitialSyncAcknowledges).at(2), "Error: ReceiveInitialSyncAcknowledges - 1");
    EXPECT_EQ(FilesBelow("Sync").size(), 1U);
}

} // namespace
} // namespace qndr::testing
