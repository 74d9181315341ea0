
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
CREATE INDEX ixAuditLog_Row ON AuditLog (TableName, AuditUniqueID COLLATE NOCASE);

-- Receiver is the workstation's UniqueID; empty on a workstation, which sends to main alone.
CREATE TABLE SentRanges (
  Receiver TEXT COLLATE NOCASE NOT NULL,
  NextSequence INTEGER NOT NULL,
  LastAuditID INTEGER NOT NULL,
  PRIMARY KEY (Receiver, NextSequence)
) WITHOUT ROWID;
CREATE TRIGGER sentRangeInsertRoamingWorkstations AFTER INSERT ON RoamingWorkstations
BEGIN
  DELETE FROM SentRanges WHERE Receiver = NEW.UniqueID AND NextSequence >= NEW.NextSequenceToRoaming;
  INSERT INTO SentRanges (Receiver, NextSequence, LastAuditID) VALUES (NEW.UniqueID, NEW.NextSequenceToRoaming, NEW.LastAuditID);
END;
CREATE TRIGGER sentRangeUpdateRoamingWorkstations AFTER UPDATE OF NextSequenceToRoaming, LastAuditID ON RoamingWorkstations
BEGIN
  DELETE FROM SentRanges WHERE Receiver = NEW.UniqueID AND NextSequence >= NEW.NextSequenceToRoaming;
  INSERT INTO SentRanges (Receiver, NextSequence, LastAuditID) VALUES (NEW.UniqueID, NEW.NextSequenceToRoaming, NEW.LastAuditID);
END;
CREATE TRIGGER sentRangeInsertCompany AFTER INSERT ON Company
BEGIN
  DELETE FROM SentRanges WHERE Receiver = '' AND NextSequence >= NEW.NextSequenceToMain;
  INSERT INTO SentRanges (Receiver, NextSequence, LastAuditID) VALUES ('', NEW.NextSequenceToMain, NEW.LastAuditID);
END;
CREATE TRIGGER sentRangeUpdateCompany AFTER UPDATE OF NextSequenceToMain, LastAuditID ON Company
BEGIN
  DELETE FROM SentRanges WHERE Receiver = '' AND NextSequence >= NEW.NextSequenceToMain;
  INSERT INTO SentRanges (Receiver, NextSequence, LastAuditID) VALUES ('', NEW.NextSequenceToMain, NEW.LastAuditID);
END;

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
-- confirmed, for older ones are forgotten then. Reason as in ImportConflicts.
CREATE VIEW vwUnconfirmedChanges AS
SELECT TableName, AuditUniqueID AS RowUniqueID, MAX(ID) AS NewestID,
  CASE WHEN MAX(ID) > (SELECT LastAuditID FROM Company) THEN 1 ELSE 2 END AS Reason,
  MIN(ID) > (SELECT LastAuditID FROM Company)
    AND MIN(ID) IS MIN(CASE AuditType WHEN 1 THEN ID END) AS Made
FROM AuditLog
WHERE (SELECT CompanyType FROM Company) = 2
  AND ID > (SELECT AuditID FROM GivenUpMark)
  AND ID > ifnull((SELECT LastAuditID FROM SentRanges WHERE Receiver = '' ORDER BY NextSequence LIMIT 1), 0)
GROUP BY TableName, AuditUniqueID;
-- 6 is the state of a pending reset: nothing that stands in the log then is ever sent. At a reset's end the log counts
-- as sent up to the new LastAuditID, and what is above it will be sent.
CREATE TRIGGER noteGivenUpChanges BEFORE UPDATE OF SyncState ON Company
WHEN NEW.SyncState = 6 OR NEW.LastAuditID > OLD.LastAuditID
BEGIN
  INSERT INTO GivenUpChanges (TableName, RowUniqueID, Reason, Made)
  SELECT TableName, RowUniqueID, Reason, Made FROM vwUnconfirmedChanges
  WHERE NEW.SyncState = 6 OR NewestID <= NEW.LastAuditID
  ON CONFLICT DO UPDATE SET Reason = min(Reason, excluded.Reason);
END;

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
