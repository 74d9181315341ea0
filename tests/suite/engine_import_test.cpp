#include "suite/engine/import_ledger.h"
#include "suite/engine_fixture.h"
#include "suite/exchange/import_reader.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <gtest/gtest.h>

#include <tuple>

namespace qndr::suite {
namespace {

class EngineImportTest : public testing::Test {
  protected:
    bool Import(EngineCompany& company, const std::string& text) {
        WriteFile(file_, text);
        return company.engine.ImportFile(file_);
    }
    /// What the workstation holds in PhoneLabels, as "UniqueID Name SortOrder" a row.
    std::string Labels() {
        return laptop_.Value("SELECT group_concat(UniqueID || ' ' || ifnull(Name, '-') || ' ' || "
                             "ifnull(SortOrder, '-'), ', ') FROM (SELECT * FROM PhoneLabels ORDER BY UniqueID)");
    }
    static std::string Label(const std::string& content) {
        return "<Table Name=\"PhoneLabels\"><Record>" + content + "</Record></Table>";
    }

    TestFolder folder_;
    EngineCompany main_{folder_, MainID, 1};
    EngineCompany laptop_{folder_, LaptopID, 2};
    std::string file_ = folder_.Path("data.xml");
};

/// Tables that every company has and no import writes.
const std::vector<std::string> OwnTables{
    "Company",    "roamingworkstations", "AuditLog",       "CompanyOptions", "CompanyEvents",
    "ImportMark", "ImportConflicts",     "ImportProblems", "SentRanges",     "cacheProductStyles"};

TEST_F(EngineImportTest, RefusesWhatIsNoFileOfItsKind) {
    const std::string good = Label("<UniqueID>U1</UniqueID><Name>Home</Name>");
    const std::string before = laptop_.Everything();
    for (const char* unreadable : {"missing.xml", ""}) {
        EXPECT_FALSE(laptop_.engine.ImportFile(folder_.Path(unreadable)));
        EXPECT_TRUE(laptop_.trouble.Stands()) << "it may be whole";
        laptop_.trouble.Clear();
    }
    for (const std::string& text : {
             std::string(),
             std::string("PK\x03\x04"),
             "<Exchange Version=\"2\" From=\"x\">" + good + "</Exchange>",
             "<Exchange Version=\"one\" From=\"x\">" + good + "</Exchange>",
             "<Exchange From=\"x\">" + good + "</Exchange>",
             "<Records Version=\"1\">" + good + "</Records>",
             "<!DOCTYPE Exchange [<!ENTITY a \"aaaaaaaa\">]>" + Exchange(good),
             "<!DOCTYPE Exchange>" + Exchange(good),
             Exchange(good + "<Record/>"),
             Exchange(good + "<Table Name=\"Terms\"><Row/></Table>"),
             Exchange(good + Label("<UniqueID>U2</UniqueID><Name><b>x</b></Name>")),
             Exchange(good) + Exchange(good),
             Exchange(good + Label("<Name>&bomb;</Name>")),
             Exchange(good).substr(0, Exchange(good).rfind('>')),
             Exchange(good).substr(0, Exchange(good).find("Home")),
         }) {
        EXPECT_FALSE(Import(laptop_, text)) << text;
        EXPECT_FALSE(laptop_.trouble.Stands()) << text;
        EXPECT_EQ(laptop_.Everything(), before) << text;
    }
    laptop_.engine.SetIgnoreUnknownTables(false);
    EXPECT_FALSE(Import(laptop_, Exchange(good + "<Table Name=\"Nowhere\"/>")));
    EXPECT_EQ(laptop_.Everything(), before);
    for (const std::string& own : OwnTables) {
        EXPECT_TRUE(Import(laptop_, Exchange(good + "<Table Name=\"" + own + "\"/>")))
            << "no import writes it, but it is known: " << own;
    }
    EXPECT_EQ(Labels(), "U1 Home -");
}

TEST_F(EngineImportTest, PassesOverWhatItMustNotTake) {
    const std::string before = laptop_.Value("SELECT group_concat(UniqueID || SyncState) FROM Company");
    std::string tables = "<Table Name=\"Nowhere\"><Record><UniqueID>X</UniqueID></Record></Table>";
    for (const std::string& own : OwnTables) {
        tables += "<Table Name=\"" + own + "\"><Record><UniqueID>X</UniqueID><SyncState>5</SyncState>" +
                  "</Record></Table><Table Name=\"" + own + "\" Deleted=\"1\"><Record><UniqueID>" + LaptopID +
                  "</UniqueID></Record></Table>";
    }
    tables += "<Table Name=\"ORDERS\"><Record><ID>55</ID><UniqueID>U1</UniqueID><SyncState>1</SyncState>"
              "<Imported>0</Imported><Colour>red</Colour><OrderNumber>7</OrderNumber></Record></Table>";
    ASSERT_TRUE(Import(laptop_, Exchange(tables)));
    EXPECT_EQ(laptop_.Value("SELECT group_concat(UniqueID || SyncState) FROM Company"), before);
    EXPECT_EQ(laptop_.Value("SELECT ID || ' ' || OrderNumber || ' ' || SyncState || ' ' || Imported FROM Orders"),
              "1 7 0 1");
    EXPECT_EQ(
        laptop_.Number("SELECT (SELECT COUNT(*) FROM RoamingWorkstations) + (SELECT COUNT(*) FROM AuditLog) + "
                       "(SELECT COUNT(*) FROM CompanyOptions) + (SELECT COUNT(*) FROM ImportMark)"),
        0);
}

TEST_F(EngineImportTest, FindsRowsByUniqueIDAndTakesWhatTheFileSays) {
    laptop_.Run("INSERT INTO PhoneLabels (UniqueID, Name, SortOrder) VALUES ('AB', 'Home', 1), ('CD', 'Work', 2);"
                "UPDATE Company SET LastAuditID = 2");
    ASSERT_TRUE(Import(
        laptop_,
        Exchange(Label("<UniqueID>ab</UniqueID><Name>HOME</Name>") +
                 Label("<Name Null=\"1\"/><UniqueID>cd</UniqueID>") +
                 "<Table Name=\"PhoneLabels\" Deleted=\"1\"><Record><UniqueID>none</UniqueID></Record>"
                 "<Record><UniqueID>EF</UniqueID></Record></Table>" +
                 Label("<UniqueID>EF</UniqueID><SortOrder>3</SortOrder>") + Label("<UniqueID>GH</UniqueID>") +
                 "<Table Name=\"phonelabels\" Deleted=\"1\"><Record><UniqueID>gh</UniqueID></Record></Table>" +
                 Label("<UniqueID>GH</UniqueID><Name> x </Name>"))));
    EXPECT_EQ(Labels(), "AB HOME 1, CD - 2, EF - 3, GH  x  -");
    for (const char* reference : {"aa", "AA"}) {
        ASSERT_TRUE(Import(laptop_, Exchange("<Table Name=\"ProductTags\"><Record><UniqueID>T</UniqueID>"
                                             "<ProductUniqueID>" +
                                             std::string(reference) + "</ProductUniqueID></Record></Table>")));
        EXPECT_EQ(laptop_.Value("SELECT ProductUniqueID FROM ProductTags"), reference);
    }
    EXPECT_EQ(laptop_.Number("SELECT COUNT(*) FROM ImportProblems"), 0);
}

TEST_F(EngineImportTest, ARefusedRecordIsPutAsideAndTheRestGoesIn) {
    laptop_.Run("CREATE TRIGGER guard BEFORE INSERT ON PhoneLabels WHEN NEW.Name = 'bad' BEGIN "
                "SELECT RAISE(ABORT, 'not wanted'); END");
    const std::string text = Exchange(
        Label("<UniqueID>U1</UniqueID><Name>a</Name>") + Label("<UniqueID>U2</UniqueID><Name>bad</Name>") +
        Label("<Name>nobody &amp; me</Name>") + Label("<UniqueID Null=\"1\"/>") +
        Label("<UniqueID>U3</UniqueID><Name Encoding=\"base64\">A?==</Name><SortOrder>4</SortOrder>") +
        Label("<UniqueID>U5</UniqueID><Name>a</Name><Name>b</Name>") +
        Label("<UniqueID>U6</UniqueID><UniqueID>U7</UniqueID>") + Label("<UniqueID>U4</UniqueID><Name>d</Name>"));
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(Import(laptop_, text));
        EXPECT_EQ(Labels(), "U1 a -, U4 d -");
        EXPECT_EQ(
            laptop_.Value("SELECT group_concat(ifnull(RowUniqueID, '-') || ': ' || Reason || ' ' || RecordXml, "
                          "char(10)) FROM ImportProblems"),
            "U2: not wanted <Record><UniqueID>U2</UniqueID><Name>bad</Name></Record>\n"
            "-: The record has no UniqueID. <Record><Name>nobody &amp; me</Name></Record>\n"
            "-: The record has no UniqueID. <Record></Record>\n"
            "U3: The value of the column 'Name' is not base64. <Record><UniqueID>U3</UniqueID><Name></Name>"
            "<SortOrder>4</SortOrder></Record>\n"
            "U5: The column 'Name' stands in it twice. <Record><UniqueID>U5</UniqueID><Name>a</Name></Record>\n"
            "U6: The column 'UniqueID' stands in it twice. <Record><UniqueID>U6</UniqueID></Record>");
    }
    EXPECT_EQ(laptop_.Number("SELECT COUNT(*) FROM CompanyEvents"), 2);
}

TEST_F(EngineImportTest, AValueBeyondAllMeasureIsAProblemOfItsRecordAlone) {
    const std::string half(bounds::LargestRecord / 2, 'x');
    ASSERT_TRUE(Import(laptop_, Exchange("<Table Name=\"Customers\"><Record><UniqueID>U1</UniqueID><Notes>" +
                                         half + "</Notes><LastName>" + half +
                                         "</LastName></Record><Record>"
                                         "<UniqueID>U2</UniqueID><Notes>" +
                                         half + "</Notes></Record></Table>")));
    EXPECT_EQ(laptop_.Value("SELECT group_concat(UniqueID || length(Notes)) FROM Customers"),
              "U2" + std::to_string(half.size()));
    EXPECT_EQ(laptop_.Value("SELECT Reason FROM ImportProblems"),
              "The value of the column 'LastName' is too large. It is too large to be kept.");
}

/// So many texts, each with its number in the place of the "#".
std::string Numbered(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += std::string(text).replace(text.find('#'), 1, std::to_string(i));
    }
    return all;
}

TEST_F(EngineImportTest, RefusesAFileThatGoesBeyondTheBounds) {
    const std::string before = laptop_.Everything();
    const std::string nowhere = "<Table Name=\"Nowhere\"><Record>";
    const std::string end = "</Record></Table>";
    // What is taken, what is refused, and why.
    for (const auto& [taken, refused, words] : {
             std::tuple(Label("<UniqueID>U</UniqueID>" + Numbered("<Z>#</Z>", 1023)),
                        Label("<UniqueID>U</UniqueID>" + Numbered("<Z>#</Z>", 1024)), "has too many values"),
             {nowhere + end, nowhere + Numbered("<Z>#</Z>", 1025) + end, "has too many values"},
             {"<Table Name=\"Nowhere\">" + Numbered("<Record><Z#/></Record>", 4096) + "</Table>",
              "<Table Name=\"Nowhere\">" + Numbered("<Record><Z#/></Record>", 4097) + "</Table>", "strange names"},
             {Numbered("<Table Name=\"PhoneLabels\" a#=\"\"/>", 4096),
              Numbered("<Table Name=\"PhoneLabels\" a#=\"\"/>", 4097), "strange names"},
             {Label("<UniqueID>U</UniqueID><" + std::string(256, 'n') + "/>"),
              Label("<UniqueID>U</UniqueID><" + std::string(257, 'n') + "/>"), "strange names"},
             {nowhere + "<Z a='" + std::string(250'000, 'x') + "'/>" + end,
              nowhere + "<Z a='" + std::string(600'000, 'x') + "'/>" + end, "a tag of the file is too long"},
             {"<!--" + std::string(250'000, 'x') + "-->", "<!--" + std::string(600'000, 'x') + "-->",
              "a tag of the file is too long"},
         }) {
        EXPECT_TRUE(Import(laptop_, Exchange(taken))) << words;
        laptop_.Run("DELETE FROM PhoneLabels; DELETE FROM AuditLog");
        EXPECT_FALSE(Import(laptop_, Exchange(refused)));
        EXPECT_EQ(laptop_.Everything(), before) << words;
        EXPECT_NE(laptop_.Value("SELECT EventText FROM CompanyEvents ORDER BY ID DESC").find(words),
                  std::string::npos)
            << words;
    }
    EXPECT_TRUE(Import(laptop_, Exchange("", MainID, std::string(900'000, ' '))));
    EXPECT_FALSE(Import(laptop_, Exchange("", MainID, std::string(2'000'000, ' '))));
}

TEST_F(EngineImportTest, ManyBrokenRecordsDoNotFillTheDiskAndNothingIsOverwrittenUnkept) {
    laptop_.Run("CREATE TRIGGER guard BEFORE INSERT ON PhoneLabels BEGIN SELECT RAISE(ABORT, 'not wanted'); END");
    ASSERT_TRUE(
        Import(laptop_, Exchange("<Table Name=\"PhoneLabels\">" +
                                 Numbered("<Record><UniqueID>U#</UniqueID></Record>", 5003) + "</Table>")));
    EXPECT_EQ(laptop_.Value("SELECT ID || ' ' || Reason FROM ImportProblems ORDER BY ID DESC"),
              "5001 Too many records of one file could not be imported; the last 3 are not kept.");
    ImportLedger ledger(laptop_.Connection());
    const std::string much(bounds::MostConflictBytes / 2 + 1, 'x');
    EXPECT_THROW(ledger.AddConflict({"PhoneLabels", "U1", "", "", much + much}), FileRefused);
}

TEST_F(EngineImportTest, WhatThisComputerCannotStoreChangesNothingAndStopsAllElse) {
    main_.Run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) INSERT INTO Reports "
              "(UniqueID, Layout) SELECT printf('%05d', i), printf('%.*c', 700, 'x') FROM n");
    ASSERT_TRUE(main_.ExportTable("Reports", file_));
    const std::string connection = sql::SqliteConnectionString(laptop_.Connection().Path());
    const std::string before = laptop_.Everything();
    const std::int64_t pages = laptop_.Number("PRAGMA page_count");
    // Room for so many pages; without a limit a table of the memory is missing.
    for (const std::int64_t room : {0, 1, 5, 60, 500, -1}) {
        laptop_.Run(room < 0 ? "ALTER TABLE ImportMark RENAME TO Gone"
                             : "PRAGMA max_page_count = " + std::to_string(pages + room));
        EXPECT_FALSE(laptop_.engine.ImportFile(file_)) << room;
        laptop_.Run(room < 0 ? "ALTER TABLE Gone RENAME TO ImportMark" : "PRAGMA max_page_count = 1000000");
        EXPECT_EQ(laptop_.Everything(), before) << room;
        // It would be possible now, and must not be done.
        services::Database& database = laptop_.library.Database();
        EXPECT_EQ(database.ExecuteNonQuery("UPDATE Company SET SyncState = 4"), -1);
        EXPECT_EQ(database.LastSQLErrorDescription(),
                  std::string("A file could not be stored and is kept: ") +
                      (room < 0 ? "no such table: ImportMark" : "database or disk is full"));
        EXPECT_EQ(laptop_.library.QNDRSQL(), nullptr);
        EXPECT_THROW(laptop_.library.RecordEvent("Sync reset complete.", 2), services::Failure);
        EXPECT_FALSE(laptop_.ExportTable("Terms", folder_.Path("out.xml")));
        EXPECT_FALSE(laptop_.engine.ImportFile(file_));
        laptop_.library.PreTerminate();
        laptop_.library.SetConnectionString(connection);
    }
    EXPECT_TRUE(laptop_.engine.ImportFile(file_));
    EXPECT_TRUE(laptop_.Rows("Reports") == main_.Rows("Reports"));
    laptop_.library.PreTerminate();
    laptop_.library.SetConnectionString(connection);
    EXPECT_FALSE(Import(laptop_, "<Exchange/>"));
    EXPECT_EQ(laptop_.Value("SELECT group_concat(ifnull(EventNumber, '-') || ' ' || EventText, '; ') FROM "
                            "CompanyEvents"),
              "4 A file could not be stored and is kept: database or disk is full; "
              "4 A file could not be stored and is kept: no such table: ImportMark; "
              "- The database can be used again.; - A file could not be imported: this is no exchange file");
}

// Main could not store the number of the file, so it comes again.
TEST_F(EngineImportTest, AFileThatComesAgainTakesNothingBackOnMain) {
    laptop_.Run("UPDATE Company SET MainUniqueID = '" + MainID +
                "'; INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('U1', 'of the laptop')");
    ASSERT_TRUE(laptop_.ExportAudited(0, file_));
    ASSERT_TRUE(main_.engine.ImportFile(file_));
    main_.Run("UPDATE PhoneLabels SET Name = 'later'");
    ASSERT_TRUE(main_.engine.ImportFile(file_));
    EXPECT_EQ(main_.Value("SELECT Name FROM PhoneLabels"), "later");
    EXPECT_EQ(main_.Number("SELECT COUNT(*) FROM ImportConflicts"), 0);
}

TEST_F(EngineImportTest, ALongRecordThatIsPassedOverTakesNothingWithIt) {
    const std::string passedOver = "<Table Name=\"Nothing\"><Record><UniqueID>X</UniqueID><Notes>" +
                                   std::string(300'000, 'x') + "</Notes></Record></Table>";
    EXPECT_TRUE(Import(laptop_, Exchange(Label("<UniqueID>A</UniqueID><Name>Home</Name>") + passedOver +
                                         Label("<UniqueID>B</UniqueID><Name>Work</Name>"))));
    EXPECT_EQ(Labels(), "A Home -, B Work -");
}

} // namespace
} // namespace qndr::suite
