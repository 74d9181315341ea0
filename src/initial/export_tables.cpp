#include "initial/export_tables.h"

namespace qndr {
namespace {

// By the clock of the database server, when the engine runs the statement.
constexpr const char* RecentActivity = " WHERE ActivityDate > DATEADD(day,-30,GETUTCDATE())";
constexpr const char* TravellingAttachments = " WHERE AttachmentType <> 2 AND AttachmentType <> 3";

} // namespace

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
    {"EmployeeActivity", RecentActivity},
    {"EmployeeSecurityRoles"},
    {"Customers"},
    {"GroupedCustomers"},
    {"CustomerActivity", RecentActivity},
    {"CustomerAddresses"},
    {"Vendors"},
    {"VendorActivity", RecentActivity},
    {"Products"},
    {"ProductVendors"},
    {"ProductActivity", RecentActivity},
    {"ProductTags"},
    {"Discounts"},
    {"OptionCallouts"},
    {"OptionDefaults"},
    {"OptionDetailSettings"},
    {"Attachments", TravellingAttachments},
    {"CompanyFeatures"},
    {"CompanySetup"},
    {"RequireDepositCriteria"},
    {"FieldMeasureCriteria"},
}};

std::string ExportStatement(const ExportTable& table) {
    return std::string("SELECT * FROM vwExporting_") + table.Name + table.Condition;
}

} // namespace qndr
