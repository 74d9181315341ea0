#include "suite/admin/sample_text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace qndr::suite {

namespace {

struct TextList {
    std::string_view table; ///< empty for any table
    std::string_view column;
    std::vector<std::string_view> texts;
};

std::vector<TextList> ListsOfTables() {
    return {
        {"ProductTypes",
         "Name",
         {"Roller Shades", "Roman Shades", "Wood Blinds", "Aluminum Blinds", "Cellular Shades", "Shutters",
          "Drapery", "Awnings"}},
        {"Manufacturers", "Name", {"Northfield Shades", "Brook & Dale", "Weberei Schönthal", "Hill's Millwork"}},
        {"PhoneLabels", "Name", {"Home", "Work", "Mobile", "Fax"}},
        {"EmailLabels", "Name", {"Private", "Work", "Billing"}},
        {"SecurityRoles", "Name", {"Administrator", "Sales", "Measuring", "Bookkeeping", "Installer"}},
        {"DeliveryRanges", "Name", {"In stock", "1 to 2 weeks", "3 to 4 weeks", "Special order"}},
        {"DiscountGroups", "Name", {"Standard", "Hard goods", "Soft goods", "Clearance"}},
        {"EmailTemplates", "Name", {"Quote", "Order confirmation", "Ready for installation", "Thank you"}},
        {"AdditionalCharges", "Name", {"Installation", "Measuring trip", "Removal of old blinds", "Rush"}},
        {"Groups", "Name", {"Builders", "Designers", "Mailing list", "Schools & Offices"}},
        {"OrderStatusCodes", "Name", {"Quote", "Ordered", "In production", "Installed", "Closed"}},
        {"CustomerTypes", "Name", {"Retail", "Trade", "Commercial"}},
        {"OrderTypes", "Name", {"Order", "Repair", "Sample loan", "Remake"}},
        {"PaymentMethods", "Name", {"Cash", "Check", "Card", "Transfer"}},
        {"Terms", "Name", {"Due on receipt", "Net 10", "Net 30", "2% 10, net 30"}},
        {"ShippingMethods", "Name", {"Pick up", "Own van", "Freight", "Parcel"}},
        {"SalesTaxCodes", "Name", {"State", "County", "City", "Exempt"}},
        {"SalesTaxGroups", "Name", {"In town", "Out of town", "Exempt"}},
        {"ReferralMethods", "Name", {"Word of mouth", "Web site", "Newspaper", "Home show"}},
        {"Reports", "Name", {"Open orders", "Sales by month", "Commission", "Measure sheet"}},
        {"JobTypes", "Name", {"Measure", "Install", "Repair", "Consultation"}},
        {"Locations", "Name", {"Showroom", "Warehouse", "Workshop"}},
        {"MeasurementRooms", "Name", {"Kitchen", "Living Room", "Bedroom", "Study", "Bath", "Küche"}},
        {"MeasurementItems", "Name", {"Width", "Height", "Depth", "Sill"}},
        {"MeasurementMounts", "Name", {"Inside", "Outside", "Ceiling"}},
        {"PurchaseOrderStatusCodes", "Name", {"Open", "Sent", "Confirmed", "Received"}},
        {"PurchaseOrderItemStatusCodes", "Name", {"Open", "Back-ordered", "Received", "Damaged"}},
        {"Vendors", "Name", {"Harbor Fabrics", "Lumber & Slat", "O'Neal Hardware", "Stoffhaus Jäger"}},
        {"Products",
         "Name",
         {"Roller Shade", "Roman Shade", "Wood Blind 50 mm", "Cellular Shade", "Panel Track", "Café Curtain",
          "Cord Tilter", "Valance"}},
        {"MeasurementItems", "Unit", {"mm", "in"}},
        {"OrderTypes", "Prefix", {"O", "R", "S"}},
        {"EmailTemplates", "Body", {"Dear customer,\r\n\r\nyour order is ready.\r\n", "Thank you & good bye\n"}},
        {"Reports", "Layout", {"<report columns=\"4\"/>", "<report columns=\"7\" landscape=\"1\"/>"}},
        {"SetupOptions", "Section", {"Orders", "Printing", "Screen"}},
        {"Attachments", "OwnerTable", {"Customers"}},
    };
}

std::vector<TextList> ListsOfColumns() {
    return {
        {"", "Description", {"As measured", "See notes", "Left control, right stack", "Color \"Sand\" & trim"}},
        {"",
         "Notes",
         {"Prefers calls after 5 p.m.\r\nGate code on file.", "Said \"no chains\" & asked for <cordless>",
          "Größe vor Ort prüfen; Fenster in Küche & Büro", "Don't ring\tbefore noon", "Paid in full"}},
        {"", "Subject", {"Phone call", "Visit", "E-mail", "Price list & samples", "Rückruf"}},
        {"", "FirstName", {"Anna", "Jürgen", "Mary-Ann", "Zoë", "Luis", "Grace", "Pat"}},
        {"", "LastName", {"Smith", "O'Brien", "Müller", "Okafor", "Garcia", "Nguyen", "d'Angelo", "Weiß"}},
        {"", "CompanyName", {"Smith & Sons", "Lakeside \"The Inn\"", "Hotel Bär", "City School District"}},
        {"", "JobTitle", {"Sales", "Installer", "Bookkeeper", "Manager"}},
        {"", "Street", {"Main St", "Oak Avenue", "Hauptstraße", "King's Road"}},
        {"", "City", {"Springfield", "Riverside", "Köln", "St. John's"}},
        {"", "Region", {"North", "South", "East", "West"}},
        {"", "Country", {"US", "CA", "DE"}},
        {"", "Jurisdiction", {"State", "County", "City"}},
        {"", "Category", {"Sales", "Orders", "Money"}},
        {"", "FunctionName", {"Edit orders", "See costs", "Delete customers", "Print reports"}},
        {"", "Tag", {"new", "kitchen", "child-safe", "sale & clearance"}},
        {"", "OptionName", {"Control", "Lift", "Color", "Bottom rail", "Lining", "Side channel"}},
        {"", "ChoiceName", {"Left", "Right", "Cordless", "Motor", "White", "Crème", "None"}},
        {"", "CalloutText", {"Measure twice", "Adds 10 mm", "Not with \"Outside\" mount"}},
        {"", "OptionValue", {"1", "0", "A4", "Letter"}},
        {"", "FeatureName", {"Purchasing", "Measuring", "Web quotes", "Scheduling"}},
        {"", "SetupName", {"Next order number", "Default terms", "Rounding", "Fiscal year"}},
        {"", "SetupValue", {"10000", "Net 30", "0.05", "January"}},
    };
}

constexpr std::array<NumberedText, 8> NumberedTexts{{
    {"Phone", "555-", 4, ""},
    {"Email", "contact", 4, "@example.com"},
    {"WebAddress", "https://www", 2, ".example.com/"},
    {"AccountNumber", "A-", 5, ""},
    {"PostalCode", "", 5, ""},
    {"ProductCode", "P-", 5, ""},
    {"VendorProductCode", "V-", 6, ""},
    {"FileName", "picture-", 5, ".jpg"},
}};

std::span<const std::string_view> FindList(const std::vector<TextList>& lists, std::string_view table,
                                           std::string_view column) {
    const auto found = std::find_if(lists.begin(), lists.end(), [&](const TextList& list) {
        return list.table == table && list.column == column;
    });
    return found == lists.end() ? std::span<const std::string_view>() : std::span(found->texts);
}

} // namespace

std::span<const std::string_view> SampleTexts(std::string_view table, std::string_view column) {
    static const std::vector<TextList> ofTables = ListsOfTables();
    static const std::vector<TextList> ofColumns = ListsOfColumns();
    const auto own = FindList(ofTables, table, column);
    return own.empty() ? FindList(ofColumns, "", column) : own;
}

const NumberedText* FindNumberedText(std::string_view column) {
    const auto found = std::find_if(NumberedTexts.begin(), NumberedTexts.end(),
                                    [&](const NumberedText& text) { return text.column == column; });
    return found == NumberedTexts.end() ? nullptr : &*found;
}

} // namespace qndr::suite
