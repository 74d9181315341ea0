#include "suite/schema/company_schema.h"

namespace qndr::suite {

namespace {

// Names of tables and columns are stored in databases and in exported files, other programs' statements hold them,
// and the exported tables stand in the order of the full export: never change either.

constexpr bool Exported = true;

constexpr Column Integer(std::string_view name) {
    return {name, ColumnType::Integer};
}
constexpr Column Boolean(std::string_view name) {
    return {name, ColumnType::Boolean};
}
constexpr Column Decimal(std::string_view name) {
    return {name, ColumnType::Decimal};
}
constexpr Column Text(std::string_view name) {
    return {name, ColumnType::Text};
}
constexpr Column Date(std::string_view name) {
    return {name, ColumnType::Date};
}
constexpr Column Bytes(std::string_view name) {
    return {name, ColumnType::Bytes};
}
constexpr Column Reference(std::string_view name, std::string_view table) {
    return {name, ColumnType::Reference, table};
}
constexpr Column IndexedReference(std::string_view name, std::string_view table) {
    return {.name = name, .type = ColumnType::Reference, .references = table, .indexed = true};
}
constexpr Column LocalInteger(std::string_view name) {
    return {.name = name, .type = ColumnType::Integer, .local = true};
}

std::vector<Table> SetupTables() {
    return {
        {"ProductTypes",
         {Text("Name"), Text("Description"), Integer("SortOrder"), Boolean("Inactive")},
         "Name",
         Exported},
        {"Manufacturers",
         {Text("Name"), Text("AccountNumber"), Text("Phone"), Text("WebAddress"), Boolean("Inactive")},
         "Name",
         Exported},
        {"PhoneLabels", {Text("Name"), Integer("SortOrder")}, "Name", Exported},
        {"EmailLabels", {Text("Name"), Integer("SortOrder")}, "Name", Exported},
        {"SecurityRoles", {Text("Name"), Text("Description")}, "Name", Exported},
        {"SecurityRoleAccess",
         {Reference("SecurityRoleUniqueID", "SecurityRoles"), Text("FunctionName"), Integer("AccessLevel")},
         "FunctionName",
         Exported},
        {"DeliveryRanges", {Text("Name"), Integer("MinimumDays"), Integer("MaximumDays")}, "Name", Exported},
        {"DiscountGroups", {Text("Name"), Text("Description")}, "Name", Exported},
        {"EmailTemplates", {Text("Name"), Text("Subject"), Text("Body")}, "Name", Exported},
        {"AdditionalCharges", {Text("Name"), Decimal("Amount"), Boolean("Taxable")}, "Name", Exported},
        {"Groups", {Text("Name"), Text("Description")}, "Name", Exported},
        {"OrderStatusCodes", {Text("Name"), Integer("SortOrder"), Boolean("IsClosed")}, "Name", Exported},
        {"CustomerTypes", {Text("Name"), Text("Description")}, "Name", Exported},
        {"OrderTypes", {Text("Name"), Text("Prefix")}, "Name", Exported},
        {"PaymentMethods", {Text("Name"), Boolean("ReferenceRequired")}, "Name", Exported},
        {"Terms",
         {Text("Name"), Integer("DueDays"), Integer("DiscountDays"), Decimal("DiscountPercent")},
         "Name",
         Exported},
        {"ShippingMethods", {Text("Name"), Decimal("Charge")}, "Name", Exported},
        {"SetupOptions", {Text("Section"), Text("OptionName"), Text("OptionValue")}, "OptionName", Exported},
        {"SalesTaxCodes", {Text("Name"), Text("Jurisdiction"), Decimal("Rate")}, "Name", Exported},
        {"SalesTaxGroups", {Text("Name")}, "Name", Exported},
        {"SalesTaxGroupCodes",
         {Reference("SalesTaxGroupUniqueID", "SalesTaxGroups"), Reference("SalesTaxCodeUniqueID", "SalesTaxCodes"),
          Integer("SortOrder")},
         "",
         Exported},
        {"ReferralMethods", {Text("Name"), Boolean("Inactive")}, "Name", Exported},
        {"Reports", {Text("Name"), Text("Category"), Text("Layout")}, "Name", Exported},
        {"JobTypes", {Text("Name"), Integer("DurationMinutes")}, "Name", Exported},
        {"Locations",
         {Text("Name"), Text("Street"), Text("City"), Text("Region"), Text("PostalCode"), Text("Country"),
          Text("Phone")},
         "Name",
         Exported},
        {"MeasurementRooms", {Text("Name"), Integer("SortOrder")}, "Name", Exported},
        {"MeasurementItems", {Text("Name"), Text("Unit")}, "Name", Exported},
        {"MeasurementMounts", {Text("Name"), Integer("SortOrder")}, "Name", Exported},
        {"PurchaseOrderStatusCodes", {Text("Name"), Integer("SortOrder"), Boolean("IsClosed")}, "Name", Exported},
        {"PurchaseOrderItemStatusCodes",
         {Text("Name"), Integer("SortOrder"), Boolean("IsClosed")},
         "Name",
         Exported},
    };
}

std::vector<Table> PeopleTables() {
    return {
        {"Employees",
         {Integer("EmployeeNumber"), Text("FirstName"), Text("LastName"), Text("JobTitle"), Text("Phone"),
          Text("Email"), Reference("LocationUniqueID", "Locations"), Decimal("CommissionPercent"), Date("HiredOn"),
          Boolean("Inactive")},
         "LastName",
         Exported},
        {"EmployeeAddresses",
         {Reference("EmployeeUniqueID", "Employees"), Text("Street"), Text("City"), Text("Region"),
          Text("PostalCode"), Text("Country")},
         "Street",
         Exported},
        {"EmployeeActivity",
         {Reference("EmployeeUniqueID", "Employees"), Date("ActivityDate"), Text("Subject"), Text("Notes")},
         "Subject",
         Exported},
        {"EmployeeSecurityRoles",
         {Reference("EmployeeUniqueID", "Employees"), Reference("SecurityRoleUniqueID", "SecurityRoles")},
         "",
         Exported},
        {"Customers",
         {Integer("CustomerNumber"), Text("CompanyName"), Text("FirstName"), Text("LastName"), Text("Phone"),
          Text("Email"), Reference("CustomerTypeUniqueID", "CustomerTypes"), Reference("TermsUniqueID", "Terms"),
          Reference("ReferralMethodUniqueID", "ReferralMethods"),
          Reference("SalesTaxGroupUniqueID", "SalesTaxGroups"), Decimal("CreditLimit"), Date("CreatedOn"),
          Text("Notes"), Boolean("Inactive")},
         "LastName",
         Exported},
        {"GroupedCustomers",
         {Reference("GroupUniqueID", "Groups"), Reference("CustomerUniqueID", "Customers")},
         "",
         Exported},
        {"CustomerActivity",
         {Reference("CustomerUniqueID", "Customers"), Reference("EmployeeUniqueID", "Employees"),
          Date("ActivityDate"), Text("Subject"), Text("Notes")},
         "Subject",
         Exported},
        {"CustomerAddresses",
         {Reference("CustomerUniqueID", "Customers"), Text("Street"), Text("City"), Text("Region"),
          Text("PostalCode"), Text("Country"), Boolean("IsDelivery")},
         "Street",
         Exported},
        {"Vendors",
         {Text("Name"), Text("AccountNumber"), Text("Phone"), Text("Email"), Reference("TermsUniqueID", "Terms"),
          Text("Notes"), Boolean("Inactive")},
         "Name",
         Exported},
        {"VendorActivity",
         {Reference("VendorUniqueID", "Vendors"), Reference("EmployeeUniqueID", "Employees"), Date("ActivityDate"),
          Text("Subject"), Text("Notes")},
         "Subject",
         Exported},
    };
}

std::vector<Table> GoodsTables() {
    return {
        {"Products",
         {Text("ProductCode"), Text("Name"), Reference("ProductTypeUniqueID", "ProductTypes"),
          Reference("ManufacturerUniqueID", "Manufacturers"), Reference("DiscountGroupUniqueID", "DiscountGroups"),
          Decimal("BasePrice"), Integer("MinimumWidth"), Integer("MaximumWidth"), Integer("MaximumHeight"),
          Text("Notes"), Boolean("Inactive")},
         "ProductCode",
         Exported},
        {"ProductVendors",
         {Reference("ProductUniqueID", "Products"), Reference("VendorUniqueID", "Vendors"),
          Text("VendorProductCode"), Decimal("Cost"), Integer("LeadDays")},
         "VendorProductCode",
         Exported},
        {"ProductActivity",
         {Reference("ProductUniqueID", "Products"), Reference("EmployeeUniqueID", "Employees"),
          Date("ActivityDate"), Text("Subject"), Text("Notes")},
         "Subject",
         Exported},
        {"ProductTags", {Reference("ProductUniqueID", "Products"), Text("Tag")}, "Tag", Exported},
        {"Discounts",
         {Reference("DiscountGroupUniqueID", "DiscountGroups"), Reference("CustomerTypeUniqueID", "CustomerTypes"),
          Decimal("Percentage"), Date("StartsOn"), Date("EndsOn")},
         "",
         Exported},
        {"OptionCallouts",
         {Reference("ProductUniqueID", "Products"), Text("OptionName"), Text("CalloutText"), Integer("SortOrder")},
         "OptionName",
         Exported},
        {"OptionDefaults",
         {Reference("ProductUniqueID", "Products"), Text("OptionName"), Text("ChoiceName")},
         "OptionName",
         Exported},
        {"OptionDetailSettings",
         {Reference("ProductUniqueID", "Products"), Text("OptionName"), Text("ChoiceName"),
          Decimal("PriceAdjustment"), Integer("SortOrder"), Boolean("Visible")},
         "OptionName",
         Exported},
        {"Attachments",
         {Text("OwnerTable"), Text("OwnerUniqueID"), Integer("AttachmentType"), Text("FileName"), Bytes("Content"),
          Date("AddedOn")},
         "FileName",
         Exported},
        {"CompanyFeatures", {Text("FeatureName"), Boolean("Enabled")}, "FeatureName", Exported},
        {"CompanySetup", {Text("SetupName"), Text("SetupValue")}, "SetupName", Exported},
        {"RequireDepositCriteria",
         {Reference("OrderTypeUniqueID", "OrderTypes"), Decimal("MinimumAmount"), Decimal("DepositPercent")},
         "",
         Exported},
        {"FieldMeasureCriteria",
         {Reference("ProductTypeUniqueID", "ProductTypes"), Integer("MinimumQuantity"),
          Boolean("MeasureRequired")},
         "",
         Exported},
    };
}

/// Not part of a full export.
std::vector<Table> OrderTables() {
    return {
        {"Orders",
         {Integer("OrderNumber"), Integer("ReferenceNumber"), Integer("State"),
          Reference("OrderTypeUniqueID", "OrderTypes"), Reference("OrderStatusCodeUniqueID", "OrderStatusCodes"),
          Reference("CustomerUniqueID", "Customers"), Reference("EmployeeUniqueID", "Employees"),
          Reference("SalesTaxGroupUniqueID", "SalesTaxGroups"), Date("OrderedOn"), Date("PromisedOn"),
          Decimal("SubTotal"), Decimal("Tax"), Decimal("Total"), Text("Notes"), LocalInteger(SyncStateColumn),
          LocalInteger(ImportedColumn)},
         "OrderNumber"},
        {"OrderItems",
         {IndexedReference("OrderUniqueID", "Orders"), Integer("LineNumber"),
          Reference("ProductUniqueID", "Products"), Reference("MeasurementRoomUniqueID", "MeasurementRooms"),
          Reference("MeasurementMountUniqueID", "MeasurementMounts"), Text("Description"), Integer("Width"),
          Integer("Height"), Integer("Quantity"), Decimal("UnitPrice")},
         "LineNumber"},
        {"PurchaseOrders",
         {Integer("PONumber"), Integer("ReferenceNumber"), Integer("State"),
          Reference("VendorUniqueID", "Vendors"), Reference("OrderUniqueID", "Orders"),
          Reference("PurchaseOrderStatusCodeUniqueID", "PurchaseOrderStatusCodes"), Date("OrderedOn"),
          Date("ExpectedOn"), Decimal("Total"), Text("Notes"), LocalInteger(SyncStateColumn),
          LocalInteger(ImportedColumn)},
         "PONumber"},
        {"PurchaseOrderItems",
         {IndexedReference("PurchaseOrderUniqueID", "PurchaseOrders"), Integer("LineNumber"),
          Reference("OrderItemUniqueID", "OrderItems"),
          Reference("PurchaseOrderItemStatusCodeUniqueID", "PurchaseOrderItemStatusCodes"), Integer("Quantity"),
          Decimal("Cost")},
         "LineNumber"},
        {"OrderNumberSync",
         {Integer("State"), Reference("OrderUniqueID", "Orders"), Integer("ReferenceNumber"),
          Integer("OrderNumber")},
         "OrderNumber"},
        {"PurchaseOrderNumberSync",
         {Integer("State"), Reference("PurchaseOrderUniqueID", "PurchaseOrders"), Integer("ReferenceNumber"),
          Integer("PONumber")},
         "PONumber"},
    };
}

} // namespace

const std::vector<Table>& AuditedTables() {
    static const std::vector<Table> tables = [] {
        std::vector<Table> all;
        for (const auto& part : {SetupTables(), PeopleTables(), GoodsTables(), OrderTables()}) {
            all.insert(all.end(), part.begin(), part.end());
        }
        return all;
    }();
    return tables;
}

} // namespace qndr::suite
