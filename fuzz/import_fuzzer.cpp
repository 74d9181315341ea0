// Exchange files taken into real companies: a file is taken whole or not at all, taking it twice changes nothing
// more, and what was taken travels on unchanged.
#include "services/failure.h"
#include "suite/engine_fixture.h"
#include "suite/exchange/import_reader.h"
#include "support.h"

#include <algorithm>
#include <set>

namespace qndr::suite {
namespace {

using fuzz::Require;

/// A company that serves for one input after the other.
class Company : public EngineCompany {
  public:
    using EngineCompany::EngineCompany;

    void Clear() {
        Connection().TurnTriggers(false);
        std::string script = "BEGIN; UPDATE GivenUpMark SET AuditID = 0; DELETE FROM GivenUpChanges;"
                             "UPDATE Company SET SyncState = 0, LastAuditID = 0, NextSequenceToMain = 0;"
                             "DELETE FROM SentRanges; INSERT INTO SentRanges VALUES ('', 0, 0);"
                             "DELETE FROM LastImports; DELETE FROM NotTakenFiles;";
        for (const std::string& table : UsedTables()) {
            script += "DELETE FROM \"" + table + "\";";
        }
        Run(script + "DELETE FROM sqlite_sequence; COMMIT;");
        Connection().TurnTriggers(true);
    }
    std::vector<std::string> ExchangedTables() {
        std::vector<std::string> tables = UsedTables();
        std::erase_if(tables, [](const std::string& name) { return FindAuditedTable(name) == nullptr; });
        return tables;
    }
    /// All rows that travel, with the storage classes of their values, byte for byte.
    std::string AllRows() {
        std::string all;
        for (const std::string& name : ExchangedTables()) {
            std::string values = "hex(UniqueID)";
            for (const Column& column : FindAuditedTable(name)->columns) {
                const std::string quoted = "\"" + std::string(column.name) + "\"";
                values += column.local ? "" : " || '|' || typeof(" + quoted + ") || hex(" + quoted + ")";
            }
            sql::Statement row = Connection().Prepare("SELECT " + values + " FROM \"" + name + "\" ORDER BY 1");
            while (row.Step()) {
                all.append(name).append(" ").append(row.Text(0)).append("\n");
            }
        }
        return all;
    }
    /// How many rows the import's own tables and the audit have.
    std::string Ledgers() {
        return Value(
            "SELECT (SELECT COUNT(*) FROM AuditLog) || ' ' || (SELECT COUNT(*) FROM ImportProblems) || ' ' || "
            "(SELECT COUNT(*) FROM ImportConflicts)");
    }
    void CheckWhole() {
        Require(!Connection().IsInTransaction(), "no transaction stays open");
        Require(Number("SELECT COUNT(*) FROM ImportMark") == 0, "no mark of an import stays");
        Require(Value("PRAGMA main.integrity_check") == "ok", "the database is whole");
    }

  private:
    /// Every table numbers its rows, and the database remembers the numbers of those that ever had one.
    std::vector<std::string> UsedTables() {
        std::vector<std::string> tables;
        sql::Statement names = Connection().Prepare("SELECT name FROM sqlite_sequence ORDER BY name");
        while (names.Step()) {
            tables.emplace_back(names.Text(0));
        }
        return tables;
    }
};

/// What the reader makes of the file by itself.
struct Contents {
    bool readable = true;
    bool eachRowOnce = true;
};

Contents ReadContents(const std::string& path) {
    Contents contents;
    std::set<std::pair<std::string_view, std::string>> rows;
    try {
        ImportReader reader(path, ImportReader::UnknownTables::PassOver);
        ImportBatch batch;
        while (reader.Read(batch)) {
            for (const ImportRecord& record : batch.records) {
                std::string uniqueID(batch.Text(record, record.uniqueID));
                std::transform(uniqueID.begin(), uniqueID.end(), uniqueID.begin(),
                               [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
                contents.eachRowOnce &= rows.emplace(record.table->name, uniqueID).second;
            }
        }
    } catch (const services::Failure&) {
        contents.readable = false;
    }
    return contents;
}

struct Bench {
    const TestFolder folder{fuzz::Scratch().Path()};
    Company main{folder, MainID, 1};
    Company laptop{folder, LaptopID, 2};
    Company busyLaptop{folder, OtherLaptopID, 2};
};

/// False when the file was refused.
bool TakeTwice(Company& company, const std::string& path, const Contents& contents) {
    const std::string rowsBefore = company.AllRows();
    const std::string ledgersBefore = company.Ledgers();
    const bool taken = company.engine.ImportFile(path);
    Require(taken == contents.readable, "a file is taken when it can be read");
    company.CheckWhole();
    const std::string rows = company.AllRows();
    const std::string ledgers = company.Ledgers();
    Require(taken || (rows == rowsBefore && ledgers == ledgersBefore), "a refused file changes nothing");
    if (taken) {
        Require(company.engine.ImportFile(path), "what was taken once is taken again");
        Require(company.AllRows() == rows, "the same rows come out of the second time");
        Require(!contents.eachRowOnce || company.Ledgers() == ledgers, "the second time is not a change");
    }
    return taken;
}

void CheckTravelsOn(Bench& bench) {
    const std::string path = bench.folder.Path("onward.xml");
    for (const std::string& table : bench.main.ExchangedTables()) {
        bench.main.engine.AddToExport(table, services::ExportOfTable(table), false);
    }
    Require(bench.main.engine.DoExport(path), "what was taken can be exported");
    Require(bench.laptop.engine.ImportFile(path), "what was exported can be taken");
    Require(bench.laptop.Number("SELECT COUNT(*) FROM ImportProblems") == 0, "no exported record is a problem");
    Require(bench.laptop.AllRows() == bench.main.AllRows(), "rows travel on unchanged");
    Require(bench.laptop.Number("SELECT COUNT(*) FROM AuditLog") == 0, "a workstation does not audit an import");
}

/// A workstation with three rows of its own: one whose change was sent, one changed and one deleted since.
void CheckOwnChangesStay(Company& company, const std::string& path, const Contents& contents) {
    company.Run("INSERT INTO Customers (UniqueID, CompanyName) VALUES ('R3', 'sent'), ('R2', 'gone');"
                "UPDATE Company SET NextSequenceToMain = 1, LastAuditID = (SELECT MAX(ID) FROM AuditLog);"
                "INSERT INTO Customers (UniqueID, CompanyName) VALUES ('R1', 'own');"
                "DELETE FROM Customers WHERE UniqueID = 'R2';");
    TakeTwice(company, path, contents);
    Require(company.Value("SELECT group_concat(UniqueID || CompanyName) FROM Customers "
                          "WHERE UniqueID IN ('R1', 'R2')") == "R1own",
            "unsent changes stay");
}

/// A workstation that gave up a change for a reset and waits for the full data.
void CheckGivenUpIsKept(Company& company, const std::string& path, const Contents& contents) {
    company.Run("INSERT INTO Customers (UniqueID, CompanyName) VALUES ('R1', 'own');"
                "UPDATE Company SET SyncState = 6, LastAuditID = (SELECT MAX(ID) FROM AuditLog);");
    if (TakeTwice(company, path, contents) && contents.eachRowOnce) {
        Require(company.Number("SELECT COUNT(*) FROM Customers WHERE UniqueID = 'R1' AND CompanyName = 'own'") ==
                        1 ||
                    company.Number("SELECT COUNT(*) FROM ImportConflicts WHERE RowUniqueID = 'R1' AND "
                                   "json_extract(LosingValues, '$.CompanyName') = 'own' AND State = 0") == 1,
                "what a reset gave up is kept");
    }
}

} // namespace
} // namespace qndr::suite

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qndr::suite;
    static Bench bench;
    for (Company* company : {&bench.main, &bench.laptop, &bench.busyLaptop}) {
        company->Clear();
    }
    const std::string path = bench.folder.Write("data.xml", qndr::fuzz::AsText(data, size));
    const Contents contents = ReadContents(path);
    if (TakeTwice(bench.main, path, contents)) {
        CheckTravelsOn(bench);
    }
    CheckOwnChangesStay(bench.busyLaptop, path, contents);
    bench.busyLaptop.Clear();
    CheckGivenUpIsKept(bench.busyLaptop, path, contents);
    return 0;
}
