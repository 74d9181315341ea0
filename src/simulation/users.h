#pragma once

#include "simulation/chronicle.h"
#include "simulation/simulated_computer.h"

#include <cstddef>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace qndr::simulation {

/// Where values are entered.
struct EntryPlace {
    const char* table;
    const char* column;
};
/// All columns of a table's that are.
std::span<const EntryPlace> EntryPlaces();

/// The values that occur in the text.
void CollectValues(const std::string& text, std::set<std::string>& values);

/// The people at the computers, and what they have entered. Every value that somebody enters is a text of its own;
/// whoever writes over it or deletes its row had it before his eyes. All others must never get lost.
class Users {
  public:
    /// Computers and chronicle must outlive the object.
    Users(std::vector<SimulatedComputer*> computers, SeededRandom random, Chronicle& chronicle);

    /// Somebody at the computer enters, changes or deletes something, if the company may be worked on at all.
    void Edit(std::size_t computer);

    /// From now on there are orders: main's are in no initial sync, so they come when all workstations are ready.
    void BeginOrders() { ordersHaveBegun_ = true; }

    /// Where a value was entered.
    struct Place {
        std::string row; ///< its identity
        std::string words;
    };

    /// What stands in the computer's rows.
    std::set<std::string> ValuesInRows(std::size_t computer) const;
    /// What lost there against another version and is kept.
    std::set<std::string> KeptValues(std::size_t computer) const;
    /// The values that stand in no row of main's and are kept nowhere, each with where it was entered. A row of a
    /// workstation alone is no place for them: main's next change of it would overwrite them unseen.
    std::map<std::string, Place> LostValues() const;
    std::int64_t Edits() const { return edits_; }

  private:
    struct Row {
        std::string table;
        std::string id;
    };

    void Put(std::size_t computer, const std::string& table, const std::string& id, const std::string& column,
             const std::string& further = "", const std::string& furtherValue = "");
    void AddOrder(std::size_t computer);
    void Delete(std::size_t computer, const Row& row);
    void Overwritten(std::size_t computer, const std::string& table, const std::string& id,
                     const std::string& column);

    std::vector<SimulatedComputer*> computers_;
    SeededRandom random_;
    Chronicle& chronicle_;
    std::vector<Row> rows_;               ///< that somebody has made somewhere
    std::map<std::string, Place> values_; ///< that must not get lost
    bool ordersHaveBegun_ = false;
    std::int64_t edits_ = 0;
    std::int64_t entered_ = 0;
};

} // namespace qndr::simulation
