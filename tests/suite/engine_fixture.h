#pragma once

#include "suite/company_fixture.h"
#include "suite/objects/company_library.h"
#include "suite/objects/engine.h"
#include "suite/schema/company_schema.h"
#include "suite/settings/registry_store.h"
#include "suite/sql/connection_string.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

namespace qndr::suite {

inline const std::string MainID = "AAAAAAAA-0000-4000-8000-000000000001";
inline const std::string LaptopID = "BBBBBBBB-0000-4000-8000-000000000002";
inline const std::string OtherLaptopID = "CCCCCCCC-0000-4000-8000-000000000003";

/// A company with its database, its library and its engine.
class EngineCompany {
  public:
    EngineCompany(const TestFolder& folder, const std::string& uniqueID, int type)
        : registry_(folder.Path("registry.db"), clock_) {
        const std::string path = folder.Path(uniqueID.substr(0, 4) + ".db");
        {
            sql::SqliteConnection made(path, clock_, sql::Missing::Create);
            made.ExecuteScript("BEGIN;" + CompanySchemaScript() + "COMMIT;");
        }
        library.SetConnectionString(sql::SqliteConnectionString(path));
        Run("INSERT INTO Company (ID, UniqueID, CompanyType, DatabaseVersion) VALUES (1, '" + uniqueID + "', " +
            std::to_string(type) + ", '')");
        engine.Initialize(library);
        engine.SetIgnoreUnknownTables(true);
    }

    sql::Connection& Connection() { return library.Connection(); }
    void Run(const std::string& script) { Connection().ExecuteScript(script); }
    std::string Value(const std::string& sql) { return Connection().Value(sql).value_or(""); }
    std::int64_t Number(const std::string& sql) { return Connection().Number(sql); }

    /// The rows with all their values and storage classes, but without the local key.
    std::string Rows(const std::string& table) {
        std::string values = "UniqueID";
        for (const Column& column : FindAuditedTable(table)->columns) {
            const std::string name(column.name);
            values += column.local ? "" : " || '|' || typeof(" + name + ") || quote(" + name + ")";
        }
        return Value("SELECT group_concat(line, char(10)) FROM (SELECT " + values + " AS line FROM " + table +
                     " ORDER BY UniqueID)");
    }
    /// All that an import may not touch when it refuses a file.
    std::string Everything() {
        std::string all;
        for (const Table& table : AuditedTables()) {
            all += Rows(std::string(table.name)) + "\n";
        }
        for (const char* table : {"AuditLog", "ImportMark", "ImportProblems", "ImportConflicts", "SentRanges"}) {
            all += Value("SELECT COUNT(*) FROM " + std::string(table)) + "\n";
        }
        return all;
    }

    bool ExportTable(const std::string& table, const std::string& path) {
        engine.AddToExport(table, services::ExportOfTable(table), false);
        return engine.DoExport(path);
    }
    /// The entries of audited changes, as the agent adds them.
    bool ExportAudited(std::int64_t above, const std::string& path,
                       std::int64_t upTo = std::numeric_limits<std::int64_t>::max()) {
        sql::Statement log = Connection().Prepare("SELECT ID, TableName, RecordID, AuditType FROM AuditLog "
                                                  "WHERE ID > ?1 AND ID <= ?2 ORDER BY ID");
        log.Bind(1, above);
        log.Bind(2, upTo);
        while (log.Step()) {
            const std::string table(log.Text(1));
            if (log.Integer(3) == 3) {
                engine.AddToExport(table, services::ExportOfDeletion(log.Integer(0)), true);
            } else {
                engine.AddToExport(table, services::ExportOfRow(table, log.Integer(2)), false);
            }
        }
        return engine.DoExport(path);
    }

  private:
    StandingClock clock_;
    RegistryStore registry_;

  public:
    ComputerTrouble trouble;
    CompanyLibrary library{registry_, clock_, trouble};
    ImportExportEngine engine{trouble};
};

inline std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// An exchange file from `sender`, who had accepted the files that `seen` tells of, all but the `refused`, with
/// these tables.
inline std::string Exchange(const std::string& tables, const std::string& sender = MainID,
                            const std::string& seen = "", const std::string& refused = "") {
    return "<Exchange Version=\"1\" From=\"" + sender + "\" Seen=\"" + seen + "\" Refused=\"" + refused + "\">" +
           tables + "</Exchange>";
}

} // namespace qndr::suite
