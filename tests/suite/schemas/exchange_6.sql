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
CREATE INDEX ixAuditLog_Row ON AuditLog (TableName COLLATE NOCASE, AuditUniqueID COLLATE NOCASE);
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
CREATE TABLE SkippedRanges (
  ID INTEGER PRIMARY KEY,
  Receiver TEXT COLLATE NOCASE NOT NULL,
  FromID INTEGER NOT NULL,
  ToID INTEGER
);
CREATE TRIGGER beginSkippedRange BEFORE UPDATE OF SyncState, NextSequenceToRoaming ON RoamingWorkstations
WHEN NEW.SyncState IN (1, 6) OR NEW.NextSequenceToRoaming < OLD.NextSequenceToRoaming
BEGIN
  INSERT INTO SkippedRanges (Receiver, FromID)
  SELECT NEW.UniqueID, ifnull(
    (SELECT LastAuditID FROM SentRanges WHERE Receiver = NEW.UniqueID ORDER BY NextSequence LIMIT 1), 0)
  WHERE NOT EXISTS (SELECT 1 FROM SkippedRanges WHERE Receiver = NEW.UniqueID AND ToID IS NULL);
  INSERT INTO SkippedRanges (Receiver, FromID, ToID)
  SELECT Receiver, FromID, ToID FROM NotTakenFiles WHERE Receiver = NEW.UniqueID;
  DELETE FROM NotTakenFiles WHERE Receiver = NEW.UniqueID;
END;
CREATE TRIGGER endSkippedRange AFTER UPDATE OF SyncState ON RoamingWorkstations
WHEN NEW.SyncState = 3 OR (OLD.SyncState = 5 AND NEW.SyncState = 4)
BEGIN
  UPDATE SkippedRanges SET ToID = NEW.LastAuditID WHERE Receiver = NEW.UniqueID AND ToID IS NULL;
END;
CREATE TABLE LastImports (
  Sender TEXT COLLATE NOCASE PRIMARY KEY,
  FileID TEXT NOT NULL
) WITHOUT ROWID;
CREATE TABLE GivenUpChanges (
  TableName TEXT NOT NULL,
  RowUniqueID TEXT COLLATE NOCASE NOT NULL,
  Reason INTEGER NOT NULL,
  Made INTEGER NOT NULL,
  PRIMARY KEY (TableName, RowUniqueID)
) WITHOUT ROWID;
CREATE TABLE GivenUpMark (AuditID INTEGER NOT NULL);
CREATE VIEW vwUnconfirmedChanges AS
SELECT TableName, AuditUniqueID AS RowUniqueID, MAX(ID) AS NewestID,
  CASE WHEN MAX(ID) > (SELECT LastAuditID FROM Company) THEN 1 ELSE 2 END AS Reason,
  MIN(ID) > (SELECT LastAuditID FROM Company)
    AND MIN(ID) IS MIN(CASE AuditType WHEN 1 THEN ID END) AS Made
FROM AuditLog, (
  SELECT ifnull((SELECT LastAuditID FROM SentRanges WHERE Receiver = '' ORDER BY NextSequence LIMIT 1), 0) AS Confirmed)
WHERE (SELECT CompanyType FROM Company) = 2
  AND ID > (SELECT AuditID FROM GivenUpMark)
  AND (ID > Confirmed OR EXISTS (
    SELECT 1 FROM NotTakenFiles WHERE Receiver = '' AND FromID < ID AND ID <= ToID AND NOT EXISTS (
      SELECT 1 FROM AuditLog AS Later WHERE Later.TableName = AuditLog.TableName COLLATE NOCASE
        AND Later.AuditUniqueID = AuditLog.AuditUniqueID AND Later.ID > ToID AND Later.ID <= Confirmed)))
GROUP BY TableName COLLATE NOCASE, AuditUniqueID;
CREATE TRIGGER noteGivenUpChanges BEFORE UPDATE OF SyncState ON Company
WHEN NEW.SyncState = 6 OR NEW.LastAuditID > OLD.LastAuditID
BEGIN
  INSERT INTO GivenUpChanges (TableName, RowUniqueID, Reason, Made)
  SELECT TableName, RowUniqueID, Reason, Made FROM vwUnconfirmedChanges
  WHERE NEW.SyncState = 6 OR NewestID <= NEW.LastAuditID
  ON CONFLICT DO UPDATE SET Reason = min(Reason, excluded.Reason);
END;
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
CREATE TABLE ImportMark (
  Audited INTEGER NOT NULL,
  Origin TEXT,
  OriginID INTEGER
);
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
CREATE TABLE cacheProductStyles (
  ID INTEGER PRIMARY KEY,
  ProductUniqueID TEXT COLLATE NOCASE NOT NULL,
  StyleText TEXT
);
CREATE TABLE ExportSnapshot (AuditID INTEGER NOT NULL);
CREATE TRIGGER auditAnewSinceSnapshot AFTER UPDATE OF SyncState ON RoamingWorkstations
WHEN NEW.SyncState = 3
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  SELECT TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID FROM AuditLog
  WHERE ID > (SELECT AuditID FROM ExportSnapshot) AND ID <= NEW.LastAuditID ORDER BY ID;
  DELETE FROM ExportSnapshot;
END;
CREATE TABLE TakenFile (Sender TEXT COLLATE NOCASE);
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
CREATE TRIGGER forgetNotTakenFiles AFTER UPDATE OF NextSequenceToMain ON Company
WHEN NEW.NextSequenceToMain = 0
BEGIN
  DELETE FROM NotTakenFiles WHERE Receiver = '';
END;
CREATE TRIGGER countFullData AFTER UPDATE OF SyncState ON Company
WHEN NEW.SyncState = 4 AND OLD.SyncState IN (2, 6)
BEGIN
  INSERT OR IGNORE INTO RefusedFiles (Sender, Sequence, RefusedOn)
  SELECT '', -1, GETUTCDATE() WHERE NOT EXISTS (SELECT 1 FROM TakenFile WHERE Sender = '');
  UPDATE TakenFile SET Sender = NULL WHERE OLD.SyncState = 2;
END;
CREATE TRIGGER countFileRoamingWorkstations AFTER UPDATE OF NextSequenceFromRoaming ON RoamingWorkstations
WHEN NEW.NextSequenceFromRoaming = OLD.NextSequenceFromRoaming + 1
BEGIN
  INSERT OR IGNORE INTO RefusedFiles (Sender, Sequence, RefusedOn)
  SELECT NEW.UniqueID, OLD.NextSequenceFromRoaming, GETUTCDATE() WHERE NOT EXISTS (SELECT 1 FROM TakenFile WHERE Sender = NEW.UniqueID);
  UPDATE TakenFile SET Sender = NULL WHERE Sender = NEW.UniqueID;
END;
CREATE TRIGGER countFilesAnewRoamingWorkstations AFTER UPDATE OF NextSequenceFromRoaming ON RoamingWorkstations
WHEN NEW.NextSequenceFromRoaming <= OLD.NextSequenceFromRoaming
BEGIN
  DELETE FROM RefusedFiles WHERE Sender = NEW.UniqueID;
  UPDATE TakenFile SET Sender = NULL WHERE Sender = NEW.UniqueID;
END;
CREATE TRIGGER countFileCompany AFTER UPDATE OF NextSequenceFromMain ON Company
WHEN NEW.NextSequenceFromMain = OLD.NextSequenceFromMain + 1
BEGIN
  INSERT OR IGNORE INTO RefusedFiles (Sender, Sequence, RefusedOn)
  SELECT '', OLD.NextSequenceFromMain, GETUTCDATE() WHERE NOT EXISTS (SELECT 1 FROM TakenFile WHERE Sender = '');
  UPDATE TakenFile SET Sender = NULL WHERE Sender = '';
END;
CREATE TRIGGER countFilesAnewCompany AFTER UPDATE OF NextSequenceFromMain ON Company
WHEN NEW.NextSequenceFromMain <= OLD.NextSequenceFromMain
BEGIN
  DELETE FROM RefusedFiles WHERE Sender = '';
  UPDATE TakenFile SET Sender = NULL WHERE Sender = '';
END;
CREATE TRIGGER tellRefusedFile AFTER INSERT ON RefusedFiles
BEGIN
  INSERT INTO CompanyEvents (OccurredOn, EventText, EventNumber) VALUES (GETUTCDATE(),
    CASE WHEN NEW.Sequence < 0 THEN 'The full data' ELSE 'The file ' || NEW.Sequence END || ' of ' ||
    ifnull((SELECT ifnull(nullif(Name, ''), UniqueID) FROM RoamingWorkstations WHERE UniqueID = NEW.Sender), 'main') ||
    ' could not be imported, and will not come again.', 3);
END;
INSERT INTO GivenUpMark (AuditID) VALUES (0);
INSERT INTO TakenFile (Sender) VALUES (NULL);
INSERT INTO SchemaVersion (Version) VALUES (6);
