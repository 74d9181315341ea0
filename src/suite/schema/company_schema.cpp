#include "suite/schema/company_schema.h"

#include "suite/schema/company_ddl.h"
#include "suite/schema/exchange_memory.h"
#include "suite/schema/vocabulary.h"
#include "text/letter_case.h"

#include <algorithm>
#include <iterator>

namespace qndr::suite {

namespace {

/// What the exchange itself works on. Not audited, not exported, and no import may write to it.
constexpr std::string_view ExchangeTables = R"(
CREATE TABLE Company (
  ID INTEGER PRIMARY KEY CHECK (ID = 1),
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0),
  Name TEXT,
  CompanyType INTEGER NOT NULL DEFAULT 0,
  MainUniqueID TEXT COLLATE NOCASE,
  SyncState INTEGER NOT NULL DEFAULT 0,
  LastAuditID INTEGER NOT NULL DEFAULT 0,
  NextSequenceToMain INTEGER NOT NULL DEFAULT 0,
  NextSequenceFromMain INTEGER NOT NULL DEFAULT 0,
  ReferenceCode INTEGER NOT NULL DEFAULT 0,
  DatabaseVersion TEXT NOT NULL
);
CREATE TABLE RoamingWorkstations (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0),
  Name TEXT,
  ReferenceCode INTEGER NOT NULL DEFAULT 0,
  SyncState INTEGER NOT NULL DEFAULT 0,
  LastAuditID INTEGER NOT NULL DEFAULT 0,
  NextSequenceToRoaming INTEGER NOT NULL DEFAULT 0,
  NextSequenceFromRoaming INTEGER NOT NULL DEFAULT 0,
  LastReceivedFrom TEXT,
  LastSentTo TEXT,
  LastKnownAppVersion TEXT
);
-- ID is a mark up to which was sent: AUTOINCREMENT keeps it rising after the log was emptied.
-- Origin and OriginID name the company and its AuditLog.ID of an imported version; NULL for one's own.
CREATE TABLE AuditLog (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  TableName TEXT NOT NULL,
  RecordID INTEGER NOT NULL,
  AuditType INTEGER NOT NULL,
  AddedOn TEXT NOT NULL,
  AuditUniqueID TEXT COLLATE NOCASE NOT NULL,
  AuditData TEXT,
  Origin TEXT COLLATE NOCASE,
  OriginID INTEGER
);
-- An application may write a table's name in any case.
CREATE INDEX ixAuditLog_Row ON AuditLog (TableName COLLATE NOCASE, AuditUniqueID COLLATE NOCASE);
)";

/// The engine's memory of how far each file to another company went: with NextSequence files sent, all audit rows
/// up to LastAuditID were covered. Filled by whatever moves the counters. They go back to 0 at a reset and at a
/// first exchange, and what stood for higher numbers before is void then.
constexpr std::string_view SentRangesTable = R"(
-- Receiver is the workstation's UniqueID; empty on a workstation, which sends to main alone.
CREATE TABLE SentRanges (
  Receiver TEXT COLLATE NOCASE NOT NULL,
  NextSequence INTEGER NOT NULL,
  LastAuditID INTEGER NOT NULL,
  PRIMARY KEY (Receiver, NextSequence)
) WITHOUT ROWID;
)";

std::string SentRangesTrigger(std::string_view name, std::string_view event, std::string_view receiver,
                              std::string_view nextSequence) {
    const std::string to(receiver);
    const std::string sequence = "NEW." + std::string(nextSequence);
    return "CREATE TRIGGER " + std::string(name) + " AFTER " + std::string(event) +
           "\nBEGIN\n  DELETE FROM SentRanges WHERE Receiver = " + to + " AND NextSequence >= " + sequence +
           ";\n  INSERT INTO SentRanges (Receiver, NextSequence, LastAuditID) VALUES (" + to + ", " + sequence +
           ", NEW.LastAuditID);\nEND;\n";
}

std::string SentRangesScript() {
    const auto triggers = [](const std::string& table, std::string_view receiver,
                             const std::string& nextSequence) {
        return SentRangesTrigger("sentRangeInsert" + table, "INSERT ON " + table, receiver, nextSequence) +
               SentRangesTrigger("sentRangeUpdate" + table,
                                 "UPDATE OF " + nextSequence + ", LastAuditID ON " + table, receiver,
                                 nextSequence);
    };
    return std::string(SentRangesTable) +
           triggers("RoamingWorkstations", "NEW.UniqueID", "NextSequenceToRoaming") +
           triggers("Company", "''", "NextSequenceToMain");
}

/// Main's memory of what a workstation never got: full data starts a numbering anew and skips the changes that
/// were on their way, but not all rows are part of it. Without this a version of such a row would count as seen by
/// the workstation and be overwritten unkept. The first trigger runs before SentRanges goes back.
constexpr std::string_view SkippedRangesScript = R"(
-- Audit rows above FromID up to ToID; NULL until the full data that skips them has gone out.
CREATE TABLE SkippedRanges (
  ID INTEGER PRIMARY KEY,
  Receiver TEXT COLLATE NOCASE NOT NULL,
  FromID INTEGER NOT NULL,
  ToID INTEGER
);
-- {InitialSyncRequired} and {ResetPending} are the states in which full data is owed.
CREATE TRIGGER beginSkippedRange BEFORE UPDATE OF SyncState, NextSequenceToRoaming ON RoamingWorkstations
WHEN NEW.SyncState IN ({InitialSyncRequired}, {ResetPending}) OR NEW.NextSequenceToRoaming < OLD.NextSequenceToRoaming
BEGIN
  INSERT INTO SkippedRanges (Receiver, FromID)
  SELECT NEW.UniqueID, ifnull(
    (SELECT LastAuditID FROM SentRanges WHERE Receiver = NEW.UniqueID ORDER BY NextSequence LIMIT 1), 0)
  WHERE NOT EXISTS (SELECT 1 FROM SkippedRanges WHERE Receiver = NEW.UniqueID AND ToID IS NULL);
  INSERT INTO SkippedRanges (Receiver, FromID, ToID)
  SELECT Receiver, FromID, ToID FROM NotTakenFiles WHERE Receiver = NEW.UniqueID;
  DELETE FROM NotTakenFiles WHERE Receiver = NEW.UniqueID;
END;
-- An initial sync has gone out at {InitialSyncSent}, a reset's data when {ResetRequested} becomes {Ready}.
CREATE TRIGGER endSkippedRange AFTER UPDATE OF SyncState ON RoamingWorkstations
WHEN NEW.SyncState = {InitialSyncSent} OR (OLD.SyncState = {ResetRequested} AND NEW.SyncState = {Ready})
BEGIN
  UPDATE SkippedRanges SET ToID = NEW.LastAuditID WHERE Receiver = NEW.UniqueID AND ToID IS NULL;
END;
)";

/// The engine's memory of what a sync reset gives up on a workstation. The agent moves Company.LastAuditID over
/// changes that it never sent in the same UPDATE in which it moves the state; only here does that show. The
/// trigger runs before the row changes, and so before the counters of SentRanges go back.
constexpr std::string_view GivenUpScript = R"(
-- Rows with changes that were given up and whose values are not in ImportConflicts yet. Made: main never had the row.
CREATE TABLE GivenUpChanges (
  TableName TEXT NOT NULL,
  RowUniqueID TEXT COLLATE NOCASE NOT NULL,
  Reason INTEGER NOT NULL,
  Made INTEGER NOT NULL,
  PRIMARY KEY (TableName, RowUniqueID)
) WITHOUT ROWID;
-- The audit rows up to here were noted, or come from the clearing of a reset.
CREATE TABLE GivenUpMark (AuditID INTEGER NOT NULL);
INSERT INTO GivenUpMark (AuditID) VALUES (0);
-- Of each row that main is not known to have as it stands here. The oldest entry of SentRanges tells what main has
-- confirmed, for older ones are forgotten then; all but the files that main could not take in, where the row did not
-- go with a later one. Reason as in ImportConflicts.
CREATE VIEW vwUnconfirmedChanges AS
SELECT TableName, AuditUniqueID AS RowUniqueID, MAX(ID) AS NewestID,
  CASE WHEN MAX(ID) > (SELECT LastAuditID FROM Company) THEN {GivenUp} ELSE {NotConfirmed} END AS Reason,
  MIN(ID) > (SELECT LastAuditID FROM Company)
    AND MIN(ID) IS MIN(CASE AuditType WHEN {Insertion} THEN ID END) AS Made
FROM AuditLog, (
  SELECT ifnull((SELECT LastAuditID FROM SentRanges WHERE Receiver = '' ORDER BY NextSequence LIMIT 1), 0) AS Confirmed)
WHERE (SELECT CompanyType FROM Company) = {Roaming}
  AND ID > (SELECT AuditID FROM GivenUpMark)
  AND (ID > Confirmed OR EXISTS (
    SELECT 1 FROM NotTakenFiles WHERE Receiver = '' AND FromID < ID AND ID <= ToID AND NOT EXISTS (
      SELECT 1 FROM AuditLog AS Later WHERE Later.TableName = AuditLog.TableName COLLATE NOCASE
        AND Later.AuditUniqueID = AuditLog.AuditUniqueID AND Later.ID > ToID AND Later.ID <= Confirmed)))
GROUP BY TableName COLLATE NOCASE, AuditUniqueID;
-- {ResetPending} is the state of a pending reset: nothing that stands in the log then is ever sent. At a reset's end the log counts
-- as sent up to the new LastAuditID, and what is above it will be sent.
CREATE TRIGGER noteGivenUpChanges BEFORE UPDATE OF SyncState ON Company
WHEN NEW.SyncState = {ResetPending} OR NEW.LastAuditID > OLD.LastAuditID
BEGIN
  INSERT INTO GivenUpChanges (TableName, RowUniqueID, Reason, Made)
  SELECT TableName, RowUniqueID, Reason, Made FROM vwUnconfirmedChanges
  WHERE NEW.SyncState = {ResetPending} OR NewestID <= NEW.LastAuditID
  ON CONFLICT DO UPDATE SET Reason = min(Reason, excluded.Reason);
END;
)";

/// The engine's memory of the file that main took last from each workstation. When its number could not be stored
/// it comes a second time, and what was changed here in between must not go back.
constexpr std::string_view LastImportsTable = R"(
CREATE TABLE LastImports (
  Sender TEXT COLLATE NOCASE PRIMARY KEY,
  FileID TEXT NOT NULL
) WITHOUT ROWID;
)";

/// What stays in this database: it tells about this company alone.
constexpr std::string_view OwnTables = R"(
CREATE TABLE SchemaVersion (Version INTEGER NOT NULL);
CREATE TABLE CompanyOptions (
  Profile TEXT COLLATE NOCASE NOT NULL,
  Section TEXT COLLATE NOCASE NOT NULL,
  OptionKey TEXT COLLATE NOCASE NOT NULL,
  Value TEXT,
  PRIMARY KEY (Profile, Section, OptionKey)
) WITHOUT ROWID;
CREATE TABLE CompanyEvents (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  OccurredOn TEXT NOT NULL DEFAULT (GETUTCDATE()),
  EventText TEXT NOT NULL,
  EventNumber INTEGER
);
-- A row stands here only inside the transaction of an import. With Audited 0 nothing is audited, with 1 the audit rows
-- take their origin from it.
CREATE TABLE ImportMark (
  Audited INTEGER NOT NULL,
  Origin TEXT,
  OriginID INTEGER
);
-- LosingValues is a JSON object from column to text or null, bytes as {"base64": text}; NULL for a deletion. State: 0
-- open, 1 restored, 2 dismissed. Reason: 0 lost against another version, 1 not sent when a reset gave it up, 2 sent
-- before a reset, but not confirmed by main.
CREATE TABLE ImportConflicts (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  TableName TEXT NOT NULL,
  RowUniqueID TEXT COLLATE NOCASE NOT NULL,
  OccurredOn TEXT NOT NULL DEFAULT (GETUTCDATE()),
  LosingOrigin TEXT,
  WinningOrigin TEXT,
  LosingValues TEXT,
  Deleted INTEGER NOT NULL DEFAULT 0,
  State INTEGER NOT NULL DEFAULT 0,
  Reason INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX ixImportConflicts_Row ON ImportConflicts (RowUniqueID);
CREATE INDEX ixImportConflicts_GivenUp ON ImportConflicts (RowUniqueID) WHERE Reason > 0 AND State = 0;
CREATE TABLE ImportProblems (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  TableName TEXT NOT NULL,
  RowUniqueID TEXT COLLATE NOCASE,
  OccurredOn TEXT NOT NULL DEFAULT (GETUTCDATE()),
  Reason TEXT,
  RecordXml TEXT
);
CREATE INDEX ixImportProblems_Row ON ImportProblems (RowUniqueID);
-- Worked out from the products at need; a reset empties it.
CREATE TABLE cacheProductStyles (
  ID INTEGER PRIMARY KEY,
  ProductUniqueID TEXT COLLATE NOCASE NOT NULL,
  StyleText TEXT
);
)";

} // namespace

const Table* FindAuditedTable(std::string_view name) {
    const auto& tables = AuditedTables();
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const Table& table) { return text::EqualsWithoutCase(table.name, name); });
    return found == tables.end() ? nullptr : &*found;
}

bool IsClosedToFiles(std::string_view table) {
    constexpr std::string_view Closed[] = {
        "cacheProductStyles", "Company",    "RoamingWorkstations", "AuditLog",       "CompanyOptions",
        "CompanyEvents",      "ImportMark", "ImportConflicts",     "ImportProblems", "SentRanges"};
    return std::any_of(std::begin(Closed), std::end(Closed),
                       [&](auto own) { return text::EqualsWithoutCase(own, table); });
}

bool IsWhollyExported(const Table& table) {
    return table.exported && std::none_of(table.columns.begin(), table.columns.end(), [](const Column& column) {
               return column.name == "ActivityDate" || column.name == "AttachmentType";
           });
}

std::string CompanySchemaScript() {
    std::string script = std::string(ExchangeTables) + SentRangesScript() + WithNumbers(SkippedRangesScript) +
                         std::string(LastImportsTable) + WithNumbers(GivenUpScript) + std::string(OwnTables) +
                         SnapshotMemoryScript() + RefusalMemoryScript() + StandingMemoryScript() +
                         "INSERT INTO SchemaVersion (Version) VALUES (" + std::to_string(CompanySchemaVersion) +
                         ");\n";
    for (const Table& table : AuditedTables()) {
        script += AuditedTableScript(table);
    }
    return script + NumberSyncViewScript(*FindAuditedTable("Orders"), "OrderNumber") +
           NumberSyncViewScript(*FindAuditedTable("PurchaseOrders"), "PONumber");
}

} // namespace qndr::suite
