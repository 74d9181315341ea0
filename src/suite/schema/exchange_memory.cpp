#include "suite/schema/exchange_memory.h"

#include "suite/schema/company_events.h"
#include "suite/schema/vocabulary.h"

#include <string_view>

namespace qndr::suite {

namespace {

/// An initial sync counts as speaking of everything up to the newest audit row that there is once its file lies in
/// the Sync folder. What was changed while the file was made is in neither the file nor the changes behind that
/// number, unless it is audited anew. A reset's number is read before its export: nothing lies between the two.
constexpr std::string_view SnapshotScript = R"(
-- One row at most: the newest audit row of the last export of whole tables.
CREATE TABLE ExportSnapshot (AuditID INTEGER NOT NULL);
CREATE TRIGGER auditAnewSinceSnapshot AFTER UPDATE OF SyncState ON RoamingWorkstations
WHEN NEW.SyncState = {InitialSyncSent}
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  SELECT TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID FROM AuditLog
  WHERE ID > (SELECT AuditID FROM ExportSnapshot) AND ID <= NEW.LastAuditID ORDER BY ID;
  DELETE FROM ExportSnapshot;
END;
)";

constexpr std::string_view RefusalTables = R"(
-- One row: whose file was taken in while its number is not stored yet, a workstation's UniqueID or, on a workstation,
-- '' for main; NULL for none.
CREATE TABLE TakenFile (Sender TEXT COLLATE NOCASE);
INSERT INTO TakenFile (Sender) VALUES (NULL);
-- Files of the present numbering that count as taken here and whose data are not in. Sender as above. Sequence -1 is
-- the full data that the numbering began with.
CREATE TABLE RefusedFiles (
  Sender TEXT COLLATE NOCASE NOT NULL,
  Sequence INTEGER NOT NULL,
  RefusedOn TEXT NOT NULL,
  PRIMARY KEY (Sender, Sequence)
) WITHOUT ROWID;
-- The same of this company's files, as their receiver tells it; they held the audit rows above FromID up to ToID.
-- Receiver as in SentRanges.
CREATE TABLE NotTakenFiles (
  Receiver TEXT COLLATE NOCASE NOT NULL,
  Sequence INTEGER NOT NULL,
  FromID INTEGER NOT NULL,
  ToID INTEGER NOT NULL,
  ToldOn TEXT NOT NULL,
  PRIMARY KEY (Receiver, Sequence)
) WITHOUT ROWID;
-- A numbering begins anew with all that was sent given up and kept.
CREATE TRIGGER forgetNotTakenFiles AFTER UPDATE OF NextSequenceToMain ON Company
WHEN NEW.NextSequenceToMain = 0
BEGIN
  DELETE FROM NotTakenFiles WHERE Receiver = '';
END;
-- A first exchange and a reset end with {Ready} whether the data are in or not. Behind a reset's data the number follows.
CREATE TRIGGER countFullData AFTER UPDATE OF SyncState ON Company
WHEN NEW.SyncState = {Ready} AND OLD.SyncState IN ({InitialSyncRequested}, {ResetPending})
BEGIN
  INSERT OR IGNORE INTO RefusedFiles (Sender, Sequence, RefusedOn)
  SELECT '', -1, GETUTCDATE() WHERE NOT EXISTS (SELECT 1 FROM TakenFile WHERE Sender = '');
  UPDATE TakenFile SET Sender = NULL WHERE OLD.SyncState = {InitialSyncRequested};
END;
)";

constexpr std::string_view StandingTables = R"(-- One row for each partner; see suite/standing/standing_memory.h.
CREATE TABLE PartnerStandings (
  Partner TEXT COLLATE NOCASE PRIMARY KEY,
  Number INTEGER NOT NULL,
  Told TEXT NOT NULL,
  ToldFile TEXT NOT NULL,
  Heard TEXT NOT NULL,
  HeardFile TEXT NOT NULL,
  HeardOn TEXT NOT NULL,
  ProvenOn TEXT NOT NULL,
  WantsProof INTEGER NOT NULL,
  Proof TEXT NOT NULL,
  ProofOn TEXT NOT NULL,
  ProofPlace INTEGER NOT NULL,
  ProofNumber INTEGER NOT NULL,
  Answer TEXT NOT NULL,
  AnswerRows TEXT NOT NULL,
  Alike INTEGER NOT NULL,
  ReadyFrom INTEGER NOT NULL,
  OutOfStep TEXT NOT NULL,
  OutOfStepSince TEXT NOT NULL,
  Mended TEXT NOT NULL,
  Computers TEXT NOT NULL,
  KnownPlace INTEGER NOT NULL,
  SendsGivenUp INTEGER NOT NULL
) WITHOUT ROWID;
-- The digests of the proofs that are on offer.
CREATE TABLE StandingProofs (
  ID TEXT PRIMARY KEY,
  Digests TEXT NOT NULL
) WITHOUT ROWID;
-- How often a row was sent again to a workstation since it was last proven to hold the same.
CREATE TABLE RepairedRows (
  Workstation TEXT COLLATE NOCASE NOT NULL,
  TableName TEXT NOT NULL,
  RowUniqueID TEXT COLLATE NOCASE NOT NULL,
  Times INTEGER NOT NULL,
  PRIMARY KEY (Workstation, TableName, RowUniqueID)
) WITHOUT ROWID;
-- The audit rows of what was sent again: what it overwrites at the other end is kept there.
CREATE TABLE RepairAudits (AuditID INTEGER PRIMARY KEY);
)";

/// A number that moves by one counts a file as taken. That its data are in is known by the mark that the import
/// left. `sender` is its key in SQL.
std::string CountingScript(const std::string& table, const std::string& number, const std::string& sender) {
    const std::string head = " AFTER UPDATE OF " + number + " ON " + table + "\nWHEN NEW." + number;
    const std::string forgetMark = "  UPDATE TakenFile SET Sender = NULL WHERE Sender = " + sender + ";\nEND;\n";
    return "CREATE TRIGGER countFile" + table + head + " = OLD." + number +
           " + 1\nBEGIN\n  INSERT OR IGNORE INTO RefusedFiles (Sender, Sequence, RefusedOn)\n  SELECT " + sender +
           ", OLD." + number +
           ", GETUTCDATE() WHERE NOT EXISTS (SELECT 1 FROM TakenFile WHERE Sender = " + sender + ");\n" +
           forgetMark + "CREATE TRIGGER countFilesAnew" + table + head + " <= OLD." + number +
           "\nBEGIN\n  DELETE FROM RefusedFiles WHERE Sender = " + sender + ";\n" + forgetMark;
}

std::string RefusalEventScript() {
    return "CREATE TRIGGER tellRefusedFile AFTER INSERT ON RefusedFiles\nBEGIN\n"
           "  INSERT INTO CompanyEvents (OccurredOn, EventText, EventNumber) VALUES (GETUTCDATE(),\n"
           "    CASE WHEN NEW.Sequence < 0 THEN 'The full data' ELSE 'The file ' || NEW.Sequence END || ' of ' "
           "||\n"
           "    ifnull((SELECT ifnull(nullif(Name, ''), UniqueID) FROM RoamingWorkstations WHERE UniqueID = "
           "NEW.Sender), 'main') ||\n    ' could not be imported, and will not come again.', " +
           std::to_string(FileRefusedEvent) + ");\nEND;\n";
}

} // namespace

std::string StandingMemoryScript() {
    return std::string(StandingTables);
}

std::string SnapshotMemoryScript() {
    return WithNumbers(SnapshotScript);
}

std::string RefusalMemoryScript() {
    return WithNumbers(RefusalTables) +
           CountingScript("RoamingWorkstations", "NextSequenceFromRoaming", "NEW.UniqueID") +
           CountingScript("Company", "NextSequenceFromMain", "''") + RefusalEventScript();
}

} // namespace qndr::suite
