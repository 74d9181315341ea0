#include "suite/schema/company_versions.h"

#include "services/failure.h"
#include "suite/computer/file_calls.h"
#include "text/sql_name.h"

#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace qndr::suite {
namespace {

using services::Failure;

constexpr std::int64_t OldestVersion = 1;

/// From the version before to this one: tables, columns, indexes and what their first rows have to be. Views and
/// triggers are not among them. Each step was once the difference between two versions: never change one.
struct Step {
    std::int64_t version;
    const char* script;
};

constexpr std::array Steps{
    // A counter that stands above 0 was not noted file by file: the whole range counts as one.
    Step{2, R"(
CREATE TABLE SentRanges (
  Receiver TEXT COLLATE NOCASE NOT NULL,
  NextSequence INTEGER NOT NULL,
  LastAuditID INTEGER NOT NULL,
  PRIMARY KEY (Receiver, NextSequence)
) WITHOUT ROWID;
INSERT INTO SentRanges SELECT UniqueID, NextSequenceToRoaming, LastAuditID FROM RoamingWorkstations;
INSERT INTO SentRanges SELECT '', NextSequenceToMain, LastAuditID FROM Company;
)"},
    Step{3, R"(
CREATE TABLE GivenUpChanges (
  TableName TEXT NOT NULL,
  RowUniqueID TEXT COLLATE NOCASE NOT NULL,
  Reason INTEGER NOT NULL,
  Made INTEGER NOT NULL,
  PRIMARY KEY (TableName, RowUniqueID)
) WITHOUT ROWID;
CREATE TABLE GivenUpMark (AuditID INTEGER NOT NULL);
INSERT INTO GivenUpMark (AuditID) VALUES (0);
ALTER TABLE ImportConflicts ADD COLUMN Reason INTEGER NOT NULL DEFAULT 0;
CREATE INDEX ixImportConflicts_GivenUp ON ImportConflicts (RowUniqueID) WHERE Reason > 0 AND State = 0;
)"},
    Step{4, R"(
CREATE TABLE SkippedRanges (
  ID INTEGER PRIMARY KEY,
  Receiver TEXT COLLATE NOCASE NOT NULL,
  FromID INTEGER NOT NULL,
  ToID INTEGER
);
)"},
    Step{5, R"(
CREATE TABLE LastImports (
  Sender TEXT COLLATE NOCASE PRIMARY KEY,
  FileID TEXT NOT NULL
) WITHOUT ROWID;
)"},
    Step{6, R"(
CREATE TABLE SchemaVersion (Version INTEGER NOT NULL);
INSERT INTO SchemaVersion (Version) VALUES (0);
CREATE TABLE ExportSnapshot (AuditID INTEGER NOT NULL);
CREATE TABLE TakenFile (Sender TEXT COLLATE NOCASE);
INSERT INTO TakenFile (Sender) VALUES (NULL);
CREATE TABLE RefusedFiles (
  Sender TEXT COLLATE NOCASE NOT NULL,
  Sequence INTEGER NOT NULL,
  RefusedOn TEXT NOT NULL,
  PRIMARY KEY (Sender, Sequence)
) WITHOUT ROWID;
CREATE TABLE NotTakenFiles (
  Receiver TEXT COLLATE NOCASE NOT NULL,
  Sequence INTEGER NOT NULL,
  FromID INTEGER NOT NULL,
  ToID INTEGER NOT NULL,
  ToldOn TEXT NOT NULL,
  PRIMARY KEY (Receiver, Sequence)
) WITHOUT ROWID;
DROP INDEX ixAuditLog_Row;
CREATE INDEX ixAuditLog_Row ON AuditLog (TableName COLLATE NOCASE, AuditUniqueID COLLATE NOCASE);
)"},
};
static_assert(Steps.back().version == CompanySchemaVersion);

/// What each version before the number brought, the newest first.
constexpr std::array<std::pair<std::int64_t, const char*>, 5> KnownBy{{{5, "LastImports"},
                                                                       {4, "SkippedRanges"},
                                                                       {3, "GivenUpChanges"},
                                                                       {2, "SentRanges"},
                                                                       {1, "RoamingWorkstations"}}};

bool HasTable(const sql::Connection& company, std::string_view name) {
    sql::Statement table = company.Prepare("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?1");
    table.Bind(1, name);
    return table.Step();
}

/// Comments may stand in front of what a statement does.
bool MakesViewOrTrigger(std::string_view statement) {
    const std::size_t at = statement.find("CREATE ");
    const std::string_view made = at == std::string_view::npos ? "" : statement.substr(at + 7);
    return made.starts_with("VIEW ") || made.starts_with("TRIGGER ");
}

void DropAll(const sql::Connection& company, const std::string& kind) {
    std::vector<std::string> names;
    sql::Statement all = company.Prepare("SELECT name FROM sqlite_schema WHERE type = ?1");
    all.Bind(1, kind);
    while (all.Step()) {
        names.emplace_back(all.Text(0));
    }
    all.Reset();
    for (const std::string& name : names) {
        company.ExecuteScript("DROP " + kind + " " + text::QuotedName(name));
    }
}

void CopyBeside(const sql::Connection& company, std::int64_t version, const services::Clock& clock) {
    const std::string copy = CopyOfOlderSchema(company.Path(), version);
    DeleteName(copy); // of an earlier try: people have worked on the company since
    OpenFile file;
    if (const std::error_code error = file.CreateNew(copy, FileAccess::Private)) {
        throw Failure("a copy of it cannot be made: " + error.message());
    }
    file.Close();
    try {
        // A connection of its own: none copies while it is inside a transaction.
        const auto reader = sql::Open(company.Path(), clock, sql::Missing::Refuse);
        sql::Statement vacuum = reader->Prepare("VACUUM INTO ?1");
        vacuum.Bind(1, copy);
        vacuum.Step();
    } catch (const Failure& failure) {
        DeleteName(copy);
        throw Failure(std::string("a copy of it cannot be made: ") + failure.what());
    }
}

} // namespace

std::int64_t ReadSchemaVersion(const sql::Connection& company) {
    if (HasTable(company, "SchemaVersion")) {
        return company.Number("SELECT Version FROM SchemaVersion");
    }
    for (const auto& [version, table] : KnownBy) {
        if (HasTable(company, table)) {
            return version;
        }
    }
    return 0;
}

void RefuseNewerSchema(std::int64_t version) {
    if (version > CompanySchemaVersion) {
        throw Failure("the company was made by a newer version of this program (schema " +
                      std::to_string(version) + ", this one knows " + std::to_string(CompanySchemaVersion) + ")");
    }
}

void BringUpToDate(const sql::Connection& company, const services::Clock& clock) {
    if (ReadSchemaVersion(company) == CompanySchemaVersion) {
        return;
    }
    sql::Transaction transaction(company, sql::Transaction::Kind::Write);
    // Another process may have done it meanwhile.
    const std::int64_t version = ReadSchemaVersion(company);
    RefuseNewerSchema(version);
    if (version == CompanySchemaVersion) {
        return;
    }
    if (version < OldestVersion) {
        throw Failure("the database is no company");
    }
    CopyBeside(company, version, clock);
    DropAll(company, "trigger");
    DropAll(company, "view");
    for (const Step& step : Steps) {
        if (step.version > version) {
            company.ExecuteScript(step.script);
        }
    }
    for (const std::string& statement : company.SplitScript(CompanySchemaScript())) {
        if (MakesViewOrTrigger(statement)) {
            company.ExecuteScript(statement);
        }
    }
    company.Execute("UPDATE SchemaVersion SET Version = " + std::to_string(CompanySchemaVersion));
    transaction.Commit();
}

std::string CopyOfOlderSchema(const std::string& databaseFile, std::int64_t version) {
    return databaseFile + ".schema-" + std::to_string(version);
}

void ForgetOlderSchemas(const std::string& databaseFile) {
    for (std::int64_t version = OldestVersion; version < CompanySchemaVersion; ++version) {
        DeleteName(CopyOfOlderSchema(databaseFile, version));
    }
}

} // namespace qndr::suite
