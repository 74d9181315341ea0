// The measurements of bench/increment: changed rows go from one company of a dealer to the other, and beside it
// the same changes as a changeset of the database's own making. One line of JSON a run.

#include "changeset_peer.h"
#include "dealer.h"
#include "suite/admin/company_compare.h"
#include "suite/schema/company_schema.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <random>
#include <stdexcept>
#include <vector>

namespace {

using namespace qndr;

struct EditedTable {
    const char* name;
    const char* change; ///< what an UPDATE sets; every row gets another value by it
};

/// Of the large tables of the sample data, none that an exchange cuts by date.
constexpr std::array<EditedTable, 5> kTables{{
    {"Customers", "CreditLimit = COALESCE(CreditLimit, 0) + 1, Notes = 'Terms agreed anew, file ' || ID"},
    {"CustomerAddresses", "Street = Street || ' a'"},
    {"Products", "BasePrice = COALESCE(BasePrice, 0) + 1"},
    {"ProductVendors", "Cost = COALESCE(Cost, 0) + 1, LeadDays = COALESCE(LeadDays, 0) + 1"},
    {"OptionDetailSettings", "PriceAdjustment = COALESCE(PriceAdjustment, 0) + 1"},
}};

struct Edit {
    sql::Statement* statement;
    std::int64_t id;
};

/// The statements that change, copy and delete one row.
struct TableEditor {
    TableEditor(const sql::Connection& company, const EditedTable& edited)
        : update(
              company.Prepare("UPDATE " + std::string(edited.name) + " SET " + edited.change + " WHERE ID = ?1")),
          insert(company.Prepare(CopySql(edited.name))),
          remove(company.Prepare("DELETE FROM " + std::string(edited.name) + " WHERE ID = ?1")) {}

    static std::string CopySql(const std::string& table) {
        std::string columns;
        for (const suite::Column& column : suite::FindAuditedTable(table)->columns) {
            columns.append(columns.empty() ? "" : ", ").append(column.name);
        }
        return "INSERT INTO " + table + " (" + columns + ") SELECT " + columns + " FROM " + table +
               " WHERE ID = ?1";
    }

    sql::Statement update;
    sql::Statement insert;
    sql::Statement remove;
};

/// Changes `count` rows, none twice: 70 % updates, 20 % inserts, 10 % deletions, in mixed order.
void ChangeRows(const sql::Connection& company, std::size_t count, std::mt19937& random) {
    sql::Transaction transaction(company, sql::Transaction::Kind::Write);
    const std::int64_t before = company.Number("SELECT MAX(ID) FROM AuditLog");
    std::vector<std::unique_ptr<TableEditor>> editors;
    std::vector<Edit> edits;
    for (const EditedTable& edited : kTables) {
        TableEditor& editor = *editors.emplace_back(std::make_unique<TableEditor>(company, edited));
        std::vector<std::int64_t> ids;
        auto all = company.Prepare("SELECT ID FROM " + std::string(edited.name));
        while (all.Step()) {
            ids.push_back(all.Integer(0));
        }
        std::shuffle(ids.begin(), ids.end(), random);
        const std::size_t share = count / kTables.size();
        for (std::size_t i = 0; i < share; ++i) {
            const std::size_t tenth = i * 10 / share;
            edits.push_back({tenth < 7 ? &editor.update : tenth < 9 ? &editor.insert : &editor.remove, ids.at(i)});
        }
    }
    std::shuffle(edits.begin(), edits.end(), random);
    for (const Edit& edit : edits) {
        edit.statement->Bind(1, edit.id);
        edit.statement->Step();
        edit.statement->Reset();
    }
    if (company.Number("SELECT MAX(ID) FROM AuditLog") - before != static_cast<std::int64_t>(count)) {
        throw std::runtime_error("not every edit was audited");
    }
    transaction.Commit();
}

/// Ends the measurement where the receiver turns to sending: what came is committed, counted and put away by then,
/// and what goes out is the way of the next change.
class EndOfArrival : public ActivityTarget {
  public:
    explicit EndOfArrival(bench::CallTimes& times) : times_(times) {}
    std::string Text() const override { return text_; }
    void SetText(const std::string& text) override {
        text_ = text;
        if (text.starts_with("Sending changes to")) {
            times_.Stop();
        }
    }

  private:
    bench::CallTimes& times_;
    std::string text_;
};

/// One direction between two companies that stand alike, and the peer of it.
class Direction {
  public:
    Direction(std::string name, bench::DealerComputer& sender, bench::DealerComputer& receiver,
              const std::string& peerFolder)
        : name_(std::move(name)), sender_(sender), receiver_(receiver),
          outside_(sender.Computer(), sender.Time(), "bench", {}),
          peer_(peerFolder, sender.DatabaseFile(), sender.Time().clock) {}

    /// Changes `count` rows at the sender and brings them over both ways.
    void Run(std::size_t count, bool peerFirst) {
        bench::PeerTimes peer;
        {
            const auto company = sender_.Open();
            const bench::ChangeRecorder recorder(*company, TableNames());
            ChangeRows(*company, count, random_);
            peer_.Make(recorder, peer);
        }
        bench::CallTimes sent;
        bench::CallTimes taken;
        const services::AgentServices& all = outside_.Services();
        if (peerFirst) {
            peer_.Carry(all.objects, all.fileTools, peer);
        }
        sender_.RunPass(&sent);
        EndOfArrival end(taken);
        receiver_.RunPass(&taken, &end);
        if (!peerFirst) {
            peer_.Carry(all.objects, all.fileTools, peer);
        }
        // What main sends back to a workstation must not stand in the way of the next run.
        sender_.RunPass();
        Print(count, sent, taken, peer);
    }

    const std::string& PeerFile() const { return peer_.DatabaseFile(); }

  private:
    static std::vector<std::string> TableNames() {
        std::vector<std::string> names;
        for (const EditedTable& edited : kTables) {
            names.emplace_back(edited.name);
        }
        return names;
    }

    void Print(std::size_t count, const bench::CallTimes& sent, const bench::CallTimes& taken,
               const bench::PeerTimes& peer) const {
        std::cout << "{\"direction\": \"" << name_ << "\", \"rows\": " << count << ", \"sent\": ";
        sent.Print(std::cout);
        std::cout << ", \"taken\": ";
        taken.Print(std::cout);
        std::cout << ", \"peer\": {\"make\": " << peer.make << ", \"pack\": " << peer.pack
                  << ", \"drop\": " << peer.drop << ", \"unpack\": " << peer.unpack
                  << ", \"apply\": " << peer.apply << ", \"close\": " << peer.close << "}}" << std::endl;
    }

    std::string name_;
    bench::DealerComputer& sender_;
    bench::DealerComputer& receiver_;
    const ComputerServices outside_;
    bench::ChangesetPeer peer_;
    std::mt19937 random_{1};
};

/// A way that lost a row was no way.
void DemandAlike(const sql::Connection& left, const sql::Connection& right, const char* who) {
    for (const auto& table : suite::CompareCompanies(left, right, suite::Scope::Exchanged)) {
        if (!table.Alike()) {
            throw std::runtime_error(std::string(who) + " differs in " + table.table);
        }
    }
}

void Measure(const std::string& folder, std::int64_t companyRows, int runs,
             const std::vector<std::size_t>& counts) {
    bench::Dealer dealer(folder);
    dealer.SetUp(companyRows);
    for (int round = 0; round < 2; ++round) {
        dealer.laptop.RunPass();
        dealer.main.RunPass();
    }
    for (const bool toMain : {false, true}) {
        bench::DealerComputer& sender = toMain ? dealer.laptop : dealer.main;
        bench::DealerComputer& receiver = toMain ? dealer.main : dealer.laptop;
        const std::string name = toMain ? "to main" : "to the laptop";
        Direction direction(name, sender, receiver, folder + "/peer " + name);
        for (const std::size_t count : counts) {
            for (int run = 0; run < runs; ++run) {
                direction.Run(count, run % 2 != 0);
            }
        }
        const sql::SqliteConnection peer(direction.PeerFile(), sender.Time().clock, sql::Missing::Refuse);
        DemandAlike(*sender.Open(), peer, "the peer");
        DemandAlike(*sender.Open(), *receiver.Open(), "the receiver");
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 4) {
        std::cerr << "usage: bench_increment FOLDER COMPANY-ROWS RUNS CHANGED-ROWS...\n";
        return 2;
    }
    try {
        std::vector<std::size_t> counts;
        for (std::size_t i = 3; i < arguments.size(); ++i) {
            counts.push_back(std::stoul(arguments[i]));
        }
        Measure(arguments[0], std::stoll(arguments[1]), std::stoi(arguments[2]), counts);
    } catch (const std::exception& failure) {
        std::cerr << "bench_increment: " << failure.what() << '\n';
        return 1;
    }
    return 0;
}
