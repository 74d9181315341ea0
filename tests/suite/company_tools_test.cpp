#include "services/failure.h"
#include "suite/admin/company_compare.h"
#include "suite/admin/company_creation.h"
#include "suite/admin/provisioning.h"
#include "suite/admin/sample_data.h"
#include "suite/company_fixture.h"
#include "suite/files/ini_files.h"
#include "suite/objects/psd_file.h"
#include "suite/schema/company_schema.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace qndr::suite {
namespace {

using services::Failure;

class NumberedIDs : public services::SystemTools {
  public:
    std::string GetIdentifierText() override {
        return "00000000-0000-4000-8000-00000000000" + std::to_string(++last);
    }
    std::string GetComputerName() override { return "test"; }
    int last = 0;
};

/// Fails at the wanted write, and leaves a part of the file behind.
class FailingIni : public DiskIniTools {
  public:
    void SetValue(const std::string& section, const std::string& key, const std::string& value,
                  const std::string& file) override {
        if (--writesLeft < 0) {
            WriteFile(file, "[" + section + "]");
            throw Failure("no room on the disk");
        }
        DiskIniTools::SetValue(section, key, value, file);
    }
    int writesLeft = 100;
};

class CompanyTools : public testing::Test {
  protected:
    NewCompany Wanted(const std::string& name, int type = MainCompanyType) const {
        return {.psdFile = folder.Path(name + ".psd"),
                .name = "Company " + name,
                .type = type,
                .connectionString = {}};
    }
    void Create(const NewCompany& company) { CreateCompany(company, ini, ids, clock); }
    std::unique_ptr<sql::Connection> Open(const std::string& file) const {
        return std::make_unique<sql::SqliteConnection>(folder.Path(file), clock, sql::Missing::Refuse);
    }
    std::unique_ptr<sql::Connection> Made(const std::string& name, int type = MainCompanyType) {
        Create(Wanted(name, type));
        return Open(name + ".db");
    }
    /// The tables that differ, each with its counts.
    static std::string Differences(const sql::Connection& left, const sql::Connection& right, Scope scope) {
        std::string text;
        for (const TableComparison& table : CompareCompanies(left, right, scope)) {
            if (!table.Alike()) {
                text += table.table + " " + std::to_string(table.differing) + "/" +
                        std::to_string(table.onlyLeft) + "/" + std::to_string(table.onlyRight) + " ";
            }
        }
        return text;
    }

    TestFolder folder;
    StandingClock clock;
    NumberedIDs ids;
    FailingIni ini;
};

TEST_F(CompanyTools, CreationMakesACompanyThatThePsdLeadsTo) {
    NewCompany company = Wanted("lap; top", RoamingCompanyType);
    Create(company);
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"lap; top.db", "lap; top.psd"}));
    PsdFile psd(ini);
    EXPECT_TRUE(psd.Load(company.psdFile));
    EXPECT_NE(psd.ConnectionString().find(folder.Path("lap; top.db")), std::string::npos);
    const auto database = Open("lap; top.db");
    EXPECT_EQ(database->Value("SELECT UniqueID || Name || CompanyType || SyncState || DatabaseVersion FROM Company"
                              " WHERE MainUniqueID IS NULL"),
              "00000000-0000-4000-8000-000000000001Company lap; top205.0.1");
    EXPECT_EQ(database->Number("SELECT COUNT(*) FROM AuditLog"), 0);

    std::filesystem::create_directory(folder.Path("data"));
    company = Wanted("shop");
    company.connectionString = "Data Source=data/shop.sqlite;Provider=SQLite";
    Create(company);
    EXPECT_EQ(Open("data/shop.sqlite")->Number("SELECT CompanyType FROM Company"), 1);
}

TEST_F(CompanyTools, CreationTouchesNothingThatExistsAndLeavesNoRest) {
    const auto refused = [&](const NewCompany& company) {
        const auto before = folder.Names();
        EXPECT_THROW(Create(company), Failure);
        EXPECT_EQ(folder.Names(), before);
    };
    for (const char* const existing : {"a.psd", "a.db", "a.db-wal"}) {
        WriteFile(folder.Path(existing), "mine");
        refused(Wanted("a"));
        EXPECT_EQ(std::filesystem::file_size(folder.Path(existing)), 4U);
        std::filesystem::remove(folder.Path(existing));
    }
    const std::function<void(NewCompany&)> mistakes[] = {
        [](NewCompany& c) { c.type = 3; },
        [](NewCompany& c) { c.name = "  "; },
        [](NewCompany& c) { c.name = "two\nlines"; },
        [](NewCompany& c) { c.psdFile += ".txt"; },
        [](NewCompany& c) { c.psdFile = "/no/such/folder/a.psd"; },
        [](NewCompany& c) { c.connectionString = "Driver=Other;Database=x"; },
    };
    for (const auto& mistake : mistakes) {
        NewCompany company = Wanted("a");
        mistake(company);
        refused(company);
    }
    for (int writes = 0; writes < 2; ++writes) {
        ini.writesLeft = writes;
        refused(Wanted("a"));
    }
    ini.writesLeft = 100;
    EXPECT_NO_THROW(Create(Wanted("a")));
}

TEST_F(CompanyTools, SampleDataIsRepeatableAndWhole) {
    const auto left = Made("left");
    const auto right = Made("right");
    FillWithSampleData(*left, 3000, 7);
    FillWithSampleData(*right, 3000, 7);
    EXPECT_EQ(Differences(*left, *right, Scope::All), "");
    EXPECT_EQ(left->Number("SELECT COUNT(*) FROM AuditLog"), 3000);
    for (const Table& table : AuditedTables()) {
        const std::string name(table.name);
        EXPECT_EQ(left->Number("SELECT COUNT(*) > 0 FROM \"" + name + "\""), name.ends_with("NumberSync") ? 0 : 1)
            << name;
    }
    EXPECT_THROW(FillWithSampleData(*left, 3000, 7), Failure) << "the same rows are there";
    EXPECT_EQ(Differences(*left, *right, Scope::All), "");
}

TEST_F(CompanyTools, CompareFindsEachKindOfDifference) {
    const auto left = Made("left");
    const auto right = Made("right");
    right->Execute("INSERT INTO Customers (ID, UniqueID) VALUES (900, 'zz')");
    FillWithSampleData(*left, 1000, 1);
    FillWithSampleData(*right, 1000, 1);
    right->Execute("DELETE FROM Customers WHERE UniqueID = 'zz'");
    right->Execute("UPDATE Customers SET UniqueID = lower(UniqueID), TermsUniqueID = lower(TermsUniqueID)");
    right->Execute("UPDATE Orders SET SyncState = 1");
    EXPECT_EQ(Differences(*left, *right, Scope::All), "");

    right->Execute("UPDATE Customers SET LastName = lower(LastName) WHERE CustomerNumber = 10001");
    right->Execute("UPDATE Customers SET Notes = '' WHERE Notes IS NULL AND CustomerNumber > 10001");
    const std::int64_t emptied = right->Number("SELECT COUNT(*) FROM Customers WHERE Notes = ''");
    left->Execute("DELETE FROM Terms");
    right->Execute("DELETE FROM Vendors");
    left->Execute("INSERT INTO OrderNumberSync (OrderNumber) VALUES (1)");
    left->Execute("INSERT INTO Groups (UniqueID) VALUES ('0'), ('zz'), ('zza')");
    right->Execute("INSERT INTO Groups (UniqueID) VALUES ('ZZ'), ('zzb')");
    EXPECT_EQ(Differences(*left, *right, Scope::All), "Groups 0/2/1 Terms 0/0/2 Customers " +
                                                          std::to_string(emptied + 1) +
                                                          "/0/0 Vendors 0/2/0 OrderNumberSync 0/1/0 ");
}

TEST_F(CompanyTools, CompareOfTheExchangedLooksAtWhatAFullExportCarries) {
    const auto left = Made("left");
    const auto right = Made("right");
    FillWithSampleData(*left, 1000, 1);
    left->Execute("DELETE FROM Attachments");
    for (const char* const table : {"EmployeeActivity", "CustomerActivity", "VendorActivity", "ProductActivity"}) {
        left->Execute(std::string("DELETE FROM ") + table);
        left->Execute(std::string("INSERT INTO ") + table +
                      " (UniqueID, ActivityDate) VALUES ('old', '20261023 19:08:52'), ('none', NULL)");
    }
    left->Execute("INSERT INTO Attachments (UniqueID, AttachmentType) VALUES ('2', 2), ('3', 3), ('n', NULL)");
    for (const TableComparison& table : CompareCompanies(*left, *right, Scope::Exchanged)) {
        const bool heldBack = table.table.ends_with("Activity") || table.table == "Attachments";
        EXPECT_EQ(table.Alike(), heldBack) << table.table;
    }
    left->Execute("UPDATE CustomerActivity SET ActivityDate = '20261023 19:08:53' WHERE UniqueID = 'old'");
    EXPECT_NE(Differences(*left, *right, Scope::Exchanged).find("CustomerActivity 0/1/0"), std::string::npos);
}

TEST_F(CompanyTools, AWorkstationIsAddedOnceWithACodeOfItsOwn) {
    const auto main = Made("main");
    const auto first = Made("first", RoamingCompanyType);
    const auto second = Made("second", RoamingCompanyType);
    first->Execute("UPDATE Company SET UniqueID = '{aB-1}'");
    EXPECT_THROW(AddWorkstation(*first, *main), Failure);
    EXPECT_THROW(AddWorkstation(*main, *main), Failure);
    for (const int code : {0, 256}) {
        EXPECT_THROW(AddWorkstation(*main, *first, code), Failure) << code;
    }
    EXPECT_EQ(first->Number("SELECT SyncState FROM Company"), 0);
    EXPECT_EQ(AddWorkstation(*main, *first, 2), 2);
    EXPECT_EQ(main->Value("SELECT UniqueID || Name || ReferenceCode || SyncState FROM RoamingWorkstations"),
              "{aB-1}Company first20");
    EXPECT_EQ(first->Number("SELECT SyncState FROM Company"), 1);

    first->Execute("UPDATE Company SET UniqueID = '{Ab-1}'");
    EXPECT_THROW(AddWorkstation(*main, *first), Failure);
    EXPECT_THROW(AddWorkstation(*main, *second, 2), Failure);
    second->Execute("UPDATE Company SET MainUniqueID = 'elsewhere'");
    EXPECT_THROW(AddWorkstation(*main, *second), Failure);
    second->Execute("UPDATE Company SET MainUniqueID = NULL");
    second->Execute("INSERT INTO Terms (Name) VALUES ('Net')");
    EXPECT_THROW(AddWorkstation(*main, *second), Failure);
    EXPECT_EQ(second->Number("SELECT SyncState FROM Company"), 0);
    second->Execute("DELETE FROM AuditLog");
    EXPECT_EQ(AddWorkstation(*main, *second), 1);
    EXPECT_EQ(main->Number("SELECT COUNT(*) FROM RoamingWorkstations"), 2);
}

TEST_F(CompanyTools, StatesAreAskedForOnlyWhereTheProtocolKnowsThem) {
    const auto main = Made("main");
    const auto roaming = Made("roaming", RoamingCompanyType);
    const std::string id = roaming->Value("SELECT UniqueID FROM Company").value_or("");
    EXPECT_THROW(ResetCountersOf(*main, id), Failure);
    EXPECT_THROW(RequestInitialSync(*main), Failure);
    EXPECT_THROW(RequestReset(*main), Failure);
    EXPECT_FALSE(RequestInitialSync(*roaming));
    AddWorkstation(*main, *roaming);
    roaming->Execute("UPDATE Company SET MainUniqueID = 'main'");
    EXPECT_TRUE(RequestInitialSync(*roaming));
    EXPECT_THROW(RequestReset(*roaming), Failure) << "the first exchange is under way";

    const std::string row = "SELECT NextSequenceToRoaming || NextSequenceFromRoaming || SyncState || LastAuditID"
                            " FROM RoamingWorkstations";
    for (const auto& [state, expected] : std::map<std::string, std::string>{
             {"1", "0019"}, {"3", "0039"}, {"4", "0009"}, {"5", "0009"}, {"6", "0009"}}) {
        main->Execute("UPDATE RoamingWorkstations SET NextSequenceToRoaming = 4, NextSequenceFromRoaming = 6,"
                      " LastAuditID = 9, SyncState = " +
                      state);
        ResetCountersOf(*main, id);
        EXPECT_EQ(main->Value(row), expected);
    }
}

} // namespace
} // namespace qndr::suite
