
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
-- open, 1 restored, 2 dismissed.
CREATE TABLE ImportConflicts (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  TableName TEXT NOT NULL,
  RowUniqueID TEXT COLLATE NOCASE NOT NULL,
  OccurredOn TEXT NOT NULL DEFAULT (GETUTCDATE()),
  LosingOrigin TEXT,
  WinningOrigin TEXT,
  LosingValues TEXT,
  Deleted INTEGER NOT NULL DEFAULT 0,
  State INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX ixImportConflicts_Row ON ImportConflicts (RowUniqueID);
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
