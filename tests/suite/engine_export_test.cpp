#include "services/failure.h"
#include "suite/engine_fixture.h"
#include "suite/full_disk.h"
#include "suite/sql/sqlite/sqlite_connection.h"
#include "support/sqlite_handle.h"

#include <gtest/gtest.h>

#include <functional>

namespace qndr::suite {
namespace {

class EngineExportTest : public testing::Test {
  protected:
    /// The file between the root element's tags.
    std::string Tables() {
        const std::string text = ReadFile(file_);
        const std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Exchange Version=\"1\" From=\"" +
                                 MainID + "\" CreatedOn=\"20261122 19:08:52\">\n";
        EXPECT_EQ(text.substr(0, head.size()), head);
        const std::string end = "</Exchange>\n";
        EXPECT_TRUE(text.ends_with(end));
        return text.substr(head.size(), text.size() - head.size() - end.size());
    }
    void AddLabels() { main_.engine.AddToExport("PhoneLabels", services::ExportOfTable("PhoneLabels"), false); }

    TestFolder folder_;
    EngineCompany main_{folder_, MainID, 1};
    std::string file_ = folder_.Path("data.xml");
    StandingClock clock_;
    RegistryStore registry_{folder_.Path("registry.db"), clock_};
};

TEST_F(EngineExportTest, WritesTheDocumentedFormFromWhichEveryValueComesBack) {
    main_.Run("INSERT INTO Terms (UniqueID, Name, DueDays, DiscountDays, DiscountPercent) VALUES "
              "('U1', '<30> & \"more\"' || char(13, 10, 9) || 'é ', 30, NULL, 0.1), "
              "('U2', 'bell' || char(7), -5, 0.1 + 0.2, 3.0), ('U3', CAST(x'C3' AS TEXT), 9e999, 0, ''), "
              "('U4', '', 1, 9223372036854775807, -9e999)");
    main_.Run("INSERT INTO Attachments (UniqueID, Content) VALUES ('B0', x''), ('B1', x'00'), ('B2', x'00FF')");
    main_.engine.AddToExport("Terms", services::ExportOfTable("Terms"), false);
    AddLabels();
    main_.engine.AddToExport("Attachments", services::ExportOfTable("Attachments"), false);
    ASSERT_TRUE(main_.engine.DoExport(file_));
    const std::string unset = "<OwnerTable Null=\"1\"/><OwnerUniqueID Null=\"1\"/><AttachmentType Null=\"1\"/>"
                              "<FileName Null=\"1\"/>";
    const std::string added = "<AddedOn Null=\"1\"/></Record>\n";
    EXPECT_EQ(
        Tables(),
        "<Table Name=\"Terms\">\n"
        "<Record><UniqueID>U1</UniqueID><Name>&lt;30&gt; &amp; &quot;more&quot;&#13;\n\té </Name>"
        "<DueDays>30</DueDays><DiscountDays Null=\"1\"/><DiscountPercent>0.1</DiscountPercent></Record>\n"
        "<Record><UniqueID>U2</UniqueID><Name Encoding=\"base64\">YmVsbAc=</Name><DueDays>-5</DueDays>"
        "<DiscountDays>0.30000000000000004</DiscountDays><DiscountPercent>3</DiscountPercent></Record>\n"
        "<Record><UniqueID>U3</UniqueID><Name Encoding=\"base64\">ww==</Name><DueDays>9e999</DueDays>"
        "<DiscountDays>0</DiscountDays><DiscountPercent></DiscountPercent></Record>\n"
        "<Record><UniqueID>U4</UniqueID><Name></Name><DueDays>1</DueDays>"
        "<DiscountDays>9223372036854775807</DiscountDays><DiscountPercent>-9e999</DiscountPercent></Record>\n"
        "</Table>\n<Table Name=\"PhoneLabels\">\n</Table>\n<Table Name=\"Attachments\">\n"
        "<Record><UniqueID>B0</UniqueID>" +
            unset + "<Content Encoding=\"base64\"></Content>" + added + "<Record><UniqueID>B1</UniqueID>" + unset +
            "<Content Encoding=\"base64\">AA==</Content>" + added + "<Record><UniqueID>B2</UniqueID>" + unset +
            "<Content Encoding=\"base64\">AP8=</Content>" + added + "</Table>\n");

    EngineCompany laptop(folder_, LaptopID, 2);
    ASSERT_TRUE(laptop.engine.ImportFile(file_));
    for (const char* table : {"Terms", "Attachments"}) {
        EXPECT_EQ(laptop.Rows(table), main_.Rows(table));
    }
    // The mark of an import comes and goes, and that of a taken file stays.
    const int writes = sqlite3_total_changes(sql::HandleOf(laptop.Connection()));
    ASSERT_TRUE(laptop.engine.ImportFile(file_));
    EXPECT_EQ(sqlite3_total_changes(sql::HandleOf(laptop.Connection())), writes + 3);
}

TEST_F(EngineExportTest, AuditedChangesKeepTheirOrderAndTellTheirOrigin) {
    main_.Run("INSERT INTO PhoneLabels (UniqueID, Name, SortOrder) VALUES ('U1', 'Home', 1), ('U2', 'Work', 2)");
    main_.Run("UPDATE AuditLog SET Origin = '" + LaptopID + "', OriginID = 77 WHERE AuditUniqueID = 'U2'");
    main_.Run("UPDATE PhoneLabels SET Name = 'House' WHERE UniqueID = 'U1'; DELETE FROM PhoneLabels WHERE "
              "UniqueID = 'U2'; UPDATE AuditLog SET Origin = '" +
              LaptopID + "', OriginID = 80 WHERE ID = 4");
    ASSERT_TRUE(main_.ExportAudited(0, file_));
    const std::string house = "<Record Origin=\"" + MainID +
                              "\" OriginID=\"3\"><UniqueID>U1</UniqueID>"
                              "<Name>House</Name><SortOrder>1</SortOrder></Record>\n";
    EXPECT_EQ(Tables(), "<Table Name=\"PhoneLabels\">\n" + house + house +
                            "</Table>\n<Table Name=\"PhoneLabels\" Deleted=\"1\">\n<Record Origin=\"" + LaptopID +
                            "\" OriginID=\"80\"><DeletedOn>20261122 19:08:52</DeletedOn><UniqueID>U2</UniqueID>"
                            "</Record>\n</Table>\n");

    ASSERT_TRUE(main_.ExportAudited(2, file_));
    EXPECT_EQ(Tables().find("<Record Origin=\"" + MainID + "\" OriginID=\"3\">"), Tables().find("<Record"));
}

TEST_F(EngineExportTest, TheListIsEmptyAfterEveryExport) {
    const std::function<void()> ends[] = {
        [&] { EXPECT_TRUE(main_.engine.DoExport(file_)); },
        [&] { EXPECT_FALSE(main_.engine.DoExport(folder_.Path("no such folder/data.xml"))); },
        [&] { main_.engine.ClearExports(); },
    };
    for (const auto& end : ends) {
        AddLabels();
        end();
        EXPECT_TRUE(main_.engine.DoExport(file_));
        EXPECT_EQ(Tables(), "");
    }
}

TEST_F(EngineExportTest, AnEntryThatTheDatabaseDoesNotUnderstandIsPassedOver) {
    main_.engine.AddToExport("Gone", services::ExportOfRow("Gone", 1), false);
    main_.engine.AddToExport("Gone", services::ExportOfRow("Gone", 2), false);
    main_.engine.AddToExport("Odd's", services::ExportOfRow("Odd's", 1), false);
    // Nor does one go out that asks for more than its table, as the name of a table might.
    main_.Run("INSERT INTO CompanyOptions VALUES ('Default', 'Mail', 'Password', 's3cret')");
    const std::string more = "PhoneLabels UNION ALL SELECT 1, Value, 3, 4 FROM CompanyOptions";
    main_.engine.AddToExport(more, services::ExportOfTable(more), false);
    AddLabels();
    EXPECT_TRUE(main_.engine.DoExport(file_));
    EXPECT_EQ(Tables(), "<Table Name=\"PhoneLabels\">\n</Table>\n");
    EXPECT_EQ(main_.Number(
                  "SELECT COUNT(*) FROM CompanyEvents WHERE EventText LIKE 'The table ''%'' was left out of %'"),
              3);
}

TEST_F(EngineExportTest, AnEntryThatNobodyBuiltFailsTheExport) {
    main_.Run("INSERT INTO PhoneLabels (UniqueID) VALUES ('U1')");
    const std::string row = services::ExportOfRow("PhoneLabels", 1);
    const std::string deletion = services::ExportOfDeletion(1);
    for (const auto& [statement, isDeletion] : {std::pair{row + " ", false},
                                                {row, true},
                                                {deletion, false},
                                                {deletion + ";", true},
                                                {"", true},
                                                {services::ExportOfTable("Terms"), false},
                                                {services::ExportOfTable("PhoneLabels", "ID=1"), false}}) {
        AddLabels();
        EXPECT_THROW(main_.engine.AddToExport("PhoneLabels", statement, isDeletion), services::Failure)
            << statement;
        EXPECT_FALSE(main_.engine.DoExport(file_)) << statement;
        AddLabels();
        EXPECT_TRUE(main_.engine.DoExport(file_)) << statement;
    }
}

TEST_F(EngineExportTest, ShowsOneMomentAndWhatChangedDuringAnInitialSyncTravelsNext) {
    sql::SqliteConnection other(main_.Connection().Path(), clock_, sql::Missing::Refuse);
    main_.Run("INSERT INTO RoamingWorkstations (UniqueID, SyncState) VALUES ('" + LaptopID +
              "', 1); INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('U1', 'old'); INSERT INTO Terms (UniqueID) "
              "VALUES ('T1')");
    const auto edit = [](sqlite3_context* call, int, sqlite3_value**) {
        static_cast<sql::Connection*>(sqlite3_user_data(call))->Execute("UPDATE PhoneLabels SET Name = 'new'");
    };
    // A statement of an export may call none but the suite's own functions.
    sqlite3_create_function(sql::HandleOf(main_.Connection()), "DATEADD", 0, SQLITE_UTF8, &other, edit, nullptr,
                            nullptr);
    main_.engine.AddToExport("Terms", services::ExportOfTable("Terms", "DATEADD() IS NULL"), false);
    ASSERT_TRUE(main_.ExportTable("PhoneLabels", file_));
    EXPECT_EQ(main_.Value("SELECT Name FROM PhoneLabels"), "new");
    EXPECT_NE(ReadFile(file_).find("<Name>old</Name>"), std::string::npos) << ReadFile(file_);

    const services::Statement sent =
        "UPDATE RoamingWorkstations SET SyncState = 3, LastAuditID = (SELECT MAX(ID) FROM AuditLog)";
    EXPECT_EQ(main_.library.Database().ExecuteNonQuery(sent), 1);
    ASSERT_TRUE(main_.ExportAudited(main_.Number("SELECT LastAuditID FROM RoamingWorkstations"), file_));
    EXPECT_NE(ReadFile(file_).find("<Name>new</Name>"), std::string::npos) << ReadFile(file_);
    main_.Run(sent.Text());
    EXPECT_EQ(main_.Number("SELECT MAX(ID) - (SELECT LastAuditID FROM RoamingWorkstations) FROM AuditLog"), 0);
}

TEST_F(EngineExportTest, AFailureLeavesNoFile) {
    main_.Run("INSERT INTO Reports (UniqueID, Layout) VALUES ('U1', printf('%.*c', 900000, 'x')), ('U2', '')");
    const std::vector<std::string> before = folder_.Names();
    {
        const test::FullDisk full(300000);
        EXPECT_FALSE(main_.ExportTable("Reports", file_));
    }
    // An error of the database in the middle of an entry.
    main_.engine.AddToExport(
        "Reports", services::ExportOfTable("Reports", "UniqueID = 'U1' OR DATEADD(day,1,UniqueID) IS NULL"),
        false);
    EXPECT_FALSE(main_.engine.DoExport(file_));
    EXPECT_EQ(folder_.Names(), before);
}

TEST_F(EngineExportTest, AnOrderGoesWithItsItemsAndWithoutOrigin) {
    main_.Run("INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O1', 1001), ('O2', 1002);"
              "INSERT INTO OrderItems (UniqueID, OrderUniqueID, LineNumber) VALUES ('I1', 'O1', 1), "
              "('I2', 'O2', 1), ('I3', 'o1', 2)");
    AddLabels();
    EXPECT_FALSE(main_.engine.ExportOrder(99, file_));
    ASSERT_FALSE(std::filesystem::exists(file_));
    ASSERT_TRUE(main_.engine.ExportOrder(1, file_));
    const std::string text = Tables();
    for (const char* there : {"<UniqueID>O1<", "<UniqueID>I1<", "<UniqueID>I3<"}) {
        EXPECT_NE(text.find(there), std::string::npos) << there;
    }
    for (const char* absent : {"<UniqueID>O2<", "<UniqueID>I2<", "Origin", "SyncState"}) {
        EXPECT_EQ(text.find(absent), std::string::npos) << absent;
    }
    ASSERT_TRUE(main_.engine.DoExport(file_));
    EXPECT_EQ(Tables(), "<Table Name=\"PhoneLabels\">\n</Table>\n");
}

TEST_F(EngineExportTest, WorksOnlyBetweenInitializeAndPreTerminate) {
    ComputerTrouble trouble;
    ImportExportEngine engine(trouble);
    EXPECT_FALSE(engine.ImportFile(file_));
    EXPECT_TRUE(trouble.Stands()) << "nothing is wrong with the file";
    EXPECT_FALSE(engine.DoExport(file_) || engine.ExportOrder(1, file_));
    CompanyLibrary withoutCompany(registry_, clock_, trouble);
    engine.Initialize(withoutCompany);
    EXPECT_FALSE(engine.DoExport(file_));
    main_.engine.PreTerminate();
    EXPECT_FALSE(main_.engine.DoExport(file_));
    EXPECT_FALSE(std::filesystem::exists(file_));
}

} // namespace
} // namespace qndr::suite
