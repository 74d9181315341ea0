CREATE TABLE "ProductTypes" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Description" TEXT,
  "SortOrder" INTEGER,
  "Inactive" INTEGER
);
CREATE VIEW "vwExporting_ProductTypes" AS SELECT ID, UniqueID, "Name", "Description", "SortOrder", "Inactive" FROM "ProductTypes";
CREATE TRIGGER "auditInsertProductTypes" AFTER INSERT ON "ProductTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductTypes', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateProductTypes" AFTER UPDATE OF UniqueID, "Name", "Description", "SortOrder", "Inactive" ON "ProductTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Description" IS NOT NEW."Description" OR OLD."SortOrder" IS NOT NEW."SortOrder" OR OLD."Inactive" IS NOT NEW."Inactive")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductTypes', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteProductTypes" AFTER DELETE ON "ProductTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductTypes', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Manufacturers" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "AccountNumber" TEXT,
  "Phone" TEXT,
  "WebAddress" TEXT,
  "Inactive" INTEGER
);
CREATE VIEW "vwExporting_Manufacturers" AS SELECT ID, UniqueID, "Name", "AccountNumber", "Phone", "WebAddress", "Inactive" FROM "Manufacturers";
CREATE TRIGGER "auditInsertManufacturers" AFTER INSERT ON "Manufacturers"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Manufacturers', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateManufacturers" AFTER UPDATE OF UniqueID, "Name", "AccountNumber", "Phone", "WebAddress", "Inactive" ON "Manufacturers"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."AccountNumber" IS NOT NEW."AccountNumber" OR OLD."Phone" IS NOT NEW."Phone" OR OLD."WebAddress" IS NOT NEW."WebAddress" OR OLD."Inactive" IS NOT NEW."Inactive")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Manufacturers', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteManufacturers" AFTER DELETE ON "Manufacturers"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Manufacturers', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "PhoneLabels" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "SortOrder" INTEGER
);
CREATE VIEW "vwExporting_PhoneLabels" AS SELECT ID, UniqueID, "Name", "SortOrder" FROM "PhoneLabels";
CREATE TRIGGER "auditInsertPhoneLabels" AFTER INSERT ON "PhoneLabels"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PhoneLabels', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdatePhoneLabels" AFTER UPDATE OF UniqueID, "Name", "SortOrder" ON "PhoneLabels"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."SortOrder" IS NOT NEW."SortOrder")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PhoneLabels', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeletePhoneLabels" AFTER DELETE ON "PhoneLabels"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PhoneLabels', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "EmailLabels" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "SortOrder" INTEGER
);
CREATE VIEW "vwExporting_EmailLabels" AS SELECT ID, UniqueID, "Name", "SortOrder" FROM "EmailLabels";
CREATE TRIGGER "auditInsertEmailLabels" AFTER INSERT ON "EmailLabels"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmailLabels', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateEmailLabels" AFTER UPDATE OF UniqueID, "Name", "SortOrder" ON "EmailLabels"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."SortOrder" IS NOT NEW."SortOrder")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmailLabels', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteEmailLabels" AFTER DELETE ON "EmailLabels"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmailLabels', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "SecurityRoles" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Description" TEXT
);
CREATE VIEW "vwExporting_SecurityRoles" AS SELECT ID, UniqueID, "Name", "Description" FROM "SecurityRoles";
CREATE TRIGGER "auditInsertSecurityRoles" AFTER INSERT ON "SecurityRoles"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SecurityRoles', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateSecurityRoles" AFTER UPDATE OF UniqueID, "Name", "Description" ON "SecurityRoles"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Description" IS NOT NEW."Description")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SecurityRoles', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteSecurityRoles" AFTER DELETE ON "SecurityRoles"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SecurityRoles', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "SecurityRoleAccess" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "SecurityRoleUniqueID" TEXT COLLATE NOCASE,
  "FunctionName" TEXT,
  "AccessLevel" INTEGER
);
CREATE VIEW "vwExporting_SecurityRoleAccess" AS SELECT ID, UniqueID, "SecurityRoleUniqueID", "FunctionName", "AccessLevel" FROM "SecurityRoleAccess";
CREATE TRIGGER "auditInsertSecurityRoleAccess" AFTER INSERT ON "SecurityRoleAccess"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SecurityRoleAccess', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."FunctionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateSecurityRoleAccess" AFTER UPDATE OF UniqueID, "SecurityRoleUniqueID", "FunctionName", "AccessLevel" ON "SecurityRoleAccess"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."SecurityRoleUniqueID" IS NOT NEW."SecurityRoleUniqueID" OR OLD."FunctionName" IS NOT NEW."FunctionName" OR OLD."AccessLevel" IS NOT NEW."AccessLevel")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SecurityRoleAccess', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."FunctionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteSecurityRoleAccess" AFTER DELETE ON "SecurityRoleAccess"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SecurityRoleAccess', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."FunctionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "DeliveryRanges" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "MinimumDays" INTEGER,
  "MaximumDays" INTEGER
);
CREATE VIEW "vwExporting_DeliveryRanges" AS SELECT ID, UniqueID, "Name", "MinimumDays", "MaximumDays" FROM "DeliveryRanges";
CREATE TRIGGER "auditInsertDeliveryRanges" AFTER INSERT ON "DeliveryRanges"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('DeliveryRanges', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateDeliveryRanges" AFTER UPDATE OF UniqueID, "Name", "MinimumDays", "MaximumDays" ON "DeliveryRanges"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."MinimumDays" IS NOT NEW."MinimumDays" OR OLD."MaximumDays" IS NOT NEW."MaximumDays")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('DeliveryRanges', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteDeliveryRanges" AFTER DELETE ON "DeliveryRanges"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('DeliveryRanges', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "DiscountGroups" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Description" TEXT
);
CREATE VIEW "vwExporting_DiscountGroups" AS SELECT ID, UniqueID, "Name", "Description" FROM "DiscountGroups";
CREATE TRIGGER "auditInsertDiscountGroups" AFTER INSERT ON "DiscountGroups"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('DiscountGroups', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateDiscountGroups" AFTER UPDATE OF UniqueID, "Name", "Description" ON "DiscountGroups"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Description" IS NOT NEW."Description")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('DiscountGroups', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteDiscountGroups" AFTER DELETE ON "DiscountGroups"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('DiscountGroups', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "EmailTemplates" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Subject" TEXT,
  "Body" TEXT
);
CREATE VIEW "vwExporting_EmailTemplates" AS SELECT ID, UniqueID, "Name", "Subject", "Body" FROM "EmailTemplates";
CREATE TRIGGER "auditInsertEmailTemplates" AFTER INSERT ON "EmailTemplates"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmailTemplates', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateEmailTemplates" AFTER UPDATE OF UniqueID, "Name", "Subject", "Body" ON "EmailTemplates"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Subject" IS NOT NEW."Subject" OR OLD."Body" IS NOT NEW."Body")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmailTemplates', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteEmailTemplates" AFTER DELETE ON "EmailTemplates"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmailTemplates', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "AdditionalCharges" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Amount" DECIMAL,
  "Taxable" INTEGER
);
CREATE VIEW "vwExporting_AdditionalCharges" AS SELECT ID, UniqueID, "Name", "Amount", "Taxable" FROM "AdditionalCharges";
CREATE TRIGGER "auditInsertAdditionalCharges" AFTER INSERT ON "AdditionalCharges"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('AdditionalCharges', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateAdditionalCharges" AFTER UPDATE OF UniqueID, "Name", "Amount", "Taxable" ON "AdditionalCharges"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Amount" IS NOT NEW."Amount" OR OLD."Taxable" IS NOT NEW."Taxable")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('AdditionalCharges', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteAdditionalCharges" AFTER DELETE ON "AdditionalCharges"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('AdditionalCharges', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Groups" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Description" TEXT
);
CREATE VIEW "vwExporting_Groups" AS SELECT ID, UniqueID, "Name", "Description" FROM "Groups";
CREATE TRIGGER "auditInsertGroups" AFTER INSERT ON "Groups"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Groups', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateGroups" AFTER UPDATE OF UniqueID, "Name", "Description" ON "Groups"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Description" IS NOT NEW."Description")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Groups', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteGroups" AFTER DELETE ON "Groups"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Groups', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "OrderStatusCodes" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "SortOrder" INTEGER,
  "IsClosed" INTEGER
);
CREATE VIEW "vwExporting_OrderStatusCodes" AS SELECT ID, UniqueID, "Name", "SortOrder", "IsClosed" FROM "OrderStatusCodes";
CREATE TRIGGER "auditInsertOrderStatusCodes" AFTER INSERT ON "OrderStatusCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderStatusCodes', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateOrderStatusCodes" AFTER UPDATE OF UniqueID, "Name", "SortOrder", "IsClosed" ON "OrderStatusCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."SortOrder" IS NOT NEW."SortOrder" OR OLD."IsClosed" IS NOT NEW."IsClosed")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderStatusCodes', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteOrderStatusCodes" AFTER DELETE ON "OrderStatusCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderStatusCodes', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "CustomerTypes" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Description" TEXT
);
CREATE VIEW "vwExporting_CustomerTypes" AS SELECT ID, UniqueID, "Name", "Description" FROM "CustomerTypes";
CREATE TRIGGER "auditInsertCustomerTypes" AFTER INSERT ON "CustomerTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CustomerTypes', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateCustomerTypes" AFTER UPDATE OF UniqueID, "Name", "Description" ON "CustomerTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Description" IS NOT NEW."Description")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CustomerTypes', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteCustomerTypes" AFTER DELETE ON "CustomerTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CustomerTypes', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "OrderTypes" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Prefix" TEXT
);
CREATE VIEW "vwExporting_OrderTypes" AS SELECT ID, UniqueID, "Name", "Prefix" FROM "OrderTypes";
CREATE TRIGGER "auditInsertOrderTypes" AFTER INSERT ON "OrderTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderTypes', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateOrderTypes" AFTER UPDATE OF UniqueID, "Name", "Prefix" ON "OrderTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Prefix" IS NOT NEW."Prefix")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderTypes', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteOrderTypes" AFTER DELETE ON "OrderTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderTypes', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "PaymentMethods" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "ReferenceRequired" INTEGER
);
CREATE VIEW "vwExporting_PaymentMethods" AS SELECT ID, UniqueID, "Name", "ReferenceRequired" FROM "PaymentMethods";
CREATE TRIGGER "auditInsertPaymentMethods" AFTER INSERT ON "PaymentMethods"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PaymentMethods', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdatePaymentMethods" AFTER UPDATE OF UniqueID, "Name", "ReferenceRequired" ON "PaymentMethods"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."ReferenceRequired" IS NOT NEW."ReferenceRequired")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PaymentMethods', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeletePaymentMethods" AFTER DELETE ON "PaymentMethods"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PaymentMethods', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Terms" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "DueDays" INTEGER,
  "DiscountDays" INTEGER,
  "DiscountPercent" DECIMAL
);
CREATE VIEW "vwExporting_Terms" AS SELECT ID, UniqueID, "Name", "DueDays", "DiscountDays", "DiscountPercent" FROM "Terms";
CREATE TRIGGER "auditInsertTerms" AFTER INSERT ON "Terms"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Terms', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateTerms" AFTER UPDATE OF UniqueID, "Name", "DueDays", "DiscountDays", "DiscountPercent" ON "Terms"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."DueDays" IS NOT NEW."DueDays" OR OLD."DiscountDays" IS NOT NEW."DiscountDays" OR OLD."DiscountPercent" IS NOT NEW."DiscountPercent")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Terms', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteTerms" AFTER DELETE ON "Terms"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Terms', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "ShippingMethods" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Charge" DECIMAL
);
CREATE VIEW "vwExporting_ShippingMethods" AS SELECT ID, UniqueID, "Name", "Charge" FROM "ShippingMethods";
CREATE TRIGGER "auditInsertShippingMethods" AFTER INSERT ON "ShippingMethods"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ShippingMethods', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateShippingMethods" AFTER UPDATE OF UniqueID, "Name", "Charge" ON "ShippingMethods"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Charge" IS NOT NEW."Charge")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ShippingMethods', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteShippingMethods" AFTER DELETE ON "ShippingMethods"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ShippingMethods', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "SetupOptions" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Section" TEXT,
  "OptionName" TEXT,
  "OptionValue" TEXT
);
CREATE VIEW "vwExporting_SetupOptions" AS SELECT ID, UniqueID, "Section", "OptionName", "OptionValue" FROM "SetupOptions";
CREATE TRIGGER "auditInsertSetupOptions" AFTER INSERT ON "SetupOptions"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SetupOptions', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateSetupOptions" AFTER UPDATE OF UniqueID, "Section", "OptionName", "OptionValue" ON "SetupOptions"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Section" IS NOT NEW."Section" OR OLD."OptionName" IS NOT NEW."OptionName" OR OLD."OptionValue" IS NOT NEW."OptionValue")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SetupOptions', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteSetupOptions" AFTER DELETE ON "SetupOptions"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SetupOptions', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "SalesTaxCodes" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Jurisdiction" TEXT,
  "Rate" DECIMAL
);
CREATE VIEW "vwExporting_SalesTaxCodes" AS SELECT ID, UniqueID, "Name", "Jurisdiction", "Rate" FROM "SalesTaxCodes";
CREATE TRIGGER "auditInsertSalesTaxCodes" AFTER INSERT ON "SalesTaxCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SalesTaxCodes', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateSalesTaxCodes" AFTER UPDATE OF UniqueID, "Name", "Jurisdiction", "Rate" ON "SalesTaxCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Jurisdiction" IS NOT NEW."Jurisdiction" OR OLD."Rate" IS NOT NEW."Rate")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SalesTaxCodes', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteSalesTaxCodes" AFTER DELETE ON "SalesTaxCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SalesTaxCodes', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "SalesTaxGroups" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT
);
CREATE VIEW "vwExporting_SalesTaxGroups" AS SELECT ID, UniqueID, "Name" FROM "SalesTaxGroups";
CREATE TRIGGER "auditInsertSalesTaxGroups" AFTER INSERT ON "SalesTaxGroups"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SalesTaxGroups', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateSalesTaxGroups" AFTER UPDATE OF UniqueID, "Name" ON "SalesTaxGroups"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SalesTaxGroups', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteSalesTaxGroups" AFTER DELETE ON "SalesTaxGroups"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SalesTaxGroups', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "SalesTaxGroupCodes" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "SalesTaxGroupUniqueID" TEXT COLLATE NOCASE,
  "SalesTaxCodeUniqueID" TEXT COLLATE NOCASE,
  "SortOrder" INTEGER
);
CREATE VIEW "vwExporting_SalesTaxGroupCodes" AS SELECT ID, UniqueID, "SalesTaxGroupUniqueID", "SalesTaxCodeUniqueID", "SortOrder" FROM "SalesTaxGroupCodes";
CREATE TRIGGER "auditInsertSalesTaxGroupCodes" AFTER INSERT ON "SalesTaxGroupCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SalesTaxGroupCodes', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateSalesTaxGroupCodes" AFTER UPDATE OF UniqueID, "SalesTaxGroupUniqueID", "SalesTaxCodeUniqueID", "SortOrder" ON "SalesTaxGroupCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."SalesTaxGroupUniqueID" IS NOT NEW."SalesTaxGroupUniqueID" OR OLD."SalesTaxCodeUniqueID" IS NOT NEW."SalesTaxCodeUniqueID" OR OLD."SortOrder" IS NOT NEW."SortOrder")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SalesTaxGroupCodes', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteSalesTaxGroupCodes" AFTER DELETE ON "SalesTaxGroupCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('SalesTaxGroupCodes', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "ReferralMethods" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Inactive" INTEGER
);
CREATE VIEW "vwExporting_ReferralMethods" AS SELECT ID, UniqueID, "Name", "Inactive" FROM "ReferralMethods";
CREATE TRIGGER "auditInsertReferralMethods" AFTER INSERT ON "ReferralMethods"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ReferralMethods', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateReferralMethods" AFTER UPDATE OF UniqueID, "Name", "Inactive" ON "ReferralMethods"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Inactive" IS NOT NEW."Inactive")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ReferralMethods', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteReferralMethods" AFTER DELETE ON "ReferralMethods"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ReferralMethods', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Reports" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Category" TEXT,
  "Layout" TEXT
);
CREATE VIEW "vwExporting_Reports" AS SELECT ID, UniqueID, "Name", "Category", "Layout" FROM "Reports";
CREATE TRIGGER "auditInsertReports" AFTER INSERT ON "Reports"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Reports', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateReports" AFTER UPDATE OF UniqueID, "Name", "Category", "Layout" ON "Reports"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Category" IS NOT NEW."Category" OR OLD."Layout" IS NOT NEW."Layout")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Reports', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteReports" AFTER DELETE ON "Reports"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Reports', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "JobTypes" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "DurationMinutes" INTEGER
);
CREATE VIEW "vwExporting_JobTypes" AS SELECT ID, UniqueID, "Name", "DurationMinutes" FROM "JobTypes";
CREATE TRIGGER "auditInsertJobTypes" AFTER INSERT ON "JobTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('JobTypes', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateJobTypes" AFTER UPDATE OF UniqueID, "Name", "DurationMinutes" ON "JobTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."DurationMinutes" IS NOT NEW."DurationMinutes")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('JobTypes', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteJobTypes" AFTER DELETE ON "JobTypes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('JobTypes', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Locations" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Street" TEXT,
  "City" TEXT,
  "Region" TEXT,
  "PostalCode" TEXT,
  "Country" TEXT,
  "Phone" TEXT
);
CREATE VIEW "vwExporting_Locations" AS SELECT ID, UniqueID, "Name", "Street", "City", "Region", "PostalCode", "Country", "Phone" FROM "Locations";
CREATE TRIGGER "auditInsertLocations" AFTER INSERT ON "Locations"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Locations', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateLocations" AFTER UPDATE OF UniqueID, "Name", "Street", "City", "Region", "PostalCode", "Country", "Phone" ON "Locations"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Street" IS NOT NEW."Street" OR OLD."City" IS NOT NEW."City" OR OLD."Region" IS NOT NEW."Region" OR OLD."PostalCode" IS NOT NEW."PostalCode" OR OLD."Country" IS NOT NEW."Country" OR OLD."Phone" IS NOT NEW."Phone")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Locations', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteLocations" AFTER DELETE ON "Locations"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Locations', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "MeasurementRooms" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "SortOrder" INTEGER
);
CREATE VIEW "vwExporting_MeasurementRooms" AS SELECT ID, UniqueID, "Name", "SortOrder" FROM "MeasurementRooms";
CREATE TRIGGER "auditInsertMeasurementRooms" AFTER INSERT ON "MeasurementRooms"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('MeasurementRooms', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateMeasurementRooms" AFTER UPDATE OF UniqueID, "Name", "SortOrder" ON "MeasurementRooms"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."SortOrder" IS NOT NEW."SortOrder")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('MeasurementRooms', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteMeasurementRooms" AFTER DELETE ON "MeasurementRooms"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('MeasurementRooms', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "MeasurementItems" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "Unit" TEXT
);
CREATE VIEW "vwExporting_MeasurementItems" AS SELECT ID, UniqueID, "Name", "Unit" FROM "MeasurementItems";
CREATE TRIGGER "auditInsertMeasurementItems" AFTER INSERT ON "MeasurementItems"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('MeasurementItems', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateMeasurementItems" AFTER UPDATE OF UniqueID, "Name", "Unit" ON "MeasurementItems"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."Unit" IS NOT NEW."Unit")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('MeasurementItems', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteMeasurementItems" AFTER DELETE ON "MeasurementItems"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('MeasurementItems', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "MeasurementMounts" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "SortOrder" INTEGER
);
CREATE VIEW "vwExporting_MeasurementMounts" AS SELECT ID, UniqueID, "Name", "SortOrder" FROM "MeasurementMounts";
CREATE TRIGGER "auditInsertMeasurementMounts" AFTER INSERT ON "MeasurementMounts"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('MeasurementMounts', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateMeasurementMounts" AFTER UPDATE OF UniqueID, "Name", "SortOrder" ON "MeasurementMounts"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."SortOrder" IS NOT NEW."SortOrder")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('MeasurementMounts', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteMeasurementMounts" AFTER DELETE ON "MeasurementMounts"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('MeasurementMounts', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "PurchaseOrderStatusCodes" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "SortOrder" INTEGER,
  "IsClosed" INTEGER
);
CREATE VIEW "vwExporting_PurchaseOrderStatusCodes" AS SELECT ID, UniqueID, "Name", "SortOrder", "IsClosed" FROM "PurchaseOrderStatusCodes";
CREATE TRIGGER "auditInsertPurchaseOrderStatusCodes" AFTER INSERT ON "PurchaseOrderStatusCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderStatusCodes', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdatePurchaseOrderStatusCodes" AFTER UPDATE OF UniqueID, "Name", "SortOrder", "IsClosed" ON "PurchaseOrderStatusCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."SortOrder" IS NOT NEW."SortOrder" OR OLD."IsClosed" IS NOT NEW."IsClosed")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderStatusCodes', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeletePurchaseOrderStatusCodes" AFTER DELETE ON "PurchaseOrderStatusCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderStatusCodes', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "PurchaseOrderItemStatusCodes" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "SortOrder" INTEGER,
  "IsClosed" INTEGER
);
CREATE VIEW "vwExporting_PurchaseOrderItemStatusCodes" AS SELECT ID, UniqueID, "Name", "SortOrder", "IsClosed" FROM "PurchaseOrderItemStatusCodes";
CREATE TRIGGER "auditInsertPurchaseOrderItemStatusCodes" AFTER INSERT ON "PurchaseOrderItemStatusCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderItemStatusCodes', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdatePurchaseOrderItemStatusCodes" AFTER UPDATE OF UniqueID, "Name", "SortOrder", "IsClosed" ON "PurchaseOrderItemStatusCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."SortOrder" IS NOT NEW."SortOrder" OR OLD."IsClosed" IS NOT NEW."IsClosed")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderItemStatusCodes', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeletePurchaseOrderItemStatusCodes" AFTER DELETE ON "PurchaseOrderItemStatusCodes"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderItemStatusCodes', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Employees" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "EmployeeNumber" INTEGER,
  "FirstName" TEXT,
  "LastName" TEXT,
  "JobTitle" TEXT,
  "Phone" TEXT,
  "Email" TEXT,
  "LocationUniqueID" TEXT COLLATE NOCASE,
  "CommissionPercent" DECIMAL,
  "HiredOn" TEXT,
  "Inactive" INTEGER
);
CREATE VIEW "vwExporting_Employees" AS SELECT ID, UniqueID, "EmployeeNumber", "FirstName", "LastName", "JobTitle", "Phone", "Email", "LocationUniqueID", "CommissionPercent", "HiredOn", "Inactive" FROM "Employees";
CREATE TRIGGER "auditInsertEmployees" AFTER INSERT ON "Employees"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Employees', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."LastName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateEmployees" AFTER UPDATE OF UniqueID, "EmployeeNumber", "FirstName", "LastName", "JobTitle", "Phone", "Email", "LocationUniqueID", "CommissionPercent", "HiredOn", "Inactive" ON "Employees"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."EmployeeNumber" IS NOT NEW."EmployeeNumber" OR OLD."FirstName" IS NOT NEW."FirstName" OR OLD."LastName" IS NOT NEW."LastName" OR OLD."JobTitle" IS NOT NEW."JobTitle" OR OLD."Phone" IS NOT NEW."Phone" OR OLD."Email" IS NOT NEW."Email" OR OLD."LocationUniqueID" IS NOT NEW."LocationUniqueID" OR OLD."CommissionPercent" IS NOT NEW."CommissionPercent" OR OLD."HiredOn" IS NOT NEW."HiredOn" OR OLD."Inactive" IS NOT NEW."Inactive")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Employees', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."LastName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteEmployees" AFTER DELETE ON "Employees"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Employees', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."LastName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "EmployeeAddresses" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "EmployeeUniqueID" TEXT COLLATE NOCASE,
  "Street" TEXT,
  "City" TEXT,
  "Region" TEXT,
  "PostalCode" TEXT,
  "Country" TEXT
);
CREATE VIEW "vwExporting_EmployeeAddresses" AS SELECT ID, UniqueID, "EmployeeUniqueID", "Street", "City", "Region", "PostalCode", "Country" FROM "EmployeeAddresses";
CREATE TRIGGER "auditInsertEmployeeAddresses" AFTER INSERT ON "EmployeeAddresses"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmployeeAddresses', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Street",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateEmployeeAddresses" AFTER UPDATE OF UniqueID, "EmployeeUniqueID", "Street", "City", "Region", "PostalCode", "Country" ON "EmployeeAddresses"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."EmployeeUniqueID" IS NOT NEW."EmployeeUniqueID" OR OLD."Street" IS NOT NEW."Street" OR OLD."City" IS NOT NEW."City" OR OLD."Region" IS NOT NEW."Region" OR OLD."PostalCode" IS NOT NEW."PostalCode" OR OLD."Country" IS NOT NEW."Country")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmployeeAddresses', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Street",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteEmployeeAddresses" AFTER DELETE ON "EmployeeAddresses"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmployeeAddresses', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Street",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "EmployeeActivity" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "EmployeeUniqueID" TEXT COLLATE NOCASE,
  "ActivityDate" TEXT,
  "Subject" TEXT,
  "Notes" TEXT
);
CREATE VIEW "vwExporting_EmployeeActivity" AS SELECT ID, UniqueID, "EmployeeUniqueID", "ActivityDate", "Subject", "Notes" FROM "EmployeeActivity";
CREATE TRIGGER "auditInsertEmployeeActivity" AFTER INSERT ON "EmployeeActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmployeeActivity', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateEmployeeActivity" AFTER UPDATE OF UniqueID, "EmployeeUniqueID", "ActivityDate", "Subject", "Notes" ON "EmployeeActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."EmployeeUniqueID" IS NOT NEW."EmployeeUniqueID" OR OLD."ActivityDate" IS NOT NEW."ActivityDate" OR OLD."Subject" IS NOT NEW."Subject" OR OLD."Notes" IS NOT NEW."Notes")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmployeeActivity', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteEmployeeActivity" AFTER DELETE ON "EmployeeActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmployeeActivity', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "EmployeeSecurityRoles" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "EmployeeUniqueID" TEXT COLLATE NOCASE,
  "SecurityRoleUniqueID" TEXT COLLATE NOCASE
);
CREATE VIEW "vwExporting_EmployeeSecurityRoles" AS SELECT ID, UniqueID, "EmployeeUniqueID", "SecurityRoleUniqueID" FROM "EmployeeSecurityRoles";
CREATE TRIGGER "auditInsertEmployeeSecurityRoles" AFTER INSERT ON "EmployeeSecurityRoles"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmployeeSecurityRoles', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateEmployeeSecurityRoles" AFTER UPDATE OF UniqueID, "EmployeeUniqueID", "SecurityRoleUniqueID" ON "EmployeeSecurityRoles"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."EmployeeUniqueID" IS NOT NEW."EmployeeUniqueID" OR OLD."SecurityRoleUniqueID" IS NOT NEW."SecurityRoleUniqueID")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmployeeSecurityRoles', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteEmployeeSecurityRoles" AFTER DELETE ON "EmployeeSecurityRoles"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('EmployeeSecurityRoles', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Customers" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "CustomerNumber" INTEGER,
  "CompanyName" TEXT,
  "FirstName" TEXT,
  "LastName" TEXT,
  "Phone" TEXT,
  "Email" TEXT,
  "CustomerTypeUniqueID" TEXT COLLATE NOCASE,
  "TermsUniqueID" TEXT COLLATE NOCASE,
  "ReferralMethodUniqueID" TEXT COLLATE NOCASE,
  "SalesTaxGroupUniqueID" TEXT COLLATE NOCASE,
  "CreditLimit" DECIMAL,
  "CreatedOn" TEXT,
  "Notes" TEXT,
  "Inactive" INTEGER
);
CREATE VIEW "vwExporting_Customers" AS SELECT ID, UniqueID, "CustomerNumber", "CompanyName", "FirstName", "LastName", "Phone", "Email", "CustomerTypeUniqueID", "TermsUniqueID", "ReferralMethodUniqueID", "SalesTaxGroupUniqueID", "CreditLimit", "CreatedOn", "Notes", "Inactive" FROM "Customers";
CREATE TRIGGER "auditInsertCustomers" AFTER INSERT ON "Customers"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Customers', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."LastName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateCustomers" AFTER UPDATE OF UniqueID, "CustomerNumber", "CompanyName", "FirstName", "LastName", "Phone", "Email", "CustomerTypeUniqueID", "TermsUniqueID", "ReferralMethodUniqueID", "SalesTaxGroupUniqueID", "CreditLimit", "CreatedOn", "Notes", "Inactive" ON "Customers"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."CustomerNumber" IS NOT NEW."CustomerNumber" OR OLD."CompanyName" IS NOT NEW."CompanyName" OR OLD."FirstName" IS NOT NEW."FirstName" OR OLD."LastName" IS NOT NEW."LastName" OR OLD."Phone" IS NOT NEW."Phone" OR OLD."Email" IS NOT NEW."Email" OR OLD."CustomerTypeUniqueID" IS NOT NEW."CustomerTypeUniqueID" OR OLD."TermsUniqueID" IS NOT NEW."TermsUniqueID" OR OLD."ReferralMethodUniqueID" IS NOT NEW."ReferralMethodUniqueID" OR OLD."SalesTaxGroupUniqueID" IS NOT NEW."SalesTaxGroupUniqueID" OR OLD."CreditLimit" IS NOT NEW."CreditLimit" OR OLD."CreatedOn" IS NOT NEW."CreatedOn" OR OLD."Notes" IS NOT NEW."Notes" OR OLD."Inactive" IS NOT NEW."Inactive")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Customers', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."LastName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteCustomers" AFTER DELETE ON "Customers"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Customers', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."LastName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "GroupedCustomers" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "GroupUniqueID" TEXT COLLATE NOCASE,
  "CustomerUniqueID" TEXT COLLATE NOCASE
);
CREATE VIEW "vwExporting_GroupedCustomers" AS SELECT ID, UniqueID, "GroupUniqueID", "CustomerUniqueID" FROM "GroupedCustomers";
CREATE TRIGGER "auditInsertGroupedCustomers" AFTER INSERT ON "GroupedCustomers"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('GroupedCustomers', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateGroupedCustomers" AFTER UPDATE OF UniqueID, "GroupUniqueID", "CustomerUniqueID" ON "GroupedCustomers"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."GroupUniqueID" IS NOT NEW."GroupUniqueID" OR OLD."CustomerUniqueID" IS NOT NEW."CustomerUniqueID")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('GroupedCustomers', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteGroupedCustomers" AFTER DELETE ON "GroupedCustomers"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('GroupedCustomers', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "CustomerActivity" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "CustomerUniqueID" TEXT COLLATE NOCASE,
  "EmployeeUniqueID" TEXT COLLATE NOCASE,
  "ActivityDate" TEXT,
  "Subject" TEXT,
  "Notes" TEXT
);
CREATE VIEW "vwExporting_CustomerActivity" AS SELECT ID, UniqueID, "CustomerUniqueID", "EmployeeUniqueID", "ActivityDate", "Subject", "Notes" FROM "CustomerActivity";
CREATE TRIGGER "auditInsertCustomerActivity" AFTER INSERT ON "CustomerActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CustomerActivity', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateCustomerActivity" AFTER UPDATE OF UniqueID, "CustomerUniqueID", "EmployeeUniqueID", "ActivityDate", "Subject", "Notes" ON "CustomerActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."CustomerUniqueID" IS NOT NEW."CustomerUniqueID" OR OLD."EmployeeUniqueID" IS NOT NEW."EmployeeUniqueID" OR OLD."ActivityDate" IS NOT NEW."ActivityDate" OR OLD."Subject" IS NOT NEW."Subject" OR OLD."Notes" IS NOT NEW."Notes")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CustomerActivity', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteCustomerActivity" AFTER DELETE ON "CustomerActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CustomerActivity', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "CustomerAddresses" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "CustomerUniqueID" TEXT COLLATE NOCASE,
  "Street" TEXT,
  "City" TEXT,
  "Region" TEXT,
  "PostalCode" TEXT,
  "Country" TEXT,
  "IsDelivery" INTEGER
);
CREATE VIEW "vwExporting_CustomerAddresses" AS SELECT ID, UniqueID, "CustomerUniqueID", "Street", "City", "Region", "PostalCode", "Country", "IsDelivery" FROM "CustomerAddresses";
CREATE TRIGGER "auditInsertCustomerAddresses" AFTER INSERT ON "CustomerAddresses"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CustomerAddresses', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Street",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateCustomerAddresses" AFTER UPDATE OF UniqueID, "CustomerUniqueID", "Street", "City", "Region", "PostalCode", "Country", "IsDelivery" ON "CustomerAddresses"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."CustomerUniqueID" IS NOT NEW."CustomerUniqueID" OR OLD."Street" IS NOT NEW."Street" OR OLD."City" IS NOT NEW."City" OR OLD."Region" IS NOT NEW."Region" OR OLD."PostalCode" IS NOT NEW."PostalCode" OR OLD."Country" IS NOT NEW."Country" OR OLD."IsDelivery" IS NOT NEW."IsDelivery")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CustomerAddresses', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Street",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteCustomerAddresses" AFTER DELETE ON "CustomerAddresses"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CustomerAddresses', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Street",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Vendors" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "Name" TEXT,
  "AccountNumber" TEXT,
  "Phone" TEXT,
  "Email" TEXT,
  "TermsUniqueID" TEXT COLLATE NOCASE,
  "Notes" TEXT,
  "Inactive" INTEGER
);
CREATE VIEW "vwExporting_Vendors" AS SELECT ID, UniqueID, "Name", "AccountNumber", "Phone", "Email", "TermsUniqueID", "Notes", "Inactive" FROM "Vendors";
CREATE TRIGGER "auditInsertVendors" AFTER INSERT ON "Vendors"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Vendors', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateVendors" AFTER UPDATE OF UniqueID, "Name", "AccountNumber", "Phone", "Email", "TermsUniqueID", "Notes", "Inactive" ON "Vendors"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."Name" IS NOT NEW."Name" OR OLD."AccountNumber" IS NOT NEW."AccountNumber" OR OLD."Phone" IS NOT NEW."Phone" OR OLD."Email" IS NOT NEW."Email" OR OLD."TermsUniqueID" IS NOT NEW."TermsUniqueID" OR OLD."Notes" IS NOT NEW."Notes" OR OLD."Inactive" IS NOT NEW."Inactive")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Vendors', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteVendors" AFTER DELETE ON "Vendors"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Vendors', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Name",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "VendorActivity" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "VendorUniqueID" TEXT COLLATE NOCASE,
  "EmployeeUniqueID" TEXT COLLATE NOCASE,
  "ActivityDate" TEXT,
  "Subject" TEXT,
  "Notes" TEXT
);
CREATE VIEW "vwExporting_VendorActivity" AS SELECT ID, UniqueID, "VendorUniqueID", "EmployeeUniqueID", "ActivityDate", "Subject", "Notes" FROM "VendorActivity";
CREATE TRIGGER "auditInsertVendorActivity" AFTER INSERT ON "VendorActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('VendorActivity', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateVendorActivity" AFTER UPDATE OF UniqueID, "VendorUniqueID", "EmployeeUniqueID", "ActivityDate", "Subject", "Notes" ON "VendorActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."VendorUniqueID" IS NOT NEW."VendorUniqueID" OR OLD."EmployeeUniqueID" IS NOT NEW."EmployeeUniqueID" OR OLD."ActivityDate" IS NOT NEW."ActivityDate" OR OLD."Subject" IS NOT NEW."Subject" OR OLD."Notes" IS NOT NEW."Notes")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('VendorActivity', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteVendorActivity" AFTER DELETE ON "VendorActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('VendorActivity', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Products" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "ProductCode" TEXT,
  "Name" TEXT,
  "ProductTypeUniqueID" TEXT COLLATE NOCASE,
  "ManufacturerUniqueID" TEXT COLLATE NOCASE,
  "DiscountGroupUniqueID" TEXT COLLATE NOCASE,
  "BasePrice" DECIMAL,
  "MinimumWidth" INTEGER,
  "MaximumWidth" INTEGER,
  "MaximumHeight" INTEGER,
  "Notes" TEXT,
  "Inactive" INTEGER
);
CREATE VIEW "vwExporting_Products" AS SELECT ID, UniqueID, "ProductCode", "Name", "ProductTypeUniqueID", "ManufacturerUniqueID", "DiscountGroupUniqueID", "BasePrice", "MinimumWidth", "MaximumWidth", "MaximumHeight", "Notes", "Inactive" FROM "Products";
CREATE TRIGGER "auditInsertProducts" AFTER INSERT ON "Products"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Products', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."ProductCode",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateProducts" AFTER UPDATE OF UniqueID, "ProductCode", "Name", "ProductTypeUniqueID", "ManufacturerUniqueID", "DiscountGroupUniqueID", "BasePrice", "MinimumWidth", "MaximumWidth", "MaximumHeight", "Notes", "Inactive" ON "Products"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."ProductCode" IS NOT NEW."ProductCode" OR OLD."Name" IS NOT NEW."Name" OR OLD."ProductTypeUniqueID" IS NOT NEW."ProductTypeUniqueID" OR OLD."ManufacturerUniqueID" IS NOT NEW."ManufacturerUniqueID" OR OLD."DiscountGroupUniqueID" IS NOT NEW."DiscountGroupUniqueID" OR OLD."BasePrice" IS NOT NEW."BasePrice" OR OLD."MinimumWidth" IS NOT NEW."MinimumWidth" OR OLD."MaximumWidth" IS NOT NEW."MaximumWidth" OR OLD."MaximumHeight" IS NOT NEW."MaximumHeight" OR OLD."Notes" IS NOT NEW."Notes" OR OLD."Inactive" IS NOT NEW."Inactive")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Products', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."ProductCode",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteProducts" AFTER DELETE ON "Products"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Products', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."ProductCode",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "ProductVendors" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "ProductUniqueID" TEXT COLLATE NOCASE,
  "VendorUniqueID" TEXT COLLATE NOCASE,
  "VendorProductCode" TEXT,
  "Cost" DECIMAL,
  "LeadDays" INTEGER
);
CREATE VIEW "vwExporting_ProductVendors" AS SELECT ID, UniqueID, "ProductUniqueID", "VendorUniqueID", "VendorProductCode", "Cost", "LeadDays" FROM "ProductVendors";
CREATE TRIGGER "auditInsertProductVendors" AFTER INSERT ON "ProductVendors"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductVendors', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."VendorProductCode",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateProductVendors" AFTER UPDATE OF UniqueID, "ProductUniqueID", "VendorUniqueID", "VendorProductCode", "Cost", "LeadDays" ON "ProductVendors"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."ProductUniqueID" IS NOT NEW."ProductUniqueID" OR OLD."VendorUniqueID" IS NOT NEW."VendorUniqueID" OR OLD."VendorProductCode" IS NOT NEW."VendorProductCode" OR OLD."Cost" IS NOT NEW."Cost" OR OLD."LeadDays" IS NOT NEW."LeadDays")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductVendors', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."VendorProductCode",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteProductVendors" AFTER DELETE ON "ProductVendors"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductVendors', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."VendorProductCode",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "ProductActivity" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "ProductUniqueID" TEXT COLLATE NOCASE,
  "EmployeeUniqueID" TEXT COLLATE NOCASE,
  "ActivityDate" TEXT,
  "Subject" TEXT,
  "Notes" TEXT
);
CREATE VIEW "vwExporting_ProductActivity" AS SELECT ID, UniqueID, "ProductUniqueID", "EmployeeUniqueID", "ActivityDate", "Subject", "Notes" FROM "ProductActivity";
CREATE TRIGGER "auditInsertProductActivity" AFTER INSERT ON "ProductActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductActivity', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateProductActivity" AFTER UPDATE OF UniqueID, "ProductUniqueID", "EmployeeUniqueID", "ActivityDate", "Subject", "Notes" ON "ProductActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."ProductUniqueID" IS NOT NEW."ProductUniqueID" OR OLD."EmployeeUniqueID" IS NOT NEW."EmployeeUniqueID" OR OLD."ActivityDate" IS NOT NEW."ActivityDate" OR OLD."Subject" IS NOT NEW."Subject" OR OLD."Notes" IS NOT NEW."Notes")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductActivity', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteProductActivity" AFTER DELETE ON "ProductActivity"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductActivity', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Subject",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "ProductTags" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "ProductUniqueID" TEXT COLLATE NOCASE,
  "Tag" TEXT
);
CREATE VIEW "vwExporting_ProductTags" AS SELECT ID, UniqueID, "ProductUniqueID", "Tag" FROM "ProductTags";
CREATE TRIGGER "auditInsertProductTags" AFTER INSERT ON "ProductTags"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductTags', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."Tag",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateProductTags" AFTER UPDATE OF UniqueID, "ProductUniqueID", "Tag" ON "ProductTags"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."ProductUniqueID" IS NOT NEW."ProductUniqueID" OR OLD."Tag" IS NOT NEW."Tag")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductTags', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."Tag",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteProductTags" AFTER DELETE ON "ProductTags"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('ProductTags', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."Tag",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Discounts" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "DiscountGroupUniqueID" TEXT COLLATE NOCASE,
  "CustomerTypeUniqueID" TEXT COLLATE NOCASE,
  "Percentage" DECIMAL,
  "StartsOn" TEXT,
  "EndsOn" TEXT
);
CREATE VIEW "vwExporting_Discounts" AS SELECT ID, UniqueID, "DiscountGroupUniqueID", "CustomerTypeUniqueID", "Percentage", "StartsOn", "EndsOn" FROM "Discounts";
CREATE TRIGGER "auditInsertDiscounts" AFTER INSERT ON "Discounts"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Discounts', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateDiscounts" AFTER UPDATE OF UniqueID, "DiscountGroupUniqueID", "CustomerTypeUniqueID", "Percentage", "StartsOn", "EndsOn" ON "Discounts"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."DiscountGroupUniqueID" IS NOT NEW."DiscountGroupUniqueID" OR OLD."CustomerTypeUniqueID" IS NOT NEW."CustomerTypeUniqueID" OR OLD."Percentage" IS NOT NEW."Percentage" OR OLD."StartsOn" IS NOT NEW."StartsOn" OR OLD."EndsOn" IS NOT NEW."EndsOn")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Discounts', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteDiscounts" AFTER DELETE ON "Discounts"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Discounts', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "OptionCallouts" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "ProductUniqueID" TEXT COLLATE NOCASE,
  "OptionName" TEXT,
  "CalloutText" TEXT,
  "SortOrder" INTEGER
);
CREATE VIEW "vwExporting_OptionCallouts" AS SELECT ID, UniqueID, "ProductUniqueID", "OptionName", "CalloutText", "SortOrder" FROM "OptionCallouts";
CREATE TRIGGER "auditInsertOptionCallouts" AFTER INSERT ON "OptionCallouts"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OptionCallouts', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateOptionCallouts" AFTER UPDATE OF UniqueID, "ProductUniqueID", "OptionName", "CalloutText", "SortOrder" ON "OptionCallouts"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."ProductUniqueID" IS NOT NEW."ProductUniqueID" OR OLD."OptionName" IS NOT NEW."OptionName" OR OLD."CalloutText" IS NOT NEW."CalloutText" OR OLD."SortOrder" IS NOT NEW."SortOrder")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OptionCallouts', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteOptionCallouts" AFTER DELETE ON "OptionCallouts"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OptionCallouts', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "OptionDefaults" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "ProductUniqueID" TEXT COLLATE NOCASE,
  "OptionName" TEXT,
  "ChoiceName" TEXT
);
CREATE VIEW "vwExporting_OptionDefaults" AS SELECT ID, UniqueID, "ProductUniqueID", "OptionName", "ChoiceName" FROM "OptionDefaults";
CREATE TRIGGER "auditInsertOptionDefaults" AFTER INSERT ON "OptionDefaults"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OptionDefaults', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateOptionDefaults" AFTER UPDATE OF UniqueID, "ProductUniqueID", "OptionName", "ChoiceName" ON "OptionDefaults"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."ProductUniqueID" IS NOT NEW."ProductUniqueID" OR OLD."OptionName" IS NOT NEW."OptionName" OR OLD."ChoiceName" IS NOT NEW."ChoiceName")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OptionDefaults', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteOptionDefaults" AFTER DELETE ON "OptionDefaults"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OptionDefaults', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "OptionDetailSettings" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "ProductUniqueID" TEXT COLLATE NOCASE,
  "OptionName" TEXT,
  "ChoiceName" TEXT,
  "PriceAdjustment" DECIMAL,
  "SortOrder" INTEGER,
  "Visible" INTEGER
);
CREATE VIEW "vwExporting_OptionDetailSettings" AS SELECT ID, UniqueID, "ProductUniqueID", "OptionName", "ChoiceName", "PriceAdjustment", "SortOrder", "Visible" FROM "OptionDetailSettings";
CREATE TRIGGER "auditInsertOptionDetailSettings" AFTER INSERT ON "OptionDetailSettings"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OptionDetailSettings', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateOptionDetailSettings" AFTER UPDATE OF UniqueID, "ProductUniqueID", "OptionName", "ChoiceName", "PriceAdjustment", "SortOrder", "Visible" ON "OptionDetailSettings"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."ProductUniqueID" IS NOT NEW."ProductUniqueID" OR OLD."OptionName" IS NOT NEW."OptionName" OR OLD."ChoiceName" IS NOT NEW."ChoiceName" OR OLD."PriceAdjustment" IS NOT NEW."PriceAdjustment" OR OLD."SortOrder" IS NOT NEW."SortOrder" OR OLD."Visible" IS NOT NEW."Visible")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OptionDetailSettings', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteOptionDetailSettings" AFTER DELETE ON "OptionDetailSettings"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OptionDetailSettings', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."OptionName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Attachments" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "OwnerTable" TEXT,
  "OwnerUniqueID" TEXT,
  "AttachmentType" INTEGER,
  "FileName" TEXT,
  "Content" BLOB,
  "AddedOn" TEXT
);
CREATE VIEW "vwExporting_Attachments" AS SELECT ID, UniqueID, "OwnerTable", "OwnerUniqueID", "AttachmentType", "FileName", "Content", "AddedOn" FROM "Attachments";
CREATE TRIGGER "auditInsertAttachments" AFTER INSERT ON "Attachments"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Attachments', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."FileName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateAttachments" AFTER UPDATE OF UniqueID, "OwnerTable", "OwnerUniqueID", "AttachmentType", "FileName", "Content", "AddedOn" ON "Attachments"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."OwnerTable" IS NOT NEW."OwnerTable" OR OLD."OwnerUniqueID" IS NOT NEW."OwnerUniqueID" OR OLD."AttachmentType" IS NOT NEW."AttachmentType" OR OLD."FileName" IS NOT NEW."FileName" OR OLD."Content" IS NOT NEW."Content" OR OLD."AddedOn" IS NOT NEW."AddedOn")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Attachments', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."FileName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteAttachments" AFTER DELETE ON "Attachments"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Attachments', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."FileName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "CompanyFeatures" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "FeatureName" TEXT,
  "Enabled" INTEGER
);
CREATE VIEW "vwExporting_CompanyFeatures" AS SELECT ID, UniqueID, "FeatureName", "Enabled" FROM "CompanyFeatures";
CREATE TRIGGER "auditInsertCompanyFeatures" AFTER INSERT ON "CompanyFeatures"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CompanyFeatures', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."FeatureName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateCompanyFeatures" AFTER UPDATE OF UniqueID, "FeatureName", "Enabled" ON "CompanyFeatures"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."FeatureName" IS NOT NEW."FeatureName" OR OLD."Enabled" IS NOT NEW."Enabled")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CompanyFeatures', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."FeatureName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteCompanyFeatures" AFTER DELETE ON "CompanyFeatures"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CompanyFeatures', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."FeatureName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "CompanySetup" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "SetupName" TEXT,
  "SetupValue" TEXT
);
CREATE VIEW "vwExporting_CompanySetup" AS SELECT ID, UniqueID, "SetupName", "SetupValue" FROM "CompanySetup";
CREATE TRIGGER "auditInsertCompanySetup" AFTER INSERT ON "CompanySetup"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CompanySetup', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."SetupName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateCompanySetup" AFTER UPDATE OF UniqueID, "SetupName", "SetupValue" ON "CompanySetup"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."SetupName" IS NOT NEW."SetupName" OR OLD."SetupValue" IS NOT NEW."SetupValue")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CompanySetup', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."SetupName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteCompanySetup" AFTER DELETE ON "CompanySetup"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('CompanySetup', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."SetupName",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "RequireDepositCriteria" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "OrderTypeUniqueID" TEXT COLLATE NOCASE,
  "MinimumAmount" DECIMAL,
  "DepositPercent" DECIMAL
);
CREATE VIEW "vwExporting_RequireDepositCriteria" AS SELECT ID, UniqueID, "OrderTypeUniqueID", "MinimumAmount", "DepositPercent" FROM "RequireDepositCriteria";
CREATE TRIGGER "auditInsertRequireDepositCriteria" AFTER INSERT ON "RequireDepositCriteria"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('RequireDepositCriteria', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateRequireDepositCriteria" AFTER UPDATE OF UniqueID, "OrderTypeUniqueID", "MinimumAmount", "DepositPercent" ON "RequireDepositCriteria"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."OrderTypeUniqueID" IS NOT NEW."OrderTypeUniqueID" OR OLD."MinimumAmount" IS NOT NEW."MinimumAmount" OR OLD."DepositPercent" IS NOT NEW."DepositPercent")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('RequireDepositCriteria', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteRequireDepositCriteria" AFTER DELETE ON "RequireDepositCriteria"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('RequireDepositCriteria', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "FieldMeasureCriteria" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "ProductTypeUniqueID" TEXT COLLATE NOCASE,
  "MinimumQuantity" INTEGER,
  "MeasureRequired" INTEGER
);
CREATE VIEW "vwExporting_FieldMeasureCriteria" AS SELECT ID, UniqueID, "ProductTypeUniqueID", "MinimumQuantity", "MeasureRequired" FROM "FieldMeasureCriteria";
CREATE TRIGGER "auditInsertFieldMeasureCriteria" AFTER INSERT ON "FieldMeasureCriteria"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('FieldMeasureCriteria', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateFieldMeasureCriteria" AFTER UPDATE OF UniqueID, "ProductTypeUniqueID", "MinimumQuantity", "MeasureRequired" ON "FieldMeasureCriteria"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."ProductTypeUniqueID" IS NOT NEW."ProductTypeUniqueID" OR OLD."MinimumQuantity" IS NOT NEW."MinimumQuantity" OR OLD."MeasureRequired" IS NOT NEW."MeasureRequired")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('FieldMeasureCriteria', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteFieldMeasureCriteria" AFTER DELETE ON "FieldMeasureCriteria"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('FieldMeasureCriteria', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, NULL,
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "Orders" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "OrderNumber" INTEGER,
  "ReferenceNumber" INTEGER,
  "State" INTEGER,
  "OrderTypeUniqueID" TEXT COLLATE NOCASE,
  "OrderStatusCodeUniqueID" TEXT COLLATE NOCASE,
  "CustomerUniqueID" TEXT COLLATE NOCASE,
  "EmployeeUniqueID" TEXT COLLATE NOCASE,
  "SalesTaxGroupUniqueID" TEXT COLLATE NOCASE,
  "OrderedOn" TEXT,
  "PromisedOn" TEXT,
  "SubTotal" DECIMAL,
  "Tax" DECIMAL,
  "Total" DECIMAL,
  "Notes" TEXT,
  "SyncState" INTEGER NOT NULL DEFAULT 0,
  "Imported" INTEGER NOT NULL DEFAULT 0
);
CREATE VIEW "vwExporting_Orders" AS SELECT ID, UniqueID, "OrderNumber", "ReferenceNumber", "State", "OrderTypeUniqueID", "OrderStatusCodeUniqueID", "CustomerUniqueID", "EmployeeUniqueID", "SalesTaxGroupUniqueID", "OrderedOn", "PromisedOn", "SubTotal", "Tax", "Total", "Notes" FROM "Orders";
CREATE TRIGGER "auditInsertOrders" AFTER INSERT ON "Orders"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Orders', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."OrderNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateOrders" AFTER UPDATE OF UniqueID, "OrderNumber", "ReferenceNumber", "State", "OrderTypeUniqueID", "OrderStatusCodeUniqueID", "CustomerUniqueID", "EmployeeUniqueID", "SalesTaxGroupUniqueID", "OrderedOn", "PromisedOn", "SubTotal", "Tax", "Total", "Notes" ON "Orders"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."OrderNumber" IS NOT NEW."OrderNumber" OR OLD."ReferenceNumber" IS NOT NEW."ReferenceNumber" OR OLD."State" IS NOT NEW."State" OR OLD."OrderTypeUniqueID" IS NOT NEW."OrderTypeUniqueID" OR OLD."OrderStatusCodeUniqueID" IS NOT NEW."OrderStatusCodeUniqueID" OR OLD."CustomerUniqueID" IS NOT NEW."CustomerUniqueID" OR OLD."EmployeeUniqueID" IS NOT NEW."EmployeeUniqueID" OR OLD."SalesTaxGroupUniqueID" IS NOT NEW."SalesTaxGroupUniqueID" OR OLD."OrderedOn" IS NOT NEW."OrderedOn" OR OLD."PromisedOn" IS NOT NEW."PromisedOn" OR OLD."SubTotal" IS NOT NEW."SubTotal" OR OLD."Tax" IS NOT NEW."Tax" OR OLD."Total" IS NOT NEW."Total" OR OLD."Notes" IS NOT NEW."Notes")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Orders', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."OrderNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteOrders" AFTER DELETE ON "Orders"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('Orders', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."OrderNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "markImportedOrders" AFTER INSERT ON "Orders"
WHEN EXISTS (SELECT 1 FROM ImportMark)
BEGIN
  UPDATE "Orders" SET "Imported" = 1 WHERE ID = NEW.ID;
END;
CREATE TABLE "OrderItems" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "OrderUniqueID" TEXT COLLATE NOCASE,
  "LineNumber" INTEGER,
  "ProductUniqueID" TEXT COLLATE NOCASE,
  "MeasurementRoomUniqueID" TEXT COLLATE NOCASE,
  "MeasurementMountUniqueID" TEXT COLLATE NOCASE,
  "Description" TEXT,
  "Width" INTEGER,
  "Height" INTEGER,
  "Quantity" INTEGER,
  "UnitPrice" DECIMAL
);
CREATE INDEX "ixOrderItems_OrderUniqueID" ON "OrderItems" ("OrderUniqueID");
CREATE VIEW "vwExporting_OrderItems" AS SELECT ID, UniqueID, "OrderUniqueID", "LineNumber", "ProductUniqueID", "MeasurementRoomUniqueID", "MeasurementMountUniqueID", "Description", "Width", "Height", "Quantity", "UnitPrice" FROM "OrderItems";
CREATE TRIGGER "auditInsertOrderItems" AFTER INSERT ON "OrderItems"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderItems', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."LineNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateOrderItems" AFTER UPDATE OF UniqueID, "OrderUniqueID", "LineNumber", "ProductUniqueID", "MeasurementRoomUniqueID", "MeasurementMountUniqueID", "Description", "Width", "Height", "Quantity", "UnitPrice" ON "OrderItems"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."OrderUniqueID" IS NOT NEW."OrderUniqueID" OR OLD."LineNumber" IS NOT NEW."LineNumber" OR OLD."ProductUniqueID" IS NOT NEW."ProductUniqueID" OR OLD."MeasurementRoomUniqueID" IS NOT NEW."MeasurementRoomUniqueID" OR OLD."MeasurementMountUniqueID" IS NOT NEW."MeasurementMountUniqueID" OR OLD."Description" IS NOT NEW."Description" OR OLD."Width" IS NOT NEW."Width" OR OLD."Height" IS NOT NEW."Height" OR OLD."Quantity" IS NOT NEW."Quantity" OR OLD."UnitPrice" IS NOT NEW."UnitPrice")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderItems', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."LineNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteOrderItems" AFTER DELETE ON "OrderItems"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderItems', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."LineNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "PurchaseOrders" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "PONumber" INTEGER,
  "ReferenceNumber" INTEGER,
  "State" INTEGER,
  "VendorUniqueID" TEXT COLLATE NOCASE,
  "OrderUniqueID" TEXT COLLATE NOCASE,
  "PurchaseOrderStatusCodeUniqueID" TEXT COLLATE NOCASE,
  "OrderedOn" TEXT,
  "ExpectedOn" TEXT,
  "Total" DECIMAL,
  "Notes" TEXT,
  "SyncState" INTEGER NOT NULL DEFAULT 0,
  "Imported" INTEGER NOT NULL DEFAULT 0
);
CREATE VIEW "vwExporting_PurchaseOrders" AS SELECT ID, UniqueID, "PONumber", "ReferenceNumber", "State", "VendorUniqueID", "OrderUniqueID", "PurchaseOrderStatusCodeUniqueID", "OrderedOn", "ExpectedOn", "Total", "Notes" FROM "PurchaseOrders";
CREATE TRIGGER "auditInsertPurchaseOrders" AFTER INSERT ON "PurchaseOrders"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrders', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."PONumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdatePurchaseOrders" AFTER UPDATE OF UniqueID, "PONumber", "ReferenceNumber", "State", "VendorUniqueID", "OrderUniqueID", "PurchaseOrderStatusCodeUniqueID", "OrderedOn", "ExpectedOn", "Total", "Notes" ON "PurchaseOrders"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."PONumber" IS NOT NEW."PONumber" OR OLD."ReferenceNumber" IS NOT NEW."ReferenceNumber" OR OLD."State" IS NOT NEW."State" OR OLD."VendorUniqueID" IS NOT NEW."VendorUniqueID" OR OLD."OrderUniqueID" IS NOT NEW."OrderUniqueID" OR OLD."PurchaseOrderStatusCodeUniqueID" IS NOT NEW."PurchaseOrderStatusCodeUniqueID" OR OLD."OrderedOn" IS NOT NEW."OrderedOn" OR OLD."ExpectedOn" IS NOT NEW."ExpectedOn" OR OLD."Total" IS NOT NEW."Total" OR OLD."Notes" IS NOT NEW."Notes")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrders', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."PONumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeletePurchaseOrders" AFTER DELETE ON "PurchaseOrders"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrders', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."PONumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "markImportedPurchaseOrders" AFTER INSERT ON "PurchaseOrders"
WHEN EXISTS (SELECT 1 FROM ImportMark)
BEGIN
  UPDATE "PurchaseOrders" SET "Imported" = 1 WHERE ID = NEW.ID;
END;
CREATE TABLE "PurchaseOrderItems" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "PurchaseOrderUniqueID" TEXT COLLATE NOCASE,
  "LineNumber" INTEGER,
  "OrderItemUniqueID" TEXT COLLATE NOCASE,
  "PurchaseOrderItemStatusCodeUniqueID" TEXT COLLATE NOCASE,
  "Quantity" INTEGER,
  "Cost" DECIMAL
);
CREATE INDEX "ixPurchaseOrderItems_PurchaseOrderUniqueID" ON "PurchaseOrderItems" ("PurchaseOrderUniqueID");
CREATE VIEW "vwExporting_PurchaseOrderItems" AS SELECT ID, UniqueID, "PurchaseOrderUniqueID", "LineNumber", "OrderItemUniqueID", "PurchaseOrderItemStatusCodeUniqueID", "Quantity", "Cost" FROM "PurchaseOrderItems";
CREATE TRIGGER "auditInsertPurchaseOrderItems" AFTER INSERT ON "PurchaseOrderItems"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderItems', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."LineNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdatePurchaseOrderItems" AFTER UPDATE OF UniqueID, "PurchaseOrderUniqueID", "LineNumber", "OrderItemUniqueID", "PurchaseOrderItemStatusCodeUniqueID", "Quantity", "Cost" ON "PurchaseOrderItems"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."PurchaseOrderUniqueID" IS NOT NEW."PurchaseOrderUniqueID" OR OLD."LineNumber" IS NOT NEW."LineNumber" OR OLD."OrderItemUniqueID" IS NOT NEW."OrderItemUniqueID" OR OLD."PurchaseOrderItemStatusCodeUniqueID" IS NOT NEW."PurchaseOrderItemStatusCodeUniqueID" OR OLD."Quantity" IS NOT NEW."Quantity" OR OLD."Cost" IS NOT NEW."Cost")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderItems', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."LineNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeletePurchaseOrderItems" AFTER DELETE ON "PurchaseOrderItems"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderItems', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."LineNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "OrderNumberSync" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "State" INTEGER,
  "OrderUniqueID" TEXT COLLATE NOCASE,
  "ReferenceNumber" INTEGER,
  "OrderNumber" INTEGER
);
CREATE VIEW "vwExporting_OrderNumberSync" AS SELECT ID, UniqueID, "State", "OrderUniqueID", "ReferenceNumber", "OrderNumber" FROM "OrderNumberSync";
CREATE TRIGGER "auditInsertOrderNumberSync" AFTER INSERT ON "OrderNumberSync"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderNumberSync', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."OrderNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdateOrderNumberSync" AFTER UPDATE OF UniqueID, "State", "OrderUniqueID", "ReferenceNumber", "OrderNumber" ON "OrderNumberSync"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."State" IS NOT NEW."State" OR OLD."OrderUniqueID" IS NOT NEW."OrderUniqueID" OR OLD."ReferenceNumber" IS NOT NEW."ReferenceNumber" OR OLD."OrderNumber" IS NOT NEW."OrderNumber")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderNumberSync', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."OrderNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeleteOrderNumberSync" AFTER DELETE ON "OrderNumberSync"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('OrderNumberSync', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."OrderNumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TABLE "PurchaseOrderNumberSync" (
  ID INTEGER PRIMARY KEY AUTOINCREMENT,
  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE CHECK (length(UniqueID) > 0) DEFAULT (hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' || substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6))),
  "State" INTEGER,
  "PurchaseOrderUniqueID" TEXT COLLATE NOCASE,
  "ReferenceNumber" INTEGER,
  "PONumber" INTEGER
);
CREATE VIEW "vwExporting_PurchaseOrderNumberSync" AS SELECT ID, UniqueID, "State", "PurchaseOrderUniqueID", "ReferenceNumber", "PONumber" FROM "PurchaseOrderNumberSync";
CREATE TRIGGER "auditInsertPurchaseOrderNumberSync" AFTER INSERT ON "PurchaseOrderNumberSync"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderNumberSync', NEW.ID, 1, GETUTCDATE(), NEW.UniqueID, NEW."PONumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditUpdatePurchaseOrderNumberSync" AFTER UPDATE OF UniqueID, "State", "PurchaseOrderUniqueID", "ReferenceNumber", "PONumber" ON "PurchaseOrderNumberSync"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
  AND (OLD.UniqueID IS NOT NEW.UniqueID OR OLD."State" IS NOT NEW."State" OR OLD."PurchaseOrderUniqueID" IS NOT NEW."PurchaseOrderUniqueID" OR OLD."ReferenceNumber" IS NOT NEW."ReferenceNumber" OR OLD."PONumber" IS NOT NEW."PONumber")
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderNumberSync', NEW.ID, 2, GETUTCDATE(), NEW.UniqueID, NEW."PONumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE TRIGGER "auditDeletePurchaseOrderNumberSync" AFTER DELETE ON "PurchaseOrderNumberSync"
WHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  VALUES ('PurchaseOrderNumberSync', OLD.ID, 3, GETUTCDATE(), OLD.UniqueID, OLD."PONumber",
    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));
END;
CREATE VIEW "vwExporting_Orders_NumberSync" AS SELECT ID, State, UniqueID, ReferenceNumber, "OrderNumber", "SyncState" FROM "Orders" WHERE "Imported" = 0;
CREATE VIEW "vwExporting_PurchaseOrders_NumberSync" AS SELECT ID, State, UniqueID, ReferenceNumber, "PONumber", "SyncState" FROM "PurchaseOrders" WHERE "Imported" = 0;
