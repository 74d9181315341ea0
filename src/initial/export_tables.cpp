#include "initial/export_tables.h"

#include "services/exchange_statements.h"

namespace qndr {
// Thirty days count by the clock of the database server, when the engine runs the statement.
const std::array<ExportTable, 53> ExportTables{{
    {"ProductTypes"},
    {"Manufacturers"},
    {"PhoneLabels"},
    {"EmailLabels"},
    {"SecurityRoles"},
    {"SecurityRoleAccess"},
    {"DeliveryRanges"},
    {"DiscountGroups"},
    {"EmailTemplates"},
    {"AdditionalCharges"},
    {"Groups"},
    {"OrderStatusCodes"},
    {"CustomerTypes"},
    {"OrderTypes"},
    {"PaymentMethods"},
    {"Terms"},
    {"ShippingMethods"},
    {"SetupOptions"},
    {"SalesTaxCodes"},
    {"SalesTaxGroups"},
    {"SalesTaxGroupCodes"},
    {"ReferralMethods"},
    {"Reports"},
    {"JobTypes"},
    {"Locations"},
    {"MeasurementRooms"},
    {"MeasurementItems"},
    {"MeasurementMounts"},
    {"PurchaseOrderStatusCodes"},
    {"PurchaseOrderItemStatusCodes"},
    {"Employees"},
    {"EmployeeAddresses"},
    {"EmployeeActivity", "ActivityDate > DATEADD(day,-30,GETUTCDATE())"},
    {"EmployeeSecurityRoles"},
    {"Customers"},
    {"GroupedCustomers"},
    {"CustomerActivity", "ActivityDate > DATEADD(day,-30,GETUTCDATE())"},
    {"CustomerAddresses"},
    {"Vendors"},
    {"VendorActivity", "ActivityDate > DATEADD(day,-30,GETUTCDATE())"},
    {"Products"},
    {"ProductVendors"},
    {"ProductActivity", "ActivityDate > DATEADD(day,-30,GETUTCDATE())"},
    {"ProductTags"},
    {"Discounts"},
    {"OptionCallouts"},
    {"OptionDefaults"},
    {"OptionDetailSettings"},
    {"Attachments", "AttachmentType <> 2 AND AttachmentType <> 3"},
    {"CompanyFeatures"},
    {"CompanySetup"},
    {"RequireDepositCriteria"},
    {"FieldMeasureCriteria"},
}};

std::string ExportStatement(const ExportTable& table) {
    return services::ExportOfTable(table.Name, table.Condition);
}

} // namespace qndr
