#include "simulation/users.h"

#include "services/company_numbers.h"

#include <set>

namespace qndr::simulation {
namespace {

constexpr EntryPlace Places[] = {{"Orders", "Notes"},       {"OrderItems", "Description"}, {"Customers", "Notes"},
                                 {"Customers", "LastName"}, {"PurchaseOrders", "Notes"},   {"Groups", "Name"},
                                 {"EmailTemplates", "Body"}};
/// Rows of each table that are there from the start, few, so that people meet in them.
constexpr int FirstRows = 2;
constexpr std::size_t MostRows = 60;
constexpr const char* Mark = "value ";

} // namespace

std::span<const EntryPlace> EntryPlaces() {
    return Places;
}

void CollectValues(const std::string& text, std::set<std::string>& values) {
    const std::string mark = Mark;
    for (auto start = text.find(mark); start != std::string::npos; start = text.find(mark, start + 1)) {
        const auto end = text.find_first_not_of("0123456789", start + mark.size());
        if (end != std::string::npos && text[end] == '.') {
            values.insert(text.substr(start, end - start + 1));
        }
    }
}

Users::Users(std::vector<SimulatedComputer*> computers, SeededRandom random, Chronicle& chronicle)
    : computers_(std::move(computers)), random_(random), chronicle_(chronicle) {
    for (const EntryPlace& place : Places) {
        for (int row = 0; row < FirstRows; ++row) {
            rows_.push_back({place.table, random_.Identifier()});
        }
    }
}

void Users::Edit(std::size_t computer) {
    // A workstation holds nothing before its first data, and what is entered then would not travel.
    if (!computers_[computer]->IsMain() &&
        computers_[computer]->Number("SELECT SyncState FROM Company") < SyncStateReady) {
        return;
    }
    const Row row = rows_[static_cast<std::size_t>(random_.Below(static_cast<std::int64_t>(rows_.size())))];
    if (!ordersHaveBegun_ && row.table.find("Order") != std::string::npos) {
        return;
    }
    ++edits_;
    const std::int64_t action = random_.Below(10);
    if (action == 0 && ordersHaveBegun_ && rows_.size() < MostRows) {
        AddOrder(computer);
    } else if (action == 1) {
        Delete(computer, row);
    } else {
        std::vector<const char*> columns;
        for (const EntryPlace& place : Places) {
            if (row.table == place.table) {
                columns.push_back(place.column);
            }
        }
        Put(computer, row.table, row.id,
            columns[static_cast<std::size_t>(random_.Below(static_cast<std::int64_t>(columns.size())))]);
    }
}

void Users::AddOrder(std::size_t computer) {
    const Row order{"Orders", random_.Identifier()};
    rows_.push_back(order);
    Put(computer, order.table, order.id, "Notes", "OrderNumber", std::to_string(1000 + edits_));
    for (std::int64_t line = 1 + random_.Below(3); line > 0; --line) {
        const Row item{"OrderItems", random_.Identifier()};
        rows_.push_back(item);
        Put(computer, item.table, item.id, "Description", "OrderUniqueID", order.id);
    }
}

void Users::Put(std::size_t computer, const std::string& table, const std::string& id, const std::string& column,
                const std::string& further, const std::string& furtherValue) {
    const std::string value = Mark + std::to_string(++entered_) + ".";
    Overwritten(computer, table, id, column);
    const std::string columns = further.empty() ? column : column + ", " + further;
    const std::string entered = "'" + value + (further.empty() ? "'" : "', '" + furtherValue + "'");
    computers_[computer]->Company().Execute("INSERT INTO " + table + " (UniqueID, " + columns + ") VALUES ('" +
                                            id + "', " + entered + ") ON CONFLICT (UniqueID) DO UPDATE SET " +
                                            column + " = excluded." + column);
    values_[value] = {id, computers_[computer]->Name() + ", " + table + " " + id + " " + column};
    chronicle_.Note(computers_[computer]->Name(),
                    "enters '" + value + "' into " + table + " " + id + " " + column);
}

void Users::Delete(std::size_t computer, const Row& row) {
    for (const EntryPlace& place : Places) {
        if (row.table == place.table) {
            Overwritten(computer, row.table, row.id, place.column);
        }
    }
    computers_[computer]->Company().Execute("DELETE FROM " + row.table + " WHERE UniqueID = '" + row.id + "'");
    chronicle_.Note(computers_[computer]->Name(), "deletes " + row.table + " " + row.id);
}

void Users::Overwritten(std::size_t computer, const std::string& table, const std::string& id,
                        const std::string& column) {
    values_.erase(
        computers_[computer]->Value("SELECT " + column + " FROM " + table + " WHERE UniqueID = '" + id + "'"));
}

std::set<std::string> Users::ValuesInRows(std::size_t computer) const {
    std::set<std::string> values;
    for (const EntryPlace& entry : Places) {
        CollectValues(computers_[computer]->Value("SELECT group_concat(" + std::string(entry.column) + ") FROM " +
                                                  entry.table),
                      values);
    }
    return values;
}

std::set<std::string> Users::KeptValues(std::size_t computer) const {
    std::set<std::string> values;
    CollectValues(computers_[computer]->Value("SELECT group_concat(LosingValues) FROM ImportConflicts"), values);
    CollectValues(computers_[computer]->Value("SELECT group_concat(RecordXml) FROM ImportProblems"), values);
    return values;
}

std::map<std::string, Users::Place> Users::LostValues() const {
    std::map<std::string, Place> lost = values_;
    for (const std::string& value : ValuesInRows(0)) {
        lost.erase(value);
    }
    for (std::size_t computer = 0; computer < computers_.size(); ++computer) {
        for (const std::string& value : KeptValues(computer)) {
            lost.erase(value);
        }
    }
    return lost;
}

} // namespace qndr::simulation
