#include "services/failure.h"
#include "suite/admin/conflicts.h"
#include "suite/engine/row_json.h"
#include "suite/engine_fixture.h"

#include <gtest/gtest.h>

namespace qndr::suite {
namespace {

/// A main company with rows of its own, over which a laptop's versions come.
class EngineConflictsTest : public testing::Test {
  protected:
    void Arrives(const std::string& tables) {
        const std::string path = folder_.Path("data.xml");
        WriteFile(path, Exchange(tables, LaptopID));
        ASSERT_TRUE(main_.engine.ImportFile(path));
    }
    std::int64_t NewestConflict() { return main_.Number("SELECT MAX(ID) FROM ImportConflicts"); }
    std::string NewestAudit() {
        return main_.Value("SELECT ID || ' ' || TableName || ' ' || AuditType || ' ' || ifnull(Origin, 'own') "
                           "FROM AuditLog ORDER BY ID DESC LIMIT 1");
    }
    std::int64_t State(std::int64_t id) {
        return main_.Number("SELECT State FROM ImportConflicts WHERE ID = " + std::to_string(id));
    }

    TestFolder folder_;
    EngineCompany main_{folder_, MainID, 1};
};

TEST_F(EngineConflictsTest, RestoresEveryKindOfValueAsItWas) {
    main_.Run("INSERT INTO Attachments (UniqueID, OwnerTable, OwnerUniqueID, AttachmentType, FileName, Content) "
              "VALUES ('U1', 'QUJD', CAST(x'FF41' AS TEXT), 9007199254740993, CAST(x'410042' AS TEXT), x'00FF10'),"
              " ('U2', '', '\"\\', 0.1 + 0.2, 'a' || char(10) || '<ü', x''), ('U3', '', NULL, 1e400, '', 'text')");
    const std::string before = main_.Rows("Attachments");
    for (const bool deletion : {false, true}) {
        std::string records;
        for (const std::string id : {"U1", "U2", "U3"}) {
            records += "<Record><UniqueID>" + id + "</UniqueID>" +
                       (deletion ? ""
                                 : "<FileName>theirs</FileName><Content Encoding=\"base64\">QQ==</Content>"
                                   "<OwnerTable>x</OwnerTable><AttachmentType>7</AttachmentType>") +
                       "</Record>";
        }
        Arrives("<Table Name=\"Attachments\"" + std::string(deletion ? " Deleted=\"1\"" : "") + ">" + records +
                "</Table>");
        EXPECT_NE(main_.Rows("Attachments"), before);
        const std::int64_t newest = NewestConflict();
        ASSERT_EQ(newest, deletion ? 6 : 3);
        for (std::int64_t id = newest - 2; id <= newest; ++id) {
            EXPECT_EQ(RestoreConflict(main_.Connection(), id),
                      deletion ? Restoration::Inserted : Restoration::Updated);
            EXPECT_EQ(State(id), 1);
        }
        EXPECT_EQ(main_.Rows("Attachments"), before);
    }
    EXPECT_EQ(RestoreConflict(main_.Connection(), 1), Restoration::NothingToDo);
    EXPECT_EQ(NewestAudit(), "15 Attachments 1 own");
}

TEST_F(EngineConflictsTest, RestoresADeletionAndAnOrderWhoseNumberWasQueued) {
    main_.Run("INSERT INTO Orders (UniqueID, OrderNumber, Notes) VALUES ('O1', 5, 'mine'), ('O2', 6, 'mine')");
    main_.Run("DELETE FROM Orders WHERE UniqueID = 'O2'");
    Arrives("<Table Name=\"Orders\"><Record><UniqueID>O2</UniqueID><Notes>theirs</Notes></Record></Table>"
            "<Table Name=\"Orders\" Deleted=\"1\"><Record><UniqueID>O1</UniqueID></Record></Table>");
    ASSERT_EQ(main_.Value("SELECT group_concat(UniqueID) FROM Orders"), "O2");
    EXPECT_EQ(RestoreConflict(main_.Connection(), 1), Restoration::Deleted);
    EXPECT_EQ(NewestAudit(), "6 Orders 3 own");
    EXPECT_EQ(RestoreConflict(main_.Connection(), 1), Restoration::NothingToDo);
    EXPECT_EQ(RestoreConflict(main_.Connection(), 2), Restoration::Inserted);
    EXPECT_EQ(main_.Value("SELECT UniqueID || OrderNumber || Notes FROM Orders"), "O15mine");
    EXPECT_EQ(main_.Number("SELECT COUNT(*) FROM vwExporting_Orders_NumberSync WHERE SyncState = 0"), 0);
}

TEST_F(EngineConflictsTest, AFailureChangesNothing) {
    main_.Run("INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('P1', 'now');"
              "INSERT INTO ImportConflicts (TableName, RowUniqueID, LosingValues) VALUES"
              " ('PhoneLabels', 'P1', '{\"Name\":'), ('PhoneLabels', 'P1', '{\"Name\":{\"base64\":\"?\"}}'),"
              " ('PhoneLabels', 'P1', '{\"Name\":[]}'), ('Company', '" +
              MainID +
              "', NULL), ('PhoneLabels', 'P1', '{\"Gone\":\"x\",\"ID\":\"9\",\"Name\":\"then\"}');"
              "CREATE TRIGGER full BEFORE UPDATE OF State ON ImportConflicts WHEN NEW.State = 1 BEGIN "
              "SELECT RAISE(ABORT, 'no'); END");
    const std::string before = main_.Everything();
    for (std::int64_t id = 0; id <= 5; ++id) {
        EXPECT_THROW(RestoreConflict(main_.Connection(), id), services::Failure) << id;
    }
    EXPECT_EQ(main_.Everything(), before);
    main_.Run("DROP TRIGGER full");
    EXPECT_EQ(RestoreConflict(main_.Connection(), 5), Restoration::Updated);
    EXPECT_EQ(main_.Value("SELECT ID || Name FROM PhoneLabels"), "1then");

    EXPECT_THROW(DismissConflict(main_.Connection(), 5), services::Failure);
    EXPECT_THROW(DismissConflict(main_.Connection(), 6), services::Failure);
    DismissConflict(main_.Connection(), 4);
    EXPECT_EQ(State(4), 2);
}

} // namespace
} // namespace qndr::suite
